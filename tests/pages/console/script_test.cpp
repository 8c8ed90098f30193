#include "pages/console/script.h"

#include <gtest/gtest.h>

#include "kit/kit.h"
#include "wire/answers.h"

namespace ostrel {
namespace {

std::string Repeated(const std::string& text, std::size_t count) {
  std::string all;
  for (std::size_t n = 0; n < count; ++n) all += text;
  return all;
}

TEST(Script, LinesArePoppedAsNextLineDoes) {
  // All texts of six of these pieces, and what is left of them after each line.
  const std::string pieces[] = {"\r\n", " ", "x", "\n", "\r"};
  for (int code = 0; code < 5 * 5 * 5 * 5 * 5 * 5; ++code) {
    std::string text;
    for (int n = 0, rest = code; n < 6; ++n, rest /= 5) text += pieces[rest % 5];
    std::string_view walked = text;
    for (std::string left = text; !left.empty();) {
      const std::string line = NextLine(left);
      EXPECT_EQ(PopLine(walked), line) << testing::PrintToString(text);
      ASSERT_EQ(walked, left) << testing::PrintToString(text);
    }
  }
}

TEST(Script, LinesByWhatTheyAre) {
  const std::string x125(125, 'x'), u129 = Repeated("ü", 129);
  const std::pair<std::string, int> cases[] = {
      {"", 0},         {"   ", 0},           {" # ver.", 0},
      {"Aa::", 0},     {"ver. aA::", 0},     {"aa:aa::", 0},
      {"x # y", 1},    {"aa:ver.", 1},       {"B1::", 1},
      {x125, 1},       {x125 + "x", 2},      {" " + u129 + " ", 2},
      {u129 + "x", 3}, {"#" + u129 + "x", 0}};
  for (const auto& [line, kind] : cases)
    EXPECT_EQ(static_cast<int>(ClassifyLine(line)), kind) << line;
}

TEST(Script, LinesThatCannotBeSentAreListed) {
  kit::ScriptedDialogs dialogs;
  Messages messages(dialogs);
  messages.SetFactor(1);
  const std::string end = "\r\n";
  const std::string most = Repeated("x\r\n", 32766) + "x";
  const struct {
    std::string text, list;
  } cases[] = {
      {Repeated("ü", 129), ""},
      {Repeated("#\r\n", 11) + Repeated("ü", 135), "Row 012:  Too Long  (135)\r\n"},
      {Repeated("\r\n", 999) + " " + Repeated("x", 130) + " \r\n" + Repeated("y", 200),
       "Row 1000:  Too Long  (130)\r\nRow 1001:  Too Long  (200)\r\n"},
      {"# \u20AC\r\nver.\r\nx=\"\u20AC\u2019\"\r\n\u00FCberall\ty",
       "Row 003:  This character cannot be sent:  \u20AC (U+20AC)\r\n"},
      {"a\uFEFFb\r\na\u2029b\r\na\rb\r\n\x1A\r\nx\xFF",
       "Row 001:  This character cannot be sent:  U+FEFF\r\n"
       "Row 002:  This character cannot be sent:  U+2029\r\n"
       "Row 003:  This character cannot be sent:  U+000D\r\n"
       "Row 004:  This character cannot be sent:  U+001A\r\n"
       "Row 005:  This character cannot be sent:  U+FFFD\r\n"},
      {Repeated("x", 130) + "\u20AC",
       "Row 001:  Too Long  (131)\r\nRow 001:  This character cannot be sent:  \u20AC "
       "(U+20AC)\r\n"},
      {most + end, ""},
      {most + "\r\nx", "A script may have 32767 lines at most.\r\n"},
  };
  for (const auto& c : cases) {
    const ScriptCheck check = CheckScript(c.text);
    EXPECT_EQ(check.List(messages), c.list);
    EXPECT_EQ(check.Ok(), c.list.empty()) << c.list;
  }
  const ScriptCheck three = CheckScript(Repeated(Repeated("x", 130) + end, 3));
  EXPECT_EQ(three.List(messages, 1), "Row 001:  Too Long  (130)\r\n... and 2 more\r\n");
}

}  // namespace
}  // namespace ostrel
