#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>
#include <string>

namespace ostrel::bench {

/// Runs the work in a process of its own, with a fresh folder. However it ends, the processes that
/// it started and the folder are gone afterwards. Returns the exit status, 1 after an exception or
/// a signal.
int RunGuarded(const std::function<int(const std::filesystem::path& folder)>& work);

/// A process that runs a function, or after that function another program. It is killed when this
/// object goes and when the process that made it ends.
class Child {
 public:
  explicit Child(const std::function<void()>& body);
  ~Child();
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  pid_t Pid() const { return pid_; }

 private:
  pid_t pid_;
};

/// Keeps all threads of a process on the first core that this process may use.
void PinToOneCore(pid_t pid);
/// Lets them run on all cores on which this process could run at its start.
void SetFree(pid_t pid);

/// The processor time that a process has used, in seconds.
double CpuSeconds(pid_t pid);

/// A device on a TCP port: gives each line back, and after `delayMs` the answer.
class TcpDevice {
 public:
  explicit TcpDevice(std::string answer, int delayMs = 0);
  ~TcpDevice();

  pid_t Pid() const { return process_.Pid(); }
  int Port() const;

 private:
  int listener_;
  Child process_;
};

/// A connected TCP socket that sends at once.
int ConnectTcp(int port);

/// Writes all, or throws.
void WriteAll(int descriptor, std::string_view bytes);

}  // namespace ostrel::bench
