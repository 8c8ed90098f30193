// The link that gets lost, what tokens send and to whom, and what happens now and then.

#include "device/session.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "base/texts.h"
#include "kit/kit.h"

namespace ostrel {
namespace {

struct SessionTest : testing::Test {
  SessionTest() {
    world.server.answers = {{"B1:dirn_", "B1:Nord"}, {"B1:ver.", "KT-XB+;V2.10"},
                            {"B1:sysSN#", "123"},    {"B1:dd-", ""},
                            {"AA:dirn", "AA:x"},     {"B1:RegTAPSTATCL*=0", ""}};
  }
  std::ptrdiff_t Sent(const std::string& line) const {
    return std::count(world.server.sent.begin(), world.server.sent.end(), line);
  }
  Session& Start() { return run.emplace(world).session; }
  Session& Select() {
    EXPECT_TRUE(Start().DeviceSelectByAddress("B1:"));
    world.server.sent.clear();
    world.dialogs.shown.clear();
    return run->session;
  }
  /// The line is lost while nothing is sent.
  void Lose() {
    world.server.fails["CStatus"] = ObjectError(10015, "");
    run->session.AliveTick(0, true);
    world.server.fails.clear();
  }

  kit::World world;
  std::optional<kit::Run> run;
};

TEST_F(SessionTest, NowAndThenARegulatorIsToldThatTheProgramLives) {
  Session& session = Select();
  const struct {
    int interval;
    bool idle, lost;
    const char* type;
    int sent;
  } steps[] = {{600000, true, false, "KT-X", 0}, {1, true, false, "KT-X", 1},
               {600000, true, false, "KT-X", 1}, {1, false, false, "KT-X", 1},
               {1, true, false, "KT-X", 2},      {600001, true, true, "KT-X", 2},
               {1, true, false, "KT-X", 2},      {600001, true, false, "KT-XF", 2}};
  for (const auto& step : steps) {
    session.DeviceChange("B1:Nord", step.type, "2.27", "123");
    if (step.lost) Lose();
    session.AliveTick(step.interval, step.idle);
    EXPECT_EQ(Sent("B1:dd-"), step.sent) << &step - steps;
    if (step.lost) session.ConnectionReselect();
  }
}

TEST_F(SessionTest, AfterALossNothingReachesAnotherDeviceUnasked) {
  const struct {
    const char *version, *serial;
    const char* messages;
    const char* firmware;
  } cases[] = {{"KT-XB+;V2.10", "123", "", "2.10"},   {"KT-XB+;V2.27", "123", "", "2.27"},
               {"KT-XB+;V2.1", "124", "20280", ""},   {"KT-X+;V2.10", "123", "20280", ""},
               {"KT-XB+;V2.1", "<<x>>", "20280", ""}, {"<<no>>", "123", "20280", ""}};
  for (const auto& c : cases) {
    world.server.answers["B1:ver."] = "KT-XB+;V2.10";
    world.server.answers["B1:sysSN#"] = "123";
    Session& session = Select();
    const std::optional<Writing> token = session.ToWrite();
    Lose();
    EXPECT_FALSE(token->Send("RegTAPSTATCL*=0"));
    EXPECT_TRUE(world.server.sent.empty()) << "to whom?";

    world.dialogs.shown.clear();
    world.server.answers["B1:ver."] = c.version;
    world.server.answers["B1:sysSN#"] = c.serial;
    const bool same = *c.messages == 0;
    EXPECT_EQ(session.ToRead().has_value(), same) << c.version << c.serial;
    EXPECT_EQ(world.dialogs.Numbers(), c.messages);
    EXPECT_TRUE(!same || session.Selected().GetFW() == c.firmware) << c.firmware;
    EXPECT_TRUE(session.ToRead()) << "reading is possible";
    for (const auto& writing : {session.ToWrite(), token, session.ToStation("B2:")}) {
      world.server.sent.clear();
      EXPECT_EQ(writing && writing->Try("RegTAPSTATCL*=0").error.code == 0,
                same && writing && writing->Address() == "B1:")
          << c.version << c.serial;
      EXPECT_EQ(Sent("B1:RegTAPSTATCL*=0") != 0, same && writing->Address() == "B1:");
    }
    EXPECT_EQ(session.ToOnline() != nullptr, same);
    EXPECT_EQ(session.DeviceSelectByAddress("B1:") && session.ToWrite(), *c.version != '<')
        << "selected anew, where it tells what it is";
  }
}

TEST_F(SessionTest, AStationThatRefusesToTellWhatItIs) {
  const struct {
    const char *type, *version, *answer;  // of the row; to "ver.", empty: none
    bool selected;
    const char *typ, *messages;
  } cases[] = {
      {"kt-xb+", "V2.10", "access denied", true, "KT-XB", ""},
      {"kt-xb+", "V2.10", "lx-x;V2.21", true, "LX-X", ""},
      {"", "", "Zugriff verweigert", false, "", "1280"},
      {"Access denied", "", "Access denied", false, "", "1280"},
      {"kt-xb+", "V2.10", "", false, "", "10012"},
  };
  world.server.answers["B1:sysSN#"] = "ACCESS DENIED";
  for (const auto& c : cases) {
    Session& session = Start();
    world.dialogs.shown.clear();
    world.server.answers["B1:ver."] = c.answer;
    if (*c.answer == 0) world.server.answers.erase("B1:ver.");
    const auto choose = [&c](StationList&, const std::string&) {
      return StationChoice{Station{"B1:", "Nord", c.type, c.version, false}, {}};
    };
    EXPECT_EQ(session.DeviceSelect(choose, {}), c.selected) << c.answer;
    EXPECT_EQ(session.Selected().Typ(), c.typ) << c.answer;
    EXPECT_EQ(session.Selected().Serial(), "");
    EXPECT_EQ(world.dialogs.Numbers(), c.messages) << c.answer;
  }
  EXPECT_FALSE(Start().DeviceSelectByAddress("B1:"));
}

TEST_F(SessionTest, TheAnswerTimeoutIsSetForNowAndLater) {
  world.settings.WriteShared(keys::kServerMisc, "DefTimeout_s", "99");
  Session& session = Start();
  EXPECT_EQ(
      world.dialogs.shown.at(0).text,
      "Entered value is out of range!\nThe following value is used instead: DefTimeout_s = 15");
  ASSERT_TRUE(session.ConnectionOpen());
  EXPECT_EQ(session.DefTimeoutSet("3"), Ending::kDone);
  EXPECT_EQ(session.DefTimeoutSet("x"), Ending::kFailed);
  EXPECT_EQ(session.DefTimeout(), 3);
  EXPECT_EQ(world.server.timeout, 3);
}

TEST_F(SessionTest, ATokenBelongsToItsSelection) {
  Session& session = Select();
  EXPECT_FALSE(Start().ToRead());
  EXPECT_EQ(world.dialogs.Numbers(), "1301");
  EXPECT_TRUE(session.DeviceSelectByAddress("B1:"));
  world.server.answers["B1:x"] = world.server.answers["all,x"] = "1";
  world.server.answers["y"] = "<<no>>";
  world.server.sent.clear();
  world.dialogs.shown.clear();
  const std::optional<Writing> token = session.ToWrite(), all = session.ToAll();
  EXPECT_EQ(token->Ask("x"), "1");
  EXPECT_EQ(all->Ask("x"), "1");
  EXPECT_FALSE(token->AskBare("y"));
  EXPECT_TRUE(token->SendOnly("sysreset=0.9"));
  EXPECT_EQ(world.server.sent, (std::vector<std::string>{"B1:x", "all,x", "y", "B1:sysreset=0.9"}));
  session.DeviceChange("B2:Süd", "KT-X", "2.27", "1");
  for (const auto& old : {token, all}) {
    EXPECT_EQ(old->Try("x").error.code, text::kOtherSelection);
    EXPECT_FALSE(old->SendOnly("x"));
  }
  EXPECT_EQ(world.server.sent.size(), 4u);
  EXPECT_EQ(world.dialogs.Numbers(), "1280 20022 20022");
}

TEST_F(SessionTest, ALineOfItsOwnStaysWithItsStation) {
  Session& session = Select();
  const std::unique_ptr<OwnLine> line = session.ToOwnLine();
  ASSERT_TRUE(line);
  world.server.answers["B1:p"] = "1";
  session.DeviceChange("B2:Süd", "KT-X", "2.27", "1");
  EXPECT_EQ(line->Try("p").text, "1") << "another selection";
  world.server.fails["CSend"] = ObjectError(10015, "gone");
  EXPECT_EQ(line->Try("p").error.detail, "gone");
  world.server.fails.clear();
  world.server.answers["B1:sysSN#"] = "124";
  world.server.sent.clear();
  for (int poll = 0; poll < 2; ++poll) {
    EXPECT_EQ(line->Try("p").error.code, text::kOtherDevice);
  }
  EXPECT_EQ(Sent("B1:p"), 0);
  world.server.answers["B1:sysSN#"] = "123";
  EXPECT_EQ(line->Try("p").text, "1");
  EXPECT_EQ(world.dialogs.Numbers(), "") << "nothing is shown";
}

TEST_F(SessionTest, BytesGoOverTheOnlineChannel) {
  Session& session = Select();
  std::unique_ptr<Online> online = session.ToOnline();
  ASSERT_TRUE(online);
  world.server.answers["ver\r"] = "KT-X";
  EXPECT_FALSE(online->Send("ver\r"));
  EXPECT_EQ(online->Receive().text, "KT-X");
  const int closed = world.server.closed;
  online.reset();
  EXPECT_EQ(world.server.closed, closed + 1);
  world.server.fails["COpen"] = ObjectError(10018, "");
  EXPECT_FALSE(session.ToOnline());
  EXPECT_EQ(world.dialogs.Numbers(), "10018");
}

TEST_F(SessionTest, ALostLinkIsReopenedWhereTheDeviceWasSelected) {
  Session& session = Select();
  world.server.follows = true;
  world.settings.WriteShared(keys::kServerMisc, "CurrentConnection", "Other");
  session.ConnectionClose();
  EXPECT_TRUE(session.ToRead() && session.Selected().GetKenn());
  EXPECT_EQ(world.server.opened.back(), session.ConnectionName());

  world.dialogs.yesNo = {true};
  Session& fresh = Start();
  ASSERT_TRUE(fresh.ConnectionOpen());
  Lose();
  EXPECT_TRUE(fresh.ConnectionReselect());
  EXPECT_FALSE(fresh.Lost()) << "no device to be mistaken for another";
  world.server.answers[R"(all,station&#,!+";  ", ver.+)"] = "AA:N;  x";
  fresh.ConnectionClose();
  EXPECT_EQ(fresh.StationsListAll()->size(), 1u) << "opens it as well";
}

TEST_F(SessionTest, ALostLinkWithoutAnswerStaysLost) {
  Session& session = Select();
  Lose();
  world.server.answers.erase("B1:dirn_");
  EXPECT_FALSE(session.ToRead());
  EXPECT_EQ(world.dialogs.Numbers(), "10012");
  EXPECT_TRUE(session.Lost() && session.Selected().GetKennSel());
  world.server.answers["B1:dirn_"] = "B1:Nord";
  world.server.answers["B1:sysSN#"] = "7";
  EXPECT_FALSE(session.ConnectionReselect());
  EXPECT_TRUE(world.dialogs.asked.empty()) << "a lost line is opened without a question";
  EXPECT_TRUE(session.WritingLocked()) << "another device";
  session.DeviceChange("B1:x", "KT-X", "2.27", "SIM1");
  session.ConnectionClose();
  EXPECT_TRUE(session.Simulated());
  EXPECT_FALSE(session.ToRead() || session.Selected().GetKennSel());
  session.ConnectionClose();
  EXPECT_FALSE(session.Simulated()) << "a real one answers";
}

TEST_F(SessionTest, WhoeverLosesTheServerWhileHeChoosesIsTold) {
  Session& session = Start();
  const auto choose = [&](StationList&, const std::string&) {
    session.ConnectionClose();
    EXPECT_FALSE(session.ToStation("aa:"));
    return StationChoice{};
  };
  EXPECT_FALSE(session.DeviceSelect(choose, {}));
  EXPECT_EQ(world.dialogs.Numbers(), "10026");
}

}  // namespace
}  // namespace ostrel
