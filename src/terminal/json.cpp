#include "terminal/json.h"

namespace ostrel {

namespace {

/// The length of the UTF-8 character at the start of a text; 0 when there is none.
std::size_t CharLength(std::string_view text) {
  const auto lead = static_cast<unsigned char>(text[0]);
  const std::size_t length = lead < 0x80                    ? 1
                             : lead >= 0xC2 && lead < 0xE0  ? 2
                             : lead >= 0xE0 && lead < 0xF0  ? 3
                             : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                            : 0;
  if (length == 0 || length > text.size()) return 0;
  for (std::size_t n = 1; n < length; ++n) {
    if ((static_cast<unsigned char>(text[n]) & 0xC0) != 0x80) return 0;
  }
  return length;
}

std::string Escaped(char letter) {
  switch (letter) {
    case '"':
      return "\\\"";
    case '\\':
      return "\\\\";
    case '\n':
      return "\\n";
    case '\r':
      return "\\r";
    case '\t':
      return "\\t";
    default:
      break;
  }
  const auto byte = static_cast<unsigned char>(letter);
  if (byte >= 32 && byte != 127) return std::string(1, letter);
  constexpr std::string_view kDigits = "0123456789abcdef";
  return std::string("\\u00") + kDigits[byte >> 4] + kDigits[byte & 15];
}

}  // namespace

std::string JsonString(std::string_view text) {
  std::string json = "\"";
  while (!text.empty()) {
    const std::size_t length = CharLength(text);
    if (length == 0) {
      json += "\uFFFD";
    } else if (length == 1) {
      json += Escaped(text[0]);
    } else {
      json += text.substr(0, length);
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return json + '"';
}

std::string JsonList(const std::vector<std::string>& values) {
  std::string list;
  for (const std::string& value : values) list += (list.empty() ? "" : ",\n ") + value;
  return "[" + list + "]";
}

JsonObject& JsonObject::Add(std::string_view key, std::string_view text) {
  return AddRaw(key, JsonString(text));
}

JsonObject& JsonObject::Add(std::string_view key, std::int64_t number) {
  return AddRaw(key, std::to_string(number));
}

JsonObject& JsonObject::AddRaw(std::string_view key, std::string_view json) {
  if (!members_.empty()) members_ += ", ";
  members_ += JsonString(key) + ": ";
  members_ += json;
  return *this;
}

JsonObject JsonError(int number, std::string_view message) {
  return JsonObject().Add("number", number).Add("message", message);
}

}  // namespace ostrel
