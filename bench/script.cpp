// What a script costs above its bare exchanges: 5000 short lines through server and simulator, with
// the console log written, and whether the last lines take longer than the first.

#include <unistd.h>

#include <QCoreApplication>
#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <vector>

#include "app/program.h"
#include "pages/console/console.h"
#include "platform/program_desktop.h"
#include "system.h"
#include "terminal/terminal_dialogs.h"
#include "wire/connections.h"

namespace ostrel::bench {
namespace {

constexpr std::size_t kLines = 5000;
constexpr std::size_t kPart = 1000;
constexpr int kRounds = 5;
constexpr const char* kLine = "1,2,+,!";

using Clock = std::chrono::steady_clock;

/// The simulated bus of the same build on a port of its own.
class Simulator {
 public:
  Simulator()
      : out_(NewPipe()), process_([this] {
          const auto program =
              std::filesystem::read_symlink("/proc/self/exe").replace_filename("ostrel-simulator");
          dup2(out_[1], STDOUT_FILENO);
          execl(program.c_str(), program.c_str(), "--tcp", "0", static_cast<char*>(nullptr));
          throw std::runtime_error(program.string() + " does not start");
        }) {
    close(out_[1]);
    std::string said;
    for (char c = 0; c != '\n'; said += c) {
      if (read(out_[0], &c, 1) != 1) throw std::runtime_error("the simulator says no port");
    }
    port_ = std::stoi(said.substr(said.rfind(':') + 1));
  }
  ~Simulator() { close(out_[0]); }
  int Port() const { return port_; }

 private:
  std::array<int, 2> out_;
  Child process_;
  int port_ = 0;
};

/// Seconds for all lines, and for the first and the last thousand.
struct Times {
  double all = 0, first = 0, last = 0;
};

Times Between(const std::vector<Clock::time_point>& moments) {
  const auto seconds = [&](std::size_t from, std::size_t to) {
    return std::chrono::duration<double>(moments.at(to) - moments.at(from)).count();
  };
  return {seconds(0, kLines), seconds(0, kPart), seconds(kLines - kPart, kLines)};
}

Times SendScript(Console& console, const std::string& script) {
  std::vector<Clock::time_point> moments;
  console.onSending = [&](const SentLine&) { moments.push_back(Clock::now()); };
  if (console.Send(script, {}) != Ending::kDone) throw std::runtime_error("not sent");
  moments.push_back(Clock::now());
  return Between(moments);
}

Times SendBare(Link& link) {
  std::vector<Clock::time_point> moments = {Clock::now()};
  const std::string line = std::string("AA:;") + kLine;
  for (std::size_t n = 0; n < kLines; ++n) {
    const Answer answer = link.CommandExchangeCode(link.CurrentChannel(), line);
    if (answer.text != "3") throw std::runtime_error("the answer is \"" + answer.text + "\"");
    moments.push_back(Clock::now());
  }
  return Between(moments);
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

int Run(int argc, char** argv) {
  const Server server;
  const Simulator simulator;
  QCoreApplication application(argc, argv);
  RegistrySettings settings;
  Connections(settings).Add({.name = "bench",
                             .kind = "tcp",
                             .host = "127.0.0.1",
                             .port = simulator.Port(),
                             .device = {}});
  ServerFactory automation;
  std::ostringstream told;
  TerminalDialogs dialogs(std::cin, told, {.yes = true});
  EventClock clock;
  ProgramDesktop desktop;
  ostrel::Program program({settings, automation, dialogs, clock, desktop},
                          {.connection = "bench", .chooser = false}, "eng");
  const Desk desk = program.MakeDesk();
  if (!desk.session.DeviceSelectByAddress("AA:")) throw std::runtime_error(told.str());
  Link link(automation, settings, clock, desktop.ProgramFolder());
  if (link.ConnectionOpen("bench")) throw std::runtime_error("no channel beside the first");
  Console console(desk);
  console.Log().SetFile(std::filesystem::path(std::getenv("XDG_RUNTIME_DIR")) / "log.txt");
  std::string script;
  for (std::size_t n = 0; n < kLines; ++n) script += std::string(kLine) + "\r\n";

  std::vector<double> ratios, growths, bare, sent;
  for (int round = 0; round < kRounds; ++round) {
    const Times without = SendBare(link);
    const Times with = SendScript(console, script);
    bare.push_back(kLines / without.all);
    sent.push_back(kLines / with.all);
    ratios.push_back(with.all / without.all);
    growths.push_back(with.last / with.first);
  }
  std::cout << "medians of " << kRounds << " scripts of " << kLines << " lines, lines a second\n"
            << "    bare    script   ratio   last/first thousand\n"
            << std::fixed << std::setprecision(0) << std::setw(8) << Median(bare) << std::setw(10)
            << Median(sent) << std::setprecision(2) << std::setw(8) << Median(ratios)
            << std::setw(10) << Median(growths) << '\n';
  return 0;
}

}  // namespace
}  // namespace ostrel::bench

int main(int argc, char** argv) {
  return ostrel::bench::RunMain(argc, argv, &ostrel::bench::Run);
}
