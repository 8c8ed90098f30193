#include "platform/server_factory.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <utility>

#include "platform/event_pump.h"
#include "platform/in_process_server.h"
#include "server/socket_path.h"

namespace ostrel {

namespace {

constexpr int kStartMs = 5000;
constexpr int kRetryMs = 10;

/// The program beside this one, else the one on the search path.
QString ServerProgram() {
  const QString name = QStringLiteral("ostrel-server");
  const QString beside = QCoreApplication::applicationDirPath() + QLatin1Char('/') + name;
  return QFileInfo::exists(beside) ? beside : QStandardPaths::findExecutable(name);
}

bool StartServer(std::string& problem) {
  const QString folder = QFileInfo(SocketPath()).path();
  if (!MakePrivateFolder(folder)) {
    problem = folder.toStdString() + ": no private folder";
    return false;
  }
  QProcess server;
  server.setProgram(ServerProgram());
  server.setStandardInputFile(QProcess::nullDevice());
  server.setStandardOutputFile(QProcess::nullDevice());
  server.setStandardErrorFile(folder + QStringLiteral("/server.log"), QIODevice::Append);
  if (!server.program().isEmpty() && server.startDetached()) return true;
  problem = "ostrel-server: " + server.errorString().toStdString();
  return false;
}

}  // namespace

std::unique_ptr<ServerProxy> ServerFactory::Running() {
  auto proxy = std::make_unique<ServerProxy>(SocketPath());
  if (!proxy->Connected()) return nullptr;
  return proxy;
}

AutomationFactory::Created ServerFactory::Create(std::string_view className) {
  if (className == "OstrelTESK.TESKComm") return {std::make_unique<InProcessServer>(), {}};
  if (className != "ZubServer.TESKComm") return {nullptr, "class not registered"};
  std::unique_ptr<ServerProxy> proxy = Running();
  std::string problem;
  if (!proxy && !StartServer(problem)) return {nullptr, problem};
  QElapsedTimer passed;
  passed.start();
  while (!proxy && passed.elapsed() < kStartMs) {
    PumpEvents(kRetryMs);
    proxy = Running();
  }
  if (!proxy) return {nullptr, "ostrel-server does not listen"};
  // Only an answer shows that the server serves.
  const AutomationResult answer = proxy->Call("CAbout", {std::string("hello")});
  if (!answer.Ok()) return {nullptr, answer.description};
  return {std::move(proxy), {}};
}

}  // namespace ostrel
