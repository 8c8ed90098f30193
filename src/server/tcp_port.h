#pragma once

#include <QTcpSocket>
#include <QTimer>

#include "server/line_port.h"

namespace ostrel {

/// Devices behind a network host.
class TcpPort : public LinePort {
  Q_OBJECT
 public:
  TcpPort(QString host, quint16 port);

  void Open() override;
  void Write(std::string_view bytes) override;
  void Close() override;

 private:
  void OnConnected();
  void OnReadable();
  void OnTrouble();
  void End(const QString& reason);

  const QString host_;
  const quint16 port_;
  QTcpSocket socket_;
  QTimer limit_;
  bool opened_ = false;
  bool ended_ = false;
};

}  // namespace ostrel
