#pragma once

#include <string>
#include <string_view>

namespace ostrel::simulator {

/// Ends the echo and separates the answer's lines.
inline constexpr std::string_view kLineEnd = "\r\n";
/// The prompt on a line of its own, and Ctrl-Z, which occurs nowhere else.
inline constexpr std::string_view kReplyEnd = "\r\n<\x1a";

/// A part of what goes out to the host for one line.
struct Portion {
  enum class Kind { kBytes, kEndless, kDropLink };
  std::string bytes = {};    ///< of kBytes
  int delay = 0;             ///< ms before it, from the line's arrival or the portion before
  Kind kind = Kind::kBytes;  ///< kEndless = text until the next line comes
};

}  // namespace ostrel::simulator
