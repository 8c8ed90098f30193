#pragma once

#include <gtest/gtest.h>

#include <sstream>

#include "cli/cli.h"
#include "kit/kit.h"

namespace ostrel::kit {

class NoServer : public ServerControl {
 public:
  std::optional<ServerInfo> Status() override { return info; }
  std::optional<bool> Stop() override { return info ? std::optional(info->answers) : std::nullopt; }
  std::optional<ServerInfo> info;
};

struct CliTest : testing::Test {
  World world;
  NoServer control;
  std::string out, err;

  int Run(const std::vector<std::string>& arguments, const std::string& input = "",
          bool interactive = false) {
    std::istringstream in(input);
    std::ostringstream outStream, errStream;
    const ExitStatus status = RunCli(arguments, {.settings = world.settings,
                                                 .automation = world.factory,
                                                 .clock = world.clock,
                                                 .desktop = world.desktop,
                                                 .server = control,
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

}  // namespace ostrel::kit
