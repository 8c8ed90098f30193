#include "config/users.h"

#include <gtest/gtest.h>

#include <fstream>

#include "app/service.h"
#include "app/texts.h"
#include "config/login_program.h"
#include "kit/kit.h"

namespace ostrel {
namespace {

using Outcome = Users::Outcome;
using Lines = std::vector<std::string>;

const std::string kWho = "whoami", kRight = "passwort- 0,dr,!";
const std::string kAll = ";fori 0..5,i,passwort- .,!,!,!,ni";
const std::string kGate = ",VER?-,^,if,VER- QOL,else,0,eif,!", kPorts = "pwlrelease# *";

struct UsersTest : testing::Test {
  kit::World world;
  Service service{{world.settings, world.factory, world.dialogs, world.clock, world.desktop},
                  {.connection = {}, .language = "eng"}};
  Users& users = service.UserManagement();

  void SetUp() override {
    ASSERT_TRUE(service.ConnectionOpen());
    Select(true, "130");
  }
  /// Another device: its first user has 1 minute and grant 1, the administrator 30 and 5.
  void Select(bool protects, const std::string& feature) {
    service.DeviceChange("B1:Nord", "KT-X", "2.27", "1");
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
  void ExpectNoTraceOf(const std::string& password) {
    for (const Message& message : world.dialogs.shown) {
      EXPECT_EQ(message.text.find(password), std::string::npos) << message.text;
    }
  }
};

const auto password = [](int user) { return [user](Users& of) { return of.SetPassword(user); }; };
const auto settings = [](int user, int grant, int minutes) {
  return [=](Users& of) { return of.SetUser(user, grant, minutes); };
};
const auto ports = [](bool com1, bool com2, std::optional<bool> com4 = {}) {
  return [=](Users& of) { return of.SetPorts({com1, com2, com4}); };
};
const auto unprotect = [](Users& of) { return of.Unprotect(); };
const auto login = [](int user) { return [user](Users& of) { return of.LogIn(user); }; };

TEST_F(UsersTest, LinesQuestionsAndMessages) {
  const std::string master = "Master Password | Please enter admin password.";
  const Lines changing = {master, "User 2 – New Password | New Password",
                          "User 2 – New Password | Confirm New Password"};
  const struct {
    const char* what;
    bool protects;
    std::function<Outcome(Users&)> act;
    Lines typed;
    bool yes;
    const char* answer;  // to the last line; null = none comes
    Lines sent;
    const char* shown;
    Outcome outcome;
    Lines asked = {};  // where it matters
    const char* feature = "130";
  } cases[] = {
      {"first password, twice unequal",
       false,
       password(1),
       {"1", "2", "3", "4", "007", "007"},
       false,
       "",
       {kAll, "passwort 1 0=007 007"},
       "1257 1257 1155",
       Outcome::kDone},
      {"password",
       true,
       password(2),
       {"geheim", "n\xc3\xbc", "n\xc3\xbc"},
       false,
       "",
       {kAll, "passwort 2 geheim=n\xc3\xbc n\xc3\xbc"},
       "1155",
       Outcome::kDone,
       changing},
      {"cancelled at the confirmation",
       true,
       password(2),
       {"geheim", "x", "\x1b"},
       true,
       "",
       {kAll},
       "",
       Outcome::kCancelled,
       changing},
      {"user before the administrator",
       false,
       password(2),
       {"x", "x"},
       true,
       "",
       {kAll},
       "10342",
       Outcome::kFailed},
      {"password not removed",
       true,
       password(2),
       {"geheim", "0", "0"},
       false,
       "",
       {kAll},
       "",
       Outcome::kCancelled},
      {"administrator's removed",
       true,
       password(1),
       {"geheim", "0", "0"},
       true,
       "",
       {kAll, "passwort 1 geheim=0 0"},
       "1155",
       Outcome::kDone},
      {"password over a dead line",
       true,
       password(3),
       {"geheim", "x", "x"},
       false,
       nullptr,
       {kAll, "passwort 3 geheim=x x"},
       "1259",
       Outcome::kFailed},
      {"password that the device repeats",
       true,
       password(3),
       {"geheim", "geheim2", "geheim2"},
       false,
       "<<what: passwort 3 GEHEIM=geheim2>>",
       {kAll, "passwort 3 geheim=geheim2 geheim2"},
       "1280",
       Outcome::kFailed},
      {"new one refused",
       true,
       password(3),
       {"geheim", "a=b"},
       true,
       "",
       {kAll},
       "20340",
       Outcome::kFailed},
      {"settings",
       true,
       settings(2, 4, 15),
       {"geheim"},
       false,
       "",
       {kAll, "passwort* 2 geheim=15 4"},
       "1155",
       Outcome::kDone,
       {master}},
      {"settings of the guest",
       true,
       settings(0, 2, 0),
       {"geheim"},
       false,
       "",
       {kAll, "passwort* 1 geheim=30 5,passwort* 0 geheim=0 2"},
       "1155",
       Outcome::kDone},
      {"settings of the administrator",
       true,
       settings(1, 4, 65535),
       {"geheim"},
       false,
       "",
       {kAll, "passwort* 1 geheim=65535 4"},
       "1155",
       Outcome::kDone},
      {"settings, cancelled",
       true,
       settings(2, 4, 15),
       {},
       true,
       "",
       {kAll},
       "",
       Outcome::kCancelled},
      {"settings over a dead line",
       true,
       settings(2, 4, 15),
       {"geheim"},
       false,
       nullptr,
       {kAll, "passwort* 2 geheim=15 4"},
       "1299",
       Outcome::kFailed},
      {"settings denied",
       true,
       settings(2, 4, 15),
       {"geheim"},
       false,
       "ACCESS DENIED",
       {kAll, "passwort* 2 geheim=15 4"},
       "1280",
       Outcome::kFailed},
      {"settings of an open device",
       false,
       settings(2, 4, 15),
       {"0"},
       true,
       "",
       {kAll},
       "10342",
       Outcome::kFailed},
      {"users unreadable",
       true,
       settings(2, 4, 15),
       {"geheim"},
       true,
       "<<no>>",
       {kAll},
       "1280 1156",
       Outcome::kFailed},
      {"unprotected",
       true,
       unprotect,
       {"geheim"},
       true,
       "",
       {kAll, "passwort 1 geheim=0 0"},
       "1155",
       Outcome::kDone},
      {"unprotected without a password",
       false,
       unprotect,
       {},
       true,
       "",
       {kAll, "passwort 1 0=0 0"},
       "1155",
       Outcome::kDone},
      {"stays protected",
       true,
       unprotect,
       {"geheim"},
       false,
       "",
       {kAll},
       "",
       Outcome::kCancelled,
       {"If you continue the device is accessable by anyone. Continue?"}},
      {"ports",
       true,
       ports(false, true, false),
       {"geheim"},
       false,
       "",
       {kAll, kGate, ",PWLrel 1 geheim=0,PWLrel 2 geheim=1,PWLrel 4 geheim=0"},
       "1155",
       Outcome::kDone,
       {master}},
      {"COM4 stays",
       true,
       ports(false, true),
       {"geheim"},
       false,
       "",
       {kAll, kGate, kPorts, ",PWLrel 1 geheim=0,PWLrel 2 geheim=1,PWLrel 4 geheim=1"},
       "1155",
       Outcome::kDone},
      {"no COM4",
       true,
       ports(true, true),
       {"geheim"},
       false,
       "",
       {kAll, kGate, ",PWLrel 1 geheim=1,PWLrel 2 geheim=1"},
       "1155",
       Outcome::kDone,
       {},
       "129"},
      {"COM4 where there is none",
       true,
       ports(true, true, true),
       {"geheim"},
       false,
       "129",
       {kAll, kGate},
       "1496",
       Outcome::kFailed,
       {},
       "129"},
      {"COM2 not excepted after all",
       true,
       ports(true, false),
       {"geheim"},
       false,
       "",
       {kAll},
       "",
       Outcome::kCancelled},
      {"COM2 not excepted",
       true,
       ports(true, false, true),
       {"geheim"},
       true,
       "",
       {kAll, kGate, ",PWLrel 1 geheim=1,PWLrel 2 geheim=0,PWLrel 4 geheim=1"},
       "1155",
       Outcome::kDone},
      {"gate fails",
       true,
       ports(true, true),
       {"geheim"},
       false,
       "<<no>>",
       {kAll, kGate},
       "1280 1156",
       Outcome::kFailed},
      {"login",
       true,
       login(3),
       {"geheim"},
       false,
       "ok",
       {"login 3 geheim"},
       "",
       Outcome::kDone,
       {"User 3 | Please enter user's password."}},
      {"wrong login",
       true,
       login(3),
       {"geheim"},
       false,
       "<<login 3 geheim>>",
       {"login 3 geheim"},
       "1280",
       Outcome::kFailed},
      {"refused login",
       true,
       login(3),
       {"geheim"},
       false,
       "Zugriff verweigert",
       {"login 3 geheim"},
       "1280",
       Outcome::kFailed},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Select(c.protects, c.feature);
    const std::string last = "B1:" + c.sent.back();
    if (c.answer == nullptr) {
      world.server.answers.erase(last);
    } else if (last != "B1:" + kAll || *c.answer != 0) {
      world.server.answers[last] = c.answer;
    }
    world.dialogs.typed = c.typed;
    world.dialogs.yesNo = {c.yes};
    EXPECT_EQ(c.act(users), c.outcome);
    EXPECT_EQ(Sent(), c.sent);
    EXPECT_EQ(world.dialogs.Numbers(), c.shown);
    if (!c.asked.empty()) {
      EXPECT_EQ(world.dialogs.asked, c.asked);
    }
    ExpectNoTraceOf("geheim");
    ExpectNoTraceOf("GEHEIM");
  }
}

TEST_F(UsersTest, PasswordsThatWouldChangeALineAreNeitherSentNorShown) {
  for (const char* bad :
       {"", " ", "ab c", "a\tb", "a\rb", "a\x7f", "a\"b", "a'b", "a,b", "a;b", "a:b", "a=b",
        "x\xc2\xa0", "x\xc2\x85", "\xe2\x82\xac", "\xfc", "a\xc3"}) {
    Select(true, "130");
    world.dialogs.typed = {bad};
    EXPECT_EQ(users.LogIn(1), Outcome::kFailed) << bad;
    EXPECT_EQ(Sent(), Lines{}) << bad;
    EXPECT_EQ(world.dialogs.Numbers(), "20340") << bad;
    EXPECT_EQ(world.dialogs.shown[0].text, service.Texts().Caption(text::kPasswordProblem));
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
  EXPECT_TRUE(state.users[1]->passwordSet && state.users[1]->timeout == 30);
  EXPECT_TRUE(state.users[2]->grant == 4 && state.users[2]->timeout == 15);
  EXPECT_TRUE(state.users[3]->grant == 5 && state.users[3]->timeout == 0) << "beyond the range";
  EXPECT_TRUE(state.ports->com1 && !state.ports->com2 && state.ports->com4 == true);

  Select(false, "130");
  EXPECT_FALSE(state.users[2]) << "of the device before";
  EXPECT_TRUE(users.PWReadAll());
  EXPECT_EQ(Sent(), (Lines{kWho, kRight, kAll}));
  EXPECT_TRUE(state.protects == false && state.users[1] && !state.users[2] && !state.ports);

  Select(true, "129");
  EXPECT_TRUE(users.PWReadAll());
  EXPECT_FALSE(state.ports->com4);

  const struct {
    std::string line;
    const char *answer, *shown;
  } faults[] = {{kWho, "nobody", "1280"},   {kWho, "<<no>>", "1280"}, {kRight, "<<no>>", "1280"},
                {kAll, "1\r\n2", "1280"},   {kAll, nullptr, "1299"},  {kGate, nullptr, "10012"},
                {kPorts, "1\r\n0", "1280"}, {kAll, "", "1280"}};
  for (const auto& fault : faults) {
    Select(true, "130");
    world.server.answers.erase("B1:" + fault.line);
    if (fault.answer != nullptr) world.server.answers["B1:" + fault.line] = fault.answer;
    EXPECT_FALSE(users.PWReadAll()) << fault.line;
    EXPECT_EQ(world.dialogs.Numbers(), fault.shown) << fault.line;
    EXPECT_EQ(Sent().back(), fault.line);
    EXPECT_FALSE(state.ports);
  }
}

TEST_F(UsersTest, TheAcceptedPasswordIsOfferedUntilTheDeviceChanges) {
  const auto offered = [&](const std::function<Outcome(Users&)>& act, const Lines& typed) {
    world.dialogs.typed = typed;
    world.dialogs.offered.clear();
    act(users);
    return world.dialogs.offered.at(0);
  };
  for (const char* line : {"login 2 two", "passwort 2 x=y y", "passwort 1 x=new new"}) {
    world.server.answers[std::string("B1:") + line] = "";
  }
  EXPECT_EQ(offered(login(2), {"two"}), "");
  EXPECT_EQ(offered(password(2), {"x", "y", "y"}), "") << "that of another user";
  EXPECT_EQ(offered(password(1), {"x", "new", "new"}), "");
  EXPECT_EQ(offered(settings(2, 1, 1), {}), "new");
  Select(true, "130");
  world.server.answers["B1:login 1 one"] = "";
  EXPECT_EQ(offered(settings(2, 1, 1), {}), "");
  EXPECT_EQ(offered(login(1), {"one"}), "");
  EXPECT_EQ(offered(settings(2, 1, 1), {}), "one");
  world.server.answers["AA:login 1 other"] = "";
  EXPECT_TRUE(users.LogIn("AA:", 1, "other"));
  EXPECT_EQ(offered(settings(2, 1, 1), {}), "one") << "of another station";
}

TEST(LoginProgram, IsRaisedElseStartedFromItsFolderElseMissing) {
  kit::World world;
  const auto start = [&](const std::filesystem::path& program) {
    world.desktop.started.clear();
    EXPECT_TRUE(LoginProgramShow(world.desktop));
    EXPECT_EQ(world.desktop.started, Lines{program.string() + " /start=login"});
  };
  const std::filesystem::path own = world.desktop.folder / "curr";
  const std::filesystem::path beside = world.desktop.folder / "Login";
  for (const auto& folder : {own, beside}) std::filesystem::create_directory(folder);
  world.desktop.folder = own;
  EXPECT_FALSE(LoginProgramShow(world.desktop));
  std::ofstream(own / "OstrelLogin.exe") << "x";
  start(own / "OstrelLogin.exe");
  std::ofstream(beside / "OstrelLogin.exe") << "x";
  start(beside / "OstrelLogin.exe");
  world.desktop.windows = {"login"};
  world.desktop.started.clear();
  EXPECT_TRUE(LoginProgramShow(world.desktop));
  EXPECT_TRUE(world.desktop.started.empty());
  world.desktop.folder = own.parent_path();  // is removed at the end
}

}  // namespace
}  // namespace ostrel
