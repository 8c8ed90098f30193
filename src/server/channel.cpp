#include "server/channel.h"

#include <utility>

#include "server/line_text.h"
#include "server/reply_framer.h"
#include "wire/codes.h"

namespace ostrel {
int Channel::NextExchange() {
  if (!Transparent()) {
    Clear();
  } else if (state_ == State::kIdle) {
    state_ = State::kWaiting;
  }
  return ++exchange_;
}

void Channel::Clear() {
  state_ = State::kIdle;
  received_.clear();
  failure_ = {};
}

void Channel::GiveUp() {
  if (state_ == State::kFailed) return;
  received_.clear();
  state_ = failure_.Ok() ? State::kIdle : State::kFailed;
}

StatusNotice Channel::Answer(std::string_view bytes) {
  state_ = State::kReady;
  received_.assign(bytes);
  return {number, exchange_, ChannelStatus::kReady, FromLatin1(bytes), 0, {}};
}

StatusNotice Channel::Fail(int error, std::string description) {
  state_ = State::kFailed;
  received_.clear();
  failure_ = ObjectError(error, std::move(description));
  return {number,       exchange_,      ChannelStatus::kNothingSent,
          std::nullopt, failure_.error, failure_.description};
}

std::optional<StatusNotice> Channel::PortLost(int error, std::string description) {
  if (Transparent() || state_ == State::kWaiting) return std::nullopt;
  // An exchange that the loss ended has told so. Any other failure may have been fetched already
  // from what the client was told, and must not hide that another device may come back.
  const bool told = state_ == State::kFailed && failure_.error == ObjectError(error, {}).error;
  if (told) return std::nullopt;
  if (state_ != State::kReady) return Fail(error, std::move(description));
  failure_ = ObjectError(error, std::move(description));
  return StatusNotice{number,       exchange_,      ChannelStatus::kNothingSent,
                      std::nullopt, failure_.error, failure_.description};
}

std::optional<StatusNotice> Channel::AddRaw(std::string_view bytes) {
  if (received_.size() + bytes.size() > ReplyFramer::kMaxAnswer) {
    return Fail(Code::kTooBig, "more than 256 KiB came in that nobody fetched");
  }
  const bool first = received_.empty();
  received_ += bytes;
  if (state_ != State::kFailed) state_ = State::kReady;
  if (!first) return std::nullopt;
  return StatusNotice{number, exchange_, ChannelStatus::kReady, std::nullopt, 0, {}};
}

AutomationResult Channel::Raise() {
  state_ = received_.empty() ? State::kIdle : State::kReady;
  return std::exchange(failure_, {});
}

AutomationResult Channel::Status() {
  switch (state_) {
    case State::kFailed:
      return Raise();
    case State::kReady:
      return {ChannelStatus::kReady, 0, {}};
    case State::kWaiting:
      return {ChannelStatus::kWaiting, 0, {}};
    case State::kIdle:
      break;
  }
  return {ChannelStatus::kNothingSent, 0, {}};
}

AutomationResult Channel::Receive() {
  if (state_ == State::kFailed) return Raise();
  if (!Transparent()) {
    if (state_ == State::kWaiting)
      return ObjectError(Code::kReceiveError, "there is no answer yet");
    if (state_ == State::kIdle) return ObjectError(Code::kNoCommand, "no command was sent");
  }
  state_ = failure_.Ok() ? State::kIdle : State::kFailed;
  return {FromLatin1(std::exchange(received_, {})), 0, {}};
}

}  // namespace ostrel
