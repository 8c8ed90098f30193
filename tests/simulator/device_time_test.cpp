#include "simulator/device_time.h"

#include "steps.h"

namespace ostrel::simulator {
namespace {

struct Case {
  std::string set;       // sent first
  std::int64_t laterMs;  // how long it then runs
  std::string dateTime;  // what it shows
};

TEST(DeviceTime, RunsAndFollowsZoneAndSummerTime) {
  const Case cases[] = {
      {"", 1'999, "05.01.2026 08:00:01"},
      {"time=23:59:59,date=28.02.2028", 1'000, "29.02.2028 00:00:00"},
      {"date=29.03.2026,time=01:59:59", 1'000, "29.03.2026 03:00:00"},
      {"utcDST=0,date=29.03.2026,time=01:59:59", 1'000, "29.03.2026 02:00:00"},
      {"date=25.10.2026,time=02:59:59", 1'000, "25.10.2026 02:00:00"},
      {"date=25.10.2026,time=02:59:59", 3'601'000, "25.10.2026 03:00:00"},
      {"UTCDSTT 1 2026=15060100,date=15.06.2026,time=00:59:59", 1'000, "15.06.2026 02:00:00"},
      {"UTCDSTT 1 2026=15060100,date=28.03.2027,time=01:59:59", 1'000, "28.03.2027 03:00:00"},
      {"UTCDSTT 1 2026=15060100,UTCDSTT* 1 0000=700030200,date=29.03.2026,time=01:59:59", 1'000,
       "29.03.2026 03:00:00"},
      {"utcSH=1,utcDST=0", 0, "05.01.2026 08:00:00"},
      {"utcTZ=-3", 0, "05.01.2026 04:00:00"},
      {"utcSH=1,date=05.04.2026,time=02:59:59", 1'000, "05.04.2026 02:00:00"},
      {"utcSH=1,date=04.10.2026,time=01:59:59", 1'000, "04.10.2026 03:00:00"},
      {"UTCDSTT 1 0000=700030200,UTCDSTT 2 0000=700100300,utcSH=1", 0, "05.01.2026 08:00:00"},
      {"date=01.07.2026,utcDST=0", 0, "01.07.2026 07:00:00"},
      {"date=01.07.2026;", 0, "05.01.2026 08:00:00"},
      {"time-,utcSH=0,utcTZ=5,utcDST=1,time//=.", 60'000, "05.01.2026 08:01:00"},
      {"time=23:30:00,time-,utcTZ=3,time//=.", 0, "05.01.2026 23:30:00"},
      {"time=00:30:00,time-,utcTZ=-4,time//=.", 0, "05.01.2026 00:30:00"},
      {"utcTZ=-13,time=23:30:00,time-,utcTZ=13,time//=.", 0, "04.01.2026 23:30:00"},
      {"utcTZ=13,time=00:30:00,time-,utcTZ=-13,time//=.", 0, "05.01.2026 00:30:00"},
      {"time#,date=07.01.2026,time//=23:00:00", 0, "06.01.2026 23:00:00"},
      {"UTCDSTT 1 2026=700039900,date=28.03.2026,time=22:59:59", 1'000, "29.03.2026 00:00:00"},
      {"UTCDSTT 1 2026=1019900,date=31.12.2025,time=22:59:59", 1'000, "01.01.2026 00:00:00"},
  };
  for (const Case& c : cases) {
    std::int64_t now = 0;
    Bus bus({.clock = [&now] { return now; }});
    bus.Answer(";" + c.set);
    now += c.laterMs;
    EXPECT_EQ(bus.Answer("date-,!,!+\" \",time#+"), c.dateTime) << c.set;
  }
}

TEST(DeviceTime, ReachesAllOfAGroupAndNoOthers) {
  const std::string set = "12:34:56\r\n01.06.2031", unset = "08:00:00\r\n05.01.2026";
  ExpectAnswers({
      {"all r,time=12:34:56, date=01.06.2031", ""},
      {"time#,Date#", set},
      {"B6:time#,Date#", set},
      {"B2:time#,Date#", unset},  // it is protected
      {"B3:time#,Date#", unset},
      {"B7:time#,Date#", unset},
  });
}

TEST(DeviceTime, RefusesWhatIsNoTimeDateOrRule) {
  const std::pair<std::string, std::vector<std::string>> cases[] = {
      {"time=",
       {"24:00:00", "12:60:00", "1:00:00", "12:00", "12", "", "12:00:00 13:00:00", "12:00:0x"}},
      {"date=",
       {"31.02.2026", "29.02.2027", "00.01.2026", "1.1.2026", "01.01.1989", "01.01.2100", "5"}},
      {"utcTZ=", {"14", "-13.5"}},
      {"utcSH=", {"2"}},
      {"utcDST=", {"-1"}},
      {"UTCDSTT 3 2026=", {"700030200"}},
      {"UTCDSTT 1 1989=", {"700030200"}},
      {"UTCDSTT# 1 2100", {""}},
      {"UTCDSTT 1 2026=",
       {"800030200", "700130200", "700032400", "700039600", "700030260", "796030200", "31040200",
        "-700030200", "-15030200", "0", "1E300"}}};
  for (const auto& [name, values] : cases) {
    for (const std::string& value : values) {
      EXPECT_EQ(Bus().Answer(name + value).substr(0, 2), "<<") << name << value;
    }
  }
  EXPECT_EQ(Bus().Answer("UTCDSTT 1 2026=-715030200,UTCDSTT# 1 2026,UTCDSTT# 1 2027"),
            "-715030200\r\n700030200");
}

TEST(DeviceTime, FindsTheDayOfARule) {
  struct Rule {
    int packed, year;
    int change;  // month, day and hour, two digits each
  };
  const Rule cases[] = {
      {700030200, 2026, 3'29'02},  {700100300, 2027, 10'31'03}, {100020000, 2028, 2'28'00},
      {791030200, 2026, 3'01'02},  {494110200, 2026, 11'26'02}, {795030200, 2026, 3'29'02},
      {795020200, 2026, 2'22'02},  {715030200, 2026, 3'15'02},  {716030200, 2026, 3'22'02},
      {-715030200, 2026, 3'08'02}, {-716030200, 2026, 3'15'02}, {-701030200, 2026, 2'22'02},
      {731120200, 2026, 1'03'02},  {29022300, 2027, 2'28'23},   {1010000, 2026, 1'01'00},
      {700039900, 2026, 3'28'23},  {1019700, 2027, 12'31'21},
  };
  for (const Rule& c : cases) {
    ASSERT_TRUE(IsChangeRule(c.packed)) << c.packed;
    const LocalMoment at = SplitLocal(ChangeSeconds(c.packed, c.year) * 1000);
    EXPECT_EQ(at.month * 10000 + at.day * 100 + at.hour, c.change) << c.packed << " in " << c.year;
  }
}

}  // namespace
}  // namespace ostrel::simulator
