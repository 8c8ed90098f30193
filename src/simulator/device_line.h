#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/bus.h"
#include "simulator/replay.h"

namespace ostrel::simulator {

/// The devices' end of a line: takes the host's bytes as they come and gives back what the
/// physically connected device sends: the echo, the answer's lines, the prompt and Ctrl-Z.
class DeviceLine {
 public:
  /// With a replay, the replies come from there.
  explicit DeviceLine(Bus& bus, Replay* replay = nullptr) : bus_(bus), replay_(replay) {}
  /// Takes a byte; returns the reply when it completed a line, without portions when the device is
  /// silent. Of a line that is too long, only what the device takes is echoed, and the answer is a
  /// fault.
  std::optional<std::vector<Portion>> Feed(char byte);
  /// The line to which it last gave a reply: what the device takes of it, without its end.
  const std::string& LastLine() const { return last_; }

 private:
  std::vector<Portion> Reply();

  Bus& bus_;
  Replay* replay_;
  std::string line_, last_;
  bool tooLong_ = false;
};

}  // namespace ostrel::simulator
