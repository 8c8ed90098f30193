#include "wire/connections.h"

#include <gtest/gtest.h>

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

}  // namespace
}  // namespace ostrel
