#include <gtest/gtest.h>

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
  EXPECT_EQ(selection.GetKennSel(), "B1:");
  selection.SetCheck([] { return false; });
  selection.Clear();
  selection.Set("C1:", "KT-X", "", "");
  EXPECT_FALSE(selection.GetKennSel()) << "the check was lost";
}

TEST(Device, FamiliesAndTypeCodesOfEveryModel) {
  const char* const types[] = {"KT-X",  "LX-X",      "KT-XF", "KT-XB", "KT-XFB", "QM-X",
                               "QM-XB", "NV-X",      "JS-X",  "WB-X",  "KT-XW",  "KT-XWB",
                               "HZ-X",  "qor-u1601", "other", ""};
  // By type as above; the last one is no device.
  const std::pair<const char*, const char*> codes[] = {
      {"", "1111111111111111"},    {"CMD", "1111111111111111"}, {"qol", "1111111111111111"},
      {"RGL", "1001000000000000"}, {"lxl", "0100000000000000"}, {"xwl", "0000000000110000"},
      {"xbl", "0000000000110000"}, {"xfl", "0010100000000000"}, {"qml", "0000011000000000"},
      {"wbl", "0000000001000000"}, {"jsl", "0000000010000000"}, {"xyz", "0000000000000000"}};
  kit::ScriptedDialogs dialogs;
  const Messages messages(dialogs);
  const auto inFamily = [&](const clsDevice& device, std::size_t family) {
    const bool results[] = {device.IsFamRegler(&messages),
                            device.IsFamReglerLx(&messages),
                            device.IsFamXw(&messages),
                            device.IsFamTormex(&messages),
                            device.IsFamXf(),
                            device.IsFamQm(),
                            device.IsFamNv(),
                            device.IsFamJs(),
                            device.IsFamTormexMsg4Other(messages)};
    return results[family];
  };
  const char* const families[] = {"1001000000000000", "1101000000000000", "0000000000110000",
                                  "1101000000110000", "0010100000000000", "0000011000000000",
                                  "0000000100001000", "0000000010000000", "1101000000110000"};
  const char* const told[] = {"",      "", "10066", "", "10066", "10067", "", "",
                              "10066", "", "",      "", "",      "",      "", "1301"};
  for (std::size_t n = 0; n < std::size(types); ++n) {
    clsDevice device;
    if (n + 1 < std::size(types)) device.SetIdentity("AA:", types[n]);
    for (const auto& [code, matches] : codes) {
      EXPECT_EQ(device.MatchTypeCode(code), matches[n] == '1') << code << " " << types[n];
    }
    for (std::size_t family = 0; family < std::size(families); ++family) {
      EXPECT_EQ(inFamily(device, family), families[family][n] == '1') << family << " " << types[n];
    }
    dialogs.shown.clear();
    device.IsFamTormexMsg4Other(messages);
    EXPECT_EQ(dialogs.Numbers(), told[n]) << types[n];
  }
  dialogs.shown.clear();
  const clsDevice none;
  none.IsFamRegler(&messages), none.IsFamReglerLx(&messages), none.IsFamXw(&messages);
  none.IsFamTormex(&messages);
  EXPECT_EQ(dialogs.Numbers(), "10129 10128 10130 10129");
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

TEST_F(BusTest, FillingTheList) {
  const std::string all = R"(all,station&#,!+";", ver.+)";
  std::string many;
  for (int n = 0; n < 257; ++n) many += "B" + std::to_string(n) + ":x;y;z\r\n";
  const struct {
    const char* name;
    std::string current, list;
    int code;
    std::size_t rows;
  } cases[] = {
      {"one", "B1:", "AA:Nord;KT-X+;V2.27\r\nB1:Süd;KT-XB+;V2.10", 0, 2},
      {"error for the current one", "<<x>>", "AA:Nord;KT-X+;V2.27\r\n\r\n", 0, 1},
      {"empty answer", "", "AA:Nord", code::kTimeout, 0},
      {"error answer", "AA:", "<<no>>", text::kDeviceReplied, 0},
      {"too many", "AA:", many, text::kStationsIncomplete, 256},
  };
  for (const auto& c : cases) {
    world.server.answers = {{"AA:dirn_\r\n", c.current}, {all, c.list}};
    std::vector<Station> rows;
    EXPECT_EQ(bus.ListFill(rows), c.code) << c.name;
    ASSERT_EQ(rows.size(), c.rows) << c.name;
  }
  world.server.answers = {{"AA:dirn_\r\n", "B1:Süd"}, {all, "AA:Nord;a;b\r\nB1:Süd;c;d"}};
  std::vector<Station> rows;
  ASSERT_EQ(bus.ListFill(rows), 0);
  EXPECT_FALSE(rows[0].current);
  EXPECT_TRUE(rows[1].current);
  world.server.answers.clear();
  EXPECT_EQ(bus.ListFill(rows), code::kTimeout);
}

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
