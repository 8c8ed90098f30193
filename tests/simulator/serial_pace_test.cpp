#include "simulator/serial_pace.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "simulator/faulty_line.h"

namespace ostrel::simulator {
namespace {

TEST(SerialPace, CarriesRepliesAsALineDoes) {
  // The replies to two lines that come at once have 200 and 15 bytes.
  const std::string x(95, 'x'), one = "! \"" + x + '"', dir = "AA:dir\r\nAA:\r\n<\x1a",
                                reply = one + "\r\n" + x + "\r\n<\x1a";
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
    for (const char byte : one + "\rAA:dir\r") line.Feed(byte, 0);
    std::string sent;
    std::int64_t now = 0, first = -1;
    std::size_t largest = 0;
    for (FaultyLine::Step step; (step = line.Next(now)).kind != FaultyLine::Step::Kind::kNothing;) {
      now += step.wait;
      if (first < 0 && !step.bytes.empty()) first = now;
      sent += step.bytes;
      largest = std::max(largest, step.bytes.size());
    }
    EXPECT_EQ(sent, c.sent);
    EXPECT_EQ(first, c.first);
    EXPECT_EQ(now, c.last);
    EXPECT_EQ(largest, c.largest);
  }
}

}  // namespace
}  // namespace ostrel::simulator
