#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel {

/// The longest line that a device takes, in characters.
inline constexpr std::size_t kMaxLine = 4096;

/// Whom a command line is for.
struct LineAddress {
  bool addressed = false;    // begins with a station's address or with "all"
  std::string makesCurrent;  // "B1" for "B1::", which makes that station the current one
};
LineAddress AddressOf(std::string_view line);

/// A station's address as a user writes it, "B1" or "B1:", with its ":". Nothing for an empty text,
/// for "---", and for a text that would change what is sent.
std::optional<std::string> StationAddress(std::string_view text);

/// What is wrong with an address that a user wrote; empty when nothing is.
std::string StationProblem(const std::string& station);

/// True when the line carries or asks for a password.
bool IsSecret(std::string_view line);

/// The line as it may be shown or logged: what follows "login", "passwort" or "PWLrel" is masked.
std::string Masked(std::string_view line);

/// The text with the passwords replaced, in whatever case: a device may repeat what it did not
/// understand. A password is replaced where it stands by itself; cut out of a longer word it would
/// be told. "0", which stands for none, is no secret.
std::string WithoutPasswords(std::string text, std::vector<std::string> passwords);

/// The answer to a line without what may be a password in the line.
std::string MaskedAnswer(std::string answer, std::string_view line);

}  // namespace ostrel
