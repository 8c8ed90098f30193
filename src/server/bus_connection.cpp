#include "server/bus_connection.h"

#include <algorithm>
#include <utility>

#include "server/line_text.h"
#include "wire/answers.h"
#include "wire/codes.h"
#include "wire/line_rules.h"

namespace ostrel {
namespace {

constexpr std::ptrdiff_t kMaxWaiting = 4;  // lines of one client
constexpr int kOwnTimeoutMs = 3000;
const std::string kConnected(kConnectedStation);

std::string NothingSent(const std::string& why) {
  return std::string(kUnsentText) + ": " + why;
}

}  // namespace

BusConnection::BusConnection(std::string name, NewPort newPort)
    : name_(std::move(name)), newPort_(std::move(newPort)) {
  for (QTimer* timer : {&timer_, &queueTimer_}) {
    timer->setSingleShot(true);
    timer->setTimerType(Qt::PreciseTimer);
  }
  connect(&timer_, &QTimer::timeout, this, &BusConnection::OnTimeout);
  connect(&queueTimer_, &QTimer::timeout, this, &BusConnection::FailExpired);
}

BusConnection::~BusConnection() {
  // Whoever uses the devices next must not find another station current than the connected one.
  const bool elsewhere = pointed_ && lineStation_ != kConnectedStation;
  if (open_ && !raw_ && elsewhere) port_->Write(kConnected + "::\r");
  DropPort();
}

void BusConnection::Hold() {
  held_ = true;
  woundUp_ = false;
  if (!open_) OpenPort();
}

void BusConnection::Release() {
  held_ = false;
  StartNext();
}

void BusConnection::OpenPort() {
  if (port_ != nullptr) return;
  port_ = newPort_(again_).release();
  port_->setParent(this);
  connect(port_, &LinePort::Opened, this, &BusConnection::OnOpened);
  connect(port_, &LinePort::Failed, this, &BusConnection::OnOpenFailed);
  connect(port_, &LinePort::Received, this, &BusConnection::OnReceived);
  connect(port_, &LinePort::Lost, this, &BusConnection::OnLost);
  port_->Open();
}

void BusConnection::DropPort() {
  if (!held_) again_ = pointed_ = false;
  if (port_ == nullptr) return;
  port_->disconnect(this);
  port_->Close();
  port_->deleteLater();
  port_ = nullptr;
  open_ = rawReady_ = false;
}

void BusConnection::OnOpened() {
  open_ = true;
  again_ = true;
  // Whoever had the devices until now may have left any station current.
  lineStation_.clear();
  framer_.Reset();
  Note("open");
  emit Opened();
  StartNext();
}

void BusConnection::OnOpenFailed(int code, const QString& reason) {
  DropPort();
  const std::string text = reason.toStdString();
  Note("cannot be opened: " + text);
  rawWaiting_.clear();
  FailQueue(code, text);
  if (raw_) emit RawFailed(code, text);
  emit OpenFailed(code, text);
}

void BusConnection::OnLost(const QString& reason) {
  DropPort();
  const std::string text = "the connection was lost: " + reason.toStdString();
  Note(text);
  timer_.stop();
  if (const auto flight = std::exchange(flight_, std::nullopt)) {
    Report(*flight, Code::kReceiveError, text);
  }
  // Another device may come back: nobody's line goes to it unasked.
  FailQueue(Code::kReceiveError, text);
  if (raw_) emit RawFailed(Code::kReceiveError, text);
  emit PortLost(Code::kReceiveError, text);
  StartNext();
}

bool BusConnection::Send(LineOut line) {
  TakeBack(line.channel);
  const auto sameClient = [&line](const LineOut& other) { return other.client == line.client; };
  if (std::count_if(queue_.begin(), queue_.end(), sameClient) >= kMaxWaiting) return false;
  queue_.push_back(std::move(line));
  StartNext();
  WatchQueue();
  return true;
}

bool BusConnection::TakeBack(int channel) {
  return std::erase_if(queue_, [channel](const auto& line) { return line.channel == channel; }) > 0;
}

void BusConnection::Forget(int channel) {
  TakeBack(channel);
  if (flight_ && flight_->out.channel == channel) flight_->out.channel = 0;
  ownStation_.erase(channel);
}

/// Looks after the lines that wait. The timer may come too early for the one that is left.
void BusConnection::WatchQueue() {
  if (queue_.empty()) return;
  const auto sooner = [](const LineOut& a, const LineOut& b) { return a.limit < b.limit; };
  const auto first = std::min_element(queue_.begin(), queue_.end(), sooner);
  const qint64 left = first->limit.remainingTime();
  if (queueTimer_.isActive() && queueTimer_.remainingTime() <= left) return;
  queueTimer_.start(static_cast<int>(left));
}

void BusConnection::FailExpired() {
  std::vector<LineOut> expired;
  std::erase_if(queue_, [&expired](LineOut& line) {
    if (!line.limit.hasExpired()) return false;
    expired.push_back(std::move(line));
    return true;
  });
  WatchQueue();
  for (const LineOut& line : expired) {
    emit Failed(line.channel, line.exchange, Code::kTimeout,
                NothingSent("the line waited too long for its turn on " + name_));
  }
}

const std::string& BusConnection::StationOf(int channel) const {
  const auto own = ownStation_.find(channel);
  return own == ownStation_.end() ? kConnected : own->second;
}

void BusConnection::StartNext() {
  if (flight_ || StartOwn() || raw_) return;
  if (queue_.empty()) {
    if (!held_) WindUp();
    return;
  }
  if (!open_) {
    OpenPort();
    return;
  }
  const LineOut& next = queue_.front();
  const std::string& station = StationOf(next.channel);
  if (lineStation_ != station && !AddressOf(next.line).addressed) {
    Point(station, next);
    return;
  }
  LineOut out = std::move(queue_.front());
  queue_.pop_front();
  Launch(std::move(out), Purpose::kLine);
}

/// Closes the port, with the connected station made current before. That is tried once: a device
/// that does not answer must not keep the port from others.
void BusConnection::WindUp() {
  const bool tried = std::exchange(woundUp_, true);
  if (open_ && pointed_ && lineStation_ != kConnectedStation && !tried) {
    LaunchOwn(kConnected + "::", Purpose::kPointing);
  } else {
    DropPort();
  }
}

void BusConnection::Point(const std::string& station, const LineOut& before) {
  LineOut out = before;
  out.line = station + "::";
  Launch(std::move(out), Purpose::kPointing);
}

/// An exchange that no channel awaits.
void BusConnection::LaunchOwn(std::string line, Purpose purpose, std::string rest) {
  LineOut out;
  out.line = std::move(line);
  out.limit = QDeadlineTimer(kOwnTimeoutMs, Qt::PreciseTimer);
  Launch(std::move(out), purpose, std::move(rest));
}

/// Sends a line, or the rest of one that began to go out, and waits for its reply.
void BusConnection::Launch(LineOut out, Purpose purpose, std::string rest) {
  framer_.Expect(out.line);
  const std::string station = AddressOf(out.line).makesCurrent;
  pointed_ = pointed_ || (!station.empty() && station != kConnectedStation);
  std::string bytes = rest.empty() ? out.line + '\r' : std::move(rest);
  port_->Write(bytes);
  Wipe(bytes);
  timer_.start(static_cast<int>(out.limit.remainingTime()));
  if (trace_) Note("> " + ForLog(out.line));
  flight_ = Flight{std::move(out), purpose, false};
}

void BusConnection::OnReceived(const QByteArray& bytes) {
  const std::string_view view(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  if (rawReady_) {
    emit RawReceived(std::string(view));
    return;
  }
  const auto reply = framer_.Feed(view);
  if (!flight_) return;
  if (reply && reply->outcome == ReplyFramer::Outcome::kAnswer) {
    Complete(reply->answer);
    return;
  }
  if (reply) Spoil(reply->outcome);
  // Without echoes, which tell replies apart, the device has to finish this one before the next.
  if (flight_->reported && (framer_.ShowsEchoes() || !framer_.Skipping())) {
    timer_.stop();
    flight_.reset();
    StartNext();
  }
}

/// The line in flight has got a reply that is no answer.
void BusConnection::Spoil(ReplyFramer::Outcome outcome) {
  if (outcome == ReplyFramer::Outcome::kTooLong) {
    Report(*flight_, Code::kTooBig, "the answer is longer than 256 KiB");
  } else if (outcome == ReplyFramer::Outcome::kBeheaded) {
    Report(*flight_, Code::kReceiveError, "the beginning of the reply got lost");
  } else {
    Report(*flight_, Code::kReceiveError, "the reply holds characters that no device sends");
  }
  if (flight_->purpose == Purpose::kOnline) FinishOnline({});
  flight_->reported = true;
  if (!AddressOf(flight_->out.line).makesCurrent.empty()) lineStation_.clear();
}

void BusConnection::Complete(const std::string& answer) {
  timer_.stop();
  const Flight flight = *std::exchange(flight_, std::nullopt);
  const LineOut& out = flight.out;
  if (trace_) Note("< " + (IsSecret(out.line) ? "***" : ForLog(answer)));
  const std::string station = AddressOf(out.line).makesCurrent;
  if (!station.empty()) {
    const bool done = !IsErrorAnswer(answer);
    lineStation_ = done ? station : std::string();
    if (done && flight.purpose == Purpose::kLine && out.channel != 0) {
      ownStation_[out.channel] = station;
    }
  }
  if (flight.purpose == Purpose::kLine && out.channel != 0) {
    emit Answered(out.channel, out.exchange, answer);
  }
  if (flight.purpose == Purpose::kPointing) CompletePointing(out, answer);
  if (flight.purpose == Purpose::kOnline) FinishOnline(answer);
  if (flight.purpose == Purpose::kProgram) LeaveBootloader(answer);
  StartNext();
}

/// A station that is not to be had: that is the answer, and the line never reaches another one.
void BusConnection::CompletePointing(const LineOut& out, const std::string& answer) {
  if (!IsErrorAnswer(answer) || queue_.empty() || queue_.front().channel != out.channel) return;
  const LineOut line = std::move(queue_.front());
  queue_.pop_front();
  emit Answered(line.channel, line.exchange, answer);
}

void BusConnection::OnTimeout() {
  if (!flight_) return;
  framer_.Stop();
  const Flight flight = *std::exchange(flight_, std::nullopt);
  if (!AddressOf(flight.out.line).makesCurrent.empty()) lineStation_.clear();
  if (trace_) Note("no answer to " + ForLog(flight.out.line));
  const std::string silent = "no answer from " + name_;
  if (flight.purpose == Purpose::kLine) Report(flight, Code::kTimeout, silent);
  if (flight.purpose == Purpose::kPointing) {
    Report(flight, Code::kTimeout, NothingSent(silent + " to " + flight.out.line));
  }
  // Silent: it restarts, or is in a bootloader that does not know the line.
  if (flight.purpose == Purpose::kOnline) FinishOnline({});
  StartNext();
}

/// Tells a channel that its line failed; with an exchange of our own that is the line behind it.
void BusConnection::Report(const Flight& flight, int code, const std::string& reason) {
  const LineOut out = flight.out;
  if (out.channel == 0 || flight.reported) return;
  if (flight.purpose == Purpose::kPointing) {
    const auto behind = [&out](const LineOut& line) {
      return line.channel == out.channel && line.exchange == out.exchange;
    };
    if (std::erase_if(queue_, behind) == 0) return;  // given up meanwhile
  }
  emit Failed(out.channel, out.exchange, code, reason);
}

void BusConnection::FailQueue(int code, const std::string& reason) {
  for (const LineOut& line : std::exchange(queue_, {})) {
    if (line.channel != 0) emit Failed(line.channel, line.exchange, code, reason);
  }
}

void BusConnection::Note(const std::string& text) const {
  if (trace_) trace_(name_ + ": " + text);
}

}  // namespace ostrel
