#include "simulator/device_line.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ostrel::simulator {
namespace {

std::string Feed(DeviceLine& line, const std::string& bytes) {
  std::string replies;
  for (const char byte : bytes) {
    for (const Portion& portion : line.Feed(byte).value_or(std::vector<Portion>())) {
      replies += portion.bytes;
    }
  }
  return replies;
}

TEST(DeviceLine, RepliesToEachCompleteLine) {
  struct Case {
    std::string sent, reply;
  };
  const std::string longLine(5000, 'x');
  const Case cases[] = {
      {"AA:ver.\r", "AA:ver.\r\nKT-X+;V2.27\r\n<\x1a"},
      {"\r", "\r\n\r\n<\x1a"},
      {"C9:ver.\r\n", "C9:ver.\r\n\r\n<\x1a"},
      {"1,2\n,+\x1a,!\rB1:dir\r\n",
       "1,2,+,!\r\n3\r\n<\x1a"
       "B1:dir\r\nB1:\r\n<\x1a"},
      {"!\"S\xfc"
       "d\tx\"\r",
       "!\"S\xfc"
       "d\tx\"\r\nS\xfc"
       "d\tx\r\n<\x1a"},
      {"1,!,2,!", ""},
      {longLine + "\r7,!\r", longLine.substr(0, 4096) + "\r\n<<line too long>>\r\n<\x1a"
                                                        "7,!\r\n7\r\n<\x1a"},
  };
  Bus bus;
  for (const Case& c : cases) {
    DeviceLine line(bus);
    EXPECT_EQ(Feed(line, c.sent), c.reply) << "sent: " << c.sent;
  }
}

TEST(DeviceLine, LinesOfTwoHostsDoNotMix) {
  Bus bus;
  DeviceLine first(bus), second(bus);
  EXPECT_EQ(Feed(first, "AA:d"), "");
  EXPECT_EQ(Feed(second, "1,!\r"), "1,!\r\n1\r\n<\x1a");
  EXPECT_EQ(Feed(first, "ir\r"), "AA:dir\r\nAA:\r\n<\x1a");
}

}  // namespace
}  // namespace ostrel::simulator
