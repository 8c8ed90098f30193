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
  const std::pair<const char*, bool> regulators[] = {
      {"KT-X", true},   {"LX-X", true},  {"KT-XB", true}, {"KT-XW", true},
      {"KT-XF", false}, {"QM-X", false}, {"HZ-X", false}};
  for (const auto& [type, regulator] : regulators) {
    selection.Set(" B1:Nord ", type, "2.27", "1");
    EXPECT_EQ(selection.GetKenn(), "B1:");
    EXPECT_EQ(selection.GetKennReglerFam().has_value(), regulator) << type;
  }
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
