#include "server/line_text.h"

#include "base/text.h"
#include "wire/line_rules.h"

namespace ostrel {
std::optional<std::string> ToLatin1(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  for (std::size_t i = 0; i < utf8.size(); ++i) {
    const unsigned char lead = static_cast<unsigned char>(utf8[i]);
    if (lead < 0x80) {
      bytes += utf8[i];
      continue;
    }
    if ((lead != 0xC2 && lead != 0xC3) || ++i == utf8.size()) return std::nullopt;
    const unsigned char next = static_cast<unsigned char>(utf8[i]);
    if ((next & 0xC0) != 0x80) return std::nullopt;
    bytes += static_cast<char>(((lead & 0x03) << 6) | (next & 0x3F));
  }
  return bytes;
}

std::string FromLatin1(std::string_view bytes) {
  std::string utf8;
  utf8.reserve(bytes.size());
  for (const char c : bytes) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0 | (byte >> 6));
      utf8 += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return utf8;
}

std::optional<std::string> SingleLine(std::string_view text) {
  if (text.ends_with('\n')) text.remove_suffix(1);
  if (text.ends_with('\r')) text.remove_suffix(1);
  if (text.find_first_of("\r\n\x1A") != std::string_view::npos) return std::nullopt;
  return std::string(text);
}

std::string ForLog(std::string_view line) {
  return VisibleLine(FromLatin1(Masked(line)));
}

}  // namespace ostrel
