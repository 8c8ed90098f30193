#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel {

/// A text as a JSON string, in quotes. Bytes that are no UTF-8 become U+FFFD.
std::string JsonString(std::string_view text);

/// JSON values in brackets, a line each.
std::string JsonList(const std::vector<std::string>& values);

/// An object, its members in the order in which they were added.
class JsonObject {
 public:
  JsonObject& Add(std::string_view key, std::string_view text);
  JsonObject& Add(std::string_view key, const char* text) {
    return Add(key, std::string_view(text));
  }
  JsonObject& Add(std::string_view key, std::int64_t number);
  JsonObject& Add(std::string_view key, int number) { return Add(key, std::int64_t{number}); }
  JsonObject& Add(std::string_view key, bool flag) { return AddRaw(key, flag ? "true" : "false"); }
  /// A member that is JSON already.
  JsonObject& AddRaw(std::string_view key, std::string_view json);
  std::string Text() const { return "{" + members_ + "}"; }

 private:
  std::string members_;
};

/// What went wrong: the number of its message, and its text as it is shown.
JsonObject JsonError(int number, std::string_view message);

}  // namespace ostrel
