#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <set>

#include "base/texts.h"
#include "device/clsDevice.h"
#include "device/selection.h"
#include "device/station_list.h"
#include "device/stations.h"
#include "kit/kit.h"
#include "wire/answers.h"

namespace ostrel {
namespace {

TEST(Device, ModelFromTypeByPrefix) {
  const std::pair<const char*, int> cases[] = {
      {"KT-XB", 4},   {"kt=xb", 4},   {"KT-XFB", 5},     {"KT=XFB", 3},      {"KT-XF2", 3},
      {"KT-XWB", 12}, {"KT=XWB", 11}, {"KT-XWS", 11},    {"QM-XB", 7},       {"KT-XN", 0},
      {" kt=x ", 0},  {"LX=X", 1},    {"QM-X", 6},       {"NV-X", 8},        {"JS-X", 9},
      {"WB-X", 10},   {"HZ-X", 13},   {"QOR-U1602", 80}, {"qor-u1615x", 90}, {"QOR-U9999", 999},
      {"QOR", 999},   {"", 999},      {"XKT-X", 999},
  };
  for (const auto& [type, model] : cases) EXPECT_EQ(ModelFromType(type), model) << type;
  const std::pair<int, const char*> names[] = {{0, "KT-X"}, {13, "KT-XWS"}, {14, "???"},
                                               {80, "???"}, {999, "???"},   {-1, "???"}};
  for (const auto& [model, name] : names) EXPECT_EQ(ModelName(model), name) << model;
}

TEST(Device, IdentityAndSelection) {
  clsDevice device;
  EXPECT_EQ(device.Address(), "---");
  EXPECT_EQ(device.Firmware(), "---");
  device.SetIdentity(" B1:Nord", "KT-XB");
  EXPECT_EQ(device.Address(), "B1:");
  EXPECT_EQ(device.Model(), 4);

  Selection selection;
  EXPECT_FALSE(selection.GetKenn());
  EXPECT_FALSE(selection.GetFW());
  const struct {
    const char* type;
    bool regulator, family;
    const char* messages;
  } regulators[] = {{"KT-X", true, true, ""},
                    {"LX-X", false, true, "10129"},
                    {"KT-XB", true, true, ""},
                    {"KT-XW", true, true, ""},
                    {"KT-XF", false, false, "10129 10128"},
                    {"HZ-X", false, false, "10129 10128"}};
  kit::ScriptedDialogs dialogs;
  const Messages messages(dialogs);
  for (const auto& c : regulators) {
    selection.Set(" B1:Nord ", std::string(c.type) + " ", "2.27", "1");
    dialogs.shown.clear();
    EXPECT_EQ(selection.GetKennRegler(&messages).has_value(), c.regulator) << c.type;
    EXPECT_EQ(selection.GetKennReglerFam(&messages).has_value(), c.family) << c.type;
    EXPECT_EQ(dialogs.Numbers(), c.messages) << c.type;
    std::string typ;
    EXPECT_EQ(selection.GetKennTyp(typ), "B1:");
    EXPECT_EQ(typ, c.type);
  }
  EXPECT_EQ(selection.GetKennSel(), "B1:");
  selection.SetCheck([] { return false; });
  selection.Clear();
  selection.Set("C1:", "KT-X", "", "");
  EXPECT_FALSE(selection.GetKennSel()) << "the check was lost";
}

using Models = std::set<int>;
constexpr int kNone = -1;
const Models kEvery = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 80, 90, 999};

TEST(Device, FamiliesAndTypeCodesOfEveryModel) {
  const std::pair<const char*, Models> codes[] = {
      {"", kEvery},      {"CMD", kEvery},   {"qol", kEvery}, {"RGL", {0, 4}}, {"lxl", {1}},
      {"xwl", {11, 12}}, {"xBl", {11, 12}}, {"xfl", {3, 5}}, {"qml", {6, 7}}, {"wbl", {10}},
      {"jsl", {9}},      {"xyz", {}},       {"rg", {}}};
  const struct {
    const char* name;
    bool (*test)(const clsDevice&, const Messages&);
    Models models;
    const char* message;  // of a failure
  } families[] = {
      {"Regler", [](auto& d, auto& m) { return d.IsFamRegler(&m); }, {0, 4}, "10129"},
      {"ReglerLx", [](auto& d, auto& m) { return d.IsFamReglerLx(&m); }, {0, 1, 4}, "10128"},
      {"Xw", [](auto& d, auto& m) { return d.IsFamXw(&m); }, {11, 12}, "10130"},
      {"Tormex", [](auto& d, auto& m) { return d.IsFamTormex(&m); }, {0, 1, 4, 11, 12}, "10129"},
      {"Xf", [](auto& d, auto&) { return d.IsFamXf(); }, {3, 5}, ""},
      {"Qm", [](auto& d, auto&) { return d.IsFamQm(); }, {6, 7}, ""},
      {"Nv", [](auto& d, auto&) { return d.IsFamNv(); }, {8, 13}, ""},
      {"Js", [](auto& d, auto&) { return d.IsFamJs(); }, {9}, ""}};
  const std::map<int, std::string> told = {
      {kNone, "1301"}, {3, "10066"}, {5, "10066"}, {9, "10066"}, {6, "10067"}};
  kit::ScriptedDialogs dialogs;
  const Messages messages(dialogs);
  Models all = kEvery;
  all.insert(kNone);
  for (const int model : all) {
    clsDevice device;
    if (model != kNone) device.SetIdentity("AA:", model);
    for (const auto& [code, models] : codes) {
      const bool matches = models == kEvery || models.count(model) != 0;
      EXPECT_EQ(device.MatchTypeCode(code), matches) << code << " " << model;
    }
    for (const auto& family : families) {
      dialogs.shown.clear();
      const bool inside = family.models.count(model) != 0;
      EXPECT_EQ(family.test(device, messages), inside) << family.name << " " << model;
      EXPECT_EQ(dialogs.Numbers(), inside ? "" : family.message) << family.name << " " << model;
    }
    dialogs.shown.clear();
    EXPECT_EQ(device.IsFamTormexMsg4Other(messages), families[3].models.count(model) != 0) << model;
    EXPECT_EQ(dialogs.Numbers(), told.count(model) != 0 ? told.at(model) : "") << model;
  }
}

TEST(Device, FirmwareGatesAndSerialNumbers) {
  const struct {
    const char *type, *firmware, *minimum;
    bool enough;
  } cases[] = {
      {"KT-X", "2.27", "2.22", true},      {"KT-X", "2.21", "2.22", false},
      {"KT-X", "3.9.99", "2.9", true},     {"KT-X", "3.9.99", "3.0", false},
      {"KT-X", "2.27", "x", false},        {"KT-X", "2.27", "2.0.1", false},
      {"KT-X", "27", "0.1", false},        {"KT-X", "2.9", "2.10", true},
      {"KT-XF", "2.4.04", "2.4.4", true},  {"KT-XF", "2.4.03", "2.4.04", false},
      {"KT-XF", "2.1.9", "2.1.11", false}, {"KT-XF", "2.10.0", "2.9", true},
      {"KT-XF", "", "1", false},
  };
  kit::ScriptedDialogs dialogs;
  const Messages messages(dialogs);
  for (const auto& c : cases) {
    clsDevice device;
    device.SetIdentity("AA:", c.type);
    device.SetFirmware(c.firmware);
    dialogs.shown.clear();
    EXPECT_EQ(device.FWMinimumCheck(c.minimum, &messages), c.enough) << c.firmware << c.minimum;
    EXPECT_EQ(dialogs.Numbers(), c.enough ? "" : "1496") << c.firmware << c.minimum;
  }
  const std::pair<const char*, const char*> serials[] = {
      {"SIM0412345-B", "0412345"}, {"12A34", "12A34"}, {"abc", ""}, {"", ""}, {"-7", ""}};
  for (const auto& [text, core] : serials) EXPECT_EQ(SerialDigitsCore(text), core) << text;
}

TEST(Stations, ListLinesOfAnyShape) {
  const struct {
    const char *line, *row;
  } cases[] = {
      {"AA:Nord;KT-X+;V2.27", "AA:Nord     (KT-X+)    V2.27"},
      {"B1: Süd-West-Hoch ; KT-XFB+ ; V2.1.10 ", "B1:Süd-West-(KT-XFB+)  V2.1.10"},
      {"B2:Nord", "B2:Nord     ()         "},
      {"", "            ()         "},
      {"B3:<b>;x", "B3:<b>      (x)        "},
  };
  for (const auto& c : cases) EXPECT_EQ(StationFromLine(c.line).ListLine(), c.row) << c.line;
  Station current = StationFromLine("AA:N;KT-X;V1");
  current.current = true;
  EXPECT_TRUE(current.ListLine().ends_with("V1  (AA:)"));
  EXPECT_EQ(current.Firmware(), "1");
}

const std::string kCurrent = "AA:dirn_\r\n", kGrant = "aa:passwort- 0,dr,!", kDirect = "aa:dirs-,!",
                  kOwn = R"(AA:dirn_,!+";", ver.+)", kAll = R"(all,station&#,!+";", ver.+)",
                  kShort = R"(!"AA:<direkt>",dirn)";

struct BusTest : testing::Test {
  kit::World world;
  Messages messages{world.dialogs};
  Link link{world.factory, world.settings, world.clock, world.desktop.folder};
  Commands commands{link, world.dialogs, messages};
  Stations bus{link, commands};
  std::string login;  // the grant after the display of the rights
  StationList reached{link, commands, world.dialogs, messages, [this](int level) {
                        world.server.sent.push_back(std::to_string(level));
                        world.server.answers[kGrant] = login;
                        return login != "cancel";
                      }};
  void SetUp() override {
    ASSERT_FALSE(link.ConnectionOpen(""));
    link.ChannelTimeoutSet(1);
    world.server.follows = true;
  }
  /// The code and the messages with which an operation ends; -1 = told, -2 = nothing came of it.
  std::string Ended(const std::function<std::optional<Error>()>& operation) {
    world.server.sent.clear();
    world.dialogs.shown.clear();
    const std::optional<Error> error = operation();
    const std::string code =
        error ? std::to_string(error->told && error->code == 0 ? -1 : error->code) : "-2";
    return code + (world.dialogs.shown.empty() ? "" : " " + world.dialogs.Numbers());
  }
};

TEST_F(BusTest, CurrentStationAndPlainList) {
  world.server.answers = {{"aa:dirn_", "B1:"},
                          {"B1:station#", "Süd"},
                          {"B1:ver.", "kt-xb+;V2.10"},
                          {R"(all,station&#,!+";  ", ver.+)", "\r\n# note\r\n AA:N;  x \r\nB1:S"}};
  std::string station, type;
  EXPECT_FALSE(bus.StationCurrentGet(station, type));
  EXPECT_EQ(station + "/" + type, "B1:Süd/KT-XB");
  world.server.answers["aa:dirn_"] = "nobody";
  EXPECT_EQ(bus.StationCurrentGet(station, type).code, 1280);
  std::vector<std::string> list;
  EXPECT_TRUE(bus.StationsListAll(list));
  EXPECT_EQ(list, (std::vector<std::string>{"AA:N;  x", "B1:S"}));
  world.server.answers[R"(all,station&#,!+";  ", ver.+)"] = "Access denied";
  EXPECT_FALSE(bus.StationsListAll(list));
  EXPECT_EQ(world.dialogs.shown.at(0).number, 1280);
}

TEST_F(BusTest, ReachesAsFarAsTheRights) {
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
    world.server.answers = {{kCurrent, "B1:"}, {kOwn, "B1:"}, {kAll, "AA:\r\nB1:"}};
    for (const std::string& line : {kGrant, kDirect}) {
      const std::string answer = NextToken(c, '|');
      if (!answer.empty()) world.server.answers[line] = answer;
    }
    login = NextToken(c, '|');
    const std::string ended = Ended([&] { return reached.Fill(""); });
    std::string steps;
    for (const std::string& sent : world.server.sent) {
      steps += letters.count(sent) != 0 ? letters.at(sent) : sent;
    }
    EXPECT_EQ(steps + "|" + ended, c);
    const std::size_t rows = steps.ends_with('A') ? 2 : steps.ends_with('O') ? 1 : 0;
    EXPECT_EQ(reached.Rows().size(), rows);
  }
}

TEST_F(BusTest, TakesAnswersOfAnyShape) {
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
      {kAll, "AA:", "access denied\r\nAccess denied", "", "1280", 0, 0, false},
      {kShort, "", "Zugriff verweigert", "", "-1 1280", 0, 0, false},
      {kAll, "B255:", many, "", "0", 256, 255, true},
      {kAll, "AA:", many + "AA:", "B9:", "20014", 256, 9, false},
      {kShort, "", "AA:<direkt>\r\nB1:Nord", "B1:Nord", "0", 2, 1, false},
      {kShort, "", "<<a:b>>", "", "-1 1280", 0, 0, false},
      {kShort, "", "-", "", "-1 10012", 0, 0, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.answer.substr(0, 40) + c.wanted);
    world.server.answers = {{kCurrent, c.current}, {kGrant, "5"}};
    if (c.answer != "-") world.server.answers[c.line] = c.answer;
    Error error;
    const auto fill = [&] {
      return error = c.line == kShort ? reached.FillShort(true, c.wanted) : reached.Fill(c.wanted);
    };
    EXPECT_EQ(Ended(fill), c.ended);
    if (std::string(c.ended).ends_with("1280")) {
      reached.Tell(error);
      EXPECT_TRUE(world.dialogs.shown.back().text.ends_with("\n" + c.answer));
    }
    ASSERT_EQ(reached.Rows().size(), c.rows);
    EXPECT_EQ(reached.Preselected(), c.preselected);
    EXPECT_EQ(c.rows != 0 && reached.Rows()[c.preselected].current, c.isCurrent);
  }
}

TEST_F(BusTest, ANewerServerGetsNoLineEnd) {
  link.ConnectionClose();
  std::ofstream(world.desktop.folder / "OstrelTESK.dll") << "x";
  EXPECT_FALSE(link.ConnectionOpen(""));
  world.server.answers = {{"AA:dirn_", "B1:"}, {kGrant, "5"}, {kAll, "AA:\r\nB1:"}};
  EXPECT_EQ(Ended([&] { return reached.Fill(""); }), "0");
}

TEST_F(BusTest, AnotherConnectionOrThePreviousOneOrNone) {
  world.server.answers = {{kCurrent, "B1:"}, {kGrant, "5"}, {kAll, "AA:\r\nB1:"}};
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
    link.ConnectionClose();
    world.server.fails.clear();
    world.server.closedFor.clear();
    EXPECT_FALSE(link.ConnectionOpen("Werk"));
    ASSERT_FALSE(reached.Fill(""));
    world.server.closed = 0;
    world.server.chosen = {c.chosen};
    world.server.closedFor = {c.closed1, c.closed2};
    const AutomationResult yes{true, 0, {}};
    if (c.error != 0) {
      world.server.fails[c.failing] = c.error == 1 ? yes : ObjectError(c.error, "");
    }
    EXPECT_EQ(Ended([&] { return reached.ConnectionChange(); }), c.ended);
    EXPECT_EQ(reached.Connection(), c.connection);
    EXPECT_EQ(static_cast<int>(link.ConnState()), c.state);
    EXPECT_EQ(world.server.closed, c.closed);
  }
}

}  // namespace
}  // namespace ostrel
