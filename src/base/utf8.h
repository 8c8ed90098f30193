#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace ostrel {

/// Whether a byte of a UTF-8 text is the first of a character.
inline bool StartsCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80;
}

/// Takes the next character off a UTF-8 text; nothing, and the text stays, where its first bytes
/// are none.
inline std::optional<char32_t> PopCharacter(std::string_view& text) {
  if (text.empty()) return std::nullopt;
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead < 0x80   ? 1
                             : lead < 0xC2 ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  if (length == 0 || length > text.size()) return std::nullopt;
  char32_t character = length == 1 ? lead : lead & (0x7FU >> length);
  for (const char next : text.substr(1, length - 1)) {
    if (StartsCharacter(next)) return std::nullopt;
    character = (character << 6U) | (static_cast<unsigned char>(next) & 0x3FU);
  }
  const bool tooLong = (length == 3 && character < 0x800) || (length == 4 && character < 0x10000);
  const bool surrogate = character >= 0xD800 && character < 0xE000;
  if (tooLong || surrogate || character > 0x10FFFF) return std::nullopt;
  text.remove_prefix(length);
  return character;
}

/// Appends a character below U+10000 in UTF-8.
inline void AppendCharacter(std::string& text, char32_t character) {
  const auto add = [&](char32_t byte) { text += static_cast<char>(byte); };
  if (character < 0x80) return add(character);
  if (character < 0x800) {
    add(0xC0U | (character >> 6U));
  } else {
    add(0xE0U | (character >> 12U));
    add(0x80U | ((character >> 6U) & 0x3FU));
  }
  add(0x80U | (character & 0x3FU));
}

}  // namespace ostrel
