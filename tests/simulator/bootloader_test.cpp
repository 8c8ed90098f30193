#include "simulator/bootloader.h"

#include "simulator/faulty_line.h"
#include "steps.h"

namespace ostrel::simulator {
namespace {

TEST(Bootloader, SavesAndRestoresTheDevice) {
  const std::string total = Bus().Answer("RegTAPSUM#"), unknown = "Error: unknown command";
  ExpectAnswers({
      {0, "ramrestore", "<<unknown: ramrestore>>"},
      {0, "sysreset=0.9,station#", ""},
      {0, "aa:ver", "KT-X Urlader V2.14"},
      {0, "B1:ver", unknown},
      {0, "all,ver", unknown},
      {0, "RAMBackupTime", "---"},
      {0, "RAMRestore", "Error: no backup"},
      {90'000, "RamBackup", "Saving ....o.k."},
      {90'000, "Reset", ""},
      {0, "RegTAPSTATCL*=0,RegSW 1=99,LName 1=\"x\",AnaMap 1=1.01,fcreate! = f,utcTZ=3", ""},
      {0, "passwort 1 0=1 1,RegTAPSUM#", "0"},
      {0, "sysreset=0.9", ""},
      {0, "RAMRestore", "o.k."},
      {0, "RAMBackupTime", "05.01.2026 08:01:30"},
      {0, "reset", ""},
      {0, "RegTAPSUM#,passwort- 1,!", total + "\r\n0"},
      {0, "RegSW# 1,LName# 1,AnaMap# 1,fsize# f,utcTZ#", "100\r\nTrafo 1\r\n0\r\n-1\r\n1"},
      {0, "B1::", ""},
      {0, "AA:sysreset=0.9", ""},
      {0, "AA::", ""},
      {0, "reset", ""},
      {0, "dir", "AA:"},
      {0, "passwort 1 0=1 1,logout", ""},
      {0, "sysreset=0.9", "<<access denied>>"},
  });
}

TEST(Bootloader, RestartsAreSilent) {
  const std::string name = "Umspannwerk Nord T1";
  ExpectAnswers({
      {0, "RegTAPSTATCL*=0,RegSimul=1,fcreate! = f,passwort 1 0=1 1", ""},
      {0, "sysreset=0", ""},
      {2'999, "B1:dir", kSilence},
      {1, "station#,whoami,passwort- 1,!", name + "\r\nuser 0\r\n1"},
      {0, "login 1 1", ""},
      {0, "RegSimul#,fsize# f", "0\r\n0"},
      {0, "sysreset=0.9,login 1 1", ""},
      {0, "sysreset=590", ""},
      {29'999, "ver", kSilence},
      {1, "station#,passwort- 1,!,RegTAPSUM#,fsize# f", name + "\r\n0\r\n0\r\n-1"},
      {0, "FL@ LOGI#WI 65535 1", ""},
      {0, "B1:sysreset=590", ""},
      {29'999, "all,RegTAPSTAT?-,if,dir,eif", "AA:\r\nB2:\r\nB3:\r\nB6:"},
      {1, "B1:dir,RegTAPSUM#", "B1:\r\n0"},
      {0, "B1:sysreset=0.9", "<<index out of range>>"},
      {0, "sysreset=", "<<index out of range>>"},
      {0, "sysreset 1=0", "<<index out of range>>"},
  });
}

TEST(Bootloader, IsWhatTheConnectedDeviceHas) {
  struct Case {
    std::size_t connected;
    std::string entering, version, saving, time;
  };
  const std::string refused = "<<index out of range>>", done = "Saving ....o.k.",
                    start = "05.01.2026 08:00:00", unknown = "<<unknown: rambackup";
  const Case cases[] = {
      {1, "", "KT-XB Urlader V2.05", done, start},
      {3, "", "LX-X Urlader V2.14", "Error: no flash", "No 2nd flash"},
      {4, "", "KT-XF Urlader V2.14", done, start},
      {5, refused, "KT-XFB Version V2.1.10", unknown + ">>", unknown + "time>>"},
      {8, "", "JS-X Urlader V2.14", done, start},
  };
  for (const Case& c : cases) {
    ExpectAnswers({{0, "sysreset=0.9", c.entering},
                   {0, "ver", c.version},
                   {0, "rambackup", c.saving},
                   {0, "rambackuptime", c.time}},
                  c.connected);
  }
}

TEST(Bootloader, SavingComesInPiecesOverSomeSeconds) {
  Simulation simulation{Bus()};
  simulation.bus.Answer("sysreset=0.9");
  FaultyLine line(simulation);
  for (const char byte : std::string("RamBackup\r")) line.Feed(byte, 0);
  std::string received;
  std::int64_t now = 0;
  for (FaultyLine::Step step; (step = line.Next(now)).kind != FaultyLine::Step::Kind::kNothing;) {
    now += step.wait;
    received += step.bytes + (step.bytes.empty() ? "" : "|");
  }
  EXPECT_EQ(received, "RamBackup\r\nSaving |....|o.|k.\r\n<\x1a|");
  EXPECT_GE(now, 2'000);
}

}  // namespace
}  // namespace ostrel::simulator
