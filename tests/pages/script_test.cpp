#include "pages/script.h"

#include <gtest/gtest.h>

#include "kit/kit.h"
#include "link/answers.h"

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
  constexpr int kTexts = 5 * 5 * 5 * 5 * 5 * 5;
  for (int code = 0; code < kTexts; ++code) {
    std::string text;
    for (int n = 0, rest = code; n < 6; ++n, rest /= 5) text += pieces[rest % 5];
    std::string left = text;
    for (std::string_view walked = left; !left.empty();) {
      const std::string before = left;
      std::string_view view = walked;
      const std::string line(PopLine(view));
      const std::string rest(view);
      EXPECT_EQ(NextLine(left), line) << testing::PrintToString(text);
      ASSERT_EQ(left, rest) << testing::PrintToString(text);
      walked = left;
      ASSERT_LT(left.size(), before.size());
    }
  }
}

TEST(Script, LinesByWhatTheyAre) {
  const std::pair<std::string, LineClass> cases[] = {
      {"", LineClass::kIgnored},
      {"   ", LineClass::kIgnored},
      {"  # ver.", LineClass::kIgnored},
      {"x # y", LineClass::kCommand},
      {"Aa::", LineClass::kIgnored},
      {"ver. aA::", LineClass::kIgnored},
      {"aa:ver.", LineClass::kCommand},
      {"aa:aa::", LineClass::kIgnored},
      {"B1::", LineClass::kCommand},
      {Repeated("x", 125), LineClass::kCommand},
      {Repeated("x", 126), LineClass::kLong},
      {" " + Repeated("ü", 129) + " ", LineClass::kLong},
      {Repeated("ü", 130), LineClass::kTooLong},
      {"#" + Repeated("x", 130), LineClass::kIgnored},
  };
  for (const auto& [line, kind] : cases) EXPECT_EQ(ClassifyLine(line), kind) << line;
}

TEST(Script, CommandsAreExtractedWithTheirRows) {
  const std::string x126 = Repeated("x", 126);
  const struct {
    std::string text, lines, rows;
    bool longLine;
  } cases[] = {
      {"", "", "", false},
      {"# a\r\n\r\nAA::\r\n", "", "", false},
      {"  one  ", "one\r\n", "1 ", false},
      {"\r\n a\r\n#\r\n  \r\nb \r\n  ", "a\r\nb\r\n", "2 5 ", false},
      {"a\r\n" + x126, "a\r\n" + x126 + "\r\n", "1 2 ", true},
      {"a\r\n#" + x126, "a\r\n", "1 ", false},
  };
  for (const auto& c : cases) {
    const ScriptLines extracted = ExtractCommands(c.text);
    std::string rows;
    for (const ScriptLine& line : extracted.lines) rows += std::to_string(line.row) + " ";
    EXPECT_EQ(extracted.Text(), c.lines) << c.text;
    EXPECT_EQ(rows, c.rows) << c.text;
    EXPECT_EQ(extracted.longLine, c.longLine) << c.text;
  }
}

TEST(Script, TooLongLinesAreListed) {
  kit::ScriptedDialogs dialogs;
  Messages messages(dialogs);
  messages.SetFactor(1);
  const std::string end = "\r\n";
  const std::string most = Repeated("x\r\n", 32766) + "x";
  const struct {
    std::string text, list;
  } cases[] = {
      {"", ""},
      {Repeated("ü", 129), ""},
      {Repeated("#\r\n", 11) + Repeated("ü", 135), "Row 012:  Too Long  (135)\r\n"},
      {Repeated("\r\n", 999) + " " + Repeated("x", 130) + " \r\n" + Repeated("y", 200),
       "Row 1000:  Too Long  (130)\r\nRow 1001:  Too Long  (200)\r\n"},
      {most, ""},
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

TEST(Script, PartsOfIt) {
  using Mode = ScriptPart::Mode;
  const std::string text = "a\r\n\r\n b \r\nc";
  const struct {
    Mode mode;
    std::size_t line;
    const char* part;
  } cases[] = {
      {Mode::kAll, 2, "a\r\n\r\n b \r\nc"},
      {Mode::kFromCursor, 0, "a\r\n\r\n b \r\nc"},
      {Mode::kFromCursor, 1, "\r\n b \r\nc"},
      {Mode::kFromCursor, 2, "b \r\nc"},
      {Mode::kFromCursor, 4, ""},
      {Mode::kFromCursor, 400, ""},
      {Mode::kCursorLine, 0, "a"},
      {Mode::kCursorLine, 1, ""},
      {Mode::kCursorLine, 2, "b"},
      {Mode::kCursorLine, 3, "c"},
      {Mode::kCursorLine, 4, ""},
      {Mode::kSelection, 1, "sel"},
  };
  for (const auto& c : cases) {
    const ScriptPart part{c.mode, c.line, "sel"};
    EXPECT_EQ(SelectPart(text, part), c.part) << static_cast<int>(c.mode) << " " << c.line;
  }
}

TEST(Script, TheTypeOfTheFileIsItsExtension) {
  clsDevice device;
  device.SetIdentity("AA:Nord", "KT-XB");
  const std::pair<const char*, bool> cases[] = {
      {"", true},      {"/a/b.rgl", true}, {"b.RGL", true}, {"b.xfl", false},
      {"b.cmd", true}, {"b.rgl.x", false}, {"gl", false},
  };
  for (const auto& [name, fits] : cases) EXPECT_EQ(ScriptFits(device, name), fits) << name;
}

}  // namespace
}  // namespace ostrel
