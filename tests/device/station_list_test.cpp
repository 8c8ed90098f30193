// The list of the selection: what is sent for it, what it holds, what ends it.

#include "device/station_list.h"

#include <gtest/gtest.h>

#include "app/texts.h"
#include "kit/kit.h"
#include "link/answers.h"

namespace ostrel {
namespace {

const std::string kCurrent = "AA:dirn_\r\n", kGrant = "aa:passwort- 0,dr,!", kDirect = "aa:dirs-,!",
                  kOwn = R"(AA:dirn_,!+";", ver.+)", kAll = R"(all,station&#,!+";", ver.+)",
                  kShort = R"(!"AA:<direct>",dirn)";

struct StationListTest : testing::Test {
  kit::World world;
  Service service{{world.settings, world.factory, world.dialogs, world.clock, world.desktop},
                  {.connection = "Werk", .language = "eng", .chooser = true}};
  std::string login;  // the grant after the display of the rights
  StationList list = service.ListOfStations([this](int level) {
    world.server.sent.push_back(std::to_string(level));
    world.server.answers[kGrant] = login;
    return login != "cancel";
  });

  void SetUp() override {
    world.server.follows = true;
    ASSERT_TRUE(service.ConnectionOpen());
    service.ServerLink().ChannelTimeoutSet(1);
    world.server.answers = {{kCurrent, "B1:"}, {kOwn, "B1:"}, {kAll, "AA:\r\nB1:"}, {kGrant, "5"}};
  }
  /// The code and the messages with which an operation ends.
  std::string Ended(const std::function<int()>& operation) {
    world.server.sent.clear();
    world.dialogs.shown.clear();
    const std::string code = std::to_string(operation());
    EXPECT_EQ(world.dialogs.busy, 0);
    return code + (world.dialogs.shown.empty() ? "" : " " + world.dialogs.Numbers());
  }
};

TEST_F(StationListTest, ReachesAsFarAsTheRights) {
  const std::map<std::string, std::string> letters = {
      {kCurrent, "C"}, {kGrant, "G"}, {kDirect, "D"}, {kOwn, "O"}, {kAll, "A"}};
  // Grant|whether lines to all may do everything|grant after the display|what is sent; a digit is
  // the level that is shown|how it ends
  for (std::string c : {"0||0|CG0GO|0", "1||1|CG1GO|0", "2||2|CG2GA|0", "3|0|3|CGD3GO|0",
                        "3|1||CGDO|0", "4|0|4|CGD4GA|0", "4|1||CGDA|0", "5|||CGA|0",
                        "6|0|6|CGD6GA|0", "6|1||CGDA|0", "<<no>>||<<no>>|CG0GO|0", "1||4|CG1GA|0",
                        "3|0|5|CGD3GA|0", "2||1|CG2GO|0", "2||cancel|CG2|-1", "4|0|cancel|CGD4|-1",
                        "4|||CGD|-1 10012", "3|<<no>>||CGD|-1 1280", "|||CG|10012"}) {
    SCOPED_TRACE(c);
    for (const std::string& line : {kGrant, kDirect}) {
      world.server.answers[line] = NextToken(c, '|');
      if (world.server.answers[line].empty()) world.server.answers.erase(line);
    }
    login = NextToken(c, '|');
    const std::string ended = Ended([&] { return list.Fill(""); });
    std::string steps;
    for (const std::string& sent : world.server.sent) {
      steps += letters.count(sent) != 0 ? letters.at(sent) : sent;
    }
    EXPECT_EQ(steps + "|" + ended, c);
    const std::size_t rows = steps.ends_with('A') ? 2 : steps.ends_with('O') ? 1 : 0;
    EXPECT_EQ(list.Rows().size(), rows);
  }
}

TEST_F(StationListTest, TakesAnswersOfAnyShape) {
  std::string many;
  for (int n = 0; n < 256; ++n) many += "B" + std::to_string(n) + ":x;y;z\r\n";
  const struct {
    std::string line, current, answer;  // "-": none
    const char *wanted, *ended;
    std::size_t rows, preselected;
    bool isCurrent;
  } cases[] = {
      {kAll, "B1:S", "AA:N;a;V1\r\n\r\nnobody\r\nB1:S;b", "B7:", "0", 2, 1, true},
      {kAll, "B1:", "AA:N\r\nB1:S", "AA:", "0", 2, 0, false},
      {kAll, "<<AA:>>", "AA:N;a;1", "", "0", 1, 0, false},
      {kAll, "", "AA:N", "", "10012", 0, 0, false},
      {kAll, "AA:", "<<no>>", "", "1280", 0, 0, false},
      {kAll, "B255:", many, "", "0", 256, 255, true},
      {kAll, "AA:", many + "AA:", "B9:", "20014", 256, 9, false},
      {kShort, "", "AA:<direct>\r\nB1:Nord", "B1:Nord", "0", 2, 1, false},
      {kShort, "", "<<a:b>>", "", "-1 1280", 0, 0, false},
      {kShort, "", "-", "", "-1 10012", 0, 0, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.answer.substr(0, 40) + c.wanted);
    world.server.answers = {{kCurrent, c.current}, {kGrant, "5"}};
    if (c.answer != "-") world.server.answers[c.line] = c.answer;
    const auto fill = [&] {
      return c.line == kShort ? list.FillShort(true, c.wanted) : list.Fill(c.wanted);
    };
    EXPECT_EQ(Ended(fill), c.ended);
    ASSERT_EQ(list.Rows().size(), c.rows);
    EXPECT_EQ(list.Preselected(), c.preselected);
    EXPECT_EQ(c.rows != 0 && list.Rows()[c.preselected].current, c.isCurrent);
  }
}

TEST_F(StationListTest, AnotherConnectionOrThePreviousOneOrNone) {
  const struct {
    const char *chosen, *closed1, *closed2;  // the latter do not open
    const char* failing;
    int error;  // 1 = true instead
    const char *ended, *connection;
    int state, closed;  // how many channels
  } cases[] = {
      {"Halle", "", "", "", 0, "0", "Halle", 2, 1},
      {"", "Halle", "", "", 0, "-2", "Werk", 2, 0},
      {"Halle", "", "", "COnlineEnabled", 1, "-2 10019", "Werk", 2, 0},
      {"Halle", "Halle", "", "", 0, "-2 10042", "Werk", 2, 1},
      {"Halle", "Halle", "Werk", "", 0, "10061", "", 1, 1},
      {"Halle", "", "", "CFrame", 10021, "10061", "", 1, 3},
      {"Halle", "", "", "COpen", 10041, "10061", "", 0, 1},
      {"Halle", "", "", "CSend", 10014, "10014", "Halle", 2, 1},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.chosen) + c.closed1 + c.closed2 + c.failing);
    service.Beenden();
    world.server.fails.clear();
    world.server.closedFor.clear();
    ASSERT_TRUE(service.ConnectionOpen() && list.Fill("") == 0);
    world.server.closed = 0;
    world.server.chosen = {c.chosen};
    world.server.closedFor = {c.closed1, c.closed2};
    const AutomationResult yes{true, 0, {}};
    if (c.error != 0) {
      world.server.fails[c.failing] = c.error == 1 ? yes : ObjectError(c.error, "");
    }
    EXPECT_EQ(Ended([&] { return list.ConnectionChange(); }), c.ended);
    EXPECT_EQ(list.Connection(), c.connection);
    EXPECT_EQ(static_cast<int>(service.ServerLink().ConnState()), c.state);
    EXPECT_EQ(world.server.closed, c.closed);
  }
}

}  // namespace
}  // namespace ostrel
