#include <string_view>

#include "simulator/machine.h"
#include "steps.h"

namespace ostrel::simulator {
namespace {

TEST(IoMaps, HaveTheEntriesOfModelAndFirmware) {
  struct ModelCase {
    std::string_view model, firmware;
    int entries[4];  // 0 = no such map
  };
  constexpr ModelCase kCases[] = {
      {"KT-X", "2.14", {6, 32, 9, 0}},        {"KT-X", "2.15", {32, 64, 64, 7}},
      {"KT-X", "3.24", {128, 128, 128, 128}}, {"KT-XB", "2.2", {32, 64, 64, 12}},
      {"KT-X", "2.24", {32, 128, 64, 64}},    {"KT-XB", "2.10", {6, 32, 11, 0}},
      {"LX-X", "2.21", {1, 64, 64, 8}},       {"KT-XW", "2.30", {0, 0, 0, 0}},
  };
  for (const ModelCase& c : kCases) {
    Station station("AA", {c.model, c.firmware, "", ""}, 1, 0);
    const int* entries = c.entries;
    for (const std::string name : {"AnaMap", "RegInpMap", "RegRelMap", "RegLEDMap"}) {
      SCOPED_TRACE(std::string(c.model) + " " + std::string(c.firmware) + " " + name);
      const std::string last = std::to_string(*entries), beyond = std::to_string(*entries + 1);
      if (*entries++ == 0) {
        EXPECT_EQ(AnswerOf(station, name + "# *"), "<<unknown: " + LowerCase(name) + ">>");
        EXPECT_EQ(AnswerOf(station, name + "Max?-,!"), "0");
        continue;
      }
      EXPECT_EQ(AnswerOf(station, name + "Max=" + beyond), "<<value out of range>>");
      EXPECT_EQ(AnswerOf(station, name + "Max=" + last + "," + name + "Max#"), last);
      EXPECT_EQ(AnswerOf(station, name + " " + beyond + "=0"), "<<index out of range>>");
      EXPECT_EQ(AnswerOf(station, name + " " + last + "=16.01," + name + "# " + last), "16.01");
    }
  }
}

TEST(IoMaps, LeadToChannelsOfCards) {
  const std::string sizes = "AnaMapMax#,RegInpMapMax#,RegRelMapMax#,RegLEDMapMax#";
  ExpectAnswers({
      {"RegInpMap# 16,RegInpMap# 17,RegInpMap# 64,RegInpMap# 65,RegInpMap# 76,RegInpMap# 77",
       "0\r\n4.01\r\n6.16\r\n7.01\r\n8.06\r\n0"},
      {"RegRelMap# 9,RegRelMap# 10,RegRelMap# 18,RegRelMap# 31,RegRelMap# 32",
       "0\r\n1.01\r\n2.01\r\n3.08\r\n0"},
      {"AnaMap# 7,AnaMap# 16,AnaMap# 24,RegLEDMap# 8,RegLEDMap# 23,RegLEDMap# 24",
       "9.01\r\n10.02\r\n11.08\r\n12.01\r\n12.16\r\n0"},
      {sizes, "24\r\n76\r\n31\r\n23"},
      {"DevRel2Map#", "7"},
      {"B1:AnaMapMax#,RegInpMapMax#,RegRelMapMax#", "0\r\n0\r\n0"},
      {"B2:" + sizes, "38\r\n44\r\n0\r\n0"},
      {"B2:RegInpMap# 17,RegInpMap# 44,AnaMap# 15,AnaMap# 38,DevSubType# 1,DevSubType# 12",
       "2.01\r\n4.06\r\n6.01\r\n11.08\r\n100\r\n113"},
      {"B3:" + sizes, "0\r\n32\r\n24\r\n0"},
      {"B3:devmodid *",
       "DevModID 1=11\r\nDevModID 2=10\r\nDevModID 5=14\r\nDevModID 9=27\r\nDevModID 16=31"},
      {"B3:RegInpMap# 32,RegRelMap# 19,DevModID# 3,DevSubType# 16", "1.16\r\n2.01\r\n0\r\n2"},
      {"RegRelMap 33=5.09", "<<no such channel>>"},
      {"RegInpMap 33=5.1,RegInpMap# 33", "5.10"},
      {"RegInpMap 33=16.16,RegInpMap# 33", "16.16"},
      {"RegInpMap 33=0,RegInpMap# 33", "0"},
      {"AnaMap 7=2.09", "<<no such channel>>"},
      {"RegInpMap*=2.01,RegInpMap# 1,RegInpMap# 128", "2.01\r\n2.01"},
  });
  for (const std::string value : {"5", "5.17", "0.01", "17.01", "5.011", "-5.01", "1E300", "x"}) {
    ExpectAnswers({{"RegInpMap 33=" + value, "<<no such channel>>"}});
  }
}

TEST(IoMaps, HaveMoreCardsThanAddressesOnRequest) {
  Bus bus({.extras = {.manyCards = true}});
  EXPECT_EQ(Lines(bus.Answer("AA:devsubtype# *")).size(), 18u);
  EXPECT_EQ(bus.Answer("B1:RegInpMap# 32,DevSubType# 18"), "1.16\r\n3");
}

const std::string kRegulators[] = {"AA:", "B1:", "B2:", "B3:", "B6:"};

TEST(Programs, ListingsRestoreWhatTheyList) {
  const std::string text = "\"!\"\"a, b;\"\",1,2,+,!; \xe4 = *\"";
  const Step lists[] = {
      {"Hlist", "64=" + text},  {"PList", "64=\"" + std::string(120, '"') + "\""},
      {"QList", "64=\" \""},    {"menuappn", "32=" + text},
      {"menuapp", "32=\"0\""},  {"LName", "16=" + text},
      {"Urat", "16=-1000000"},  {"Irat", "16=0.001"},
      {"KFaktor", "16=1100.5"}, {"EUnit", "16=" + text},
  };
  Bus bus;
  EXPECT_EQ(bus.Answer("B2:login 1 4711"), "");
  for (const std::string& station : kRegulators) {
    for (const auto& [name, last, _] : lists) {
      SCOPED_TRACE(station + name);
      EXPECT_EQ(bus.Answer(station + name + " " + last), "");
      const std::string listing = bus.Answer(station + name + " *");
      EXPECT_NE(listing.find("\r\n" + name + " " + last), std::string::npos) << listing;
      EXPECT_EQ(bus.Answer(station + name + "*"), listing);
      const bool numbers = last.find('"') == std::string::npos;
      EXPECT_EQ(bus.Answer(station + name + (numbers ? "*=0" : "*=\"\"")), "");
      EXPECT_EQ(bus.Answer(station + name + "# *"), "");
      for (const std::string& line : Lines(listing)) EXPECT_EQ(bus.Answer(station + line), "");
      EXPECT_EQ(bus.Answer(station + name + " *"), listing);
    }
  }
}

TEST(Programs, RunOnTheirStations) {
  Bus bus;
  for (const std::string& station : kRegulators) {
    EXPECT_EQ(Lines(bus.Answer(station + "menuapp *")).size(), 3u);
    for (const std::string name : {"Hlist", "PList", "QList", "menuapp"}) {
      for (std::size_t n = 1; n <= Lines(bus.Answer(station + name + "*")).size(); ++n) {
        const std::string program = bus.Answer(station + name + "# " + std::to_string(n));
        EXPECT_EQ(bus.Answer(station + program).find("<<"), std::string::npos) << program;
      }
    }
  }
}

TEST(Programs, RefuseWhatDoesNotFit) {
  const std::string before = Bus().Answer("Hlist*,Urat*");
  ExpectAnswers({{"Hlist 0=\"a\"", "<<index out of range>>"},
                 {"Hlist 65=\"a\"", "<<index out of range>>"},
                 {"Hlist=\"a\"", "<<index out of range>>"},
                 {"Hlist 1=\"" + std::string(121, 'a') + "\"", "<<text too long>>"},
                 {"Hlist 1=a", "<<no text between quotes>>"},
                 {"Hlist 1=\"a\"b\"c\"", "<<no text between quotes>>"},
                 {"Hlist 1=\"a\" \"b\"", "<<one value expected>>"},
                 {"Hlist 1=\"\x01\"", "<<character not allowed>>"},
                 {"Urat 1=\"20000\"", "<<number out of range>>"},
                 {"Urat 1=1000001", "<<number out of range>>"},
                 {"B4:Hlist*", "<<unknown: hlist>>"},
                 {"Hlist*,Urat*", before},
                 {"Urat 1=20000,Urat- 1,2,/,!", "10000"}});
}

TEST(FileStore, KeepsWhatIsAppended) {
  ExpectAnswers({{"fsize# Par_1.txt", "-1"},
                 {"fcreate! = Par_1.txt", ""},
                 {"fsize# PAR_1.TXT", "0"},
                 {"fapph par_1.txt 30E41a", ""},
                 {"fapps_ par_1.txt \"say \"\"a, b\"\"\"", ""},
                 {"fread. par_1.txt 0 *", "0\xe4.say \"a, b\"\r\n"},
                 {"fread. par_1.txt 3 3", "say"},
                 {"fread. par_1.txt 65537 *", "<<index out of range>>"},
                 {"fread. other 0 *", "<<no such file>>"},
                 {"fapph par_1.txt 303x", "<<not hexadecimal>>"},
                 {"fsize# par_1.txt", "15"},
                 {"B1:fsize# par_1.txt", "-1"},
                 {"fcreate! = a/b", "<<file name not allowed>>"},
                 {"fcreate! = abcdefghijklm", "<<file name not allowed>>"},
                 {"fcreate! =", "<<file name is missing>>"},
                 {"B4:fcreate! = LOG.H", "<<file name not allowed>>"},
                 {"fcreate! = par_1.txt,fsize# par_1.txt", "0"},
                 {"fdelete! = par_1.txt", ""},
                 {"fdelete! = par_1.txt", "<<no such file>>"}});
}

TEST(FileStore, IsBounded) {
  const std::string bytes(2048, 'A');
  ExpectAnswers({{"1,16,fori,fcreate! = i,ni", ""},
                 {"fcreate! = 17", "<<too many files>>"},
                 {"fori 1..64,fapph 16 " + bytes + ",ni,fsize# 16", "65536"},
                 {"fapph 16 41", "<<file full>>"},
                 {"fread. 16 0 *", std::string(65536, '\xaa')},
                 {"fdelete! = 3,fcreate! = 17,fsize# 17", "0"}});
}

}  // namespace
}  // namespace ostrel::simulator
