#include "wire/connections.h"

#include <gtest/gtest.h>

#include "app/connection_test.h"
#include "base/texts.h"
#include "kit/kit.h"

namespace ostrel {
namespace {

Connection Tcp(const std::string& name, const std::string& host, int port) {
  return {name, "tcp", host, port, {}};
}

TEST(Connections, AddUseRemove) {
  kit::MemorySettings settings;
  Connections connections(settings);
  ASSERT_TRUE(connections.Find("")) << "the built-in one";
  EXPECT_TRUE(connections.Find("")->Simulated());
  EXPECT_FALSE(connections.Remove("Simulator"));
  EXPECT_FALSE(connections.Find("Werk"));
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
  const std::pair<Connection, int> cases[] = {
      {{"t", "serial", "", 0, "", 1}, text::kDeviceProblem},
      {{"t", "serial", "", 0, "/dev/x", 0}, text::kBaudProblem},
      {{"t", "serial", "", 0, "/dev/x", 1, "some"}, text::kFramingProblem},
      {{"t", "serial", "", 0, "/dev/x", 1, "even", "3"}, text::kFramingProblem},
      {{"t", "modem", "h", 1, {}}, text::kKindProblem},
      {Tcp("", "h", 1), text::kNameProblem},
      {Tcp("a\\b", "h", 1), text::kNameProblem},
      {Tcp("a/b", "h", 1), text::kNameProblem},
      {Tcp("a\nb", "h", 1), text::kNameProblem},
      {Tcp(" t", "h", 1), text::kNameProblem},
      {Tcp("t", "", 1), text::kHostProblem},
      {Tcp("t", "h", 0), text::kPortProblem},
      {Tcp("t", "h", 65536), text::kPortProblem},
      {{"t", "serial", "", 0, "/dev/x", 1, "even", "1.5"}, 0},
  };
  for (const auto& [connection, problem] : cases) {
    EXPECT_EQ(connections.Problem(connection), problem) << connection.name << connection.Target();
    EXPECT_EQ(connections.Add(connection), problem == 0) << connection.name << connection.Target();
  }
}

TEST(Connections, ChangesKeepWhatIsNotTheirs) {
  const struct {
    const char *name, *newName;
    int port;
    bool changed;
    const char* current;
  } cases[] = {
      {"werk", "Werk", 2, true, "Werk"},    {"Werk", "Halle", 1, true, "Halle"},
      {"Werk", "WERK", 1, true, "WERK"},    {"Anlage", "Halle", 1, true, "Werk"},
      {"Werk", "anlage", 1, false, "Werk"}, {"Werk", "a/b", 1, false, "Werk"},
      {"Werk", "Werk", 0, false, "Werk"},   {"Simulator", "Halle", 1, false, "Werk"},
  };
  for (const auto& c : cases) {
    kit::MemorySettings settings;
    Connections connections(settings);
    ASSERT_TRUE(connections.Add(Tcp("Werk", "h", 1)) && connections.Add(Tcp("Anlage", "h", 1)));
    ASSERT_TRUE(connections.Use("Werk"));
    EXPECT_EQ(connections.Change(c.name, Tcp(c.newName, "h", c.port)), c.changed) << c.newName;
    EXPECT_EQ(connections.List().size(), 3u) << c.newName;
    EXPECT_EQ(connections.Current(), c.current) << c.newName;
    const auto now = connections.Find(c.changed ? c.newName : "Werk");
    EXPECT_TRUE(now && now->port == (c.changed ? c.port : 1)) << c.newName;
  }
}

TEST(ConnectionTest, SaysWhichStepFailedAndWhatMendsIt) {
  using enum TestStep;
  const int first[] = {text::kTestNoServer, text::kTestNotOpen, text::kTestNoAnswer,
                       text::kTestPassed};  // by step
  const struct {
    const char *answer, *member;  // null: none comes; what fails, and what it raises
    AutomationResult raised;
    TestStep step;
    int code, more;
    const char* told;
  } cases[] = {
      {"AA:<b>\x1b", "", {}, kDone, 0, 0, "\nAA:dirn_ → AA:<b>␛"},
      {"a\r\nb\x07", "", {}, kDone, 0, 0, "→ a\nb␇"},
      {"<<no>>", "", {}, kDone, 0, text::kErrorAnswer, "→ <<no>>"},
      {"", "", {}, kDone, 0, text::kEmptyAnswer, "AA:dirn_"},
      {"", "create", {}, kServer, 10065, text::kHelpServer, "\nattempt failed\n"},
      {"", "COpen", ObjectError(10041, "lost"), kServer, 10041, text::kHelpServer, "\nlost\n"},
      {"", "COpen", ObjectError(10042, "re\x1b!"), kOpen, 10042, text::kHelpHost, "\nre␛!\n"},
      {"", "COpen", ObjectError(10027, ""), kOpen, 10027, text::kHelpAdapter, "\n10027: "},
      {"", "COpen", ObjectError(10014, "odd"), kOpen, 10014, 0, "\nodd"},
      {nullptr, "", {}, kAnswer, 10012, text::kHelpSilent, "\n10012: "},
      {"", "CReceive", ObjectError(10015, "?"), kAnswer, 10015, text::kHelpDisturbed, "\n?\n"},
  };
  for (const auto& c : cases) {
    kit::World world;
    Messages messages(world.dialogs);
    messages.SetFactor(1);
    ConnectionTest tester(world.factory, world.settings, world.clock, world.desktop.folder);
    if (c.answer != nullptr) world.server.answers["AA:dirn_"] = c.answer;
    if (!c.raised.Ok()) world.server.fails[c.member] = c.raised;
    if (std::string(c.member) == "create") world.server.failingCreations = 9;
    const ConnectionTestResult result = tester.Run("Werk");
    EXPECT_TRUE(result.step == c.step && result.code == c.code) << c.told << result.code;
    const std::string told = ConnectionTestText(result, messages);
    for (const std::string& part : {messages.Filled(first[int(c.step)], "Werk"),
                                    std::string(c.told), messages.Text(c.more)}) {
      EXPECT_NE(told.find(part), std::string::npos) << part << " in: " << told;
    }
    EXPECT_FALSE(told.ends_with('\n')) << told;
    EXPECT_EQ(world.server.closed, std::ssize(world.server.opened)) << "the channel stays open";
    EXPECT_TRUE(world.dialogs.shown.empty() && world.server.choosers.empty()) << told;
  }
}

}  // namespace
}  // namespace ostrel
