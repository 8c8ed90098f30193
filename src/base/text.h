#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ostrel {

/// Takes blanks off both ends; line ends stay.
std::string_view Trim(std::string_view text);

/// ASCII letters in lower case, all other bytes as they are.
std::string LowerAscii(std::string_view text);

/// Whether two texts are the same but for the case of ASCII letters.
bool SameText(std::string_view left, std::string_view right);

/// The number of characters (not bytes) of a UTF-8 text.
std::size_t CharCount(std::string_view text);

/// The text padded with blanks on the right to this many characters; a longer text stays.
std::string Padded(std::string_view text, std::size_t width);

/// The same, but a longer text is cut.
std::string Fitted(std::string_view text, std::size_t width);

/// The text with control characters replaced by visible signs, safe to print on a terminal. Line
/// ends become those of a terminal.
std::string Visible(std::string_view text);

/// The same for a text that has to stay on one line.
std::string VisibleLine(std::string_view text);

}  // namespace ostrel
