#include "server/bus_connection.h"

#include <algorithm>
#include <utility>

#include "server/line_text.h"
#include "wire/answers.h"
#include "wire/codes.h"
#include "wire/line_rules.h"

namespace ostrel {
namespace {

constexpr std::ptrdiff_t kMaxWaiting = 64;  // lines of one channel
constexpr std::size_t kMaxRawWaiting = 64 * 1024;
constexpr int kOwnTimeoutMs = 3000;
const std::string kConnected(kConnectedStation);

}  // namespace

BusConnection::BusConnection(std::string name, NewPort newPort)
    : name_(std::move(name)), newPort_(std::move(newPort)), lineStation_(kConnectedStation) {
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  connect(&timer_, &QTimer::timeout, this, &BusConnection::OnTimeout);
}

BusConnection::~BusConnection() {
  // Whoever uses the devices next must not find another station current than the connected one.
  const bool elsewhere = lineStation_ != kConnectedStation;
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
  if (!held_) again_ = false;
  if (port_ == nullptr) return;
  port_->disconnect(this);
  port_->Close();
  port_->deleteLater();
  port_ = nullptr;
  open_ = false;
}

void BusConnection::OnOpened() {
  open_ = true;
  again_ = true;
  framer_.Reset();
  Note("open");
  if (!rawWaiting_.empty()) port_->Write(std::exchange(rawWaiting_, {}));
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
  // A device that comes back may have forgotten which station was current, or not.
  if (lineStation_ != kConnectedStation) lineStation_.clear();
  timer_.stop();
  if (const auto flight = std::exchange(flight_, std::nullopt)) {
    Report(*flight, code::kReceiveError, text);
  }
  // Another device may come back: nobody's line goes to it unasked.
  FailQueue(code::kReceiveError, text);
  if (raw_) emit RawFailed(code::kReceiveError, text);
  emit PortLost(code::kReceiveError, text);
  StartNext();
}

bool BusConnection::Send(LineOut line) {
  const auto sameChannel = [&line](const LineOut& other) { return other.channel == line.channel; };
  if (std::count_if(queue_.begin(), queue_.end(), sameChannel) >= kMaxWaiting) return false;
  queue_.push_back(std::move(line));
  StartNext();
  return true;
}

void BusConnection::Forget(int channel) {
  std::erase_if(queue_, [channel](const LineOut& line) { return line.channel == channel; });
  if (flight_ && flight_->out.channel == channel) flight_->out.channel = 0;
  ownStation_.erase(channel);
}

void BusConnection::SetRaw(bool raw) {
  if (raw == raw_) return;
  raw_ = raw;
  rawWaiting_.clear();
  framer_.Reset();
  timer_.stop();
  lineStation_.clear();  // the online channel may make any station current
  const std::string reason = "an online channel was opened on " + name_;
  if (const auto flight = std::exchange(flight_, std::nullopt)) {
    Report(*flight, code::kOnlineActive, reason);
  }
  FailQueue(code::kOnlineActive, reason);
  StartNext();
}

void BusConnection::SendRaw(const std::string& bytes) {
  const std::size_t end = bytes.rfind('\r');
  halfLine_ = end == std::string::npos ? halfLine_ + bytes : bytes.substr(end + 1);
  // A device takes less; an echo that does not fit is waited for in vain, and that is all.
  if (halfLine_.size() > kMaxRawWaiting) halfLine_.resize(kMaxRawWaiting);
  if (open_) {
    port_->Write(bytes);
  } else if (rawWaiting_.size() + bytes.size() <= kMaxRawWaiting) {
    rawWaiting_ += bytes;
    OpenPort();
  }
}

const std::string& BusConnection::StationOf(int channel) const {
  const auto own = ownStation_.find(channel);
  return own == ownStation_.end() ? kConnected : own->second;
}

void BusConnection::StartNext() {
  if (flight_ || raw_) return;
  if (open_ && !halfLine_.empty()) {
    EndHalfLine();
    return;
  }
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
  Transmit(std::move(out), false);
}

/// Closes the port, with the connected station made current before. That is tried once: a device
/// that does not answer must not keep the port from others.
void BusConnection::WindUp() {
  const bool tried = std::exchange(woundUp_, true);
  if (open_ && lineStation_ != kConnectedStation && !tried) {
    Point(kConnected, {0, 0, {}, kOwnTimeoutMs});
  } else {
    DropPort();
  }
}

void BusConnection::Point(const std::string& station, const LineOut& before) {
  Transmit({before.channel, before.exchange, station + "::", before.timeoutMs}, true);
}

/// What an online channel left behind in the device would become the beginning of the next line. It
/// is ended as a text without its closing quote: nobody meant it to be carried out.
void BusConnection::EndHalfLine() {
  std::string line = std::exchange(halfLine_, {});
  const bool quoted = std::count(line.begin(), line.end(), '"') % 2 != 0;
  if (!quoted) line += '"';
  Launch({0, 0, std::move(line), kOwnTimeoutMs}, false, quoted ? "\r" : "\"\r");
}

void BusConnection::Transmit(LineOut out, bool pointing) {
  const std::string bytes = out.line + '\r';
  Launch(std::move(out), pointing, bytes);
}

/// Waits for the reply to a line of which these bytes are still to be sent.
void BusConnection::Launch(LineOut out, bool pointing, const std::string& bytes) {
  framer_.Expect(out.line);
  port_->Write(bytes);
  timer_.start(out.timeoutMs);
  if (trace_) Note("> " + ForLog(out.line));
  flight_ = Flight{std::move(out), pointing, false};
}

void BusConnection::OnReceived(const QByteArray& bytes) {
  const std::string_view view(bytes.constData(), static_cast<std::size_t>(bytes.size()));
  if (raw_) {
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
    Report(*flight_, code::kTooBig, "the answer is longer than 256 KiB");
  } else if (outcome == ReplyFramer::Outcome::kBeheaded) {
    Report(*flight_, code::kReceiveError, "the beginning of the reply got lost");
  } else {
    Report(*flight_, code::kReceiveError, "the reply holds characters that no device sends");
  }
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
    if (done && !flight.pointing && out.channel != 0) ownStation_[out.channel] = station;
  }
  if (!flight.pointing) {
    if (out.channel != 0) emit Answered(out.channel, out.exchange, answer);
  } else if (IsErrorAnswer(answer) && !queue_.empty() && queue_.front().channel == out.channel) {
    // The station is not to be had: that is the answer, and the line never reaches another one.
    queue_.pop_front();
    emit Answered(out.channel, out.exchange, answer);
  }
  StartNext();
}

void BusConnection::OnTimeout() {
  if (!flight_) return;
  framer_.Stop();
  const Flight flight = *std::exchange(flight_, std::nullopt);
  if (!AddressOf(flight.out.line).makesCurrent.empty()) lineStation_.clear();
  if (trace_) Note("no answer to " + ForLog(flight.out.line));
  if (!flight.reported) Report(flight, code::kTimeout, "no answer from " + name_);
  StartNext();
}

/// Tells a channel that its line failed; with an exchange of our own that is the line behind it.
void BusConnection::Report(const Flight& flight, int code, const std::string& reason) {
  const LineOut out = flight.out;
  if (out.channel == 0 || flight.reported) return;
  if (flight.pointing) {
    std::erase_if(queue_, [&out](const LineOut& line) {
      return line.channel == out.channel && line.exchange == out.exchange;
    });
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
