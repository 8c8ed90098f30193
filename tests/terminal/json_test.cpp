#include "terminal/json.h"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

TEST(Json, EscapesAndInvalidBytes) {
  const std::pair<std::string, const char*> cases[] = {
      {"a\"b\\c", R"("a\"b\\c")"},
      {"\r\n\t\x01\x7f", R"("\r\n\t\u0001\u007f")"},
      {"ü€😀", "\"ü€😀\""},
      {"\xff\xc3", "\"\uFFFD\uFFFD\""},
      {std::string(1, 0), R"("\u0000")"},
  };
  for (const auto& [text, json] : cases) EXPECT_EQ(JsonString(text), json);
}

}  // namespace
}  // namespace ostrel
