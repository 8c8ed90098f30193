#include "wire/answers.h"

#include <gtest/gtest.h>

#include "base/number.h"

namespace ostrel {
namespace {

TEST(Answers, AddressPart) {
  const std::pair<const char*, const char*> cases[] = {
      {"  B1: Nord", "B1:"},
      {"B1:Nord:Süd", "B1:"},
      {" --- ", "---"},
      {"Nord", ""},
      {"", ""},
      {"---:", "---:"},
      {":", ":"},
  };
  for (const auto& [text, address] : cases) EXPECT_EQ(AddressPart(text), address) << text;
}

TEST(Answers, LinesArePoppedTrimmedButTheLastStaysAsItIs) {
  const struct {
    const char *text, *line, *rest;
  } cases[] = {
      {" one \r\n  two  \r\n three ", "one", "two  \r\n three"},
      {" only ", " only ", ""},
      {"\r\nx", "", "x"},
      {"x\r\n", "x", ""},
      {"a\nb\rc", "a\nb\rc", ""},
      {"", "", ""},
  };
  for (const auto& c : cases) {
    std::string text = c.text;
    EXPECT_EQ(NextLine(text), c.line) << c.text;
    EXPECT_EQ(text, c.rest) << c.text;
  }
}

TEST(Answers, TokensAndParts) {
  std::string fields = " AA:Nord ; KT-X+;V2.27 ";
  EXPECT_EQ(NextToken(fields, ';'), "AA:Nord");
  EXPECT_EQ(NextToken(fields, ';'), "KT-X+");
  EXPECT_EQ(NextToken(fields, ';'), "V2.27");
  EXPECT_EQ(NextToken(fields, ';'), "");

  EXPECT_EQ(LeftOf(" a = b", "="), "a");
  EXPECT_EQ(LeftOf(" a = b", "=", Blanks::kKeep), " a ");
  EXPECT_EQ(LeftOf(" ab ", "="), " ab ");
  EXPECT_EQ(ValueAfter("user 3 user 4", "user"), "3 user 4");
  EXPECT_EQ(ValueAfter("guest", "user"), "");
  EXPECT_EQ(LastPos("a;b;c", ";"), 4u);
  EXPECT_EQ(LastPos("abc", ";"), 0u);
  EXPECT_EQ(LastPos("abc", ""), 0u);
  EXPECT_EQ(TrimAnswer(" \r\n \r\n a \r\n b \r\n "), "a \r\n b");
  EXPECT_EQ(TrimAnswer("\r\n\r\n"), "");
}

TEST(Answers, ErrorsAndRefusals) {
  const struct {
    const char* answer;
    bool error, refusal;
  } cases[] = {
      {"<<>>", true, false},
      {"<<unknown: x>>", true, false},
      {"<<unknown", false, false},
      {"<>>", false, false},
      {"<<>", false, false},
      {" <<x>>", false, false},
      {"5", false, false},
      {"ACCESS DENIED", true, true},
      {" Zugriff verweigert!\r\n", true, true},
      {"access denied\r\n\r\nAccess denied.\r\n", true, true},
      {"access denied\r\nB1:Nord;KT-X;V2.27", false, true},
      {"B1:access denied", false, true},
      {"access denied 3", false, true},
      {"kein Zugriff verweigert", false, true},
      {"\r\n", false, false},
      {"<<Zugriff Verweigert>>", true, true},
      {"access", false, false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(IsErrorAnswer(c.answer), c.error) << c.answer;
    EXPECT_EQ(IsRefusal(c.answer), c.refusal) << c.answer;
  }
}

TEST(Answers, TypeAndFirmware) {
  const struct {
    const char *answer, *type, *firmware;
  } cases[] = {
      {"kt-xb+;V2.10", "KT-XB", "2.10"},
      {" KT-X ; v2.27;x", "KT-X", "2.27"},
      {"KT-X+S;2.4.04", "KT-X+", "2.4.04"},
      {"lx-x", "LX-X", ""},
      {"+", "", ""},
      {"", "", ""},
      {";VV1", "", "V1"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(TypeFromVerAnswer(c.answer), c.type) << c.answer;
    EXPECT_EQ(FirmwareFromVerAnswer(c.answer), c.firmware) << c.answer;
  }
}

TEST(Numbers, AreReadAsFarAsTheyGo) {
  const std::pair<const char*, double> cases[] = {
      {"2.27", 2.27},  {"  -1", -1}, {"+7V", 7}, {"1E6", 1e6}, {"1e", 1},  {".5", .5},
      {"2.4.04", 2.4}, {"3,5", 3},   {"", 0},    {"abc", 0},   {"inf", 0}, {"nan", 0},
      {"+-3", 0},      {"--3", 0},   {"- 3", 0}, {"1e999", 0}, {"\t5", 0},
  };
  for (const auto& [text, number] : cases) EXPECT_EQ(ReadNumber(text), number) << text;
  for (const char* none : {"", " ", "x", "1x", "1 2", "--1", "0.5", "<<1>>", "2147483648", "nan"}) {
    EXPECT_FALSE(WholeNumber(none)) << none;
  }
  EXPECT_TRUE(WholeNumber(" -7 ") == -7 && WholeNumber("+6e1") == 60 && WholeNumber("5.0") == 5);
  EXPECT_EQ(ReadInteger("99999999999"), 2147483647);
  EXPECT_EQ(ReadInteger("-2147483649"), -2147483647 - 1);
}

}  // namespace
}  // namespace ostrel
