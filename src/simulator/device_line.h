#pragma once

#include <string>
#include <string_view>

#include "simulator/bus.h"

namespace ostrel::simulator {

/// The devices' end of a line: takes the host's bytes as they come and gives back what the
/// physically connected device sends: the echo, the answer's lines, the prompt and Ctrl-Z.
class DeviceLine {
 public:
  explicit DeviceLine(Bus& bus) : bus_(bus) {}
  /// Takes bytes in any portions; returns all replies to the lines that they completed. Of a line
  /// that is too long, only what the device takes is echoed, and the answer is a fault.
  std::string Feed(std::string_view bytes);

 private:
  std::string Reply();

  Bus& bus_;
  std::string line_;
  bool tooLong_ = false;
};

}  // namespace ostrel::simulator
