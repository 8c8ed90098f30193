#include <algorithm>
#include <numeric>

#include "simulator/tap_changer.h"
#include "steps.h"

namespace ostrel::simulator {
namespace {

int AsCounter(const std::string& printed) {
  const int number = std::stoi(printed);
  return number < 0 ? number + 65536 : number;
}

TEST(Stations, AnswerToTheirAddress) {
  ExpectAnswers({
      {"dirn_", "AA:Umspannwerk Nord T1"},
      {"aa:ver.", "KT-X+;V2.27"},
      {"AA:ver", "KT-X Version V2.27"},
      {"b1:sysSN#", "SIM0398120-A"},
      {"B3:dir", "B3:"},
      {"C7:ver.", ""},
      {"all:ver.", ""},
      {"ALL;RegTAPSTAT?-,if,dir,eif", "AA:\r\nB1:\r\nB2:\r\nB3:\r\nB6:"},
      {"B1:station&#", "B1:Umspannwerk Nord T2"},
      {"AA:", ""},
      {"B1::", ""},
      {"dirn_", "B1:Umspannwerk Nord T2"},
      {"AA:dirn_", "AA:Umspannwerk Nord T1"},
      {"C7::", ""},
      {"ver.", "KT-XB+;V2.10"},
      {"B4:::", ""},
      {"ver.", "KT-XF+;V2.4.04"},
      {"aa::", ""},
      {"ver.", "KT-X+;V2.27"},
  });
}

TEST(TapStatistics, CountersFormABellAndAddUpToTheTotal) {
  struct Case {
    std::string station;
    int first, last, normal;
  };
  for (const Case& c : {Case{"AA:", -60, 59, 1}, Case{"B1:", -40, 39, 10}, Case{"B2:", -60, 59, -2},
                        Case{"B3:", -40, 39, 0}, Case{"B6:", -60, 59, 3}}) {
    SCOPED_TRACE(c.station);
    Bus bus;
    const std::string bounds = std::to_string(c.first) + "," + std::to_string(c.last);
    const std::string read = c.station + ";" + bounds + ",fori,RegTAPSTAT# 1 i,ni";
    std::vector<int> counters;
    for (const auto& line : Lines(bus.Answer(read))) counters.push_back(AsCounter(line));
    ASSERT_EQ(counters.size(), c.last - c.first + 1u);
    const int sum = std::accumulate(counters.begin(), counters.end(), 0);
    EXPECT_EQ(bus.Answer(c.station + "RegTAPSUM#"), std::to_string(sum));
    const auto peak = std::max_element(counters.begin(), counters.end()) - counters.begin();
    EXPECT_NEAR(static_cast<double>(peak + c.first), c.normal, 1);
    EXPECT_EQ(counters.front() + counters.back(), 0);
    const int withoutLoad = sum - std::stoi(bus.Answer(c.station + "RegTAPSUML#"));
    EXPECT_GT(withoutLoad, 0);
    EXPECT_LT(withoutLoad, sum / 20);
    for (const int outside : {c.first - 1, c.last + 1}) {
      const std::string line = c.station + "RegTAPSTAT# 1 " + std::to_string(outside);
      EXPECT_EQ(bus.Answer(line), "<<index out of range>>") << line;
    }
    if (c.station == "B2:") bus.Answer("B2:login 1 4711");
    EXPECT_EQ(bus.Answer(c.station + "RegTAPSTATCL*=0"), "");
    EXPECT_EQ(Lines(bus.Answer(read + ",RegTAPSUM#,RegTAPSUML#")),
              std::vector<std::string>(counters.size() + 2, "0"));
  }
  EXPECT_EQ(Bus().Answer("B7:RegTAPSUM#"), "<<unknown: regtapsum>>");
}

TEST(TapStatistics, PrintsSigned16BitAndFollowsTheSeed) {
  const std::string read = "all,RegTAPSTAT?-,if,-5,5,fori,RegTAPSTAT# 1 i,ni,RegTAPSUM#,eif";
  const std::string history = Bus(7).Answer(read);
  EXPECT_EQ(Bus(7).Answer(read), history);
  EXPECT_NE(Bus(8).Answer(read), history);
  EXPECT_EQ(Bus().Answer("RegTAPSTAT# 1 0"), Bus().Answer("RegTAPSTAT# 0"));
  EXPECT_EQ(Bus().Answer("RegTAPSTAT# 2 3"), Bus().Answer("RegTAPSTAT# 3,RegTAPSTAT# 4"));
  EXPECT_LT(std::stoi(Bus().Answer("B2:RegTAPSTAT# 1 -2")), 0);
  TapChanger worn({-1, 1, 0, 300'000}, -2, 2, Random(1));
  EXPECT_EQ(worn.CounterAt(0), 65535);
  EXPECT_EQ(worn.Total(), worn.CounterAt(-1) + 65535 + worn.CounterAt(1));
  EXPECT_LE(worn.TotalUnderLoad(), worn.Total());
}

}  // namespace
}  // namespace ostrel::simulator
