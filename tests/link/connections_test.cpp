#include "link/connections.h"

#include <gtest/gtest.h>

#include "app/texts.h"
#include "kit/kit.h"
#include "link/connection_test.h"

namespace ostrel {
namespace {

Connection Tcp(const std::string& name, const std::string& host, int port) {
  Connection connection;
  connection.name = name;
  connection.kind = "tcp";
  connection.host = host;
  connection.port = port;
  return connection;
}

TEST(Connections, AnEmptyStoreMeansTheSimulator) {
  kit::MemorySettings settings;
  Connections connections(settings);
  ASSERT_EQ(connections.List().size(), 1u);
  ASSERT_TRUE(connections.Find(""));
  EXPECT_TRUE(connections.Find("")->Simulated());
  EXPECT_FALSE(connections.Find("elsewhere"));
  EXPECT_FALSE(connections.Remove("Simulator"));
}

TEST(Connections, AddUseRemove) {
  kit::MemorySettings settings;
  Connections connections(settings);
  ASSERT_TRUE(connections.Add(Tcp("Werk", "192.0.2.7", 4001)));
  EXPECT_EQ(connections.List().size(), 2u);
  EXPECT_TRUE(connections.Use("WERK")) << "case is ignored";
  EXPECT_EQ(connections.Current(), "Werk");
  EXPECT_EQ(connections.Find("")->Target(), "192.0.2.7:4001");
  EXPECT_FALSE(connections.Use("")) << "an empty name is no connection";
  EXPECT_TRUE(connections.Remove("werk"));
  EXPECT_EQ(connections.Current(), "Simulator");
  EXPECT_EQ(connections.List().size(), 1u);

  // A connection that took the built-in one's name replaces it, data of its kind alone remain.
  ASSERT_TRUE(connections.Add(Tcp("simulator", "h", 1)));
  EXPECT_EQ(connections.List().size(), 1u);
  EXPECT_FALSE(connections.Find("Simulator")->Simulated());
}

TEST(Connections, FaultyDataAreRefused) {
  kit::MemorySettings settings;
  Connections connections(settings);
  Connection serial;
  serial.name = "line";
  serial.kind = "serial";
  serial.device = "/dev/ttyUSB0";
  EXPECT_TRUE(Connections::Valid(serial));
  Connection noDevice = serial, badParity = serial, badBaud = serial, badKind = serial;
  noDevice.device.clear();
  badParity.parity = "some";
  badBaud.baud = 0;
  badKind.kind = "modem";
  const Connection cases[] = {
      noDevice,
      badParity,
      badBaud,
      badKind,
      Tcp("", "h", 1),
      Tcp("a\\b", "h", 1),
      Tcp("a/b", "h", 1),
      Tcp("a\nb", "h", 1),
      Tcp("t", "", 1),
      Tcp("t", "h", 0),
      Tcp("t", "h", 65536),
      Tcp(" t", "h", 1),
  };
  for (const Connection& connection : cases) {
    EXPECT_FALSE(connections.Add(connection)) << connection.name << " " << connection.Target();
  }
}

TEST(Connections, ChangesKeepWhatIsNotTheirs) {
  const struct {
    const char *name, *newName;
    int port;
    bool changed;
    const char *current, *others;  // the names in the store after it
  } cases[] = {
      {"werk", "Werk", 2, true, "Werk", "Anlage Werk"},
      {"Werk", "Halle", 1, true, "Halle", "Anlage Halle"},
      {"Werk", "WERK", 1, true, "WERK", "Anlage WERK"},
      {"Anlage", "Halle", 1, true, "Werk", "Halle Werk"},
      {"Werk", "anlage", 1, false, "Werk", "Anlage Werk"},
      {"Werk", "a/b", 1, false, "Werk", "Anlage Werk"},
      {"Werk", "Werk", 0, false, "Werk", "Anlage Werk"},
      {"Simulator", "Halle", 1, false, "Werk", "Anlage Werk"},
  };
  for (const auto& c : cases) {
    kit::MemorySettings settings;
    Connections connections(settings);
    ASSERT_TRUE(connections.Add(Tcp("Werk", "h", 1)) && connections.Add(Tcp("Anlage", "h", 1)));
    ASSERT_TRUE(connections.Use("Werk"));
    EXPECT_EQ(connections.Change(c.name, Tcp(c.newName, "h", c.port)), c.changed) << c.newName;
    std::string names;
    for (const std::string& name : settings.SharedSubKeys(keys::kConnections)) {
      names += (names.empty() ? "" : " ") + name;
    }
    EXPECT_EQ(names, c.others) << c.newName;
    EXPECT_EQ(connections.Current(), c.current) << c.newName;
    EXPECT_EQ(connections.Find(c.changed ? c.newName : "Werk")->port, c.changed ? c.port : 1);
  }
}

TEST(ConnectionTest, SaysWhichStepFailedAndWhatMendsIt) {
  using Script = kit::ServerScript;
  const struct {
    const char* name;
    std::function<void(Script&)> arrange;
    TestStep step;
    int code;
    std::vector<int> texts;
    const char* told;
  } cases[] = {
      {"works", [](Script&) {}, TestStep::kDone, 0, {}, "\nAA:dirn_ → AA:<b>Nord␛"},
      {"two lines",
       [](Script& s) { s.answers["AA:dirn_"] = "a\r\nb\x07"; },
       TestStep::kDone,
       0,
       {},
       "→ a\nb␇"},
      {"rejected",
       [](Script& s) { s.answers["AA:dirn_"] = "<<unknown>>"; },
       TestStep::kDone,
       0,
       {text::kErrorAnswer},
       "→ <<unknown>>"},
      {"empty",
       [](Script& s) { s.answers["AA:dirn_"] = ""; },
       TestStep::kDone,
       0,
       {text::kEmptyAnswer},
       "AA:dirn_"},
      {"no server",
       [](Script& s) { s.failingCreations = 9; },
       TestStep::kServer,
       10065,
       {text::kTestNoServer, text::kHelpServer},
       "\nattempt failed\n"},
      {"server lost",
       [](Script& s) { s.fails["COpen"] = ObjectError(10041, "lost"); },
       TestStep::kServer,
       10041,
       {text::kTestNoServer, text::kHelpServer},
       "\nlost\n"},
      {"ending",
       [](Script& s) { s.locked = true; },
       TestStep::kOpen,
       10041,
       {text::kTestNotOpen, text::kHelpServer},
       "\n10041: "},
      {"no host",
       [](Script& s) {
         s.fails["COpen"] = ObjectError(10042,
                                        "re\x1b"
                                        "fused");
       },
       TestStep::kOpen,
       10042,
       {text::kTestNotOpen, text::kHelpHost},
       "\nre␛fused\n"},
      {"unplugged",
       [](Script& s) { s.fails["COpen"] = ObjectError(10027, ""); },
       TestStep::kOpen,
       10027,
       {text::kTestNotOpen, text::kHelpAdapter},
       "\n10027: "},
      {"silent",
       [](Script& s) { s.answers.clear(); },
       TestStep::kAnswer,
       10012,
       {text::kTestNoAnswer, text::kHelpSilent},
       "\n10012: "},
      {"disturbed",
       [](Script& s) { s.fails["CReceive"] = ObjectError(10015, "noise"); },
       TestStep::kAnswer,
       10015,
       {text::kTestNoAnswer, text::kHelpDisturbed},
       "\nnoise\n"},
      {"online",
       [](Script& s) { s.online = true; },
       TestStep::kAnswer,
       10019,
       {text::kTestNoAnswer, text::kHelpOnline},
       "\n10019: "},
      {"not known",
       [](Script& s) { s.fails["COpen"] = ObjectError(10014, "odd"); },
       TestStep::kOpen,
       10014,
       {text::kTestNotOpen},
       "\nodd"},
  };
  for (const auto& c : cases) {
    kit::World world;
    Messages messages(world.dialogs);
    messages.SetFactor(1);
    ConnectionTest tester(world.factory, world.settings, world.clock, world.folder.path);
    world.server.answers["AA:dirn_"] = "AA:<b>Nord\x1b";
    c.arrange(world.server);
    const ConnectionTestResult result = tester.Run("Werk");
    EXPECT_TRUE(result.step == c.step && result.code == c.code) << c.name << result.code;
    const std::string told = ConnectionTestText(result, messages);
    EXPECT_NE(told.find(c.told), std::string::npos) << c.name << ": " << told;
    for (const int id : c.texts) {
      EXPECT_NE(told.find(messages.Filled(id, "Werk")), std::string::npos) << c.name << told;
    }
    EXPECT_FALSE(told.ends_with('\n')) << c.name;
    EXPECT_EQ(world.server.closed, world.server.opened.empty() ? 0 : 1) << c.name;
    EXPECT_TRUE(world.dialogs.shown.empty() && world.server.choosers.empty()) << c.name;
  }
}

TEST(ConnectionTest, IsGivenUpAndThenRunsAgain) {
  kit::World world;
  ConnectionTest tester(world.factory, world.settings, world.clock, world.folder.path);
  int second = 0;
  world.clock.onEvents = [&] {
    second = tester.Run("").code;
    tester.GiveUp();
  };
  EXPECT_EQ(tester.Run("").code, text::kExchangeGivenUp);
  EXPECT_EQ(second, text::kExchangeUnderWay);
  EXPECT_EQ(world.server.opened, std::vector<std::string>{"Simulator"});
  world.clock.onEvents = nullptr;
  world.server.answers["AA:dirn_"] = "AA:Nord";
  EXPECT_TRUE(tester.Run("").Ok());
  EXPECT_EQ(world.server.closed, 2);
}

}  // namespace
}  // namespace ostrel
