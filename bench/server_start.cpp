// The time until a first client has its first answer where no server runs yet, against nothing more
// than the start and the end of the server's program.

#include <fcntl.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <QCoreApplication>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <iomanip>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/server_factory.h"
#include "system.h"

namespace ostrel::bench {
namespace {

constexpr int kRuns = 25;

using Clock = std::chrono::steady_clock;

double MsSince(Clock::time_point start) {
  return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double FirstAnswerMs(int run) {
  // A folder of its own: nothing of an earlier server is there.
  const std::filesystem::path base = std::getenv("XDG_CONFIG_HOME");
  const std::filesystem::path folder = base / ("run" + std::to_string(run));
  std::filesystem::create_directory(folder);
  setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
  const auto start = Clock::now();
  const auto created = ServerFactory().Create("ZubServer.TESKComm");
  const double ms = MsSince(start);
  if (!created.object) throw std::runtime_error("no server: " + created.description);
  QJsonValue status;
  static_cast<ServerProxy&>(*created.object).Request("ServerStatus", {}, &status);
  const pid_t server = status["pid"].toInt();
  if (server <= 0 || kill(server, SIGTERM) != 0 || waitpid(server, nullptr, 0) != server) {
    throw std::runtime_error("the server does not end");
  }
  return ms;
}

double PlainMs() {
  const std::string program =
      (QCoreApplication::applicationDirPath() + "/ostrel-server").toStdString();
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
  char* arguments[] = {const_cast<char*>(program.c_str()), const_cast<char*>("--version"), nullptr};
  pid_t pid = 0;
  int status = -1;
  const auto start = Clock::now();
  const int error = posix_spawn(&pid, program.c_str(), &actions, nullptr, arguments, environ);
  if (error != 0 || waitpid(pid, &status, 0) != pid || status != 0) {
    throw std::runtime_error(program + " does not run");
  }
  const double ms = MsSince(start);
  posix_spawn_file_actions_destroy(&actions);
  return ms;
}

double Median(std::vector<double>& times) {
  std::sort(times.begin(), times.end());
  return times[times.size() / 2];
}

int Run(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  prctl(PR_SET_CHILD_SUBREAPER, 1);  // the servers become children of this process
  std::vector<double> plain, first;
  // The first run of each only warms the caches.
  for (int run = 0; run <= kRuns; ++run) {
    const double plainMs = PlainMs();
    const double firstMs = FirstAnswerMs(run);
    if (run == 0) continue;
    plain.push_back(plainMs);
    first.push_back(firstMs);
  }
  const double plainMs = Median(plain);
  const double firstMs = Median(first);
  std::cout << "medians of " << kRuns << " starts, milliseconds\n"
            << "--version  first answer   ratio\n"
            << std::fixed << std::setprecision(1) << std::setw(9) << plainMs << std::setw(14)
            << firstMs << std::setprecision(2) << std::setw(8) << firstMs / plainMs << '\n';
  return 0;
}

}  // namespace
}  // namespace ostrel::bench

int main(int argc, char** argv) {
  return ostrel::bench::RunMain(argc, argv, &ostrel::bench::Run);
}
