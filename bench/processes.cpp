#include "processes.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <iostream>
#include <system_error>
#include <utility>

namespace ostrel::bench {
namespace {

int Checked(int result, const char* what) {
  if (result < 0) throw std::system_error(errno, std::generic_category(), what);
  return result;
}

const cpu_set_t& AllCores() {
  static const cpu_set_t cores = [] {
    cpu_set_t set;
    CPU_ZERO(&set);
    sched_getaffinity(0, sizeof(set), &set);
    return set;
  }();
  return cores;
}

void SetCores(pid_t pid, const cpu_set_t& cores) {
  const std::filesystem::path tasks = "/proc/" + std::to_string(pid) + "/task";
  for (const auto& task : std::filesystem::directory_iterator(tasks)) {
    const std::string name = task.path().filename().string();
    pid_t thread = 0;
    std::from_chars(name.data(), name.data() + name.size(), thread);
    Checked(sched_setaffinity(thread, sizeof(cores), &cores), "sched_setaffinity");
  }
}

sockaddr_in LoopbackAddress(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<in_port_t>(port));
  return address;
}

int ListenTcp() {
  const int listener = Checked(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket");
  sockaddr_in address = LoopbackAddress(0);
  Checked(bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof(address)), "bind");
  Checked(listen(listener, 4), "listen");
  return listener;
}

void SendAtOnce(int socket) {
  const int on = 1;
  Checked(setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof(on)), "TCP_NODELAY");
}

void AnswerLines(int socket, const std::string& answer, int delayMs) {
  std::string line;
  char bytes[4096];
  for (ssize_t count; (count = read(socket, bytes, sizeof(bytes))) > 0;) {
    for (const char c : std::string_view(bytes, static_cast<std::size_t>(count))) {
      if (c != '\r') {
        line += c;
        continue;
      }
      if (delayMs > 0) usleep(static_cast<useconds_t>(delayMs) * 1000);
      WriteAll(socket, std::exchange(line, {}) + "\r\n" + answer + "\r\n<\x1A");
    }
  }
}

[[noreturn]] void ServeDevice(int listener, const std::string& answer, int delayMs) {
  for (;;) {
    const int socket = Checked(accept(listener, nullptr, nullptr), "accept");
    SendAtOnce(socket);
    AnswerLines(socket, answer, delayMs);
    close(socket);
  }
}

int StatusOf(const std::function<int()>& work) {
  try {
    return work();
  } catch (const std::exception& error) {
    std::cerr << error.what() << std::endl;
    return 1;
  }
}

/// Ends what a worker that has ended left running in the background.
void EndOrphans() {
  const std::string path = "/proc/self/task/" + std::to_string(getpid()) + "/children";
  for (;;) {
    std::ifstream children(path);
    pid_t pid = 0;
    if (!(children >> pid)) return;
    kill(pid, SIGKILL);
    waitpid(pid, nullptr, 0);
  }
}

}  // namespace

int RunGuarded(const std::function<int(const std::filesystem::path& folder)>& work) {
  AllCores();
  std::string name = (std::filesystem::temp_directory_path() / "ostrel-bench-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) {
    std::cerr << name << ": cannot be made" << std::endl;
    return 1;
  }
  sigset_t signals;
  sigset_t before;
  sigemptyset(&signals);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGCHLD}) sigaddset(&signals, signal);
  sigprocmask(SIG_BLOCK, &signals, &before);
  prctl(PR_SET_CHILD_SUBREAPER, 1);  // what the worker leaves becomes a child of this process
  int status = 0;
  {
    const Child worker([&] {
      sigprocmask(SIG_SETMASK, &before, nullptr);
      std::cout.flush();
      const int result = StatusOf([&] { return work(name); });
      std::cout.flush();
      _exit(result);
    });
    int signal = 0;
    sigwait(&signals, &signal);
    siginfo_t end{};
    const bool ended = signal == SIGCHLD &&
                       waitid(P_PID, static_cast<id_t>(worker.Pid()), &end, WEXITED | WNOWAIT) == 0;
    status = ended && end.si_code == CLD_EXITED ? end.si_status : 1;
  }
  EndOrphans();
  std::error_code ignored;
  std::filesystem::remove_all(name, ignored);
  return status;
}

Child::Child(const std::function<void()>& body) {
  const pid_t parent = getpid();
  pid_ = Checked(fork(), "fork");
  if (pid_ != 0) return;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) _exit(1);
  _exit(StatusOf([&] {
    body();
    return 0;
  }));
}

Child::~Child() {
  kill(pid_, SIGKILL);
  waitpid(pid_, nullptr, 0);
}

void PinToOneCore(pid_t pid) {
  int core = 0;
  while (!CPU_ISSET(core, &AllCores())) ++core;
  cpu_set_t one;
  CPU_ZERO(&one);
  CPU_SET(core, &one);
  SetCores(pid, one);
}

void SetFree(pid_t pid) {
  SetCores(pid, AllCores());
}

double CpuSeconds(pid_t pid) {
  clockid_t clock{};
  timespec used{};
  if (clock_getcpuclockid(pid, &clock) != 0) throw std::runtime_error("a process is gone");
  Checked(clock_gettime(clock, &used), "clock_gettime");
  return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
}

TcpDevice::TcpDevice(std::string answer, int delayMs)
    : listener_(ListenTcp()), process_([&] { ServeDevice(listener_, answer, delayMs); }) {}

TcpDevice::~TcpDevice() {
  close(listener_);
}

int TcpDevice::Port() const {
  sockaddr_in address{};
  socklen_t size = sizeof(address);
  Checked(getsockname(listener_, reinterpret_cast<sockaddr*>(&address), &size), "getsockname");
  return ntohs(address.sin_port);
}

int ConnectTcp(int port) {
  const int result = Checked(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket");
  const sockaddr_in address = LoopbackAddress(port);
  Checked(connect(result, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), "connect");
  SendAtOnce(result);
  return result;
}

void WriteAll(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count =
        Checked(static_cast<int>(write(descriptor, bytes.data(), bytes.size())), "write");
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

}  // namespace ostrel::bench
