#include <set>

#include "steps.h"

namespace ostrel::simulator {
namespace {

/// A bus whose time a test moves.
struct Life {
  double Number(const std::string& line) { return std::stod(bus.Answer(line)); }
  /// "event;value" of the newest entries of the connected device, the newest first.
  std::vector<std::string> Events(int count) {
    std::vector<std::string> events;
    for (const auto& line : Lines(bus.Answer("FL@ LOGI#WI 65535 " + std::to_string(count)))) {
      events.push_back(line.substr(line.find(';', line.find(";.") + 1) + 1));
    }
    return events;
  }

  std::int64_t now = 0;
  Bus bus{{.seed = 3, .clock = [this] { return now; }}};
};

TEST(Regulator, BringsTheVoltageBackByTapsThatAreCountedAndLogged) {
  struct Case {
    std::string before;   // what is sent
    std::string command;  // the disturbance
    int direction;        // of the taps
    bool counted, voltageFollows;
    std::string last = {};  // the newest event; empty = the new position
  };
  const std::string simulate = "RegSimul=1,RegSimuls=1,RegUn=100,RegIn=0.5";
  const Case cases[] = {
      {"", "RegSWI=4", 1, true, true},
      {"RegSWI=2", "RegSW 2=96", -1, true, true},
      {"RegAuto=0", "RegSWI=4", 0, false, false, "26;4"},
      {"RegAuto=0", "RegTapUp=1", 1, true, true},
      {"RegAuto=0", "RegTapDown=1", -1, true, true},
      {simulate, "RegUn=103", -1, false, false},
      {simulate, "RegUn=97", 1, false, false},
      {simulate, "RegUn=100.9", 0, false, false, "19;1"},
      {"RegSimul=1", "RegUn=97", 1, true, false},
      {simulate, "RegUn=130", 0, false, false, "7;1"},
      {simulate, "RegUn=70", 0, false, false, "20;1"},
      {"RegSWI=4," + simulate + ",RegUHigh=101", "RegUn=102", 0, false, false, "12;1"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.before + " then " + c.command);
    Life life;
    EXPECT_EQ(life.bus.Answer(c.before), "");
    const double tap = life.Number("RegStufe#"), sum = life.Number("RegTAPSUM#");
    const double voltage = life.Number("RegUn#");
    EXPECT_EQ(life.bus.Answer(c.command), "");
    life.now += 20'000;
    const bool atOnce = c.command.starts_with("RegTap");
    EXPECT_EQ(life.Number("RegStufe#"), tap + (atOnce ? c.direction : 0)) << "within the delay";
    life.now += 25'000;
    const double moved = life.Number("RegStufe#") - tap;
    EXPECT_EQ(moved, c.direction);
    EXPECT_EQ(life.Number("RegTAPSUM#") - sum, c.counted ? 1 : 0);
    if (c.direction == 0) {
      EXPECT_EQ(life.Events(1), std::vector<std::string>{c.last});
    } else {
      const std::vector<std::string> expected = {
          "25;" + std::to_string(static_cast<int>(tap + moved)), c.direction > 0 ? "23;1" : "24;1"};
      EXPECT_EQ(life.Events(2), expected);
    }
    if (!c.voltageFollows) continue;
    EXPECT_NEAR(life.Number("RegUn#") - voltage, 1.25 * moved, 0.6);
    if (!c.before.empty()) continue;
    life.now += 300'000;
    EXPECT_NEAR(life.Number("RegUn#"), life.Number("RegSW# 4"), 1.2);
  }
}

TEST(Regulator, TapsToItsEndPositionAndNoFurther) {
  ExpectAnswers({
      {"RegSimul=1,RegSimuls=1,RegUn=95", ""},
      {"RegStufe#,RegAuto=0", "9", kDay},
      {"RegTapUp=1", "<<end position>>"},
      {"RegTapDown=1", ""},
      {"RegTapDown=1", "<<tap changer is running>>"},
      {"RegStufe=-10", "<<value out of range>>"},
      {"RegSimul=0", ""},
      // No position that is none is written down.
      {"FL@ LOGI#WI 65535 1", "20260106;08:00:00;.0;19;0", 10'000},
  });
}

TEST(Regulator, LivesTheSameInOneLeapAndInManySteps) {
  Life leap, steps;
  leap.now = kDay;
  const std::string all =
      "all,RegUn?-,if,RegUn#,RegIn#,Regphi#,RegTAPSUM#,RegStufe?-,if,RegStufe#,eif,eif";
  const std::string state = leap.bus.Answer(all), log = leap.bus.Answer("FL@ LOGI#WI 65535 999");
  for (; steps.now < kDay; steps.now += 1000) steps.bus.Answer("");
  EXPECT_EQ(steps.bus.Answer(all), state);
  EXPECT_EQ(steps.bus.Answer("FL@ LOGI#WI 65535 999"), log);
  EXPECT_NE(Life().bus.Answer(all), state);
  const double taps = leap.Number("RegTAPSUM#") - Life().Number("RegTAPSUM#");
  EXPECT_GT(taps, 4);
  EXPECT_LT(taps, 200);
  leap.now = 100'000 * kDay;  // bounded however long nobody looked
  EXPECT_NEAR(leap.Number("RegUn#"), 100, 15);
}

TEST(Regulator, RefusesWhatItDoesNotKnowOrCannotDo) {
  const std::string notSimulating = "<<not in simulation mode>>", range = "<<value out of range>>";
  const Step cases[] = {
      {"RegUn=100.5", notSimulating},
      {"RegSimul=1,RegStufe=3", notSimulating},
      {"RegSimul=1,RegUn=100.5,Regphi=-30.125,RegIn=1.25,RegUn#,Regphi#,RegIn#",
       "100.5\r\n-30.125\r\n1.25"},
      {"B1:RegIBereich#,RegIn-,1.2,<,!,RegSimul=1,RegIn=2,RegIn#", "5\r\n1\r\n2"},
      {"B1:RegSimul=1,RegIn=2.001", range},
      {"RegSimul=1,RegSimuls=1,RegSimul=0,RegSimuls#,RegSimul=1,RegSimuls#", "0\r\n0"},
      {"RegSimul=1,RegUn=200.1", range},
      {"RegSimul=1,Regphi=180.5", range},
      {"RegSimul=1,RegSimuls=1,RegStufe=-4,RegSimuls=1,RegStufe#,RegSimul=0,RegSimul=1,RegStufe#",
       "-4\r\n1"},
      {"RegAuto=2", range},
      {"RegAuto=0.5", range},
      {"RegAuto=on", range},
      {"RegIBereich=2", range},
      {"RegAuto 1=0", "<<index out of range>>"},
      {"RegTapUp=1", "<<not in manual mode>>"},
      {"RegSW 5=100", "<<index out of range>>"},
      {"RegSW 1=1000", range},
      {"RegSW 3=101.5,RegSW# *", "100\r\n102\r\n101.5\r\n105"},
      {"RegSW*=99,RegSW# 4", "99"},
      {"RegStufTyp=0,RegStufe#", "0"},
      {"merkmal# simmode", "2"},
      {"B6:,RegSimuls#,RegIKr?-,!,RegStufe?-,!,RegStufTyp?-,!", "0\r\n0\r\n0\r\n0"},
      {"B4:ESPAuto=0,RegSimul=1,ESPAuto#,RegSimul#", "0\r\n1"},
      {"B4:RegAuto#", "<<unknown: regauto>>"},
      {"B7:RegSimul#", "<<unknown: regsimul>>"},
  };
  for (const Step& step : cases) ExpectAnswers({step});
}

TEST(EventLog, IsReadInTheFormOfTheFirmware) {
  struct Case {
    std::string station, newest, second, other;
  };
  const std::string lines = "eventlog/^^%. \"%.3w;%n\" ";
  const Case cases[] = {
      {"AA:", "FL@ LOGI#WI 65535 1", "FL@ LOGI#WI 65534 1", lines + "1..1 0"},
      {"B3:", lines + "1..1 0", lines + "1..1 1", "FL@ LOGI#WI 65535 1"},
      {"B1:", lines + "1..1", lines + "2..2", lines + "1..1 0"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.station);
    const std::string auto0 = "20260105;08:00:05;.05;17;0";
    ExpectAnswers({
        {c.station + ":", ""},
        {"RegAuto=0", "", 5'050},
        {c.newest, auto0},
        {"RegAuto=1,RegAuto=1", "", 250},
        {c.newest, "20260105;08:00:05;.3;17;1"},
        {c.second, auto0},
        {"RegTAPSTATCL*=0", "", 700},
        {c.newest, "20260105;08:00:06;.0;66;0"},
        {"eventlog=0", ""},
        {c.newest, "20260105;08:00:06;.0;64;0"},
        {c.second, ""},
    });
    EXPECT_EQ(Bus().Answer(c.station + c.other).substr(0, 2), "<<");
  }
  Life life;
  EXPECT_GT(life.Events(1000).size(), 100u);
  EXPECT_EQ(life.Events(7).size(), 7u);
  for (int n = 0; n < 1500; ++n) life.bus.Answer("RegAuto=0,RegAuto=1");
  EXPECT_NE(life.bus.Answer("FL@ LOGI#WI " + std::to_string(65535 - 2047) + " 9"), "");
  EXPECT_EQ(life.bus.Answer("FL@ LOGI#WI " + std::to_string(65535 - 2048) + " 9"), "");
}

TEST(EventLog, TellsOfTapsWhereTheyAreSeen) {
  const std::set<int> noTaps = {1,  7,  11, 12, 13, 17, 18, 19, 20,
                                21, 22, 26, 27, 28, 41, 65, 67, 68};
  std::set<int> all = {8, 9, 23, 24, 25, 29, 30};
  all.insert(noTaps.begin(), noTaps.end());
  for (const std::string station : {"AA:", "B6:"}) {
    Life life;
    life.now = kDay;
    std::set<int> events, fields;
    for (const std::string& line : Lines(life.bus.Answer(station + "FL@ LOGI#WI 65535 999"))) {
      events.insert(std::stoi(line.substr(line.find(';', line.find(";.") + 1) + 1)));
      fields.insert(static_cast<int>(std::count(line.begin(), line.end(), ';')) + 1);
    }
    EXPECT_EQ(events, station == "AA:" ? all : noTaps) << station;
    EXPECT_EQ(fields, (std::set<int>{5, 6, 7})) << station;
  }
}

}  // namespace
}  // namespace ostrel::simulator
