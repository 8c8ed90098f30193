// ostrel-server: the communication server as a program of its own.

#include <malloc.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <QCoreApplication>
#include <QDateTime>
#include <csignal>
#include <iostream>
#include <string>

#include "platform/end_signals.h"
#include "platform/registry_settings.h"
#include "server/rpc_server.h"

namespace {

constexpr int kDefaultIdleS = 600;
constexpr unsigned kLeaveS = 1;
constexpr int kLargeBlock = 128 * 1024;

void Log(const std::string& text) {
  std::cerr << QDateTime::currentDateTime().toString(Qt::ISODateWithMs).toStdString() << "  "
            << text << std::endl;
}

/// Lines with passwords pass through the memory: it is nobody's to see, not even after a crash.
void KeepMemoryPrivate() {
  const rlimit none{0, 0};
  setrlimit(RLIMIT_CORE, &none);
  prctl(PR_SET_DUMPABLE, 0);
}

int Serve(QCoreApplication& application, int idleS, bool verbose) {
  const ostrel::EndSignals asked(&QCoreApplication::quit);
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
  KeepMemoryPrivate();
  // What clients made large is given back when it is freed.
  mallopt(M_MMAP_THRESHOLD, kLargeBlock);
  // Qt's own event loop takes a tenth less time for an exchange than GLib's.
  qputenv("QT_NO_GLIB", "1");
  // A log that nobody reads any more is no reason to end.
  std::signal(SIGPIPE, SIG_IGN);
  QCoreApplication application(argc, argv);
  const int status = Serve(application, idleS, verbose);
  // Everything is given back. A host name that is still looked up would hold the process until the
  // system's own limit.
  std::signal(SIGALRM, [](int) { _exit(0); });
  alarm(kLeaveS);
  return status;
}
