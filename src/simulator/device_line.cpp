#include "simulator/device_line.h"

#include <utility>

#include "simulator/program.h"
#include "simulator/reply_form.h"

namespace ostrel::simulator {

std::string DeviceLine::Feed(std::string_view bytes) {
  std::string replies;
  for (const char byte : bytes) {
    if (byte == '\r') {
      replies += Reply();
    } else if (byte == '\n' || byte == kReplyEnd.back()) {
      // A line feed belongs to a carriage return; a Ctrl-Z in the echo would end the reply.
    } else if (line_.size() < kMaxLine) {
      line_ += byte;
    } else {
      tooLong_ = true;
    }
  }
  return replies;
}

std::string DeviceLine::Reply() {
  const std::string line = std::exchange(line_, {});
  const bool tooLong = std::exchange(tooLong_, false);
  std::string reply = line;
  reply += kLineEnd;
  reply += tooLong ? "<<line too long>>" : bus_.Answer(line);
  reply += kReplyEnd;
  return reply;
}

}  // namespace ostrel::simulator
