#pragma once

#include <string>
#include <string_view>

namespace ostrel::simulator {

/// To whom a command line goes, and what is left of it.
struct Address {
  enum class Kind { kCurrent, kAll, kStation, kGroup };
  Kind kind = Kind::kCurrent;
  std::string station;          ///< of kStation, in capitals, without its colon
  char group = 0;               ///< of kGroup: r, p, s, q or o
  bool makeCurrent = false;     ///< a second colon follows the address
  std::string_view expression;  ///< the rest, which refers into the line
};

/// Takes the address off a command line. Every way to address stations is known here alone.
Address ParseAddress(std::string_view line);

}  // namespace ostrel::simulator
