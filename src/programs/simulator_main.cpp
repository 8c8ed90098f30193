// ostrel-simulator: the simulated devices behind a TCP port, a pseudo-terminal or both.

#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QHostAddress>
#include <QSocketNotifier>
#include <QTcpServer>
#include <QTcpSocket>
#include <functional>
#include <iostream>
#include <memory>
#include <string>

#include "platform/end_signals.h"
#include "programs/simulator_pty.h"
#include "programs/simulator_options.h"
#include "programs/simulator_tcp.h"
#include "simulator/station_file.h"
#include "simulator/steady_clock.h"

namespace {

using namespace ostrel::simulator;

/// The files that the options name.
struct Files {
  StationFile stations;
  Replay replay;
  Record record{std::cerr};
};

bool Complain(const std::string& failure) {
  if (!failure.empty()) std::cerr << "ostrel-simulator: " << failure << std::endl;
  return !failure.empty();
}

/// False when one of them, or what is wanted of it, is not to be had.
bool Open(Files& files, const Options& options) {
  if (!options.stations.empty() && Complain(files.stations.Load(options.stations))) return false;
  const std::size_t onBus = files.stations.Stations().size();
  const std::size_t count = onBus > 0 ? onBus : BuiltInStations().size();
  if (options.connected >= count) {
    return !Complain("--connected: the bus has " + std::to_string(count) + " stations");
  }
  if (!options.replay.empty()) {
    if (Complain(files.replay.Load(options.replay))) return false;
    const std::string complaint = files.replay.Complaint();
    Complain(complaint.empty() ? complaint : options.replay + ": " + complaint);
  }
  if (options.record.empty()) return true;
  const std::string failure = files.record.Open(options.record);
  return failure.empty() || !Complain(options.record + ": " + failure);
}

bool Listens(const std::string& place, const std::string& failure) {
  if (failure.empty()) {
    std::cout << "listening on " << place << std::endl;
  } else {
    std::cerr << "ostrel-simulator: cannot listen on " << place << ": " << failure << std::endl;
  }
  return failure.empty();
}

bool Listen(QTcpServer& server, const Options& options, Simulation& simulation) {
  QObject::connect(&server, &QTcpServer::newConnection, &server, [&] {
    while (QTcpSocket* socket = server.nextPendingConnection()) new TcpHost(socket, simulation);
  });
  const QHostAddress address(QString::fromStdString(options.address));
  const bool listening = server.listen(address, static_cast<quint16>(*options.port));
  const int port = listening ? server.serverPort() : *options.port;
  return Listens(options.address + ":" + std::to_string(port),
                 listening ? "" : server.errorString().toStdString());
}

/// Has the function called from the event loop at each of these signals.
std::unique_ptr<QSocketNotifier> OnSignal(int number, const std::function<void()>& function) {
  sigset_t asking;
  sigemptyset(&asking);
  sigaddset(&asking, number);
  sigprocmask(SIG_BLOCK, &asking, nullptr);
  const int descriptor = signalfd(-1, &asking, SFD_NONBLOCK | SFD_CLOEXEC);
  if (descriptor < 0) return nullptr;
  auto notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
  QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(),
                   [descriptor, function] {
                     signalfd_siginfo signal;
                     while (read(descriptor, &signal, sizeof(signal)) > 0) function();
                   });
  return notifier;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (const int status = ParseOptions(argc, argv, options); status >= 0) return status;
  // Whoever no longer reads the messages does not end the program without its tidying up.
  signal(SIGPIPE, SIG_IGN);
  QCoreApplication application(argc, argv);
  const ostrel::EndSignals asked(&QCoreApplication::quit);

  Files files;
  if (!Open(files, options)) return 2;
  const BusStart start{.seed = options.seed,
                       .clock = RealTime(options.speed),
                       .connected = options.connected,
                       .stations = files.stations.Stations(),
                       .extras = options.extras};
  Simulation simulation{.bus = Bus(start),
                        .fault = options.fault,
                        .baud = options.baud,
                        .replay = options.replay.empty() ? nullptr : &files.replay,
                        .record = options.record.empty() ? nullptr : &files.record};
  const auto report = [&] { std::cout << simulation.count.Text() << std::endl; };
  const auto reporting = OnSignal(SIGUSR1, report);
  const auto startingBootloader = OnSignal(SIGUSR2, [&simulation] {
    simulation.bus.StartBootloader();
    std::cout << "bootloader started" << std::endl;
  });
  QTcpServer server;
  if (options.port && !Listen(server, options, simulation)) return 1;
  PtyHost terminal(simulation, options.terminal);
  if (!options.terminal.empty() && !Listens(options.terminal, terminal.Open())) return 1;
  const int status = QCoreApplication::exec();
  report();
  return status;
}
