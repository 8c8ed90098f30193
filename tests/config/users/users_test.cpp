#include "config/users/users.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "base/text.h"
#include "config/users/login_program.h"
#include "config/users/users_texts.h"
#include "kit/kit.h"

namespace ostrel {
namespace {

using Lines = std::vector<std::string>;

const std::string kWho = "whoami", kRight = "passwort- 0,dr,!";
const std::string kAll = ";fori 0..5,i,passwort- .,!,!,!,ni";
const std::string kGate = ",VER?-,^,if,VER- QOL,else,0,eif,!", kPorts = "pwlrelease# *";

struct UsersTest : testing::Test {
  kit::World world;
  kit::Run run{world};
  Session& session = run.session;
  Users users{run.desk};

  void SetUp() override {
    session.onDeviceChange = [this] { users.DeviceChanged(); };
    ASSERT_TRUE(session.ConnectionOpen());
    Select(true, "130");
  }
  /// Another device: its first user has 1 minute and grant 1, the administrator 30 and 5.
  void Select(bool protects, const std::string& feature) {
    session.DeviceChange("B1:Nord", "KT-X", "2.27", "1");
    const std::string set = protects ? "1" : "0";
    world.server.answers = {
        {"B1:" + kWho, "User 2"},
        {"B1:" + kRight, "4"},
        {"B1:" + kAll, "0\r\n1\r\n1\r\n" + set + "\r\n5\r\n30\r\n1\r\n4\r\n15\r\n0\r\n9\r\n-1" +
                           "\r\n0\r\n0\r\n99999\r\n0\r\n0\r\n0"},
        {"B1:" + kGate, feature},
        {"B1:" + kPorts, "PWLrel 1=1\r\nPWLrel 2=0\r\nPWLrel 4=1"}};
    world.server.sent.clear();
    world.dialogs.shown.clear();
    world.dialogs.asked.clear();
  }
  Lines Sent() const {
    Lines lines;
    for (const std::string& line : world.server.sent) lines.push_back(line.substr(3));
    return lines;
  }
};

/// "password 2", "set 2 4 15", "ports 01?" (COM1, 2, 4; ? = not given), "unprotect", "login 3"
Ending Do(Users& of, const std::string& act) {
  std::istringstream words(act);
  std::string verb, flags;
  int user = 0, grant = 0, minutes = 0;
  words >> verb;
  if (verb == "ports") {
    words >> flags;
    PortExceptions ports{flags[0] == '1', flags[1] == '1', {}};
    if (flags[2] != '?') ports.com4 = flags[2] == '1';
    return of.SetPorts(ports);
  }
  words >> user >> grant >> minutes;
  if (verb == "password") return of.SetPassword(user);
  if (verb == "set") return of.SetUser(user, grant, minutes);
  return verb == "login" ? of.LogIn(user) : of.Unprotect();
}

Lines Split(const std::string& text, char separator) {
  Lines parts;
  std::istringstream in(text);
  for (std::string part; std::getline(in, part, separator);) parts.push_back(part);
  return parts;
}

constexpr auto D = Ending::kDone, C = Ending::kNotConfirmed, F = Ending::kFailed;

TEST_F(UsersTest, LinesAndMessages) {
  const struct {
    int feature;  // 0: no administrator's password
    const char *act, *typed;
    bool yes;
    const char* answer;  // to the last line; null = none comes
    const char* sent;    // behind the users, which all but a login reads first; G the gate, P ports
    const char* shown;
    Ending outcome;
  } cases[] = {
      {0, "password 1", "1,2,3,4,007,007", false, "", "passwort 1 0=007 007", "1257 1257 1155", D},
      {0, "password 2", "x,x", true, "", "", "10342", F},
      {130, "password 2", "geheim,nü,nü", false, "", "passwort 2 geheim=nü nü", "1155", D},
      {130, "password 2", "geheim,x", true, "", "", "", C},
      {130, "password 2", "geheim,0,0", false, "", "", "", C},
      {130, "password 1", "geheim,0,0", true, "", "passwort 1 geheim=0 0", "1155", D},
      {130, "password 3", "geheim,a=b", true, "", "", "20400", C},
      {130, "password 3", "geheim,a=b,x,c=,x", true, "", "passwort 3 geheim=x x",
       "20400 20400 1155", D},
      {130, "password 3", "geheim,x,x", false, nullptr, "passwort 3 geheim=x x", "1259", F},
      {130, "password 3", "geheim,geheim2,geheim2", false, "<<what: passwort 3 GEHEIM=geheim2>>",
       "passwort 3 geheim=geheim2 geheim2", "1280", F},
      {0, "set 2 4 15", "0", true, "", "", "10342", F},
      {130, "set 2 4 15", "geheim", false, "", "passwort* 2 geheim=15 4", "1155", D},
      {130, "set 1 4 65535", "geheim", false, "", "passwort* 1 geheim=65535 4", "1155", D},
      {130, "set 0 2 0", "geheim", false, "", "passwort* 1 geheim=30 5,passwort* 0 geheim=0 2",
       "1155", D},
      {130, "set 2 4 15", "", true, "", "", "", C},
      {130, "set 2 4 15", "geheim", false, nullptr, "passwort* 2 geheim=15 4", "1299", F},
      {130, "set 2 4 15", "geheim", true, "<<no>>", "", "1280 1156", F},
      {130, "unprotect", "geheim", true, "", "passwort 1 geheim=0 0", "1155", D},
      {130, "unprotect", "geheim", false, "", "", "", C},
      {0, "unprotect", "", true, "", "passwort 1 0=0 0", "1155", D},
      {130, "ports 010", "geheim", false, "",
       "G|,PWLrel 1 geheim=0,PWLrel 2 geheim=1,PWLrel 4 geheim=0", "1155", D},
      {130, "ports 01?", "geheim", false, "",
       "G|P|,PWLrel 1 geheim=0,PWLrel 2 geheim=1,PWLrel 4 geheim=1", "1155", D},
      {129, "ports 11?", "geheim", false, "", "G|,PWLrel 1 geheim=1,PWLrel 2 geheim=1", "1155", D},
      {129, "ports 111", "geheim", false, "129", "G", "1496", F},
      {130, "ports 10?", "geheim", false, "", "", "", C},
      {130, "ports 111", "geheim", false, "<<no>>", "G", "1496", F},
      {130, "ports 11?", "geheim", false, nullptr, "G", "1299 1156", F},
      {130, "login 3", "geheim", false, "ok", "login 3 geheim", "", D},
      {130, "login 3", "geheim", false, "<<login 3 geheim>>", "login 3 geheim", "1280", F},
      {130, "login 3", "geheim", false, "Zugriff verweigert", "login 3 geheim", "1280", F},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.act) + " with " + c.typed + ": " + c.sent);
    Select(c.feature != 0, std::to_string(c.feature));
    Lines sent = Split(c.sent, '|');
    for (std::string& line : sent) line = line == "G" ? kGate : line == "P" ? kPorts : line;
    if (*c.act != 'l') sent.insert(sent.begin(), kAll);
    const std::string last = "B1:" + sent.back();
    if (c.answer == nullptr) {
      world.server.answers.erase(last);
    } else if (sent.back() != kAll || *c.answer != 0) {
      world.server.answers[last] = c.answer;
    }
    world.dialogs.typed = Split(c.typed, ',');
    world.dialogs.yesNo = {c.yes};
    EXPECT_EQ(Do(users, c.act), c.outcome);
    EXPECT_EQ(Sent(), sent);
    EXPECT_EQ(world.dialogs.Numbers(), c.shown);
    for (const Message& message : world.dialogs.shown) {
      EXPECT_EQ(LowerAscii(message.text).find("geheim"), std::string::npos) << message.text;
    }
  }
}

TEST_F(UsersTest, Questions) {
  world.dialogs.typed = {"0", "0", "0"};
  for (const char* act : {"password 2", "unprotect", "login 3"}) Do(users, act);
  EXPECT_EQ(
      world.dialogs.asked,
      (Lines{"Master Password | Please enter admin password.",
             "User 2 – New Password | User 2: New Password",
             "User 2 – New Password | User 2: Confirm New Password", "Remove the password? User 2",
             "If you continue the device is accessable by anyone. Continue?",
             "User 3 | User 3: Please enter user's password."}));
}

TEST_F(UsersTest, PasswordsThatWouldChangeALineAreNeitherSentNorShown) {
  for (const char* bad :
       {"", " ", "ab c", "a\tb", "a\rb", "a\x7f", "a\"b", "a'b", "a,b", "a;b", "a:b", "a=b",
        "x\xc2\xa0", "x\xc2\x85", "\xe2\x82\xac", "\xfc", "a\xc3"}) {
    Select(true, "130");
    world.dialogs.typed = {bad};
    EXPECT_TRUE(users.LogIn(1) == F && world.server.sent.empty()) << bad;
    EXPECT_EQ(world.dialogs.shown[0].text, run.messages.Caption(text::kPasswordProblem));
  }
  for (const char* good : {"0", "0042", "a-b_!#*", "\xc3\xbc\xc3\x9f", "x\xc2\xa1"}) {
    EXPECT_EQ(PasswordProblem(good), 0) << good;
  }
}

TEST_F(UsersTest, ReadsAllOrNothingMoreThanThatThereIsNoAdministrator) {
  EXPECT_TRUE(users.PWReadAll());
  EXPECT_EQ(Sent(), (Lines{kWho, kRight, kAll, kGate, kPorts}));
  const UserState& state = users.State();
  EXPECT_TRUE(state.user == 2 && state.grant == 4 && state.protects == true);
  EXPECT_TRUE(state.users[1]->passwordSet && state.users[2]->timeout == 15);
  EXPECT_TRUE(state.users[3]->grant == 9 && state.users[3]->timeout == -1) << "as read";
  EXPECT_TRUE(state.ports->com1 && !state.ports->com2 && state.ports->com4 == true);

  Select(false, "130");
  EXPECT_FALSE(state.users[2]) << "of the device before";
  EXPECT_TRUE(users.PWReadAll());
  EXPECT_EQ(Sent(), (Lines{kWho, kRight, kAll}));
  EXPECT_TRUE(state.protects == false && state.users[1] && !state.users[2] && !state.ports);

  const struct {
    std::string line;
    const char *answer, *shown;
  } faults[] = {{kWho, "nobody", "1280"},   {kWho, "<<no>>", "1280"},
                {kRight, "<<no>>", "1280"}, {kAll, "1\r\n2", "1280"},
                {kAll, nullptr, "1299"},    {kGate, nullptr, "1299"},
                {kPorts, "1\r\n0", "1280"}, {kAll, "", "1280"},
                {kRight, "4 of 5", "1280"}, {kPorts, "PWLrel 1=<<no>>\r\nPWLrel 2=0", "1280"}};
  for (const auto& fault : faults) {
    Select(true, "130");
    EXPECT_TRUE(users.PWReadAll());
    world.server.answers.erase("B1:" + fault.line);
    if (fault.answer != nullptr) world.server.answers["B1:" + fault.line] = fault.answer;
    EXPECT_FALSE(users.PWReadAll()) << fault.line;
    EXPECT_EQ(world.dialogs.Numbers(), fault.shown) << fault.line;
    EXPECT_EQ(Sent().back(), fault.line);
    EXPECT_FALSE(state.ports || (fault.line == kAll && state.users[1])) << "of the time before";
    EXPECT_FALSE(fault.answer == nullptr && (state.user || state.users[1])) << "lost";
  }
  Select(true, "<<VER: unknown>>");
  EXPECT_TRUE(users.PWReadAll());
  EXPECT_TRUE(state.ports && !state.ports->com4) << "who does not know the question has no COM4";
  world.server.answers.erase("B1:logout");
  EXPECT_FALSE(users.LogOut());
  EXPECT_EQ(world.dialogs.Numbers(), "1299");
}

TEST_F(UsersTest, TheGrantInForceIsNotTheGuestsOwn) {
  const struct {
    const char *who, *inForce, *excepted;
    std::optional<int> own;
  } cases[] = {{"user 0", "2", "0", 2},
               {"user 0", "2", "1", 2},
               {"user 0", "5", "0", 5},
               {"user 0", "5", "1", {}},
               {"user 2", "4", "0", {}}};
  for (const auto& c : cases) {
    Select(true, "129");
    const std::string records = world.server.answers["B1:" + kAll].substr(4);
    world.server.answers["B1:" + kWho] = c.who;
    world.server.answers["B1:" + kRight] = c.inForce;
    world.server.answers["B1:" + kAll] = std::string("0\r\n") + c.inForce + records;
    world.server.answers["B1:" + kPorts] = std::string("PWLrel 1=0\r\nPWLrel 2=") + c.excepted;
    EXPECT_TRUE(users.PWReadAll());
    EXPECT_EQ(users.State().users[0]->grant, c.own) << c.who << c.inForce << c.excepted;
  }
}

TEST_F(UsersTest, WhatWasNotReadIsNotWritten) {
  // The administrator's record stands behind the guest's, and is written along with his settings.
  const auto set = [&](const std::string& records) {
    Select(true, "130");
    world.server.answers["B1:" + kAll] = records;
    world.dialogs.typed = {"geheim"};
    return users.SetUser(0, 2, 0);
  };
  const std::string guest = "0\r\n1\r\n1\r\n", more = "\r\n1\r\n4\r\n15\r\n0\r\n5\r\n9";
  const std::string others = more + more;
  for (const char* record : {"1\r\nx\r\ny", "<<no>>\r\n5\r\n30", "1\r\n5\r\n", "1\r\n5",
                             "1\r\n5\r\n30\r\n5", "1\r\n5\r\n30 h", "1\r\n5.5\r\n30",
                             "1\r\n5\r\n99999999999", "1\r\n5\r\nnan", "set\r\n5\r\n30"}) {
    EXPECT_EQ(set(guest + record + others), F) << record;
    EXPECT_EQ(world.dialogs.Numbers(), "1280 1156") << record;
    EXPECT_EQ(Sent(), Lines{kAll}) << record;
  }
  set(guest + "1\r\n7\r\n100000" + others + "\r\n");
  EXPECT_EQ(Sent().back(), "passwort* 1 geheim=100000 7,passwort* 0 geheim=0 2");
  world.server.answers["B1:" + kPorts] = "PWLrel 1=1\r\nPWLrel 2=0\r\nPWLrel 4=7";
  world.dialogs.typed = {"geheim"};
  EXPECT_EQ(users.SetPorts({false, true, {}}), F);
  EXPECT_EQ(Sent().back(), kPorts) << "a flag that is neither";
}

TEST_F(UsersTest, TheAcceptedPasswordIsOfferedUntilDeviceOrUserChange) {
  const auto offered = [&](const char* act, const Lines& typed) {
    world.dialogs.typed = typed;
    world.dialogs.offered.clear();
    Do(users, act);
    return world.dialogs.offered.at(0);
  };
  world.server.answers["B1:passwort 2 x=y y"] = world.server.answers["B1:passwort 1 x=new new"] =
      "";
  EXPECT_EQ(offered("password 2", {"x", "y", "y"}), "") << "that of another user";
  EXPECT_EQ(offered("password 1", {"x", "new", "new"}), "");
  EXPECT_EQ(offered("set 2 1 1", {}), "new");
  Select(true, "130");
  world.server.answers["B1:login 1 one"] = world.server.answers["AA:login 1 other"] = "";
  EXPECT_EQ(offered("set 2 1 1", {}), "");
  EXPECT_EQ(offered("login 1", {"one"}), "");
  EXPECT_TRUE(users.LogIn(*session.ToStation("AA:"), 1, "other"));
  EXPECT_EQ(offered("set 2 1 1", {}), "one") << "of another station";
  world.server.answers["B1:logout"] = world.server.answers["B1:login 2 two"] = "";
  EXPECT_TRUE(users.LogOut());
  EXPECT_EQ(offered("set 2 1 1", {}), "");
  for (const char* act : {"login 1", "login 2"}) offered(act, {act[6] == '1' ? "one" : "two"});
  EXPECT_EQ(offered("set 2 1 1", {}), "") << "another user";
}

TEST(LoginProgram, IsRaisedElseStartedFromItsFolderElseMissing) {
  kit::World world;
  const std::filesystem::path top = world.desktop.folder;
  world.desktop.folder = top / "curr";
  EXPECT_FALSE(LoginProgramShow(world.desktop));
  for (const char* folder : {"curr", "Login"}) {  // the latter goes before
    std::filesystem::create_directory(top / folder);
    const std::filesystem::path program = top / folder / "OstrelLogin.exe";
    std::ofstream(program) << "x";
    EXPECT_TRUE(LoginProgramShow(world.desktop));
    EXPECT_EQ(world.desktop.started.back(), program.string() + " /start=login");
  }
  world.desktop.windows = {"login"};
  EXPECT_TRUE(LoginProgramShow(world.desktop));
  EXPECT_EQ(world.desktop.started.size(), 2u);
  world.desktop.folder = top;  // is removed at the end
}

}  // namespace
}  // namespace ostrel
