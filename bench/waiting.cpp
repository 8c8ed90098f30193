// The processor time that waiting for a slow device costs, program and server.

#include <unistd.h>

#include <QCoreApplication>
#include <chrono>
#include <iomanip>
#include <iostream>

#include "processes.h"
#include "system.h"

namespace ostrel::bench {
namespace {

constexpr int kDelayMs = 3000;
constexpr int kWaits = 3;
constexpr double kLimit = 3.0;  // percent of one core, both together

int Run(int argc, char** argv) {
  const Server server;
  const TcpDevice device("1", kDelayMs);
  QCoreApplication application(argc, argv);
  Program program(device.Port());
  const double programBefore = CpuSeconds(getpid());
  const double serverBefore = CpuSeconds(server.Pid());
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < kWaits; ++i) program.Exchange("AA:feature 0");
  const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
  const double ofProgram = 100 * (CpuSeconds(getpid()) - programBefore) / passed.count();
  const double ofServer = 100 * (CpuSeconds(server.Pid()) - serverBefore) / passed.count();
  std::cout << std::fixed << std::setprecision(2) << "processor time while " << kWaits
            << " answers are awaited for " << kDelayMs / 1000 << " s each, % of one core\n"
            << "program  server  together   limit\n"
            << std::setw(7) << ofProgram << std::setw(8) << ofServer << std::setw(10)
            << ofProgram + ofServer << std::setw(8) << kLimit << '\n';
  return 0;
}

}  // namespace
}  // namespace ostrel::bench

int main(int argc, char** argv) {
  return ostrel::bench::RunMain(argc, argv, &ostrel::bench::Run);
}
