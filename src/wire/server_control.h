#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ostrel {

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

/// The server program, as whoever looks after it steers it.
class ServerControl {
 public:
  virtual ~ServerControl() = default;
  /// Nothing when no server runs; it is not started for this.
  virtual std::optional<ServerInfo> Status() = 0;
  /// Asks all programs and then the server to end; nothing when no server runs, false when it does
  /// not answer.
  virtual std::optional<bool> Stop() = 0;
};

}  // namespace ostrel
