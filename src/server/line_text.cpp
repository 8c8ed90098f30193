#include "server/line_text.h"

#include <algorithm>
#include <cctype>

namespace ostrel {
namespace {

char Lower(char c) {
  return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

bool IsAlnum(char c) {
  return (c >= '0' && c <= '9') || (Lower(c) >= 'a' && Lower(c) <= 'z');
}

/// Where the first word that a password may follow ends; npos when there is none.
std::size_t EndOfSecretWord(std::string_view line) {
  std::size_t end = std::string_view::npos;
  for (const std::string_view word : {"login", "passwort", "pwlrel"}) {
    const auto at = std::search(line.begin(), line.end(), word.begin(), word.end(),
                                [](char a, char b) { return Lower(a) == b; });
    if (at == line.end()) continue;
    end = std::min(end, static_cast<std::size_t>(at - line.begin()) + word.size());
  }
  return end;
}

}  // namespace

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

LineAddress AddressOf(std::string_view line) {
  const auto first = std::find_if_not(line.begin(), line.end(), IsAlnum);
  const auto length = static_cast<std::size_t>(first - line.begin());
  if (length == 0 || length == line.size()) return {};
  std::string word(line.substr(0, length));
  std::transform(word.begin(), word.end(), word.begin(), Lower);
  if (word == "all" && (line[length] == ',' || line[length] == ' ')) return {true, {}};
  if (line[length] != ':') return {};
  const std::string_view rest = line.substr(length);
  if (rest.size() < 2 || rest.find_first_not_of(':') != std::string_view::npos) return {true, {}};
  std::transform(word.begin(), word.end(), word.begin(),
                 [](char c) { return static_cast<char>(std::toupper(c)); });
  return {true, word};
}

bool IsSecret(std::string_view line) {
  return EndOfSecretWord(line) != std::string_view::npos;
}

std::string ForLog(std::string_view line) {
  const std::size_t end = EndOfSecretWord(line);
  std::string shown;
  for (const char c : line.substr(0, end)) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F || (byte >= 0x80 && byte < 0xA0)) {
      constexpr std::string_view kHex = "0123456789abcdef";
      shown += {'\\', 'x', kHex[byte >> 4], kHex[byte & 15]};
    } else {
      shown += FromLatin1({&c, 1});
    }
  }
  if (end < line.size()) shown += " ***";
  return shown;
}

}  // namespace ostrel
