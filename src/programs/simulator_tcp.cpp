#include "programs/simulator_tcp.h"

namespace ostrel::simulator {

namespace {

constexpr qint64 kReadBuffer = 64 * 1024;

}  // namespace

TcpHost::TcpHost(QTcpSocket* socket, Simulation& simulation)
    : SimulatorHost(simulation, socket), socket_(*socket) {
  socket_.setReadBufferSize(kReadBuffer);
  // What is sent in pieces shall arrive in pieces.
  socket_.setSocketOption(QAbstractSocket::LowDelayOption, 1);
  connect(socket, &QTcpSocket::readyRead, this, &TcpHost::Serve);
  connect(socket, &QTcpSocket::bytesWritten, this, &TcpHost::Serve);
  connect(socket, &QTcpSocket::disconnected, this,
          [this] { Leave(dropped_ ? 0 : static_cast<std::size_t>(socket_.bytesAvailable())); });
}

void TcpHost::Write(std::string_view bytes) {
  socket_.write(bytes.data(), static_cast<qint64>(bytes.size()));
}

void TcpHost::DropLink() {
  dropped_ = true;
  socket_.disconnectFromHost();
}

}  // namespace ostrel::simulator
