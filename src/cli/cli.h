#pragma once

#include <functional>
#include <istream>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "app/service.h"

namespace ostrel {

/// Ends of a command, as the shell sees them.
enum class ExitStatus { kDone = 0, kRefused = 1, kWrongUsage = 2, kNotConfirmed = 3 };

/// What the communication server says of itself.
struct ServerInfo {
  struct Line {
    std::string connection;
    int channels = 0;
  };
  bool answers = true;  // else it runs, but nothing more is known
  int pid = 0;
  std::string version;
  int uptimeSeconds = 0;
  int clients = 0;
  std::vector<Line> lines;
};

/// The server program as the command line steers it.
class ServerControl {
 public:
  virtual ~ServerControl() = default;
  /// Nothing when no server runs; it is not started for this.
  virtual std::optional<ServerInfo> Status() = 0;
  /// Asks all programs and then the server to end; nothing when no server runs, false when it does
  /// not answer.
  virtual std::optional<bool> Stop() = 0;
};

/// What the command line needs of the outside world.
struct CliPorts {
  SettingsStore& settings;
  AutomationFactory& automation;
  Clock& clock;
  Desktop& desktop;
  ServerControl& server;
  /// The chart as PNG bytes.
  std::function<std::string(const TapCounters& data, const Messages& messages)> paintChart;
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  std::function<void(bool)> echo = {};  // whether the terminal shows what is typed
  bool interactive = false;             // somebody sits at `in` and can be asked
  std::size_t width = 80;               // of the terminal, in characters
};

/// Runs one command. `arguments` do not hold the program's name.
ExitStatus RunCli(const std::vector<std::string>& arguments, const CliPorts& ports);

}  // namespace ostrel
