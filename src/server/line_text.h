#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ostrel {

/// The station that is physically connected; it is current on a line where nobody chose another.
inline constexpr std::string_view kConnectedStation = "AA";

/// The ISO 8859-1 bytes of a UTF-8 text; none when a character has no place in ISO 8859-1 or the
/// text is no UTF-8.
std::optional<std::string> ToLatin1(std::string_view utf8);
/// The UTF-8 text of ISO 8859-1 bytes.
std::string FromLatin1(std::string_view bytes);

/// One line for a device: a line end at the end is taken off. None when what is left holds a
/// carriage return, a line feed or Ctrl-Z, which would make a second command of it.
std::optional<std::string> SingleLine(std::string_view text);

/// A line or an answer for a log: passwords masked, control characters made visible.
std::string ForLog(std::string_view line);

}  // namespace ostrel
