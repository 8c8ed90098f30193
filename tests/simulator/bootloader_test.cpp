#include "simulator/bootloader.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/faulty_line.h"

namespace ostrel::simulator {
namespace {

const std::string kSilence = "(silence)";

struct Step {
  std::int64_t passed;  // ms before the line
  std::string line, answer;
};

void ExpectAnswers(std::size_t connected, const std::vector<Step>& steps) {
  std::int64_t now = 0;
  Bus bus({.clock = [&now] { return now; }, .connected = connected});
  for (const Step& step : steps) {
    now += step.passed;
    const auto pieces = bus.AnswerInPieces(step.line);
    std::string answer = pieces.empty() ? kSilence : "";
    for (const Portion& piece : pieces) answer += piece.bytes;
    EXPECT_EQ(answer, step.answer) << "line: " << step.line;
  }
}

TEST(Bootloader, SavesAndRestoresTheDevice) {
  const std::string total = Bus().Answer("RegTAPSUM#");
  ExpectAnswers(0, {
                       {0, "ramrestore", "<<unknown: ramrestore>>"},
                       {0, "sysreset=0.9,station#", ""},
                       {0, "aa:ver", "KT-X Urlader V2.14"},
                       {0, "ver.", "Error: unknown command"},
                       {0, "B1:ver", "Error: unknown command"},
                       {0, "all,ver", "Error: unknown command"},
                       {0, "", ""},
                       {0, "RAMBackupTime", "---"},
                       {0, "RAMRestore", "Error: no backup"},
                       {90'000, "RamBackup", "Saving ....o.k."},
                       {90'000, "RamBackupTime", "05.01.2026 08:01:30"},
                       {0, "Reset", ""},
                       {0, "RegTAPSTATCL*=0,passwort 1 0=1 1,RegTAPSUM#", "0"},
                       {0, "sysreset=0.9", ""},
                       {0, "RAMRestore", "o.k."},
                       {0, "RAMBackupTime", "05.01.2026 08:01:30"},
                       {0, "reset", ""},
                       {0, "RegTAPSUM#,passwort- 1,!", total + "\r\n0"},
                       {0, "passwort 1 0=1 1,passwort* 0 1=0 2,logout", ""},
                       {0, "sysreset=0.9", "<<access denied>>"},
                   });
}

TEST(Bootloader, RestartsAreSilent) {
  const std::string name = "Umspannwerk Nord T1";
  ExpectAnswers(0, {
                       {0, "RegTAPSTATCL*=0,passwort 1 0=1 1", ""},
                       {0, "sysreset=0,station#", ""},
                       {2'999, "station#", kSilence},
                       {0, "B1:dir", kSilence},
                       {1, "station#,whoami,passwort- 1,!", name + "\r\nuser 0\r\n1"},
                       {0, "login 1 1", ""},
                       {0, "sysreset=0.9", ""},
                       {0, "sysreset=590", ""},
                       {29'999, "ver", kSilence},
                       {1, "station#,passwort- 1,!,RegTAPSUM#", name + "\r\n0\r\n0"},
                       {0, "B1:sysreset=590", ""},
                       {29'999, "B1:dir", ""},
                       {0, "all,RegTAPSTAT?-,if,dir,eif", "AA:\r\nB2:\r\nB3:\r\nB6:"},
                       {1, "B1:dir,RegTAPSUM#", "B1:\r\n0"},
                       {0, "B1:sysreset=0.9", "<<index out of range>>"},
                       {0, "sysreset=1", "<<index out of range>>"},
                       {0, "sysreset=", "<<index out of range>>"},
                   });
}

TEST(Bootloader, IsWhatTheConnectedDeviceHas) {
  const std::string refused = "<<index out of range>>", unknown = "Error: unknown command";
  struct Case {
    std::size_t connected;
    std::string entering, version, saving, time;
  };
  const Case cases[] = {
      {1, "", "KT-XB Urlader V2.05", "Saving ....o.k.", "05.01.2026 08:00:00"},
      {3, "", "LX-X Urlader V2.14", "Error: no flash", "No 2nd flash"},
      {4, "", "KT-XF Urlader V2.14", "Saving ....o.k.", "05.01.2026 08:00:00"},
      {5, refused, "KT-XFB Version V2.1.10", "<<unknown: rambackup>>",
       "<<unknown: rambackuptime>>"},
      {8, "", "JS-X Urlader V2.14", "Saving ....o.k.", "05.01.2026 08:00:00"},
      {9, refused, "NV-X Version V1.5", "<<unknown: rambackup>>", "<<unknown: rambackuptime>>"},
  };
  for (const Case& c : cases) {
    ExpectAnswers(c.connected, {{0, "sysreset=0.9", c.entering},
                                {0, "ver", c.version},
                                {0, "rambackup", c.saving},
                                {0, "rambackuptime", c.time}});
  }
}

TEST(Bootloader, SavingComesInPiecesOverSomeSeconds) {
  Simulation simulation{Bus()};
  simulation.bus.Answer("sysreset=0.9");
  FaultyLine line(simulation);
  for (const char byte : std::string("RamBackup\r")) line.Feed(byte, 0);
  std::string received;
  std::vector<std::string> pieces;
  std::int64_t now = 0;
  for (auto step = line.Next(now); step.kind != FaultyLine::Step::Kind::kNothing;
       step = line.Next(now)) {
    now += step.wait;
    if (step.kind != FaultyLine::Step::Kind::kSend) continue;
    received += step.bytes;
    pieces.push_back(step.bytes);
    EXPECT_EQ(step.bytes.find("o.k."), std::string::npos);
  }
  EXPECT_EQ(received, "RamBackup\r\nSaving ....o.k.\r\n<\x1a");
  EXPECT_GE(pieces.size(), 4u);
  EXPECT_GE(now, 2'000);
}

}  // namespace
}  // namespace ostrel::simulator
