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

TEST_F(StatisticsTest, ACounterForEachPositionOrNone) {
  Select("2.21");
  std::string most;
  for (int n = 0; n < 78; ++n) most += "5\r\n";
  const struct {
    std::string lines;
    const char *message, *shown;
  } cases[] = {
      {"7\r\n-1", "", ""},
      {"7", "20506", "-40,39"},
      {"7\r\n8\r\n9", "20506", "-40,39"},
      {"\r\n8\r\n9", "20506", "-40,39"},
      {"7\r\n<<RegTAPSTAT: index>>", "1280", "<<RegTAPSTAT: index>>"},
      {"<<no>>\r\n7", "1280", "<<no>>"},
      {"-99999\r\n7", "1280", "-99999"},
      {"7\r\n8 9", "1280", "8 9"},
  };
  for (const auto& c : cases) {
    Answer("-40,39", 0);
    world.server.answers["B1:;-40,39,fori,RegTAPSTAT# 1 i,ni"] = most + c.lines;
    world.dialogs.shown.clear();
    EXPECT_EQ(statistics.Read(), *c.message == 0) << c.lines;
    EXPECT_EQ(world.dialogs.Numbers(), c.message) << c.lines;
    EXPECT_EQ(statistics.Counters().counted, *c.message == 0) << c.lines;
    EXPECT_EQ(statistics.Counters().counters[0], *c.message == 0 ? 5 : 0) << c.lines;
    if (*c.message == 0) continue;
    EXPECT_TRUE(world.dialogs.shown[0].text.ends_with(c.shown)) << world.dialogs.shown[0].text;
  }
}

TEST_F(StatisticsTest, TotalsAreReadEachForItself) {
  Select("2.27");
  const struct {
    const char *sum, *messages;
    std::optional<int> underLoad;
  } cases[] = {{"<<unknown>>", "1280", 70}, {"many", "1280", 70}, {nullptr, "10012", {}}};
  for (const auto& c : cases) {
    statistics.DeviceChanged();
    Answer("-60,59", 120);
    if (c.sum == nullptr) world.server.answers.erase("B1:RegTAPSUM#");
    if (c.sum != nullptr) world.server.answers["B1:RegTAPSUM#"] = c.sum;
    world.dialogs.shown.clear();
    EXPECT_FALSE(statistics.Read());
    EXPECT_EQ(world.dialogs.Numbers(), c.messages);
    const TapCounters& data = statistics.Counters();
    EXPECT_TRUE(data.counted && !data.total && data.underLoad == c.underLoad);
    EXPECT_NE(TapTable(data, run.messages).find("Tap Changes Total\t–\r\n"), std::string::npos);
  }
}

TEST_F(StatisticsTest, AModelWithoutThemIsNotAsked) {
  session.DeviceChange("B1:Nord", "QM-X", "1.9", "1");
  world.server.sent.clear();
  EXPECT_FALSE(statistics.Read());
  EXPECT_EQ(statistics.Clear(), Ending::kFailed);
  EXPECT_EQ(world.dialogs.Numbers(), "10128 10128");
  EXPECT_TRUE(world.server.sent.empty());
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
  EXPECT_FALSE(statistics.Counters().total);
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
