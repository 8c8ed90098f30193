#include "server/reply_framer.h"

#include <gtest/gtest.h>

#include <vector>

namespace ostrel {
namespace {

const std::string kEnd = "\r\n<\x1A";

struct Case {
  const char* what;
  std::string line;
  std::string bytes;
  std::vector<std::string> answers;  // "!!" for a damaged one, "!!!" for a beheaded one
};

const Case kCases[] = {
    {"one line", "AA:ver.", "AA:ver.\r\nKT-X+;V2.27" + kEnd, {"KT-X+;V2.27"}},
    {"two lines", "x", "x\r\n1\r\n2" + kEnd, {"1\r\n2"}},
    {"empty answer", "all r,x", "all r,x\r\n" + kEnd, {""}},
    {"bare prompt", "x", "x\r\n<\x1A", {""}},
    {"no echo", "x", "7" + kEnd, {"7"}},
    {"no echo, no prompt", "x", "7\x1A", {"7"}},
    {"empty line", "", "\r\n<<empty>>" + kEnd, {"<<empty>>"}},
    {"prompt inside", "x", "x\r\na\r\n<b" + kEnd, {"a\r\n<b"}},
    {"echo in the answer", "x", "x\r\nx\r\n1" + kEnd, {"x\r\n1"}},
    {"twice", "x", "x\r\n1" + kEnd + "x\r\n2" + kEnd, {"1"}},
    {"echo cut short", "AA:x", ":x\r\n1" + kEnd, {"!!!"}},
    {"answer like the end of the line", "AA:x1", "1" + kEnd, {"1"}},
    {"empty line first, no echo", "x", "\r\n1" + kEnd, {"\r\n1"}},
    {"control character", "x", "x\r\n1\x1F" + kEnd, {"!!"}},
    {"the same without echo", "x", "\x7F" + kEnd, {"!!"}},
    {"TAB and ISO 8859-1", "x\x02", "x\x02\r\n\t\x80\xFF" + kEnd, {"\t\x80\xFF"}},
    {"unended", "x", "x\r\n1\r\n<", {}},
};

TEST(ReplyFramer, FindsTheReplyHoweverTheBytesAreCut) {
  for (const Case& c : kCases) {
    for (std::size_t cut = 0; cut <= c.bytes.size(); ++cut) {
      ReplyFramer framer;
      framer.Expect(c.line);
      std::vector<std::string> answers;
      for (const auto& part : {c.bytes.substr(0, cut), c.bytes.substr(cut)}) {
        const auto reply = framer.Feed(part);
        if (reply) answers.push_back(std::string(int(reply->outcome), '!') + reply->answer);
      }
      EXPECT_EQ(answers, c.answers) << c.what << ", cut at " << cut;
    }
  }
}

TEST(ReplyFramer, OnALineWithEchoesAReplyBelongsToTheLineItEchoes) {
  ReplyFramer framer;
  framer.Expect("a");
  ASSERT_TRUE(framer.Feed("a\r\n1" + kEnd));
  EXPECT_FALSE(framer.Feed("a\r\n2" + kEnd)) << "nobody waits";
  framer.Expect("b");
  EXPECT_FALSE(framer.Feed("a\r\n3" + kEnd)) << "another echo";
  EXPECT_FALSE(framer.Feed("4" + kEnd)) << "no echo";
  EXPECT_FALSE(framer.Feed("\r\n4" + kEnd)) << "a part of the echo";
  EXPECT_EQ(framer.Feed("b\r\n5" + kEnd)->answer, "5");
  framer.Expect("c");
  EXPECT_FALSE(framer.Feed("c\r\nbroken o"));
  framer.Expect("d");
  EXPECT_EQ(framer.Feed("d\r\n6" + kEnd)->answer, "6") << "after half a reply";
  framer.Expect("e");
  EXPECT_TRUE(framer.Feed("e\r\n" + std::string(256 * 1024 + 9, 'y'))) << "too long";
  framer.Expect("e");
  EXPECT_EQ(framer.Feed("e\r\nrest" + kEnd + "e\r\n7" + kEnd)->answer, "7") << "after its end";
}

TEST(ReplyFramer, TheRestOfALateReplyIsNoAnswerNotEvenOnALinesFirstExchange) {
  const std::string late = "AA:x\r\n1\r\n2" + kEnd;
  for (std::size_t cut = 0; cut < late.size(); ++cut) {
    for (std::size_t next = cut; next <= late.size(); ++next) {
      SCOPED_TRACE("given up at " + std::to_string(cut) + ", next at " + std::to_string(next));
      ReplyFramer framer;
      framer.Expect("AA:x");
      EXPECT_FALSE(framer.Feed(late.substr(0, cut)));
      framer.Stop();
      EXPECT_FALSE(framer.Feed(late.substr(cut, next - cut)));
      framer.Expect("AA:y");
      EXPECT_FALSE(framer.Feed(late.substr(next)));
      const auto own = framer.Feed("AA:y\r\n3" + kEnd);
      ASSERT_TRUE(own);
      EXPECT_EQ(own->answer, "3");
    }
  }
}

}  // namespace
}  // namespace ostrel
