#include "simulator/station_file.h"

#include "steps.h"

namespace ostrel::simulator {
namespace {

TEST(StationFile, MakesTheBus) {
  struct Case {
    std::string text, line, answer;
    std::size_t connected = 0;
  };
  const std::string two = "KT-XB;3.26;A;1\nNV-X;1.5;B;2\n", many = Times(63, two.substr(15)),
                    utf8 = "\xef\xbb\xbf# x;y\r\n\r\n  KT-XW ; 2 ; H\xc3\xb6he; 0 1 \r\n";
  const Case cases[] = {
      {two, "all,dirn_", "AA:A\r\nB1:B"},
      {two, "all,dirn_", "AA:B\r\nB1:A", 1},
      {utf8, "ver.,station#,sysSN#", "KT-XW+;V2\r\nH\xf6he\r\n0 1"},
      {"QM-X;1;H\xf6he;1", "station#", "H\xf6he"},
      // What a device can do comes with its model, and with the age of its firmware.
      {"KT-XB;2.30;A;1", "RegTAPSTATCL*=0,RegTAPSUM#", "0"},
      {"KT-XB;3.30;A;1", "RegTAPSTATCL*=0", "<<access denied>>"},
      {"LX-X;2.21;A;1", "RegTAPSTAT# 1 -60", "<<index out of range>>"},
      {"KT-XWB;2.22;A;1", "RegTAPSTAT# 1 -60", "0"},
      // That of regulators is a decimal number.
      {"KT-X;2.3;A;1", "RegTAPSTAT# 1 -60", "0"},
      {"KT-XW;2.3.1;A;1", "eventlog/^^%. \"%.3w;%n\" 1..1 0", "<<unknown: eventlog>>"},
      {"KT-XF;2.4.10;A;1", "sysreset=0.9", ""},
      {many + "NV-X;1.5;last;2", "H9:station#", "last"},
      {many + "NV-X;1.5;last;2", "C1:dir", "C1:"},
  };
  for (const Case& c : cases) {
    StationFile file;
    ASSERT_EQ(file.Read(c.text), "") << c.text;
    Bus bus({.connected = c.connected, .stations = file.Stations()});
    EXPECT_EQ(bus.Answer(c.line), c.answer) << c.text << " | " << c.line;
  }
}

TEST(StationFile, RefusesWithTheLine) {
  for (const std::string faulty :
       {"KT-X;2.27;A", "KT-X;2.27;A;1;", "kt-x;2.27;A;1", "KT-X;;A;1", "KT-X;2..7;A;1",
        "KT-X;2.27b;A;1", "KT-X;2.27;;1", "KT-X;2.27;A;", "KT-X;2.27;A;\xc3\xbc",
        "KT-X;2.27;a\x1a;1", "KT-X;2.27;\x80;1", "KT-X;2.27;\xe2\x82\xac;1", "KT-X;2.27;\xc4\x80;1",
        "KT-X;2.27;12345678901234567890123456789012345678901;1"}) {
    const std::string failure = StationFile().Read("NV-X;1.5;B;2\n" + faulty);
    EXPECT_TRUE(failure.starts_with("line 2: ")) << faulty << " " << failure;
  }
  EXPECT_EQ(StationFile().Read(Times(65, "NV-X;1.5;B;2\n")), "line 65: more than 64");
  EXPECT_EQ(StationFile().Read("# nothing\n"), "line 2: no station");
}

}  // namespace
}  // namespace ostrel::simulator
