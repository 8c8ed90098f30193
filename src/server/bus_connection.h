#pragma once

#include <QObject>
#include <QTimer>
#include <deque>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "server/line_port.h"
#include "server/reply_framer.h"

namespace ostrel {

/// One line on its way: who sent it, and how long its answer may take once it is out.
struct LineOut {
  int channel = 0;  // 0: nobody awaits the answer
  int exchange = 0;
  std::string line;  // ISO 8859-1, without line end
  int timeoutMs = 0;
};

/// The line to devices that several channels share. Lines go out one at a time, in the order in
/// which they came; each answer goes to the channel that asked. Texts are ISO 8859-1 bytes.
class BusConnection : public QObject {
  Q_OBJECT
 public:
  /// Makes a port; `again` in place of one that was lost while there were channels.
  using NewPort = std::function<std::unique_ptr<LinePort>(bool again)>;
  using Trace = std::function<void(const std::string&)>;

  BusConnection(std::string name, NewPort newPort);
  ~BusConnection() override;

  void TraceTo(Trace trace) { trace_ = std::move(trace); }
  const std::string& Name() const { return name_; }
  bool IsOpen() const { return open_; }

  /// There are channels: when the port is not open, Opened or OpenFailed follows.
  void Hold();
  /// There are none left: the port is closed once the line in flight is done.
  void Release();

  /// Queues a line. A lost port is opened again for it. Answered or Failed follows; false when too
  /// many lines of this channel wait already.
  bool Send(LineOut line);
  /// The channel is gone. Its line in flight stays there until its reply or time-out.
  void Forget(int channel);

  /// In raw mode bytes pass as they are; what was under way fails with 10019.
  void SetRaw(bool raw);
  void SendRaw(const std::string& bytes);

 signals:
  void Opened();
  void OpenFailed(int code, const std::string& reason);
  void Answered(int channel, int exchange, const std::string& answer);
  void Failed(int channel, int exchange, int code, const std::string& reason);
  /// The port was lost; the line in flight and those that waited have failed.
  void PortLost(int code, const std::string& reason);
  void RawReceived(const std::string& bytes);
  void RawFailed(int code, const std::string& reason);

 private:
  struct Flight {
    LineOut out;
    bool pointing = false;  // an exchange of our own that makes a station current
    bool reported = false;  // failed already, but its reply still comes
  };

  void OpenPort();
  void DropPort();
  void OnOpened();
  void OnOpenFailed(int code, const QString& reason);
  void OnReceived(const QByteArray& bytes);
  void OnLost(const QString& reason);
  void OnTimeout();

  void StartNext();
  void WindUp();
  void Point(const std::string& station, const LineOut& before);
  void Transmit(LineOut out, bool pointing);
  void EndHalfLine();
  void Launch(LineOut out, bool pointing, const std::string& bytes);
  void Complete(const std::string& answer);
  void Spoil(ReplyFramer::Outcome outcome);
  void Report(const Flight& flight, int code, const std::string& reason);
  void FailQueue(int code, const std::string& reason);
  const std::string& StationOf(int channel) const;
  void Note(const std::string& text) const;

  const std::string name_;
  const NewPort newPort_;
  Trace trace_;
  LinePort* port_ = nullptr;  // a child; null when neither open nor opening
  bool open_ = false;
  bool held_ = false;
  bool again_ = false;    // the port was open already since the first of the channels came
  bool woundUp_ = false;  // nothing more is to be sent before the port is closed
  bool raw_ = false;
  std::string rawWaiting_;  // to be sent when the port is open again
  std::string halfLine_;    // sent in raw mode behind the last carriage return
  ReplyFramer framer_;
  QTimer timer_;
  std::deque<LineOut> queue_;
  std::optional<Flight> flight_;
  std::string lineStation_;                // the devices' current station; empty: not known
  std::map<int, std::string> ownStation_;  // of channels that made one current
};

}  // namespace ostrel
