#include <gtest/gtest.h>

#include <map>
#include <set>

#include "app/texts.h"
#include "device/clsDevice.h"
#include "device/selection.h"
#include "device/stations.h"
#include "kit/kit.h"

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

struct BusTest : testing::Test {
  kit::World world;
  Messages messages{world.dialogs};
  Link link{world.factory, world.settings, world.clock,
            world.dialogs, messages,       world.desktop.folder};
  Commands commands{link, world.dialogs, messages};
  Stations bus{link, commands};
  void SetUp() override {
    ASSERT_EQ(link.ConnectionOpen(""), LinkState::kChannel);
    link.ChannelTimeoutSet(1);
  }
};

TEST_F(BusTest, CurrentStationAndPlainList) {
  world.server.answers = {{"aa:dirn_", "B1:"},
                          {"B1:station#", "Süd"},
                          {"B1:ver.", "kt-xb+;V2.10"},
                          {R"(all,station&#,!+";  ", ver.+)", "\r\n# note\r\n AA:N;  x \r\nB1:S"}};
  std::string station, type;
  EXPECT_EQ(bus.StationCurrentGet(station, type), 0);
  EXPECT_EQ(station + "/" + type, "B1:Süd/KT-XB");
  world.server.answers["aa:dirn_"] = "nobody";
  EXPECT_EQ(bus.StationCurrentGet(station, type), 1280);
  std::vector<std::string> list;
  EXPECT_TRUE(bus.StationsListAll(list));
  EXPECT_EQ(list, (std::vector<std::string>{"AA:N;  x", "B1:S"}));
}

}  // namespace
}  // namespace ostrel
