#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <string_view>

namespace ostrel {

/// The way of bytes to the devices and back. A port is opened once; for another attempt there is
/// another port. No signal is sent from inside a call.
class LinePort : public QObject {
  Q_OBJECT
 public:
  using QObject::QObject;

  /// With more bytes than these unsent, a port that is to send yet more is lost.
  static constexpr qint64 kMaxUnsent = 4 * 1024 * 1024;

  /// Opened or Failed follows.
  virtual void Open() = 0;
  /// Sends at once what the system takes, the rest as soon as it takes more.
  virtual void Write(std::string_view bytes) = 0;
  virtual void Close() = 0;

 protected:
  static constexpr char kTakesNoMore[] = "the other end takes no more";

 signals:
  void Opened();
  /// It could not be opened: an error code (10011..10045) and the reason.
  void Failed(int code, const QString& reason);
  void Received(const QByteArray& bytes);
  /// It was open and is so no longer.
  void Lost(const QString& reason);
};

}  // namespace ostrel
