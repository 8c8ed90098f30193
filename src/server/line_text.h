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

/// Whom a line is for.
struct LineAddress {
  bool addressed = false;    // begins with a station's address or with "all"
  std::string makesCurrent;  // "B1" for "B1::", which makes that station the current one
};
LineAddress AddressOf(std::string_view line);

/// True when the line carries or asks for a password.
bool IsSecret(std::string_view line);
/// A line for a log: what follows "login", "passwort" or "PWLrel" is masked, control characters
/// are made visible.
std::string ForLog(std::string_view line);

}  // namespace ostrel
