#include "cli/cli.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "base/text.h"
#include "kit/kit.h"
#include "terminal/json.h"

namespace ostrel {
namespace {

class NoServer : public ServerControl {
 public:
  std::optional<ServerInfo> Status() override { return info; }
  std::optional<bool> Stop() override { return info ? std::optional(info->answers) : std::nullopt; }
  std::optional<ServerInfo> info;
};

struct CliTest : testing::Test {
  kit::World world;
  NoServer control;
  std::string out, err;

  int Run(const std::vector<std::string>& arguments, const std::string& input = "",
          bool interactive = false) {
    std::istringstream in(input);
    std::ostringstream outStream, errStream;
    const ExitStatus status =
        RunCli(arguments, {.settings = world.settings,
                           .automation = world.factory,
                           .clock = world.clock,
                           .desktop = world.desktop,
                           .server = control,
                           .paintChart = [](const TapCounters&, const Messages&) { return "PNG"; },
                           .in = in,
                           .out = outStream,
                           .err = errStream,
                           .interactive = interactive});
    out = outStream.str();
    err = errStream.str();
    return static_cast<int>(status);
  }

  void SetUp() override {
    std::string counters;
    for (int n = 0; n < 120; ++n) counters += "1\r\n";
    world.server.answers = {
        {"AA:dirn_", "AA:Nord"},         {"AA:ver.", "KT-X+;V2.27"},
        {"AA:sysSN#", "123-A"},          {"AA:bad", "<<no\x1b[2J>>"},
        {"AA:login 1 geheim", "<<no>>"}, {"B1:ver.", "KT-XB+;V2.10"},
        {"B2:dirn_", "<<no: such>>"},    {"AA:;-60,59,fori,RegTAPSTAT# 1 i,ni", counters},
        {"AA:RegTAPSUM#", "120"},        {"AA:RegTAPSUML#", "-1"},
        {"AA:RegTAPSTATCL*=0", ""},      {"AA:dirn_\r\n", "AA:Nord"},
        {"aa:passwort- 0,dr,!", "5"},    {R"(all,station&#,!+";", ver.+)", "AA:Nord;KT-X+;V2.27"}};
  }
};

TEST_F(CliTest, ExitStatusAndStreams) {
  const struct {
    std::vector<std::string> arguments;
    int status;
    const char *out, *err;  // what stands there somewhere
  } cases[] = {
      {{"--version"}, 0, "ostrel " OSTREL_VERSION, ""},
      {{"connections", "add", "--help"}, 0, "--baud", ""},
      {{}, 2, "", "subcommand"},
      {{"identify", "--station", ""}, 2, "", "--station"},
      {{"identify", "--station", "B1,x"}, 2, "", "not the address"},
      {{"--language", "ita", "text", "1000"}, 2, "", "ita"},
      {{"text", "10012", "--language", "eng"}, 0, "Timeout! Device did not reply.\n", ""},
      {{"text", "999"}, 0, "\n", ""},
      {{"send", "ver."}, 0, "KT-X+;V2.27\n", ""},
      {{"--station", "B1", "send", "ver."}, 0, "KT-XB+;V2.10\n", ""},
      {{"--station", "B1:", "send", "AA:ver."}, 0, "KT-X+;V2.27\n", ""},
      {{"send", "bad"}, 1, "", "1280: "},
      {{"send", "silent"}, 1, "", "10012: "},
      {{"--station", "ZZ", "identify"}, 1, "", "10012: "},
      {{"--station", "B2", "identify"}, 1, "", "20013: "},
      {{"statistics", "--chart", "/no/such/folder/x.png"}, 1, "", "/no/such/folder/x.png"},
      {{"statistics", "--csv"}, 0, "\n59,1\ntotal,120\nunderLoad,65535\n", ""},
      {{"statistics", "clear"}, 3, "", "20009: "},
      {{"statistics", "clear", "--yes"}, 0, "", ""},
      {{"connections", "remove", "x"}, 1, "", "x"},
      {{"connections", "test", "W"}, 0, "W arbeitet.\nAA:dirn_ → AA:Nord\n", ""},
      {{"connections", "test", "--connection", "V"}, 0, " V ", ""},
      {{"connections", "add", "W", "tcp", "host"}, 2, "", "W host"},
      {{"connections", "add", "Six", "tcp", "[::1]:4001"}, 0, "tcp        [::1]:4001\n", ""},
      {{"connections", "add", "W", "tcp", "host:4001x"}, 2, "", "W host:4001x"},
      {{"send", "login 1 geheim"}, 1, "", "AA:login ***\n<<no>>"},
      {{"server", "status"}, 0, "läuft nicht", ""},
  };
  for (const auto& c : cases) {
    std::string called;
    for (const std::string& argument : c.arguments) called += argument + " ";
    EXPECT_EQ(Run(c.arguments), c.status) << called << err;
    EXPECT_NE(out.find(c.out), std::string::npos) << called << out;
    EXPECT_NE(err.find(c.err), std::string::npos) << called << err;
    EXPECT_EQ(out.empty(), *c.out == 0) << called << out;
    EXPECT_EQ(err.empty(), *c.err == 0) << called << err;
    EXPECT_EQ((out + err).find('\x1b'), std::string::npos) << called;
  }
}

TEST_F(CliTest, JsonAndNothingElse) {
  std::string ones = "1";
  for (int n = 1; n < 120; ++n) ones += ", 1";
  const struct {
    std::vector<std::string> arguments;
    std::string out;
  } cases[] = {
      {{"identify"},
       R"({"address": "AA:", "name": "Nord", "type": "KT-X", "model": 0, "modelName": "KT-X", )"
       R"("firmware": "2.27", "serial": "123-A"})"},
      {{"stations"},
       R"([{"address": "AA:", "name": "Nord", "type": "KT-X", "version": "2.27", )"
       R"("current": true}])"},
      {{"statistics"},
       R"({"first": -60, "counters": [)" + ones + R"(], "total": 120, "underLoad": 65535})"},
      {{"send", "ver.", "bad"},
       R"([{"line": "AA:ver.", "answer": "KT-X+;V2.27", "ok": true},)"
       "\n "
       R"({"line": "AA:bad", "answer": "<<no\u001b[2J>>", "ok": false}])"},
      {{"--language", "eng", "--station", "B9", "identify"},
       R"({"error": {"number": 10012, "message": "Timeout! Device did not reply."}})"},
      {{"nonsense"}, R"({"error": {"number": 20015, "message": "unknown: nonsense"}})"},
      {{"server", "stop"}, R"({"stopped": false})"},
      {{"connections", "test"},
       R"({"connection": "Simulator", "ok": true, "step": "done", "answer": "AA:Nord"})"},
  };
  for (const auto& c : cases) {
    std::vector<std::string> arguments = c.arguments;
    arguments.emplace_back("--json");
    Run(arguments);
    EXPECT_EQ(out, c.out + "\n");
  }
  control.info = ServerInfo{.answers = false, .version = {}, .lines = {}};
  for (const char* command : {"status", "stop"}) {
    EXPECT_EQ(Run({"--json", "server", command}), 1);
    EXPECT_TRUE(out.starts_with(R"({"error": {"number": 10041, )")) << out;
  }
}

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

TEST_F(CliTest, ALostConnectionIsSaidAndEndsTheBlock) {
  world.server.fails["COpen"] = ObjectError(10042, "host nix: unknown");
  EXPECT_EQ(Run({"--connection", "nix", "stations"}), 1);
  EXPECT_NE(err.find("10042: "), std::string::npos) << err;
  EXPECT_NE(err.find("host nix: unknown"), std::string::npos) << err;

  world.server.fails = {{"CReceive", ObjectError(10041, "")}};
  EXPECT_EQ(Run({"send", "-"}, "ver.\nver.\n"), 1);
  EXPECT_EQ(world.server.sent, std::vector<std::string>{"AA:ver."});
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

TEST_F(CliTest, QuestionsAreAskedWhereSomebodySits) {
  const struct {
    const char *language, *input;
    bool interactive;
    int status;
  } cases[] = {
      {"deu", "j\n", true, 0},  {"eng", "Yes\n", true, 0}, {"fra", "o\n", true, 0},
      {"eng", "j\n", true, 3},  {"eng", "\n", true, 3},    {"eng", "", true, 3},
      {"eng", "y\n", false, 3},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Run({"statistics", "clear", "--language", c.language}, c.input, c.interactive),
              c.status)
        << c.language << c.input;
  }
}

TEST(Json, EscapesAndInvalidBytes) {
  const std::pair<std::string, const char*> cases[] = {
      {"a\"b\\c", R"("a\"b\\c")"},
      {"\r\n\t\x01\x7f", R"("\r\n\t\u0001\u007f")"},
      {"ü€😀", "\"ü€😀\""},
      {"\xff\xc3", "\"\uFFFD\uFFFD\""},
      {"\xed\xa0\x80", "\"\uFFFD\uFFFD\uFFFD\""},
      {std::string(1, 0), R"("\u0000")"},
  };
  for (const auto& [text, json] : cases) EXPECT_EQ(JsonString(text), json);
}

}  // namespace
}  // namespace ostrel
