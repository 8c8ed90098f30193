#include <algorithm>

#include "cli/fixture.h"

namespace ostrel {
namespace {

using kit::CliTest;

TEST_F(CliTest, ConnectionsAreNotLostSilently) {
  const char* const tcp = R"("tcp", "target": "h:1", "current": true, "host": "h", "port": 1})";
  const char* const serial =
      R"("serial", "target": "/dev/x, 300 baud", "current": true, "device": "/dev/x", )"
      R"("baud": 300, "parity": "none", "stopBits": "1"})";
  ASSERT_EQ(Run({"connections", "add", "W", "tcp", "h:1"}), 0);
  ASSERT_EQ(Run({"connections", "use", "w"}), 0);
  const struct {
    std::vector<std::string> arguments;
    int status;
    const char *name, *stored;  // the connection beside the built-in one afterwards
  } steps[] = {
      {{"add", "w", "serial", "/dev/x"}, 1, "W", tcp},
      {{"add", "V", "tcp", "h:1", "--baud", "300"}, 2, "W", tcp},
      {{"add", "V", "simulator", "h"}, 2, "W", tcp},
      {{"change", "Simulator", "--name", "V"}, 1, "W", tcp},
      {{"change", "W", "--target", "h:x"}, 2, "W", tcp},
      {{"change", "W", "--parity", "even"}, 2, "W", tcp},
      {{"change", "W", "--kind", "serial"}, 2, "W", tcp},
      {{"change", "W", "--name", "V"}, 0, "V", tcp},
      {{"change", "v", "--kind=serial", "--target=/dev/x", "--baud=300"}, 0, "V", serial},
      {{"change", "V", "--stop-bits", "1"}, 0, "V", serial},
      {{"remove", "V"}, 3, "V", serial},
      {{"remove", "Simulator", "--yes"}, 1, "V", serial},
      {{"remove", "\\V", "--yes"}, 1, "V", serial},
  };
  for (const auto& step : steps) {
    std::vector<std::string> arguments = step.arguments;
    arguments.insert(arguments.begin(), "connections");
    EXPECT_EQ(Run(arguments), step.status) << arguments[1] << arguments[2] << err;
    EXPECT_EQ(Run({"connections", "--json"}), 0);
    const std::string only = std::string("false},\n {\"name\": \"") + step.name + "\", \"kind\": ";
    EXPECT_TRUE(out.ends_with(only + step.stored + "]\n")) << arguments[1] << arguments[2] << out;
  }
  EXPECT_EQ(Run({"connections", "remove", "V"}, "j\n", true), 0);
  EXPECT_EQ(out.find('V'), std::string::npos);
}

TEST_F(CliTest, AnotherConnectionIsOfferedWhereSomebodySits) {
  const struct {
    const char* input;
    bool interactive;
    int asked;  // how often
  } cases[] = {{"2\n1\n\n", true, 3}, {"7\nx\n0\n", true, 4}, {"", true, 1}, {"1\n", false, 0}};
  world.server.fails["COpen"] = ObjectError(10042, "refused");
  Run({"connections", "add", "Werk", "tcp", "192.0.2.7:4001"});
  for (const auto& c : cases) {
    EXPECT_EQ(Run({"--language", "eng", "identify"}, c.input, c.interactive), 1);
    EXPECT_EQ(std::count(err.begin(), err.end(), '='), c.asked) << c.input << err;
    EXPECT_NE(err.find("refused"), std::string::npos) << err;
    EXPECT_EQ(err.find("*  1  Simulator") == std::string::npos, !c.interactive) << err;
  }
  world.server.fails.clear();
  EXPECT_EQ(Run({"identify"}), 0);
}

}  // namespace
}  // namespace ostrel
