#include "simulator/station_file.h"

#include <gtest/gtest.h>

#include <string>

#include "simulator/bus.h"

namespace ostrel::simulator {
namespace {

std::string Repeated(const std::string& line, int count) {
  std::string text;
  while (count-- > 0) text += line;
  return text;
}

TEST(StationFile, MakesTheBus) {
  struct Case {
    std::string text, line, answer;
    std::size_t connected = 0;
  };
  const std::string two = "KT-XB;3.26;A;1\nNV-X;1.5;B;2\n", all = "all,dirn_";
  const Case cases[] = {
      {two, all, "AA:A\r\nB1:B"},
      {two, all, "AA:B\r\nB1:A", 1},
      {two, "sysSN#,ver.", "1\r\nKT-XB+;V3.26"},
      {"\xef\xbb\xbf# x;y\r\n\r\n  KT-XW ; 2.30 ; S\xc3\xbc"
       "d; 0 1 \r\n",
       "ver.,station#,sysSN#",
       "KT-XW+;V2.30\r\nS\xfc"
       "d\r\n0 1"},
      {"QM-X;1;H\xf6"
       "he;1",
       "station#",
       "H\xf6"
       "he"},
      // What a device can do comes with its model, and with the age of its firmware.
      {"KT-XB;2.30;A;1", "RegTAPSTATCL*=0,RegTAPSUM#", "0"},
      {"KT-XB;3.30;A;1", "RegTAPSTATCL*=0", "<<access denied>>"},
      {"LX-X;2.21;A;1", "RegTAPSTAT# 1 -60", "<<index out of range>>"},
      {"LX-X;2.22;A;1", "RegTAPSTAT# 1 -60", "0"},
      {"KT-XWB;2.22;A;1", "RegTAPSUM?-,!", "1"},
      {"QM-X;1;A;1", "RegTAPSUM?-,!", "0"},
      {Repeated("NV-X;1.5;B;2\n", 63) + "NV-X;1.5;last;2", "H9:station#", "last"},
      {Repeated("NV-X;1.5;B;2\n", 63) + "NV-X;1.5;last;2", "C1:dir", "C1:"},
  };
  for (const Case& c : cases) {
    StationFile file;
    ASSERT_EQ(file.Read(c.text), "") << c.text;
    Bus bus({.connected = c.connected, .stations = file.Stations()});
    EXPECT_EQ(bus.Answer(c.line), c.answer) << c.text << " | " << c.line;
  }
}

TEST(StationFile, RefusesWithTheLine) {
  struct Case {
    std::string text;
    int line;
  };
  const Case cases[] = {
      {"", 1},
      {"# nothing\n", 2},
      {"KT-X;2.27;A;1\nKT-X;2.27;A\n", 2},
      {"KT-X;2.27;A;1;", 1},
      {"kt-x;2.27;A;1", 1},
      {"KT-Y;2.27;A;1", 1},
      {"KT-X;;A;1", 1},
      {"KT-X;2..7;A;1", 1},
      {"KT-X;2.27b;A;1", 1},
      {"KT-X;2.27;;1", 1},
      {"KT-X;2.27;A;", 1},
      {"KT-X;2.27;A;\xc3\xbc", 1},
      {"KT-X;2.27;a\x1a;1", 1},
      {"KT-X;2.27;\x80 in Windows-1252;1", 1},
      {"KT-X;2.27;\xe2\x82\xac in UTF-8;1", 1},
      {"KT-X;2.27;\xc4\x80 in UTF-8;1", 1},
      {"KT-X;2.27;" + std::string(41, 'a') + ";1", 1},
      {Repeated("NV-X;1.5;B;2\n", 65), 65},
  };
  for (const Case& c : cases) {
    const std::string failure = StationFile().Read(c.text);
    EXPECT_TRUE(failure.starts_with("line " + std::to_string(c.line) + ": ")) << c.text << failure;
  }
  EXPECT_EQ(StationFile().Load("/nowhere"), "/nowhere: No such file or directory");
}

}  // namespace
}  // namespace ostrel::simulator
