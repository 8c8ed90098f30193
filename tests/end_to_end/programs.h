#pragma once

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonValue>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>
#include <QTemporaryDir>
#include <memory>

namespace ostrel {

/// How a program ended, and what it printed.
struct Outcome {
  int status = -1;
  QByteArray out, err;
  QJsonDocument Json() const { return QJsonDocument::fromJson(out); }
};

/// The built programs in folders of their own: settings, socket and log of one test. Its server is
/// stopped at the end.
class Programs {
 public:
  Programs();
  ~Programs();

  /// Starts a program of the build; it is killed with the object.
  std::unique_ptr<QProcess> Start(const QString& program, const QStringList& arguments) const;
  /// Runs `ostrel` in English and waits for its end.
  Outcome Run(const QStringList& arguments, const QByteArray& input = {}) const;
  /// Starts a simulator; returns what stands behind the last colon of where it listens: the port.
  QString StartSimulator(std::unique_ptr<QProcess>& simulator,
                         const QStringList& arguments = {"--tcp", "0"}) const;
  /// Adds a connection and makes it the current one.
  void Use(const QString& kind, const QString& target) const;
  /// The same to a port of this machine.
  void UseTcp(int port) const;
  /// The process number of the server; 0 when none runs.
  int ServerPid() const;
  QString Folder() const { return folder_.path(); }

  /// Lets this process use the same folders.
  void Enter() const;

 private:
  QTemporaryDir folder_;
  QProcessEnvironment environment_;
};

}  // namespace ostrel
