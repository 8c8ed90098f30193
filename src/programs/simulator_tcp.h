#pragma once

#include <QTcpSocket>

#include "programs/simulator_host.h"

namespace ostrel::simulator {

/// A host that has connected over TCP; it ends with its socket, which ends with the connection.
class TcpHost : public SimulatorHost {
 public:
  TcpHost(QTcpSocket* socket, Simulation& simulation);

 private:
  bool Read(char& byte) override { return !dropped_ && socket_.getChar(&byte); }
  void Write(std::string_view bytes) override;
  std::size_t Unsent() const override { return static_cast<std::size_t>(socket_.bytesToWrite()); }
  void DropLink() override;
  void Left() override { socket_.deleteLater(); }

  QTcpSocket& socket_;
  bool dropped_ = false;
};

}  // namespace ostrel::simulator
