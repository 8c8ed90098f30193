// What the way through link and server adds to one exchange, measured against a bare relay: the
// round trip of a line of 40 bytes and an answer of 40 bytes.

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QCoreApplication>
#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <iomanip>
#include <iostream>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "processes.h"
#include "system.h"

namespace ostrel::bench {
namespace {

constexpr int kRounds = 15;
constexpr int kExchanges = 400;  // of each kind in each round
constexpr int kWarmUp = 50;
const std::string kLine = "AA:feature 0,feature 1,feature 2,feature";
const std::string kAnswer = "10.25, 10.50, 10.75, 11.00, 11.25, 11.50";

/// Passes bytes on between a unix socket and a TCP connection, and does nothing else.
[[noreturn]] void Relay(int client, int port) {
  std::array<pollfd, 2> ends{pollfd{client, POLLIN, 0}, pollfd{ConnectTcp(port), POLLIN, 0}};
  char bytes[4096];
  for (;;) {
    poll(ends.data(), ends.size(), -1);
    for (std::size_t i = 0; i < ends.size(); ++i) {
      if (ends[i].revents == 0) continue;
      const ssize_t count = read(ends[i].fd, bytes, sizeof(bytes));
      if (count <= 0) _exit(0);
      WriteAll(ends[1 - i].fd, {bytes, static_cast<std::size_t>(count)});
    }
  }
}

/// The client of the relay; its exchange is a write and the reads up to the end of the reply.
class RelayedDevice {
 public:
  explicit RelayedDevice(int port) : ends_(NewPair()), relay_([&] { Relay(ends_[1], port); }) {}
  ~RelayedDevice() {
    for (const int end : ends_) close(end);
  }
  pid_t Pid() const { return relay_.Pid(); }

  void Exchange() {
    WriteAll(ends_[0], kLine + '\r');
    char bytes[4096];
    for (std::string_view part; !part.ends_with('\x1A');) {
      const ssize_t count = read(ends_[0], bytes, sizeof(bytes));
      if (count <= 0) throw std::runtime_error("the relay is gone");
      part = {bytes, static_cast<std::size_t>(count)};
    }
  }

 private:
  static std::array<int, 2> NewPair() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
      throw std::runtime_error("no socket pair");
    }
    return ends;
  }

  std::array<int, 2> ends_;
  Child relay_;
};

/// Round trips in microseconds.
using Times = std::vector<double>;

void Measure(const std::function<void()>& exchange, Times& times) {
  using Clock = std::chrono::steady_clock;
  for (int i = 0; i < kWarmUp; ++i) exchange();
  for (int i = 0; i < kExchanges; ++i) {
    const auto start = Clock::now();
    exchange();
    times.push_back(std::chrono::duration<double, std::micro>(Clock::now() - start).count());
  }
}

double Median(Times& times) {
  const auto middle = times.begin() + std::ssize(times) / 2;
  std::nth_element(times.begin(), middle, times.end());
  return *middle;
}

struct Setting {
  std::string_view name;
  void (*place)(pid_t);
  double limit;  // of the ratio
  Times relay;
  Times system;
};

void Print(Setting& setting) {
  const double relay = Median(setting.relay);
  const double system = Median(setting.system);
  std::cout << std::left << std::setw(14) << setting.name << std::right << std::fixed
            << std::setprecision(1) << std::setw(8) << relay << std::setw(10) << system
            << std::setprecision(2) << std::setw(8) << system / relay << std::setw(8)
            << setting.limit << '\n';
}

int Run(int argc, char** argv) {
  const Server server;
  const TcpDevice near(kAnswer);
  const TcpDevice far(kAnswer);
  RelayedDevice relayed(near.Port());
  QCoreApplication application(argc, argv);
  Program program(far.Port());
  if (const std::string answer = program.Exchange(kLine); answer != kAnswer) {
    throw std::runtime_error("the answer is \"" + answer + "\"");
  }
  std::array settings{Setting{"one core", &PinToOneCore, 3.0, {}, {}},
                      Setting{"all cores", &SetFree, 1.4, {}, {}}};
  for (int round = 0; round < kRounds; ++round) {
    for (Setting& setting : settings) {
      for (const pid_t pid : {getpid(), server.Pid(), near.Pid(), far.Pid(), relayed.Pid()}) {
        setting.place(pid);
      }
      Measure([&] { relayed.Exchange(); }, setting.relay);
      Measure([&] { program.Exchange(kLine); }, setting.system);
    }
  }
  std::cout << "median round trip of " << kRounds * kExchanges << " exchanges, microseconds\n"
            << "                 relay    system   ratio   limit\n";
  std::for_each(settings.begin(), settings.end(), Print);
  return 0;
}

}  // namespace
}  // namespace ostrel::bench

int main(int argc, char** argv) {
  return ostrel::bench::RunMain(argc, argv, &ostrel::bench::Run);
}
