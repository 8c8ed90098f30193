#include "server/line_text.h"

#include "base/text.h"
#include "base/utf8.h"
#include "wire/line_rules.h"

namespace ostrel {
std::optional<std::string> ToLatin1(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  while (!utf8.empty()) {
    const std::optional<char32_t> character = PopCharacter(utf8);
    if (!character || *character > 0xFF) return std::nullopt;
    bytes += static_cast<char>(*character);
  }
  return bytes;
}

std::string FromLatin1(std::string_view bytes) {
  std::string utf8;
  utf8.reserve(bytes.size());
  for (const char byte : bytes) AppendCharacter(utf8, static_cast<unsigned char>(byte));
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
