#include "simulator/bootloader.h"

#include "steps.h"

namespace ostrel::simulator {
namespace {

TEST(Bootloader, SavesAndRestoresTheDevice) {
  const std::string total = Bus().Answer("RegTAPSUM#"), unknown = "Error: unknown command";
  ExpectAnswers({
      {"ramrestore", "<<unknown: ramrestore>>"},
      {"sysreset=0.9,station#", ""},
      {"aa:ver", "KT-X Urlader V2.14"},
      {"B1:ver", unknown},
      {"all,ver", unknown},
      {"RAMBackupTime", "---"},
      {"RAMRestore", "Error: no backup"},
      {"RamBackup", "Saving ....o.k.", 90'000},
      {"Reset", "", 90'000},
      {"RegTAPSTATCL*=0,RegSW 1=99,LName 1=\"x\",AnaMap 1=1.01,fcreate! = f,utcTZ=3", ""},
      {"passwort 1 0=1 1,RegTAPSUM#", "0"},
      {"sysreset=0.9", ""},
      {"RAMRestore", "o.k."},
      {"RAMBackupTime", "05.01.2026 08:01:30"},
      {"reset", ""},
      {"RegTAPSUM#,passwort- 1,!", total + "\r\n0"},
      {"RegSW# 1,LName# 1,AnaMap# 1,fsize# f,utcTZ#", "100\r\nTrafo 1\r\n0\r\n-1\r\n1"},
      {"B1::", ""},
      {"AA:sysreset=0.9", ""},
      {"AA::", ""},
      {"reset", ""},
      {"dir", "AA:"},
      {"passwort 1 0=1 1,logout", ""},
      {"sysreset=0.9", "<<access denied>>"},
  });
}

TEST(Bootloader, RestartsAreSilent) {
  const std::string name = "Umspannwerk Nord T1";
  ExpectAnswers({
      {"RegTAPSTATCL*=0,RegSimul=1,fcreate! = f,passwort 1 0=1 1", ""},
      {"sysreset=0", ""},
      {"B1:dir", kSilence, 2'999},
      {"station#,whoami,passwort- 1,!", name + "\r\nuser 0\r\n1", 1},
      {"login 1 1", ""},
      {"RegSimul#,fsize# f", "0\r\n0"},
      {"sysreset=0.9,login 1 1", ""},
      {"sysreset=590", ""},
      {"ver", kSilence, 29'999},
      {"station#,passwort- 1,!,RegTAPSUM#,fsize# f", name + "\r\n0\r\n0\r\n-1", 1},
      {"FL@ LOGI#WI 65535 1", ""},
      {"B1:sysreset=590", ""},
      {"all,RegTAPSTAT?-,if,dir,eif", "AA:\r\nB2:\r\nB3:\r\nB6:", 29'999},
      {"B1:dir,RegTAPSUM#", "B1:\r\n0", 1},
      {"B1:sysreset=0.9", "<<index out of range>>"},
      {"sysreset=", "<<index out of range>>"},
      {"sysreset 1=0", "<<index out of range>>"},
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
      {5, refused, "KT-XFB Version V2.1.10", unknown + ">>", unknown + "time>>"},
      {8, "", "JS-X Urlader V2.14", done, start},
  };
  for (const Case& c : cases) {
    ExpectAnswers({{"sysreset=0.9", c.entering},
                   {"ver", c.version},
                   {"rambackup", c.saving},
                   {"rambackuptime", c.time}},
                  c.connected);
  }
}

TEST(Bootloader, StartsByHandOnEveryDevice) {
  for (const std::size_t connected : {5u, 7u, 9u}) {
    Bus bus({.connected = connected});
    const std::string firmware = bus.Answer("ver"), model = firmware.substr(0, firmware.find(' '));
    bus.StartBootloader();
    EXPECT_EQ(bus.Answer("ver"), model + " Urlader V2.14");
    EXPECT_EQ(bus.Answer("RamBackup"), "Saving ....o.k.");
    EXPECT_EQ(bus.Answer("reset"), "");
    EXPECT_EQ(bus.Answer("ver"), firmware);
  }
}

}  // namespace
}  // namespace ostrel::simulator
