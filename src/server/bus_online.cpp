// The online channel's time on a connection: its beginning, its bytes, and what comes after it.

#include <algorithm>
#include <utility>

#include "server/bus_connection.h"
#include "server/line_text.h"
#include "wire/answers.h"
#include "wire/codes.h"

namespace ostrel {
namespace {

constexpr std::size_t kMaxRawWaiting = 64 * 1024;

}  // namespace

void BusConnection::SetRaw(bool raw) {
  if (raw == raw_) return;
  raw_ = raw;
  rawReady_ = false;
  rawWaiting_.clear();
  if (raw) {
    asksLeft_ = 0;  // who has the device from now on cares for it
    framer_.Stop();
  } else {
    framer_.Reset();
  }
  timer_.stop();
  lineStation_.clear();
  pointed_ = true;  // the online channel may make any station current
  const std::string reason = "an online channel was opened on " + name_;
  if (const auto flight = std::exchange(flight_, std::nullopt)) {
    Report(*flight, Code::kOnlineActive, reason);
  }
  FailQueue(Code::kOnlineActive, reason);
  StartNext();
}

void BusConnection::SendRaw(const std::string& bytes) {
  if (rawReady_) {
    const std::size_t end = bytes.rfind('\r');
    halfLine_ = end == std::string::npos ? halfLine_ + bytes : bytes.substr(end + 1);
    // A device takes less; an echo that does not fit is waited for in vain, and that is all.
    if (halfLine_.size() > kMaxRawWaiting) halfLine_.resize(kMaxRawWaiting);
    port_->Write(bytes);
  } else if (rawWaiting_.size() + bytes.size() <= kMaxRawWaiting) {
    rawWaiting_ += bytes;
    OpenPort();
  }
}

/// Sends what the devices need before anybody's next line; false when that is nothing.
bool BusConnection::StartOwn() {
  if (!open_ || rawReady_) return false;
  if (!halfLine_.empty()) {
    EndHalfLine();
  } else if (raw_) {
    LaunchOwn(std::string(kConnectedStation) + "::", Purpose::kOnline);
  } else if (asksLeft_ > 0) {
    --asksLeft_;
    LaunchOwn("ver", Purpose::kProgram);
  } else {
    return false;
  }
  return true;
}

/// What an online channel left behind in the device would become the beginning of the next line. It
/// is ended as a text without its closing quote: nobody meant it to be carried out.
void BusConnection::EndHalfLine() {
  std::string line = std::exchange(halfLine_, {});
  const bool quoted = std::count(line.begin(), line.end(), '"') % 2 != 0;
  if (!quoted) line += '"';
  LaunchOwn(std::move(line), Purpose::kOther, quoted ? "\r" : "\"\r");
}

/// The online channel has the line, unless the devices say that the connected one is not there.
void BusConnection::FinishOnline(const std::string& answer) {
  if (rawReady_) return;
  if (IsErrorAnswer(answer)) {
    DropPort();
    rawWaiting_.clear();
    emit RawFailed(Code::kFrameFailure,
                   "the connected device is not to be had: " + FromLatin1(answer));
    return;
  }
  rawReady_ = true;
  emit RawReady();
  if (!rawWaiting_.empty()) SendRaw(std::exchange(rawWaiting_, {}));
}

/// A device whose program died must not stay out of work.
void BusConnection::LeaveBootloader(const std::string& answer) {
  asksLeft_ = 0;
  if (answer.find("ader") == std::string::npos) return;
  Note("the device is in its bootloader, and nobody is left who wanted it there");
  LaunchOwn("reset", Purpose::kOther);
}

}  // namespace ostrel
