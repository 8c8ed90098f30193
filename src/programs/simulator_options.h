#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "simulator/extras.h"
#include "simulator/fault.h"

namespace ostrel::simulator {

/// What the command line asks for.
struct Options {
  std::string address = "127.0.0.1";  ///< to listen on
  std::optional<int> port;            ///< 0 = a free one
  std::string terminal;               ///< where the link to the pseudo-terminal is to stand
  std::uint32_t seed = 1;
  LineFault fault;
  std::size_t connected = 0;  ///< place of the physically connected device on the bus
  Extras extras;
  double speed = 1;  ///< of simulated time
  int baud = 0;      ///< at which replies go out; 0 = as fast as it can be
  /// Files; empty = none.
  std::string stations, record, replay;
};

/// The exit status with which the program ends at once, or -1 to go on.
int ParseOptions(int argc, char** argv, Options& options);

}  // namespace ostrel::simulator
