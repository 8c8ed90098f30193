#pragma once

#include <array>
#include <filesystem>
#include <string>

#include "link/link.h"
#include "platform/event_clock.h"
#include "platform/registry_settings.h"
#include "platform/server_factory.h"
#include "processes.h"

namespace ostrel::bench {

/// Runs a bench in a guarded process, with settings and server socket in a folder of its own and
/// the event loop of the command line; with the argument "--glib" that of the desktop program.
/// Returns the exit status.
int RunMain(int argc, char** argv, int (*bench)(int argc, char** argv));

/// Both ends of a pipe that no other program inherits.
std::array<int, 2> NewPipe();

/// The server program of the same build; it listens when the object is there.
class Server {
 public:
  Server();
  ~Server();
  pid_t Pid() const { return process_.Pid(); }

 private:
  std::array<int, 2> log_;  // what it tells: read here, written there
  Child process_;
};

/// A program's link to the devices, on a TCP connection of its own.
class Program {
 public:
  /// Connects through the server to a device on this port; throws when that does not succeed.
  explicit Program(int port);

  /// One line for one answer; throws when there is no answer.
  std::string Exchange(const std::string& line);

 private:
  RegistrySettings settings_;
  ServerFactory automation_;
  EventClock clock_;
  Link link_{automation_, settings_, clock_, {}};
};

}  // namespace ostrel::bench
