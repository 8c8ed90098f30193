#include "end_to_end/programs.h"

#include <QDir>

namespace ostrel {

namespace {

constexpr int kLimitMs = 20000;

}  // namespace

Programs::Programs() : environment_(QProcessEnvironment::systemEnvironment()) {
  environment_.insert("XDG_RUNTIME_DIR", folder_.path());
  environment_.insert("XDG_CONFIG_HOME", folder_.path() + "/config");
  environment_.insert("QT_QPA_PLATFORM", "offscreen");
}

Programs::~Programs() {
  Run({"server", "stop"});
}

void Programs::Enter() const {
  for (const QString& name :
       {QStringLiteral("XDG_RUNTIME_DIR"), QStringLiteral("XDG_CONFIG_HOME")}) {
    qputenv(name.toLatin1().constData(), environment_.value(name).toLocal8Bit());
  }
  // The server is looked for beside the program and then on the search path.
  qputenv("PATH", QByteArrayLiteral(OSTREL_PROGRAMS ":") + qgetenv("PATH"));
}

std::unique_ptr<QProcess> Programs::Start(const QString& program,
                                          const QStringList& arguments) const {
  auto process = std::make_unique<QProcess>();
  process->setProcessEnvironment(environment_);
  process->start(QStringLiteral(OSTREL_PROGRAMS) + "/" + program, arguments);
  EXPECT_TRUE(process->waitForStarted(kLimitMs)) << program.toStdString();
  return process;
}

Outcome Programs::Run(const QStringList& arguments, const QByteArray& input) const {
  const auto process = Start("ostrel", QStringList{"--language", "eng"} + arguments);
  process->write(input);
  process->closeWriteChannel();
  EXPECT_TRUE(process->waitForFinished(kLimitMs)) << arguments.join(' ').toStdString();
  EXPECT_EQ(process->exitStatus(), QProcess::NormalExit);
  return {process->exitCode(), process->readAllStandardOutput(), process->readAllStandardError()};
}

QString Programs::StartSimulator(std::unique_ptr<QProcess>& simulator,
                                 const QStringList& arguments) const {
  simulator = Start("ostrel-simulator", arguments);
  while (!simulator->canReadLine()) {
    if (!simulator->waitForReadyRead(kLimitMs)) return {};
  }
  return simulator->readLine().trimmed().split(':').last();
}

void Programs::Use(const QString& kind, const QString& target) const {
  EXPECT_EQ(Run({"connections", "add", "Bus", kind, target}).status, 0);
  EXPECT_EQ(Run({"connections", "use", "Bus"}).status, 0);
}

void Programs::UseTcp(int port) const {
  Use("tcp", QStringLiteral("127.0.0.1:%1").arg(port));
}

int Programs::ServerPid() const {
  return Run({"server", "status", "--json"}).Json()["pid"].toInt();
}

}  // namespace ostrel
