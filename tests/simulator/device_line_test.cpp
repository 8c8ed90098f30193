#include "simulator/device_line.h"

#include "sent.h"
#include "steps.h"

namespace ostrel::simulator {
namespace {

TEST(DeviceLine, RepliesToEachCompleteLine) {
  struct Case {
    std::string sent, reply;
  };
  const std::string longLine(5000, 'x');
  const Case cases[] = {
      {"AA:ver.\r", "AA:ver.\r\nKT-X+;V2.27" + kEnd},
      {"\r", "\r\n" + kEnd},
      {"C9:ver.\r\n", "C9:ver.\r\n" + kEnd},
      {"1,2\n,+\x1a,!\rB1:dir\r\n", "1,2,+,!\r\n3" + kEnd + "B1:dir\r\nB1:" + kEnd},
      {"!\"S\xfc\tx\"\r", "!\"S\xfc\tx\"\r\nS\xfc\tx" + kEnd},
      {"1,!,2,!", ""},
      {longLine + "\r7,!\r",
       longLine.substr(0, 4096) + "\r\n<<line too long>>" + kEnd + "7,!\r\n7" + kEnd},
  };
  Simulation simulation{Bus()};
  for (const Case& c : cases) {
    FaultyLine line(simulation);
    EXPECT_EQ(SentFor(line, c.sent).bytes, c.reply) << "sent: " << c.sent;
  }
}

}  // namespace
}  // namespace ostrel::simulator
