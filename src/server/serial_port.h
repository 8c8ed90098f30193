#pragma once

#include <QSerialPort>
#include <map>
#include <string>

#include "server/line_port.h"
#include "server/serial_device.h"
#include "wire/connections.h"

namespace ostrel {

/// What the serial ports of one server know of each other.
struct SerialPorts {
  std::string adapterFolder;                // links to adapters, by names that last
  std::map<std::string, std::string> open;  // connections' names by the real paths they have open
};

/// Devices on a serial line, with eight data bits and without flow control. Nobody else can open
/// the device meanwhile.
class SerialPort : public LinePort {
  Q_OBJECT
 public:
  /// `adapter` is the name in the folder of the adapter that has to be opened, wherever it is
  /// plugged in now. An empty one is filled in when the device of the connection has been opened.
  SerialPort(Connection connection, SerialPorts& ports, std::string& adapter);
  ~SerialPort() override;

  void Open() override;
  void Write(std::string_view bytes) override;
  void Close() override;

 private:
  SerialFault TryOpen();
  SerialFault Find();
  SerialFault Configure();
  void OnReadable();
  void OnTrouble(QSerialPort::SerialPortError error);
  void End(const QString& reason);
  void GiveBack();

  const Connection connection_;
  SerialPorts& ports_;
  std::string& adapter_;
  std::string path_;  // the real one; empty while the device is not this port's
  int claim_ = -1;
  QSerialPort serial_;
  bool ended_ = false;
};

}  // namespace ostrel
