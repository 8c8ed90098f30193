#include "simulator/serial_pace.h"

#include "sent.h"
#include "steps.h"

namespace ostrel::simulator {
namespace {

TEST(SerialPace, CarriesRepliesAsALineDoes) {
  // The replies to two lines that come at once have 200 and 15 bytes.
  const std::string x(95, 'x'), one = "! \"" + x + '"', dir = "AA:dir\r\nAA:" + kEnd,
                                reply = one + "\r\n" + x + kEnd;
  const struct {
    int baud;
    std::string fault, sent;
    std::int64_t first, last;  // ms
    std::size_t largest;       // bytes at once
  } cases[] = {
      {0, "late:3", reply + dir, 0, 0, 200},
      {1'000, "late:3", reply + dir, 10, 2'150, 1},
      {9'600, "late:3", reply + dir, 10, 225, 10},
      {115'200, "late:3", reply + dir, 10, 20, 115},
      {50, "late:3", reply + dir, 200, 43'000, 1},
      {1'000, "late:1", reply + dir, 3'010, 5'150, 1},
      {1'000, "truncated:2", reply + "AA:dir\r", 10, 2'070, 1},
      {1'000, "drop-link:2", reply, 10, 2'000, 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.baud) + " " + c.fault);
    Simulation simulation{.bus = Bus(), .fault = *LineFault::Parse(c.fault, 1), .baud = c.baud};
    FaultyLine line(simulation);
    const Sent sent = SentFor(line, one + "\rAA:dir\r");
    EXPECT_EQ(sent.bytes, c.sent);
    EXPECT_EQ(sent.first, c.first);
    EXPECT_EQ(sent.last, c.last);
    EXPECT_EQ(sent.largest, c.largest);
  }
}

}  // namespace
}  // namespace ostrel::simulator
