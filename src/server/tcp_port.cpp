#include "server/tcp_port.h"

#include <sys/socket.h>

#include <QNetworkProxy>
#include <utility>

#include "wire/codes.h"

namespace ostrel {
namespace {

constexpr int kConnectMs = 3000;

}  // namespace

TcpPort::TcpPort(QString host, quint16 port) : host_(std::move(host)), port_(port) {
  socket_.setProxy(QNetworkProxy::NoProxy);
  socket_.setReadBufferSize(256 * 1024);
  limit_.setSingleShot(true);
  connect(&socket_, &QTcpSocket::connected, this, &TcpPort::OnConnected);
  connect(&socket_, &QTcpSocket::readyRead, this, &TcpPort::OnReadable);
  // Queued: a failing write or connect reports its error before it returns.
  connect(&socket_, &QTcpSocket::errorOccurred, this, &TcpPort::OnTrouble, Qt::QueuedConnection);
  connect(&limit_, &QTimer::timeout, this,
          [this] { End(QStringLiteral("no answer within %1 s").arg(kConnectMs / 1000)); });
}

void TcpPort::Open() {
  limit_.start(kConnectMs);
  socket_.connectToHost(host_, port_);
}

void TcpPort::Write(std::string_view bytes) {
  if (socket_.bytesToWrite() > kMaxUnsent) {
    const auto end = [this] { End(QString::fromUtf8(kTakesNoMore)); };
    QMetaObject::invokeMethod(this, end, Qt::QueuedConnection);
    return;
  }
  if (socket_.bytesToWrite() == 0) {
    // Past the socket's own buffer, where a password would stay behind.
    const auto descriptor = static_cast<int>(socket_.socketDescriptor());
    const ssize_t sent =
        ::send(descriptor, bytes.data(), bytes.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    if (sent > 0) bytes.remove_prefix(static_cast<std::size_t>(sent));
    if (bytes.empty()) return;
  }
  socket_.write(bytes.data(), static_cast<qint64>(bytes.size()));
  socket_.flush();
}

void TcpPort::Close() {
  ended_ = true;
  limit_.stop();
  socket_.disconnectFromHost();
}

void TcpPort::OnConnected() {
  if (ended_) return;
  limit_.stop();
  opened_ = true;
  // A line is far smaller than a packet: waiting for more of it would only cost time.
  socket_.setSocketOption(QAbstractSocket::LowDelayOption, 1);
  socket_.setSocketOption(QAbstractSocket::KeepAliveOption, 1);
  emit Opened();
}

void TcpPort::OnReadable() {
  QByteArray bytes = socket_.readAll();
  if (!ended_) emit Received(bytes);
  bytes.fill('\0');  // the echo of a password
}

void TcpPort::OnTrouble() {
  End(socket_.errorString());
}

void TcpPort::End(const QString& reason) {
  if (ended_) return;
  ended_ = true;
  limit_.stop();
  const QString text = QStringLiteral("%1:%2: %3").arg(host_).arg(port_).arg(reason);
  if (opened_) {
    emit Lost(text);
  } else {
    emit Failed(Code::kCannotConnect, text);
  }
}

}  // namespace ostrel
