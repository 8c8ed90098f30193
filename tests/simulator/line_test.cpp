#include <algorithm>
#include <set>

#include "steps.h"

namespace ostrel::simulator {
namespace {

const std::string kOne = "1,!\r\n1" + kEnd, kTwo = "2,!\r\n2" + kEnd;

struct Fed {
  int at;  // ms
  std::string bytes;
};

/// What comes out, with the time in ms where it moves on; "~" is text that does not end.
std::string Transcript(Simulation& simulation, const std::vector<Fed>& sent) {
  constexpr int kEndOfTime = 9000, kTurns = 4;
  FaultyLine line(simulation);
  std::string transcript;
  int last = 0;
  const auto take = [&](const FaultyLine::Step& step, int now) {
    const bool endless = step.bytes.size() > 1000;
    if (endless && transcript.ends_with('~')) return;
    if (now > last) transcript += "@" + std::to_string(now) + " ";
    last = now;
    const bool dropped = step.kind == FaultyLine::Step::Kind::kDropLink;
    transcript += dropped ? "[dropped]" : endless ? "~" : step.bytes;
  };
  for (int now = 0; now < kEndOfTime; ++now) {
    for (const Fed& part : sent) {
      for (const char byte : part.at == now ? part.bytes : std::string()) line.Feed(byte, now);
    }
    for (int turn = 0; turn < kTurns; ++turn) {
      const FaultyLine::Step step = line.Next(now);
      if (step.kind == FaultyLine::Step::Kind::kNothing) break;
      if (step.kind != FaultyLine::Step::Kind::kWait) take(step, now);
    }
  }
  EXPECT_EQ(line.Waiting() == 0, !transcript.ends_with('~')) << transcript;
  return transcript;
}

std::string InPieces(const std::string& reply, int from) {
  std::string transcript;
  for (const char byte : reply) transcript += "@" + std::to_string(++from) + " " + byte;
  return transcript;
}

TEST(LineFault, HitsItsLinesInItsWay) {
  struct Case {
    std::string fault;
    std::vector<Fed> sent;
    std::string transcript;
    std::uint64_t faults;
  };
  const std::vector<Fed> both = {{0, "1,!\r2,!\r"}};
  const Case cases[] = {
      {"silent", both, "", 2},
      {"silent:1", both, kTwo, 1},
      {"silent:2", both, kOne, 1},
      {"silent:3", both, kOne + kTwo, 0},
      {"late", {{0, "1,!\r"}, {1000, "2,!\r"}}, "@3000 " + kOne + "@4000 " + kTwo, 2},
      {"late:1", {{0, "1,!\r"}, {1000, "2,!\r"}}, "@3000 " + kOne + kTwo, 1},
      {"late:1", {{0, "1,!\r"}, {5000, "2,!\r"}}, "@3000 " + kOne + "@5000 " + kTwo, 1},
      {"split", both, InPieces(kOne, 0) + kTwo[0] + InPieces(kTwo.substr(1), 10), 2},
      {"lost-first:2", both, kOne + kTwo.substr(1), 1},
      {"doubled:1", both, kOne + kOne + kTwo, 1},
      {"truncated:1", both, "1,!\r\n" + kTwo, 1},
      {"endless", {{7, "1,!\r"}}, "@7 1,!\r\n~", 1},
      {"endless:1", {{0, "1,!\r"}, {7, "2,!\r"}}, "1,!\r\n~@7 " + kEnd + kTwo, 1},
      {"endless", {{0, "1,!\r"}, {7, "2,!\r"}}, "1,!\r\n~@7 " + kEnd + "2,!\r\n~", 2},
      {"drop-link:2", both, kOne + "[dropped]", 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.fault);
    const auto fault = LineFault::Parse(c.fault, 1);
    ASSERT_TRUE(fault);
    Simulation simulation{Bus(), *fault};
    EXPECT_EQ(Transcript(simulation, c.sent), c.transcript);
    EXPECT_EQ(simulation.count.faults, c.faults);
  }
}

TEST(LineFault, CountsTheLinesOfAllHosts) {
  Simulation simulation{Bus(), *LineFault::Parse("silent:2", 1)};
  EXPECT_EQ(Transcript(simulation, {{0, "1,!\r\n2,"}}), kOne);
  EXPECT_EQ(Transcript(simulation, {{0, "1,!\r2,!\r"}}), kTwo);
  EXPECT_EQ(simulation.count.Text(), "received 3 lines, 15 bytes, 1 faults");
}

TEST(FaultyLine, KeepsThePausesOfADevice) {
  Simulation simulation{Bus()};
  simulation.bus.Answer("sysreset=0.9");
  EXPECT_EQ(Transcript(simulation, {{0, "RamBackup\r"}}),
            "@200 RamBackup\r\nSaving @1700 ....@2500 o.@2700 k." + kEnd);
}

TEST(LineFault, GarbageStandsBetweenEchoAndEnd) {
  std::set<std::string> seen;
  for (std::uint32_t seed = 0; seed < 200; ++seed) {
    const std::string reply = LineFault::Parse("garbage", seed)->Instead(kOne).front().bytes;
    ASSERT_EQ(reply.size(), 5 + 64 + kEnd.size());
    EXPECT_TRUE(reply.starts_with("1,!\r\n") && reply.ends_with(kEnd));
    const std::string garbage = reply.substr(5, 64);
    EXPECT_EQ(garbage.find('\x1a'), std::string::npos) << seed;
    const auto harmful = [](char c) { return c >= 0 && c < 9; };
    EXPECT_TRUE(std::any_of(garbage.begin(), garbage.end(), harmful)) << seed;
    seen.insert(garbage);
  }
  EXPECT_EQ(seen.size(), 200u);
  EXPECT_TRUE(
      seen.contains(LineFault::Parse("garbage", 7)->Instead(kOne).front().bytes.substr(5, 64)));
}

TEST(LineFault, IsNotReadFromOtherTexts) {
  for (const char* text : {"", "x", "late:", "late:0", "late:-1", "late:1x",
                           "late:99999999999999999999", ":1", "Late", "late ", "late:1:1"}) {
    EXPECT_FALSE(LineFault::Parse(text, 1)) << text;
  }
}

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
