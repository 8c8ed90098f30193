// The list of the selection: what is sent for it, what it holds, what ends it.

#include "device/station_list.h"

#include <gtest/gtest.h>

#include "app/texts.h"
#include "kit/kit.h"

namespace ostrel {
namespace {

const std::string kCurrent = "AA:dirn_\r\n", kGrant = "aa:passwort- 0,dr,!", kDirect = "aa:dirs-,!",
                  kOwn = R"(AA:dirn_,!+";", ver.+)", kAll = R"(all,station&#,!+";", ver.+)";

/// Lists over a service of its own, whose display of the rights is scripted.
struct StationListTest : testing::Test {
  kit::World world;
  Service service{{world.settings, world.factory, world.dialogs, world.clock, world.desktop},
                  {.connection = "Werk", .language = "eng", .chooser = true}};
  std::function<bool(int)> display = [](int) { return true; };
  StationList list = service.ListOfStations([this](int level) {
    world.server.sent.push_back("shown " + std::to_string(level));
    return display(level);
  });

  void SetUp() override {
    world.server.follows = true;
    ASSERT_TRUE(service.ConnectionOpen());
    service.ServerLink().ChannelTimeoutSet(1);
    Answers("5", "");
  }
  void Answers(const char* grant, const char* direct) {
    world.server.answers = {{kCurrent, "B1:Nord"}, {kOwn, "B1:Nord;t;v"}};
    world.server.answers[kAll] = "AA:Main;KT-X+;V2.27\r\nB1:Nord;KT-XB+;V2.10\r\nB2:x";
    if (*grant != 0) world.server.answers[kGrant] = grant;
    if (*direct != 0) world.server.answers[kDirect] = direct;
  }
  /// What was sent and shown, a letter each.
  std::string Steps() {
    const std::map<std::string, char> letters = {
        {kCurrent, 'C'}, {kGrant, 'G'}, {kDirect, 'D'}, {kOwn, 'O'}, {kAll, 'A'}};
    std::string steps;
    for (const std::string& line : world.server.sent) {
      const auto letter = letters.find(line);
      steps += letter == letters.end() ? line.substr(line.find(' ') + 1)
                                       : std::string(1, letter->second);
    }
    world.server.sent.clear();
    return steps;
  }
};

TEST_F(StationListTest, ReachesAsFarAsTheRights) {
  constexpr int kDone = 0, kEnded = StationList::kEnded, kSilent = code::kTimeout;
  const struct {
    const char *grant, *direct;
    const char* login;  // the level after the display; "-" cancels it
    const char* steps;  // the digit is the level that was shown
    int code;
    const char* messages;
  } cases[] = {
      {"0", "", "0", "CG0GO", kDone, ""},
      {"1", "", "1", "CG1GO", kDone, ""},
      {"2", "", "2", "CG2GA", kDone, ""},
      {"3", "0", "3", "CGD3GO", kDone, ""},
      {"3", "1", "", "CGDO", kDone, ""},
      {"4", "0", "4", "CGD4GA", kDone, ""},
      {"4", "1", "", "CGDA", kDone, ""},
      {"5", "", "", "CGA", kDone, ""},
      {"6", "0", "6", "CGD6GA", kDone, ""},
      {"6", "1", "", "CGDA", kDone, ""},
      {"<<no>>", "", "<<no>>", "CG0GO", kDone, ""},
      {"1", "", "4", "CG1GA", kDone, ""},
      {"3", "0", "5", "CGD3GA", kDone, ""},
      {"2", "", "1", "CG2GO", kDone, ""},
      {"2", "", "-", "CG2", kEnded, ""},
      {"4", "0", "-", "CGD4", kEnded, ""},
      {"4", "", "", "CGD", kEnded, "10012"},
      {"3", "<<no>>", "", "CGD", kEnded, "1280"},
      {"", "", "", "CG", kSilent, ""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.grant) + "/" + c.direct + "/" + c.login);
    Answers(c.grant, c.direct);
    display = [&](int) {
      world.server.answers[kGrant] = c.login;
      return *c.login != '-';
    };
    world.dialogs.shown.clear();
    EXPECT_EQ(list.Fill(""), c.code);
    EXPECT_EQ(Steps(), c.steps);
    EXPECT_EQ(world.dialogs.Numbers(), c.messages);
    const std::string last(1, std::string(c.steps).back());
    EXPECT_EQ(list.Rows().size(), c.code != 0 ? 0u : last == "O" ? 1u : 3u);
    EXPECT_EQ(world.dialogs.busy, 0);
  }
}

TEST_F(StationListTest, TakesAnswersOfAnyShape) {
  const auto many = [](int count) {
    std::string lines;
    for (int n = 0; n < count; ++n) lines += "B" + std::to_string(n) + ":x;y;z\r\n";
    return lines;
  };
  const struct {
    const char* name;
    std::string current, list;
    const char* wanted;
    int code;
    std::size_t rows, preselected;
    const char* line;  // of the preselected row
  } cases[] = {
      {"current", "B1:", "AA:N;a;V1\r\nB1:S;b;V2", "", 0, 2, 1, "B1:S        (b)        V2  (AA:)"},
      {"wanted", "B1:", "AA:N;a;V1\r\nB1:S;b;V2", "AA:", 0, 2, 0, "AA:N        (a)        V1"},
      {"one", "AA:N", "AA:N;a;V1\r\n\r\n", "B7:", 0, 1, 0, "AA:N        (a)        V1  (AA:)"},
      {"no fields", "B1:", "AA:N;a\r\nnobody\r\nB1:S", "", 0, 2, 1,
       "B1:S        ()           (AA:)"},
      {"error for the current one", "<<AA:>>", "AA:N;a;1", "", 0, 1, 0, "AA:N        (a)        1"},
      {"nobody is current", "", "AA:N", "", code::kTimeout, 0, 0, ""},
      {"error for the list", "AA:", "<<no>>", "", text::kDeviceReplied, 0, 0, ""},
      {"just fits", "B255:", many(256), "", 0, 256, 255, "B255:x      (y)        z  (AA:)"},
      {"too many", "B256:", many(257), "B9:", text::kStationsIncomplete, 256, 9,
       "B9:x        (y)        z"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    world.server.answers[kCurrent] = c.current;
    world.server.answers[kAll] = c.list;
    EXPECT_EQ(list.Fill(c.wanted), c.code);
    ASSERT_EQ(list.Rows().size(), c.rows);
    EXPECT_EQ(list.Preselected(), c.preselected);
    if (c.rows == 0) continue;
    EXPECT_EQ(list.Rows()[c.preselected].ListLine(), c.line);
  }
}

TEST_F(StationListTest, TheShortListTakesOneExchange) {
  const std::string line = R"(!"AA:<direct>",dir)";
  const struct {
    bool names;
    const char* answer;  // null: none
    const char* wanted;
    int code;
    std::size_t rows, preselected;
    const char* messages;
  } cases[] = {
      {true, "AA:<direct>\r\nB1:Nord", "B1:Nord", 0, 2, 1, ""},
      {false, "AA:<direct>\r\nB1:", "B1:", 0, 2, 1, ""},
      {false, "AA:<direct>\r\nB1:", "B1:Nord", 0, 2, 0, ""},
      {true, "<<a:b>>", "", StationList::kEnded, 0, 0, "1280"},
      {true, nullptr, "", StationList::kEnded, 0, 0, "10012"},
  };
  for (const auto& c : cases) {
    world.server.answers.clear();
    world.server.sent.clear();
    world.dialogs.shown.clear();
    if (c.answer != nullptr) world.server.answers[line + (c.names ? "n" : "")] = c.answer;
    EXPECT_EQ(list.FillShort(c.names, c.wanted), c.code) << c.wanted;
    EXPECT_EQ(world.server.sent, std::vector<std::string>{line + (c.names ? "n" : "")});
    EXPECT_EQ(list.Rows().size(), c.rows) << c.wanted;
    EXPECT_EQ(list.Preselected(), c.preselected) << c.wanted;
    EXPECT_EQ(world.dialogs.Numbers(), c.messages) << c.wanted;
  }
}

TEST_F(StationListTest, AnotherConnectionOrThePreviousOneOrNone) {
  const AutomationResult yes{true, 0, {}};
  const struct {
    const char* name;
    const char* chosen;
    std::set<std::string> closedFor;
    const char* failing;
    AutomationResult fail;
    int code;
    const char *messages, *connection;
    LinkState after;
    int closed;  // how many channels
  } cases[] = {
      {"done", "Halle", {}, "", {}, 0, "", "Halle", LinkState::kChannel, 1},
      {"again", "Werk", {}, "", {}, 0, "", "Werk", LinkState::kChannel, 1},
      {"none chosen", "", {"Halle"}, "", {}, -2, "", "Werk", LinkState::kChannel, 0},
      {"online", "Halle", {}, "COnlineEnabled", yes, -2, "10019", "Werk", LinkState::kChannel, 0},
      {"restored", "Halle", {"Halle"}, "", {}, -2, "10042", "Werk", LinkState::kChannel, 1},
      {"lost", "Halle", {"Halle", "Werk"}, "", {}, 10061, "", "", LinkState::kServer, 1},
      {"unframed",
       "Halle",
       {},
       "CFrame",
       ObjectError(10021, ""),
       10061,
       "",
       "",
       LinkState::kServer,
       3},
      {"ending", "Halle", {}, "COpenLocked", yes, 10061, "", "", LinkState::kServer, 1},
      {"gone",
       "Halle",
       {},
       "COpen",
       ObjectError(10041, ""),
       10061,
       "",
       "",
       LinkState::kNoServer,
       1},
      {"silent",
       "Halle",
       {},
       "CSend",
       ObjectError(10014, ""),
       10014,
       "",
       "Halle",
       LinkState::kChannel,
       1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    service.Beenden();
    world.server.fails.clear();
    world.server.closedFor.clear();
    world.dialogs.shown.clear();
    ASSERT_TRUE(service.ConnectionOpen());
    ASSERT_EQ(list.Fill(""), 0);
    world.server.closed = 0;
    world.server.chosen = {c.chosen};
    world.server.closedFor = c.closedFor;
    if (*c.failing != 0) world.server.fails[c.failing] = c.fail;
    EXPECT_EQ(list.ConnectionChange(), c.code);
    EXPECT_EQ(world.dialogs.Numbers(), c.messages);
    EXPECT_EQ(list.Connection(), c.connection);
    EXPECT_EQ(service.ServerLink().ConnState(), c.after);
    EXPECT_EQ(list.Rows().empty(), c.code == 10014);
    EXPECT_EQ(world.server.closed, c.closed);
  }
}

TEST_F(StationListTest, TheChosenStationIsIdentifiedOnTheConnectionThatIsOpenThen) {
  world.server.answers["B1:ver."] = "KT-XB+;V2.10;x";
  world.server.answers["AA:ver."] = "KT-X+;2.27";
  world.server.answers["B1:sysSN#"] = world.server.answers["AA:sysSN#"] = "1";
  const struct {
    const char* name;
    const char* chosen;  // another connection; empty: none
    StationChoice choice;
    const char* failing;
    bool done;
    const char *selected, *firmware, *messages;
  } steps[] = {
      // one after the other
      {"first", "", {StationFromLine("B1:Nord;x;V9")}, "", true, "B1:", "2.10", ""},
      {"cancelled", "", {}, "", false, "B1:", "2.10", ""},
      {"ended", "", {.code = StationList::kEnded}, "", false, "B1:", "2.10", ""},
      {"no answer", "", {.code = 10012}, "", false, "B1:", "2.10", "10012"},
      {"no firmware", "", {StationFromLine("AA:N;x;y")}, "CReceive", false, "B1:", "2.10", "10015"},
      {"gone over", "Halle", {StationFromLine("AA:N;x;y")}, "", true, "AA:", "2.27", ""},
      {"gone over for nothing", "Werk", {}, "", false, "none", "---", ""},
  };
  for (const auto& step : steps) {
    SCOPED_TRACE(step.name);
    world.dialogs.shown.clear();
    const auto choose = [&](StationList& stations, const std::string&) {
      world.server.chosen = {step.chosen};
      EXPECT_TRUE(*step.chosen == 0 || stations.ConnectionChange() == 0);
      if (*step.failing != 0) world.server.fails[step.failing] = ObjectError(10015, "");
      return step.choice;
    };
    EXPECT_EQ(service.DeviceSelect(choose, display), step.done);
    world.server.fails.clear();
    EXPECT_EQ(service.Selected().GetKenn().value_or("none"), step.selected);
    EXPECT_EQ(service.Device().Firmware(), step.firmware);
    EXPECT_EQ(world.dialogs.Numbers(), step.messages);
  }
  // A link that is lost comes back where the user went.
  service.Beenden();
  EXPECT_TRUE(service.ConnectionOpen());
  EXPECT_EQ(world.server.opened.back(), "Werk");
}

}  // namespace
}  // namespace ostrel
