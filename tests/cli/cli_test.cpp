#include "base/files.h"
#include "base/user_files.h"
#include "cli/fixture.h"

namespace ostrel {
namespace {

using kit::CliTest;

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

TEST_F(CliTest, TotalsThatAreNotReadCostNoCounters) {
  world.server.answers["AA:RegTAPSUM#"] = "<<unknown>>";
  EXPECT_EQ(Run({"statistics", "--csv"}), 1);
  EXPECT_TRUE(out.ends_with("\n59,1\ntotal,\nunderLoad,65535\n")) << out;
  EXPECT_NE(err.find("1280: "), std::string::npos) << err;
  EXPECT_EQ(Run({"statistics", "--json"}), 1);
  EXPECT_TRUE(out.ends_with("1], \"total\": null, \"underLoad\": 65535}\n")) << out;
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

TEST_F(CliTest, ALostConnectionIsSaidAndEndsTheBlock) {
  world.server.fails["COpen"] = ObjectError(10042, "host nix: unknown");
  EXPECT_EQ(Run({"--connection", "nix", "stations"}), 1);
  EXPECT_NE(err.find("10042: "), std::string::npos) << err;
  EXPECT_NE(err.find("host nix: unknown"), std::string::npos) << err;

  world.server.fails = {{"CReceive", ObjectError(10041, "")}};
  EXPECT_EQ(Run({"send", "-"}, "ver.\nver.\n"), 1);
  EXPECT_EQ(world.server.sent, std::vector<std::string>{"AA:ver."});
}

TEST_F(CliTest, AFailureSaysWhy) {
  const struct {
    const char* member;
    int code;
  } cases[] = {{"CSend", 10014}, {"CReceive", 10015}, {"CReceive", 10017}};
  for (const auto& c : cases) {
    const std::string number = std::to_string(c.code);
    world.server.fails = {{c.member, ObjectError(c.code, "because \x1b")}};
    for (const char* form : {"", "--json"}) {
      std::vector<std::string> arguments = {"--language", "eng", "send", "ver."};
      if (*form != 0) arguments.emplace_back(form);
      EXPECT_EQ(Run(arguments), 1) << number;
      EXPECT_TRUE(err.starts_with("ostrel: " + number + ": ")) << err;
      EXPECT_TRUE(err.ends_with("\nbecause ␛\n")) << err;
      if (*form == 0) continue;
      EXPECT_NE(out.find("{\"number\": " + number), std::string::npos) << out;
      EXPECT_TRUE(out.ends_with(R"(\nbecause \u001b"}}])"
                                "\n"))
          << out;
    }
    world.server.fails.clear();
  }
}

TEST_F(CliTest, ARunStandsInTheServiceLog) {
  world.settings.WriteShared(keys::kServiceMisc, "ServiceLog", "1");
  ASSERT_EQ(Run({"identify"}), 0);
  std::string log;
  ASSERT_EQ(ReadBytes(ServiceLogFile(world.desktop.DocumentsFolder()).string(), 9999, log), 0);
  const std::string version = ": Service " OSTREL_VERSION "\r\n";
  const std::size_t start = log.find("Start" + version);
  const std::size_t device = log.find("Device: AA:Nord, KT-X, 2.27, 123-A\r\n");
  EXPECT_TRUE(start < device && device < log.find("End" + version)) << log;
  EXPECT_TRUE(log.ends_with("End" + version)) << log;
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

}  // namespace
}  // namespace ostrel
