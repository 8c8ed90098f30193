#pragma once

#include <optional>
#include <string>
#include <vector>

#include "simulator/bus.h"

namespace ostrel::simulator {

/// The devices' end of a line: takes the host's bytes as they come and gives back what the
/// physically connected device sends: the echo, the answer's lines, the prompt and Ctrl-Z.
class DeviceLine {
 public:
  explicit DeviceLine(Bus& bus) : bus_(bus) {}
  /// Takes a byte; returns the reply when it completed a line, without portions when the device is
  /// silent. Of a line that is too long, only what the device takes is echoed, and the answer is a
  /// fault.
  std::optional<std::vector<Portion>> Feed(char byte);

 private:
  std::vector<Portion> Reply();

  Bus& bus_;
  std::string line_;
  bool tooLong_ = false;
};

}  // namespace ostrel::simulator
