#include "logs/tap_statistics/tap_statistics.h"

#include <gtest/gtest.h>

#include "kit/kit.h"
#include "logs/tap_statistics/tap_statistics_text.h"

namespace ostrel {
namespace {

struct StatisticsTest : testing::Test {
  kit::World world;
  kit::Run run{world};
  Session& session = run.session;
  TapStatistics statistics{run.desk};

  void SetUp() override {
    session.onDeviceChange = [this] { statistics.DeviceChanged(); };
    ASSERT_TRUE(session.ConnectionOpen());
  }
  void Select(const std::string& firmware) {
    session.DeviceChange("B1:Nord", "KT-X", firmware, "1");
  }
  /// Answers the counter command with one line a position, numbered, and the totals.
  void Answer(const std::string& range, int count) {
    std::string lines;
    for (int n = 0; n < count; ++n) lines += std::to_string(n == 1 ? -1 : n) + "\r\n";
    world.server.answers = {{"B1:;" + range + ",fori,RegTAPSTAT# 1 i,ni", lines},
                            {"B1:RegTAPSUM#", "-2"},
                            {"B1:RegTAPSUML#", "70"}};
  }
};

TEST_F(StatisticsTest, RangeFollowsTheFirmware) {
  const struct {
    const char *firmware, *range;
    int first;
    std::size_t count;
  } cases[] = {
      {"2.21", "-40,39", -40, 80},   {"2.22", "-60,59", -60, 120}, {"2.4.04", "-60,59", -60, 120},
      {"2.1.10", "-40,39", -40, 80}, {"3.26", "-60,59", -60, 120}, {"", "-40,39", -40, 80},
  };
  for (const auto& c : cases) {
    Select(c.firmware);
    Answer(c.range, static_cast<int>(c.count));
    EXPECT_TRUE(statistics.Read()) << c.firmware;
    const TapCounters& data = statistics.Counters();
    EXPECT_EQ(data.first, c.first) << c.firmware;
    ASSERT_EQ(data.counters.size(), c.count) << c.firmware;
    EXPECT_EQ(data.counters[1], 65535);
    EXPECT_EQ(data.counters.back(), static_cast<int>(c.count) - 1);
    EXPECT_EQ(data.total, 65534);
    EXPECT_EQ(data.underLoad, 70);
  }
}

TEST_F(StatisticsTest, WhatFailsLeaves) {
  Select("2.27");
  const struct {
    const char *line, *answer, *messages;
    bool counters;
  } cases[] = {
      {"B1:;-60,59,fori,RegTAPSTAT# 1 i,ni", "<<unknown>>", "1280", false},
      {"B1:;-60,59,fori,RegTAPSTAT# 1 i,ni", nullptr, "10012", false},
      {"B1:RegTAPSUM#", "<<unknown>>", "1280", true},
  };
  for (const auto& c : cases) {
    Answer("-60,59", 120);
    ASSERT_TRUE(statistics.Read());
    world.dialogs.shown.clear();
    world.server.timeout = 4;
    if (c.answer != nullptr) {
      world.server.answers[c.line] = c.answer;
    } else {
      world.server.answers.erase(c.line);
    }
    EXPECT_FALSE(statistics.Read());
    EXPECT_EQ(world.dialogs.Numbers(), c.messages) << c.line;
    EXPECT_EQ(statistics.Counters().counters.back() != 0, c.counters) << c.line;
    EXPECT_EQ(statistics.Counters().total, 65534) << "as before";
    EXPECT_EQ(world.server.timeout, 4) << "restored";
    EXPECT_EQ(world.dialogs.busy, 0);
  }
}

TEST_F(StatisticsTest, WhatIsNoCounterCountsAsNone) {
  Select("2.27");
  Answer("-60,59", 120);
  world.server.answers["B1:;-60,59,fori,RegTAPSTAT# 1 i,ni"] = "-99999\r\nabc\r\n-65537\r\n7";
  ASSERT_TRUE(statistics.Read());
  const std::vector<std::int32_t>& counters = statistics.Counters().counters;
  EXPECT_EQ(std::vector(counters.begin(), counters.begin() + 5),
            (std::vector<std::int32_t>{0, 0, 0, 7, 0}));
}

TEST_F(StatisticsTest, AnotherConnectionHasAnotherDevice) {
  Select("2.27");
  ASSERT_TRUE(session.Selected().GetKenn());
  world.server.connection = "Elsewhere";
  EXPECT_TRUE(session.ConnectionOpen());
  EXPECT_FALSE(session.Selected().GetKenn());
  EXPECT_FALSE(session.Device().Valid());
  EXPECT_EQ(statistics.Clear(), Ending::kFailed);
  EXPECT_FALSE(statistics.Read());
  EXPECT_EQ(world.dialogs.Numbers(), "1301 1301");
}

TEST_F(StatisticsTest, AnotherDeviceStartsWithZeros) {
  Select("2.27");
  Answer("-60,59", 120);
  ASSERT_TRUE(statistics.Read());
  Select("2.21");
  EXPECT_EQ(statistics.Counters().counters, std::vector<std::int32_t>(80, 0));
  EXPECT_EQ(statistics.Counters().total, 0);
}

TEST_F(StatisticsTest, ClearingAsks) {
  Select("2.27");
  world.server.answers["B1:RegTAPSTATCL*=0"] = "";
  EXPECT_EQ(statistics.Clear(), Ending::kNotConfirmed);
  EXPECT_TRUE(world.server.sent.empty());
  EXPECT_EQ(world.dialogs.asked, std::vector<std::string>{"Delete Statistics?"});
  world.dialogs.yesNo = {true, true};
  EXPECT_EQ(statistics.Clear(), Ending::kDone);
  world.server.answers["B1:RegTAPSTATCL*=0"] = "<<access denied>>";
  EXPECT_EQ(statistics.Clear(), Ending::kFailed);
}

TEST(StatisticsText, TablesAndBars) {
  kit::World world;
  Messages messages(world.dialogs);
  messages.SetFactor(1);
  const TapCounters data{.first = -1, .counters = {0, 8, 0, 3, 0}, .total = 11, .underLoad = 10};
  EXPECT_EQ(TapCsv(data), "position,count\n-1,0\n0,8\n1,0\n2,3\n3,0\ntotal,11\nunderLoad,10\n");
  EXPECT_TRUE(TapTable(data, messages)
                  .ends_with("\r\n3\t0\r\nTap Changes Total\t11\r\nTap "
                             "Changes under Load\t10\r\n"));
  EXPECT_EQ(TapTextChart(data, messages, 37),
            "Tap position  Tap changes\n"
            "           0            8  ██████████\n"
            "           1            0\n"
            "           2            3  ███▊\n\n"
            "Tap Changes Total: 11\nTap Changes under Load: 10\n");
  EXPECT_EQ(TapTextChart({}, messages, 80).find("█"), std::string::npos);
}

}  // namespace
}  // namespace ostrel
