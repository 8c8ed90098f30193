#pragma once

#include <QDeadlineTimer>
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
#include "server/wipe.h"

namespace ostrel {

/// One line on its way: who sent it, and until when its answer may come. It leaves nothing of its
/// text behind in the memory.
struct LineOut {
  LineOut() = default;
  LineOut(const LineOut&) = default;
  LineOut(LineOut&&) = default;
  LineOut& operator=(const LineOut&) = default;
  LineOut& operator=(LineOut&&) = default;
  ~LineOut() { Wipe(line); }

  int client = 0;
  int channel = 0;  // 0: nobody awaits the answer
  int exchange = 0;
  std::string line;  // ISO 8859-1, without line end
  QDeadlineTimer limit;
};

/// The line to devices that several channels share. Lines go out one at a time, in the order in
/// which they came; each answer goes to the channel that asked. Of each channel the newest line
/// waits at most, and no longer than its limit. Texts are ISO 8859-1 bytes.
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

  /// Queues a line in place of one of this channel that waits. A lost port is opened again for it.
  /// Answered or Failed follows; false when too many lines of this client wait already.
  bool Send(LineOut line);
  /// Takes back what of this channel has not gone out; whether there was something.
  bool TakeBack(int channel);
  /// The channel is gone. Its line in flight stays there until its reply or time-out.
  void Forget(int channel);

  /// In raw mode bytes pass as they are; what was under way fails with 10019. RawReady or RawFailed
  /// follows when the connected station has been made current; what is sent before that waits.
  void SetRaw(bool raw);
  void SendRaw(const std::string& bytes);
  /// When raw mode ends the device is asked whether it is in its bootloader, and told to leave it.
  void OweReset() { asksLeft_ = kAsks; }

 signals:
  void Opened();
  void OpenFailed(int code, const std::string& reason);
  void Answered(int channel, int exchange, const std::string& answer);
  void Failed(int channel, int exchange, int code, const std::string& reason);
  /// The port was lost; the line in flight and those that waited have failed.
  void PortLost(int code, const std::string& reason);
  void RawReady();
  void RawReceived(const std::string& bytes);
  void RawFailed(int code, const std::string& reason);

 private:
  enum class Purpose {
    kLine,
    kPointing,  // makes a station current, for the channel's line behind it or before the end
    kOnline,    // makes the connected station current for the online channel
    kProgram,   // asks the device whether it is in its bootloader
    kOther,     // whatever the reply is
  };
  struct Flight {
    LineOut out;
    Purpose purpose = Purpose::kLine;
    bool reported = false;  // failed already, but its reply still comes
  };

  static constexpr int kAsks = 8;  // 24 s: a device is silent while it saves its memory

  void OpenPort();
  void DropPort();
  void OnOpened();
  void OnOpenFailed(int code, const QString& reason);
  void OnReceived(const QByteArray& bytes);
  void OnLost(const QString& reason);
  void OnTimeout();

  void StartNext();
  bool StartOwn();
  void WindUp();
  void Point(const std::string& station, const LineOut& before);
  void EndHalfLine();
  void LaunchOwn(std::string line, Purpose purpose, std::string rest = {});
  void Launch(LineOut out, Purpose purpose, std::string rest = {});
  void Complete(const std::string& answer);
  void CompletePointing(const LineOut& out, const std::string& answer);
  void FinishOnline(const std::string& answer);
  void LeaveBootloader(const std::string& answer);
  void Spoil(ReplyFramer::Outcome outcome);
  void Report(const Flight& flight, int code, const std::string& reason);
  void FailQueue(int code, const std::string& reason);
  void FailExpired();
  void WatchQueue();
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
  bool rawReady_ = false;   // the port is open, and the connected station is current
  std::string rawWaiting_;  // to be sent when it is ready
  std::string halfLine_;    // sent in raw mode behind the last carriage return
  int asksLeft_ = 0;        // after the program of the device; 0: it need not be known
  ReplyFramer framer_;
  QTimer timer_;       // of the line in flight
  QTimer queueTimer_;  // of the lines that wait
  std::deque<LineOut> queue_;
  std::optional<Flight> flight_;
  std::string lineStation_;                // the devices' current station; empty: not known
  bool pointed_ = false;                   // another than the connected one may have been made so
  std::map<int, std::string> ownStation_;  // of channels that made one current
};

}  // namespace ostrel
