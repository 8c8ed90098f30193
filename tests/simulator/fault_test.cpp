#include "simulator/fault.h"

#include <algorithm>
#include <set>

#include "simulator/faulty_line.h"
#include "steps.h"

namespace ostrel::simulator {
namespace {

const std::string kOne = "1,!\r\n1" + kEnd, kTwo = "2,!\r\n2" + kEnd;

struct Fed {
  int at;  // ms
  std::string bytes;
};

struct Case {
  std::string fault;
  std::vector<Fed> sent;
  std::string transcript;
  std::uint64_t faults;
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

}  // namespace
}  // namespace ostrel::simulator
