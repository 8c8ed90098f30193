#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ostrel {

/// The number of characters (not bytes) of a UTF-8 text.
std::size_t CharCount(std::string_view text);

/// The text padded with blanks on the right to this many characters; a longer text stays.
std::string Padded(std::string_view text, std::size_t width);

/// The same, but a longer text is cut.
std::string Fitted(std::string_view text, std::size_t width);

/// The text with control characters replaced by visible signs, safe to print on a terminal.
/// Line ends stay.
std::string Visible(std::string_view text);

}  // namespace ostrel
