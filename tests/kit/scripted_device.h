#pragma once

// What the tests with real sockets share: waiting for a condition, and a device behind a port.

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>
#include <functional>
#include <string>
#include <vector>

namespace ostrel {

/// Lets events run until the condition holds; false when it does not within five seconds.
inline bool WaitUntil(const std::function<bool()>& condition) {
  QDeadlineTimer limit(5000);
  QTimer wake;  // so that the wait for events ends
  wake.start(100);
  while (!condition()) {
    if (limit.hasExpired()) return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  return true;
}

/// A device on a port of its own: `answer` gives the bytes for each line it gets.
class ScriptedDevice {
 public:
  ScriptedDevice() {
    server_.listen(QHostAddress::LocalHost);
    QObject::connect(&server_, &QTcpServer::newConnection, [this] {
      host_ = server_.nextPendingConnection();
      QObject::connect(host_, &QTcpSocket::readyRead, host_, [this] { Read(); });
    });
  }
  int Port() const { return server_.serverPort(); }
  void Send(const QByteArray& bytes) {
    if (host_) host_->write(bytes);
  }
  void Drop() {
    if (host_) host_->abort();
  }
  bool Connected() const { return host_ && host_->state() == QTcpSocket::ConnectedState; }

  static QByteArray Reply(const QByteArray& line, const QByteArray& answer) {
    return line + "\r\n" + answer + "\r\n<\x1A";
  }

  std::function<QByteArray(const QByteArray&)> answer = [](const QByteArray& line) {
    return Reply(line, "re " + line);
  };
  std::vector<std::string> lines;

 private:
  void Read() {
    buffer_ += host_->readAll();
    for (qsizetype end = buffer_.indexOf('\r'); end >= 0; end = buffer_.indexOf('\r')) {
      const QByteArray line = buffer_.left(end);
      buffer_.remove(0, end + 1);
      lines.push_back(line.toStdString());
      Send(answer(line));
    }
  }

  QTcpServer server_;
  QPointer<QTcpSocket> host_;
  QByteArray buffer_;
};

}  // namespace ostrel
