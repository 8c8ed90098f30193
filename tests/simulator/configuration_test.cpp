#include <algorithm>
#include <string_view>

#include "simulator/machine.h"
#include "steps.h"

namespace ostrel::simulator {
namespace {

std::vector<std::string> Lines(std::string answer) {
  std::vector<std::string> lines;
  for (answer += "\r\n"; answer.size() > 2; answer.erase(0, answer.find('\n') + 1)) {
    lines.push_back(answer.substr(0, answer.find('\r')));
  }
  return lines;
}

TEST(IoMaps, HaveTheEntriesOfModelAndFirmware) {
  struct ModelCase {
    std::string_view model, firmware;
    int entries[4];  // 0 = no such map
  };
  constexpr ModelCase kCases[] = {
      {"KT-X", "2.14", {6, 32, 9, 0}},        {"KT-X", "2.15", {32, 64, 64, 7}},
      {"KT-XB", "2.2", {32, 64, 64, 12}},     {"KT-X", "2.24", {32, 128, 64, 64}},
      {"KT-X", "3.24", {128, 128, 128, 128}}, {"KT-XB", "2.10", {6, 32, 11, 0}},
      {"LX-X", "2.14", {1, 16, 18, 0}},       {"LX-X", "2.21", {1, 64, 64, 8}},
      {"LX-X", "3.24", {1, 128, 64, 64}},     {"KT-XW", "2.30", {0, 0, 0, 0}},
  };
  const std::string names[] = {"AnaMap", "RegInpMap", "RegRelMap", "RegLEDMap"};
  for (const ModelCase& c : kCases) {
    Station station("AA", {c.model, c.firmware, "", ""}, 1, 0);
    for (std::size_t kind = 0; kind < std::size(names); ++kind) {
      const std::string& name = names[kind];
      SCOPED_TRACE(std::string(c.model) + " " + std::string(c.firmware) + " " + name);
      const std::string all = AnswerOf(station, name + "# *");
      const std::string last = std::to_string(c.entries[kind]);
      const std::string beyond = std::to_string(c.entries[kind] + 1);
      if (c.entries[kind] == 0) {
        EXPECT_EQ(all, "<<unknown: " + LowerCase(name) + ">>");
        EXPECT_EQ(AnswerOf(station, name + "Max?-,!"), "0");
        continue;
      }
      EXPECT_EQ(std::count(all.begin(), all.end(), '\n') + 1, c.entries[kind]);
      EXPECT_EQ(AnswerOf(station, name + "Max=" + beyond), "<<value out of range>>");
      EXPECT_EQ(AnswerOf(station, name + "Max=" + last + "," + name + "Max#"), last);
      EXPECT_EQ(AnswerOf(station, name + " " + beyond + "=0"), "<<index out of range>>");
      EXPECT_EQ(AnswerOf(station, name + " " + last + "=16.01," + name + "# " + last), "16.01");
    }
  }
}

TEST(IoMaps, TakeOnlyChannelsOfCards) {
  for (const std::string value : {"5", "5.17", "0.01", "17.01", "5.011", "-5.01", "1E300", "x"}) {
    EXPECT_EQ(Bus().Answer("RegInpMap 33=" + value), "<<no such channel>>") << value;
  }
  ExpectAnswers({{"RegInpMap 33=5.01,RegInpMap# 33", "5.01"},
                 {"RegInpMap 33=5.1,RegInpMap# 33", "5.10"},
                 {"RegInpMap 33=16.16,RegInpMap# 33", "16.16"},
                 {"RegInpMap 33=0,RegInpMap# 33", "0"},
                 {"AnaMap 7=2.09", "<<no such channel>>"},
                 {"RegInpMap*=2.01,RegInpMap# 1,RegInpMap# 128", "2.01\r\n2.01"}});
}

TEST(IoMaps, LeadToCardsThatAreThere) {
  Bus bus;
  int mapped = 0;
  for (const std::string station : {"AA:", "B1:", "B2:", "B3:"}) {
    std::string lines;
    for (int address = 1; address <= kMaxCards; ++address) {
      const std::string place = std::to_string(address);
      const std::string type = bus.Answer(station + "DevModID# " + place);
      if (type == "0") break;
      lines += (lines.empty() ? "DevModID " : "\r\nDevModID ") + place + "=" + type;
    }
    EXPECT_EQ(bus.Answer(station + "devmodid *"), lines);
    for (const std::string& entry : Lines(bus.Answer(station + "RegInpMap# *"))) {
      if (entry == "0") continue;
      ++mapped;
      EXPECT_NE(bus.Answer(station + "DevModID# " + entry.substr(0, entry.find('.'))), "0");
    }
  }
  EXPECT_GT(mapped, 16);
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
