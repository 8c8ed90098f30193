// ostrel-server: the communication server as a program of its own.

#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <QCoreApplication>
#include <QDateTime>
#include <QSocketNotifier>
#include <iostream>
#include <string>

#include "platform/registry_settings.h"
#include "server/rpc_server.h"

namespace {

constexpr int kDefaultIdleS = 600;

void Log(const std::string& text) {
  std::cerr << QDateTime::currentDateTime().toString(Qt::ISODateWithMs).toStdString() << "  "
            << text << std::endl;
}

/// A descriptor that becomes readable when the process is asked to end.
int EndSignals() {
  signal(SIGPIPE, SIG_IGN);
  sigset_t blocked;
  sigemptyset(&blocked);
  sigaddset(&blocked, SIGTERM);
  sigaddset(&blocked, SIGINT);
  sigprocmask(SIG_BLOCK, &blocked, nullptr);
  return signalfd(-1, &blocked, SFD_CLOEXEC | SFD_NONBLOCK);
}

int Serve(QCoreApplication& application, int idleS, bool verbose) {
  QSocketNotifier ending(EndSignals(), QSocketNotifier::Read);
  QObject::connect(&ending, &QSocketNotifier::activated, &application, &QCoreApplication::quit);

  ostrel::RegistrySettings settings;
  ostrel::CommServer comm(settings);
  if (verbose) comm.TraceTo(&Log);
  ostrel::RpcServer server(comm, idleS * 1000);
  QObject::connect(&server, &ostrel::RpcServer::Ended, &application, &QCoreApplication::quit,
                   Qt::QueuedConnection);
  QObject::connect(&server, &ostrel::RpcServer::Noted, &application,
                   [](const QString& text) { Log(text.toStdString()); });

  const QString path = ostrel::SocketPath();
  const ostrel::SocketClaim claim = server.Listen(path);
  if (claim.kind == ostrel::SocketClaim::kAlreadyRunning) {
    Log("already running");
    return 0;
  }
  if (claim.kind == ostrel::SocketClaim::kRefused) {
    Log(claim.reason.toStdString());
    return 1;
  }
  Log("listening at " + path.toStdString());
  const int status = application.exec();
  Log("ends");
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App options("The communication server: owns the connections to the devices.",
                   "ostrel-server");
  bool verbose = false;
  int idleS = kDefaultIdleS;
  options.add_flag("--verbose", verbose, "Show each line to and from the devices");
  options.add_option("--idle", idleS, "End so many seconds after the last client has gone")
      ->check(CLI::Range(1, 1000000))
      ->capture_default_str();
  options.set_version_flag("--version", OSTREL_VERSION);
  try {
    options.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return options.exit(error) == 0 ? 0 : 2;
  }
  // Qt's own event loop takes a tenth less time for an exchange than GLib's.
  qputenv("QT_NO_GLIB", "1");
  QCoreApplication application(argc, argv);
  return Serve(application, idleS, verbose);
}
