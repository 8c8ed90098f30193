#include "base/text.h"

#include <algorithm>

#include "base/utf8.h"

namespace ostrel {

namespace {

char Lower(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

constexpr char32_t kNoCharacter = 0xFFFFFFFF;

}  // namespace

std::string_view Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string LowerAscii(std::string_view text) {
  std::string lower(text);
  for (char& letter : lower) letter = Lower(letter);
  return lower;
}

bool SameText(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return Lower(a) == Lower(b); });
}

std::size_t CharCount(std::string_view text) {
  std::size_t count = 0;
  for (const char byte : text) count += StartsCharacter(byte) ? 1 : 0;
  return count;
}

std::string Padded(std::string_view text, std::size_t width) {
  std::string padded(text);
  const std::size_t count = CharCount(text);
  if (count < width) padded.append(width - count, ' ');
  return padded;
}

std::string Fitted(std::string_view text, std::size_t width) {
  std::size_t end = 0;
  for (std::size_t count = 0; end < text.size(); ++end) {
    if (StartsCharacter(text[end]) && count++ == width) break;
  }
  return Padded(text.substr(0, end), width);
}

std::string VisibleLine(std::string_view text) {
  std::string visible;
  while (!text.empty()) {
    const std::string_view before = text;
    const char32_t character = PopCharacter(text).value_or(kNoCharacter);
    if (character == kNoCharacter) text.remove_prefix(1);  // a byte of no character stays
    if (character < 32) {
      AppendCharacter(visible, 0x2400 + character);  // the pictures of the control characters
    } else if (character == 127) {
      visible += "\u2421";
    } else if (character >= 0x80 && character < 0xA0) {
      visible += "\uFFFD";  // the control characters above 127 steer terminals as well
    } else {
      visible += before.substr(0, before.size() - text.size());
    }
  }
  return visible;
}

std::string Visible(std::string_view text) {
  std::string visible;
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    const bool carriageReturn = end > 0 && text[end - 1] == '\r';
    visible += VisibleLine(text.substr(0, carriageReturn ? end - 1 : end)) + '\n';
    text.remove_prefix(end + 1);
  }
  return visible + VisibleLine(text);
}

}  // namespace ostrel
