#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "wire/automation.h"
#include "wire/codes.h"

namespace ostrel {

struct Line;

/// What a client is told when the status of its channel changes.
struct StatusNotice {
  int channel = 0;
  int exchange = 0;                   // counted per channel from 1, one for each CSend
  int status = 0;                     // as CStatus gives it
  std::optional<std::string> answer;  // UTF-8; not for a transparent channel
  int error = 0;                      // not 0: the exchange failed, this is why
  std::string description;
};

/// A client's channel and the exchange that goes on on it.
class Channel {
 public:
  int number = 0;
  int client = 0;
  int kind = ChannelKind::kCommand;
  int frame = FrameMode::kFramed;
  int translate = 0;
  int timeoutS = 10;
  Line* line = nullptr;

  bool Transparent() const { return frame == FrameMode::kTransparent; }

  /// A CSend came: what was before is given up.
  int NextExchange();
  void Wait() { state_ = State::kWaiting; }
  /// Forgets the exchange, e.g. because the frame mode changes.
  void Clear();
  /// Forgets the exchange, but not a failure that nobody knows of yet.
  void GiveUp();
  /// True while this exchange has neither answer nor failure.
  bool Awaits(int exchange) const { return state_ == State::kWaiting && exchange == exchange_; }

  StatusNotice Answer(std::string_view bytes);
  StatusNotice Fail(int error, std::string description);
  /// The port was lost while nothing was under way: an answer stays, the failure is raised after
  /// it. Nothing where an exchange tells it, and on a transparent channel.
  std::optional<StatusNotice> PortLost(int error, std::string description);
  /// Bytes that came in on a transparent channel; a notice when they are the first unfetched ones.
  std::optional<StatusNotice> AddRaw(std::string_view bytes);

  /// CStatus: 0, 1 or 3; raises a failure once.
  AutomationResult Status();
  /// CReceive: the answer, or all that came in; raises a failure once.
  AutomationResult Receive();

 private:
  enum class State { kIdle, kWaiting, kReady, kFailed };

  AutomationResult Raise();

  int exchange_ = 0;
  State state_ = State::kIdle;
  std::string received_;  // ISO 8859-1
  AutomationResult failure_;
};

}  // namespace ostrel
