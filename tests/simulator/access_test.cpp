#include "steps.h"

namespace ostrel::simulator {
namespace {

TEST(Access, GrantDecidesByInterfaceAndDirection) {
  struct Case {
    int grant;
    std::string connected, overBus;  // what is allowed: r = reading, w = writing
  };
  const Case cases[] = {{0, "", ""},   {1, "r", ""},   {2, "r", "r"},
                        {3, "rw", ""}, {4, "rw", "r"}, {5, "rw", "rw"}};
  const auto check = [](const std::string& station, const Case& c, const std::string& allowed) {
    SCOPED_TRACE(station + " grant " + std::to_string(c.grant));
    Bus bus;
    const std::string total = bus.Answer(station + "RegTAPSUM#");
    const std::string grant = std::to_string(c.grant);
    ASSERT_EQ(bus.Answer(station + "passwort 1 0=007 007,passwort* 0 007=0 " + grant), "");
    ASSERT_EQ(bus.Answer(station + "logout"), "");
    const bool reads = allowed.find('r') != std::string::npos;
    const std::string refusal = station == "B1:" ? "<<Zugriff verweigert>>" : "<<access denied>>";
    EXPECT_EQ(bus.Answer(station + "RegTAPSUM#"), reads ? total : refusal);
    const bool writes = allowed.find('w') != std::string::npos;
    EXPECT_EQ(bus.Answer(station + "dir,RegTAPSTATCL*=0,dir") == refusal, !writes);
    EXPECT_EQ(bus.Answer(station + "0,if,RegTAPSTATCL*=0,eif") == refusal, !writes);
    EXPECT_EQ(bus.Answer(station + "passwort- 0,dr,!"), grant);
    EXPECT_EQ(bus.Answer(station + "dirs-,!"), c.grant == 5 ? "1" : "0");
    for (const std::string line : {"ver.", "ver", "dirn_", "station&#", "sysSN#", "whoami", ""}) {
      EXPECT_NE(bus.Answer(station + line), refusal) << line;
    }
    ASSERT_EQ(bus.Answer(station + "login 1 007"), "");
    EXPECT_EQ(bus.Answer(station + "RegTAPSUM#"), writes ? "0" : total) << "before any of it";
  };
  for (const Case& c : cases) {
    check("AA:", c, c.connected);
    check("B1:", c, c.overBus);
  }
}

TEST(Access, UsersLogInAndOut) {
  ExpectAnswers({
      {"B2::", ""},
      {"RegTAPSTATCL*=0", "<<access denied>>"},
      {"fapph f 00", "<<access denied>>"},
      {"fapps_ f \"\"", "<<access denied>>"},
      {"login 1 04711", "<<wrong password>>"},
      {"login 3 0", "<<wrong password>>"},
      {"login 2 1234", ""},
      {"whoami", "user 2"},
      {"fori 0..3,i,passwort- .,!,!+,!+,ni", "040\r\n150\r\n1415\r\n050"},
      {"whoami", "user 2", 14 * kMinute},
      {"whoami", "user 0", 15 * kMinute},
      {"login 1 4711", ""},
      {"RegTAPSTATCL*=0", "", 99999 * kMinute},
  });
}

TEST(Access, GuessingMustPause) {
  ExpectAnswers({
      {"B2:login 1 1", "<<wrong password>>"},
      {"B2:login 1 2", "<<wrong password>>"},
      {"B2:login 1 3", "<<wrong password>>"},
      {"B2:login 1 4711", "<<login blocked>>"},
      {"B2:login 1 4711", "", kMinute},
      {"B2:passwort* 0 1=0 5", "<<wrong password>>"},
      {"B2:PWLrel 1 1=1", "<<wrong password>>"},
      {"B2:passwort 2 1=9 9", "<<wrong password>>"},
      {"B2:passwort 2 4711=9 9", "<<login blocked>>"},
  });
}

TEST(Access, PasswordsAreSetAndRemoved) {
  ExpectAnswers({
      {"passwort 2 0=1 1", "<<no administrator>>"},
      {"passwort 1 0=0042 42", "<<passwords differ>>"},
      {"passwort 1 0=1234567890123456 1234567890123456", "<<length of password>>"},
      {"passwort 1 0=0042 0042,passwort 2 0042=01 01,passwort 3 0=3 3", ""},
      {"passwort* 1 0042=30 5,passwort* 2 0042=0 4,passwort* 3 0042=1 5", ""},
      {"whoami,passwort- 0,dr,!", "user 1\r\n5"},
      {"logout,passwort- 0,dr,!", "1"},
      {"passwort 2 01=1 1", "<<access denied>>"},
      {"login 2 1", "<<wrong password>>"},
      {"login 2 01", ""},
      {"passwort 2 01=00 00,logout,login 2 00", ""},
      {"passwort 2 0042=0 0,passwort- 2,!", "0"},
      {"!login 1 0042", "<<unknown: !login>>"},
      {"passwort 1 0042=0 0", ""},
      {"whoami,passwort- 0,dr,!", "user 0\r\n5"},
  });
}

TEST(Access, AnExceptedInterfaceIsFree) {
  ExpectAnswers({
      {"passwort 1 0=1 1,passwort* 0 1=0 3,logout", ""},
      {"PWLrel 1 1=1,PWLrel 4 1=1", ""},
      {"PWLrelease# *", "PWLrel 1=1\r\nPWLrel 2=0\r\nPWLrel 4=1"},
      {"pwlrelease# 1,passwort- 0,dr,!", "1\r\n5"},
      {"PWLrel 3 1=1", "<<index out of range>>"},
      {"PWLrel 1 1=0,logout,passwort- 0,dr,!", "3"},
      {"B1:PWLrelease# *", "PWLrel 1=0\r\nPWLrel 2=0"},
      {"B2:login 1 4711", ""},
      {"B2:PWLrel 1 4711=1,logout,passwort- 0,dr,!", "2"},
  });
}

}  // namespace
}  // namespace ostrel::simulator
