#include "simulator/serial_pace.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "simulator/faulty_line.h"

namespace ostrel::simulator {
namespace {

const std::string kLine = "! \"" + std::string(95, 'x') + '"';
const std::string kReply = kLine + "\r\n" + std::string(95, 'x') + "\r\n<\x1a";

struct Case {
  int baud;
  std::string fault;
  std::int64_t first, last;  // ms, the last one with "AA:dir" behind
  std::size_t largest;       // bytes at once
  std::string sent = kReply + "AA:dir\r\nAA:\r\n<\x1a";
};

/// What a host gets that sends two lines at once.
void Receive(const Case& c) {
  Simulation simulation{.bus = Bus(), .baud = c.baud};
  if (!c.fault.empty()) simulation.fault = LineFault::Parse(c.fault, 1).value();
  FaultyLine line(simulation);
  for (const char byte : kLine + "\rAA:dir\r") line.Feed(byte, 0);
  std::string sent;
  std::int64_t now = 0, first = -1;
  std::size_t largest = 0;
  for (FaultyLine::Step step; (step = line.Next(now)).kind != FaultyLine::Step::Kind::kNothing;) {
    if (step.kind == FaultyLine::Step::Kind::kDropLink) break;
    now += step.wait;
    if (first < 0 && !step.bytes.empty()) first = now;
    sent += step.bytes;
    largest = std::max(largest, step.bytes.size());
    // No host gets more than the line carries.
    const std::int64_t bits = static_cast<std::int64_t>(sent.size()) * 10'000;
    EXPECT_TRUE(c.baud == 0 || bits <= now * c.baud) << sent.size() << " bytes at " << now;
  }
  EXPECT_EQ(sent, c.sent);
  EXPECT_EQ(first, c.first);
  EXPECT_EQ(now, c.last);
  EXPECT_EQ(largest, c.largest);
  EXPECT_EQ(line.Waiting(), 0u);
}

TEST(SerialPace, CarriesRepliesAsALineDoes) {
  const std::size_t size = kReply.size();
  ASSERT_EQ(size, 200u);
  const Case cases[] = {
      {0, "", 0, 0, size},
      {1'000, "", 10, 2'150, 1},
      {9'600, "", 10, 225, 10},
      {115'200, "", 10, 20, 115},
      {50, "", 200, 43'000, 1},
      {1'000, "late:1", 3'010, 5'150, 1},
      {1'000, "silent:1", 10, 150, 1, "AA:dir\r\nAA:\r\n<\x1a"},
      {1'000, "truncated:2", 10, 2'070, 1, kReply + "AA:dir\r"},
      {1'000, "drop-link:2", 10, 2'000, 1, kReply},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.baud) + " " + c.fault);
    Receive(c);
  }
}

}  // namespace
}  // namespace ostrel::simulator
