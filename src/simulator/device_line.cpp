#include "simulator/device_line.h"

#include <utility>

#include "simulator/program.h"
#include "simulator/reply_form.h"

namespace ostrel::simulator {

std::optional<std::vector<Portion>> DeviceLine::Feed(char byte) {
  if (byte == '\r') return Reply();
  if (byte == '\n' || byte == kReplyEnd.back()) {
    // A line feed belongs to a carriage return; a Ctrl-Z in the echo would end the reply.
  } else if (line_.size() < kMaxLine) {
    line_ += byte;
  } else {
    tooLong_ = true;
  }
  return std::nullopt;
}

std::vector<Portion> DeviceLine::Reply() {
  last_ = std::exchange(line_, {});
  const bool tooLong = std::exchange(tooLong_, false);
  if (replay_) return replay_->ReplyTo(last_);
  std::vector<Portion> reply = bus_.AnswerInPieces(tooLong ? "" : last_);
  if (reply.empty()) return {};
  if (tooLong) reply = {{"<<line too long>>"}};
  reply.front().bytes.insert(0, last_ + std::string(kLineEnd));
  reply.back().bytes += kReplyEnd;
  return reply;
}

}  // namespace ostrel::simulator
