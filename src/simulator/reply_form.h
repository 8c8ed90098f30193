#pragma once

#include <string_view>

namespace ostrel::simulator {

/// Ends the echo and separates the answer's lines.
inline constexpr std::string_view kLineEnd = "\r\n";
/// The prompt on a line of its own, and Ctrl-Z, which occurs nowhere else.
inline constexpr std::string_view kReplyEnd = "\r\n<\x1a";

}  // namespace ostrel::simulator
