#include "wire/line_rules.h"

#include <gtest/gtest.h>

namespace ostrel {
namespace {

TEST(LineRules, LinesAreMaskedBehindTheWordOfAPassword) {
  const std::pair<const char*, const char*> cases[] = {
      {"AA:LogIn 1 secret", "AA:LogIn ***"},
      {"B1:passwort- 0,dr,!", "B1:passwort ***"},
      {"PWLrel=a b", "PWLrel ***"},
      {"login", "login"},
      {"ver.", "ver."},
  };
  for (const auto& [line, masked] : cases) EXPECT_EQ(Masked(line), masked);
}

TEST(LineRules, APasswordIsMaskedWhereItStandsByItself) {
  const struct {
    const char *line, *answer, *masked;
  } cases[] = {
      {"AA:login 1 s", "wrong password", "wrong password"},
      {"AA:login 1 s", "<<unknown: S>>", "<<unknown: ***>>"},
      {"AA:login 1 word", "wrong password: word, word1 (WORD)", "wrong password: ***, word1 (***)"},
      {"AA:login 2 se", "<<s\xC3\xA9se se\xC3\xA9 \xC2\xABse\xC2\xBB>>",
       "<<s\xC3\xA9se se\xC3\xA9 \xC2\xAB***\xC2\xBB>>"},
      {"AA:login 1 !", "wrong password! !", "wrong password! ***"},
      {"AA:login 1 <", "<<no>>", "<<no>>"},
      {"passwort* 1 abc=abc.d", "abc.d, abc", "***, ***"},
      {"AA:passwort- 0,dr,!", "5 -1", "5 -1"},
      {"RegSimul=word", "word", "word"},
  };
  for (const auto& c : cases) EXPECT_EQ(MaskedAnswer(c.answer, c.line), c.masked) << c.line;
  EXPECT_EQ(WithoutPasswords("0 a", {"0", "", "a"}), "0 ***");
}

}  // namespace
}  // namespace ostrel
