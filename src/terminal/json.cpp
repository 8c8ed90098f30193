#include "terminal/json.h"

#include "base/utf8.h"

namespace ostrel {

namespace {

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
    const std::string_view before = text;
    const std::optional<char32_t> character = PopCharacter(text);
    if (!character) {
      json += "\uFFFD";
      text.remove_prefix(1);
    } else if (*character < 0x80) {
      json += Escaped(before[0]);
    } else {
      json += before.substr(0, before.size() - text.size());
    }
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
