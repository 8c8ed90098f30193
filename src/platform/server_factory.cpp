#include "platform/server_factory.h"

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <algorithm>
#include <cerrno>
#include <utility>

#include "platform/event_pump.h"
#include "platform/in_process_server.h"
#include "server/socket_path.h"

namespace ostrel {

namespace {

constexpr int kStartMs = 5000;
constexpr int kRetryMs = 10;
constexpr char kAlreadyRunning[] = "already running";  // as the server says it

/// The program beside this one, else the one on the search path.
QString ServerProgram() {
  const QString name = QStringLiteral("ostrel-server");
  const QString beside = QCoreApplication::applicationDirPath() + QLatin1Char('/') + name;
  return QFileInfo::exists(beside) ? beside : QStandardPaths::findExecutable(name);
}

/// A server that was started, and may end at once.
class StartedServer {
 public:
  ~StartedServer() {
    if (descriptor_ >= 0) close(descriptor_);
  }

  /// False with the problem when it could not be started.
  bool Start(std::string& problem) {
    const QString folder = QFileInfo(SocketPath()).path();
    if (!MakePrivateFolder(folder)) {
      problem = folder.toStdString() + ": no private folder";
      return false;
    }
    QProcess server;
    server.setProgram(ServerProgram());
    if (server.program().isEmpty()) {
      problem = "ostrel-server: not found";
      return false;
    }
    log_ = folder + QStringLiteral("/server.log");
    logBefore_ = QFileInfo(log_).size();
    server.setStandardInputFile(QProcess::nullDevice());
    server.setStandardOutputFile(QProcess::nullDevice());
    server.setStandardErrorFile(log_, QIODevice::Append);
    qint64 pid = 0;
    if (!server.startDetached(&pid)) {
      problem = "ostrel-server: " + server.errorString().toStdString();
      return false;
    }
    // It is nobody's child: only so its end is seen. What is gone already has no descriptor.
    descriptor_ = static_cast<int>(syscall(SYS_pidfd_open, static_cast<pid_t>(pid), 0));
    gone_ = descriptor_ < 0 && errno == ESRCH;
    return true;
  }

  bool Ended() {
    pollfd end{descriptor_, POLLIN, 0};
    gone_ = gone_ || (descriptor_ >= 0 && poll(&end, 1, 0) > 0);
    return gone_;
  }

  /// What it said last, without the time.
  std::string LastWords() const {
    QFile log(log_);
    if (!log.open(QIODevice::ReadOnly)) return {};
    log.seek(std::max(logBefore_, log.size() - kMaxWords));
    const QByteArray line = log.readAll().trimmed().split('\n').last();
    const qsizetype time = line.indexOf("  ");
    return line.mid(time < 0 ? 0 : time + 2).toStdString();
  }

 private:
  static constexpr qint64 kMaxWords = 4096;

  QString log_;
  qint64 logBefore_ = 0;
  int descriptor_ = -1;
  bool gone_ = false;
};

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
  StartedServer server;
  if (!proxy && !server.Start(problem)) return {nullptr, problem};
  QElapsedTimer passed;
  passed.start();
  while (!proxy && passed.elapsed() < kStartMs) {
    PumpEvents(kRetryMs);
    const bool ended = server.Ended();
    proxy = Running();
    // One that finds another running leaves the rest to that one.
    if (proxy || !ended || server.LastWords() == kAlreadyRunning) continue;
    return {nullptr, "ostrel-server has ended: " + server.LastWords()};
  }
  if (!proxy) return {nullptr, "ostrel-server does not listen"};
  // Only an answer shows that the server serves.
  const AutomationResult answer = proxy->Call("CAbout", {std::string("hello")});
  if (!answer.Ok()) return {nullptr, answer.description};
  return {std::move(proxy), {}};
}

}  // namespace ostrel
