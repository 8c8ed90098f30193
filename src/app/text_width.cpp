#include "app/text_width.h"

namespace ostrel {

namespace {

bool StartsCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

}  // namespace

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

std::string Visible(std::string_view text) {
  std::string visible;
  for (std::size_t n = 0; n < text.size(); ++n) {
    const auto byte = static_cast<unsigned char>(text[n]);
    const bool lineEnd = byte == '\n' || (byte == '\r' && text.substr(n, 2) == "\r\n");
    const auto next = n + 1 < text.size() ? static_cast<unsigned char>(text[n + 1]) : 0;
    if (byte == 0xC2 && next >= 0x80 && next < 0xA0) {
      visible += "\uFFFD";  // the control characters above 127 steer terminals as well
      ++n;
    } else if (lineEnd || (byte >= 32 && byte != 127)) {
      visible += text[n];
    } else if (byte == 127) {
      visible += "\u2421";
    } else {
      visible += "\xE2\x90";  // the pictures of the control characters, U+2400..U+241F
      visible += static_cast<char>(0x80 + byte);
    }
  }
  return visible;
}

}  // namespace ostrel
