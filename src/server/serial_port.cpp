#include "server/serial_port.h"

#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <utility>

#include "wire/codes.h"

namespace ostrel {
namespace {

/// What the driver may still send after the end, in bytes: the line that says good-bye.
constexpr int kMaxLastWords = 16;

QSerialPort::Parity ParityOf(const Connection& connection) {
  switch (connection.ParityOfLine()) {
    case Parity::kEven:
      return QSerialPort::EvenParity;
    case Parity::kOdd:
      return QSerialPort::OddParity;
    case Parity::kMark:
      return QSerialPort::MarkParity;
    case Parity::kSpace:
      return QSerialPort::SpaceParity;
    case Parity::kNone:
      break;
  }
  return QSerialPort::NoParity;
}

}  // namespace

SerialPort::SerialPort(Connection connection, SerialPorts& ports, std::string& adapter)
    : connection_(std::move(connection)), ports_(ports), adapter_(adapter) {
  serial_.setReadBufferSize(256 * 1024);
  connect(&serial_, &QSerialPort::readyRead, this, &SerialPort::OnReadable);
}

SerialPort::~SerialPort() {
  GiveBack();
}

void SerialPort::Open() {
  const SerialFault fault = TryOpen();
  if (fault.code != 0) GiveBack();
  const auto tell = [this, fault] {
    if (ended_) return;
    if (fault.code == 0) {
      emit Opened();
    } else {
      ended_ = true;
      emit Failed(fault.code, QString::fromStdString(fault.reason));
    }
  };
  QMetaObject::invokeMethod(this, tell, Qt::QueuedConnection);
}

SerialFault SerialPort::TryOpen() {
  if (const SerialFault fault = Find(); fault.code != 0) return fault;
  SerialFault fault;
  claim_ = ClaimDevice(path_, fault);
  if (claim_ < 0) return fault;
  serial_.setPortName(QString::fromStdString(path_));
  if (!serial_.open(QIODevice::ReadWrite)) {
    // What opens for us and not here is locked in one more way, by a lock file.
    const bool locked = serial_.error() == QSerialPort::PermissionError;
    return {locked ? Code::kPortInUse : Code::kPortFailure,
            path_ + ": " + serial_.errorString().toStdString()};
  }
  if (const SerialFault wrong = Configure(); wrong.code != 0) return wrong;
  if (adapter_.empty()) adapter_ = AdapterOf(path_, ports_.adapterFolder);
  // Queued: a failing write reports its error before it returns.
  connect(&serial_, &QSerialPort::errorOccurred, this, &SerialPort::OnTrouble,
          Qt::QueuedConnection);
  return {};
}

/// Finds the device and takes it for this connection.
SerialFault SerialPort::Find() {
  int error = 0;
  const bool again = !adapter_.empty();
  const std::string path =
      RealPath(again ? ports_.adapterFolder + "/" + adapter_ : connection_.device, error);
  if (path.empty() && again) {
    return {Code::kPortInUse, "the adapter " + adapter_ + " is not plugged in"};
  }
  if (path.empty()) return OpenFault(connection_.device, error);
  const auto [taken, free] = ports_.open.try_emplace(path, connection_.name);
  if (!free) {
    return {Code::kPortTaken, path + " is already used by connection \"" + taken->second + "\""};
  }
  path_ = path;
  return {};
}

SerialFault SerialPort::Configure() {
  serial_.setBaudRate(connection_.baud);
  serial_.setDataBits(QSerialPort::Data8);
  serial_.setParity(ParityOf(connection_));
  // No hardware sends one and a half with eight data bits; two is the same to every receiver.
  serial_.setStopBits(connection_.stopBits == "1" ? QSerialPort::OneStop : QSerialPort::TwoStop);
  serial_.setFlowControl(QSerialPort::NoFlowControl);
  // Drivers accept what they cannot do and do something else.
  const auto wrong = WrongSetting(claim_, connection_);
  if (!wrong) return {};
  return {Code::kPortFailure, path_ + ": " + *wrong + " on this port"};
}

void SerialPort::Write(std::string_view bytes) {
  if (ended_) return;
  if (serial_.bytesToWrite() > kMaxUnsent) {
    const auto end = [this] { End(QString::fromUtf8(kTakesNoMore)); };
    QMetaObject::invokeMethod(this, end, Qt::QueuedConnection);
    return;
  }
  // The event loop sends it as soon as the driver takes it; a full driver is no error there.
  serial_.write(bytes.data(), static_cast<qint64>(bytes.size()));
}

void SerialPort::Close() {
  ended_ = true;
  if (serial_.isOpen()) serial_.flush();
  GiveBack();
}

void SerialPort::OnReadable() {
  QByteArray bytes = serial_.readAll();
  if (!ended_) emit Received(bytes);
  bytes.fill('\0');  // the echo of a password
}

void SerialPort::OnTrouble(QSerialPort::SerialPortError error) {
  const bool over = error == QSerialPort::ResourceError || error == QSerialPort::ReadError ||
                    error == QSerialPort::WriteError;
  if (over) End(serial_.errorString());
}

void SerialPort::End(const QString& reason) {
  if (ended_) return;
  ended_ = true;
  const QString text = QString::fromStdString(path_) + ": " + reason;
  GiveBack();
  emit Lost(text);
}

/// Closes the device and leaves it to others.
void SerialPort::GiveBack() {
  if (serial_.isOpen()) {
    int unsent = 0;
    // The system waits for the last byte of what it still has to send, half a minute long.
    const bool known = ::ioctl(claim_, TIOCOUTQ, &unsent) == 0;
    if (!known || unsent > kMaxLastWords) ::tcflush(claim_, TCOFLUSH);
    serial_.close();
  }
  if (claim_ >= 0) ::close(std::exchange(claim_, -1));
  if (!path_.empty()) ports_.open.erase(std::exchange(path_, {}));
}

}  // namespace ostrel
