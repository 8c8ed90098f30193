#include "server/reply_framer.h"

#include <string.h>

#include <algorithm>
#include <utility>

#include "server/wipe.h"

namespace ostrel {
namespace {

constexpr char kEndOfReply = '\x1A';
constexpr std::string_view kPrompt = "\r\n<";

}  // namespace

void ReplyFramer::Expect(std::string_view line) {
  Stop();
  broken_ = broken_ || (!missed_.empty() && !buffer_.empty());
  echo_.assign(line);
  echo_ += "\r\n";
  waiting_ = true;
  // Half a reply that broke off must not spoil the one that comes now.
  buffer_.clear();
}

void ReplyFramer::Stop() {
  if (!std::exchange(waiting_, false)) return;
  missed_.swap(echo_);
}

void ReplyFramer::Reset() {
  buffer_.clear();
  missed_.clear();
  waiting_ = broken_ = false;
  skipping_ = false;
}

std::size_t ReplyFramer::Limit() const {
  return kMaxAnswer + echo_.size() + kPrompt.size();
}

std::optional<ReplyFramer::Reply> ReplyFramer::Feed(std::string_view bytes) {
  std::optional<Reply> found;
  while (!bytes.empty()) {
    const std::size_t end = bytes.find(kEndOfReply);
    const bool complete = end != std::string_view::npos;
    if (!skipping_) {
      const std::size_t room = Limit() + 1 - buffer_.size();
      buffer_.append(bytes.substr(0, std::min(end, room)));
      skipping_ = buffer_.size() > Limit();
      if (waiting_ && !echoSeen_) echoSeen_ = buffer_.starts_with(echo_);
      if (complete || skipping_) {
        if (auto reply = Take(!skipping_)) {
          found = std::move(reply);
          Wipe(echo_);
          Wipe(missed_);
        }
        explicit_bzero(buffer_.data(), buffer_.size());
        buffer_.clear();
      }
    }
    if (complete) skipping_ = broken_ = false;
    bytes.remove_prefix(complete ? end + 1 : bytes.size());
  }
  return found;
}

std::optional<ReplyFramer::Reply> ReplyFramer::Take(bool complete) {
  if (!waiting_) return std::nullopt;
  std::string_view answer = buffer_;
  const bool echoed = answer.starts_with(echo_);
  if (!missed_.empty() && answer.starts_with(missed_)) echoSeen_ = true;
  if (echoed) {
    answer.remove_prefix(echo_.size());
  } else if (echoSeen_ || broken_) {
    return std::nullopt;
  }
  waiting_ = false;
  if (answer.ends_with(kPrompt)) {
    answer.remove_suffix(kPrompt.size());
  } else if (answer == kPrompt.substr(2)) {
    answer = {};
  }
  if (!complete || answer.size() > kMaxAnswer) return Reply{Outcome::kTooLong, {}};
  const Outcome outcome = Judge(answer, echoed);
  return Reply{outcome, std::string(outcome == Outcome::kAnswer ? answer : std::string_view())};
}

/// Of a complete answer without echo and prompt.
ReplyFramer::Outcome ReplyFramer::Judge(std::string_view answer, bool echoed) const {
  const auto alien = [](unsigned char letter) {
    return (letter < 0x20 && letter != '\t' && letter != '\r' && letter != '\n') || letter == 0x7F;
  };
  if (std::any_of(answer.begin(), answer.end(), alien)) return Outcome::kDamaged;
  const std::size_t lineEnd = answer.find("\r\n");
  if (echoed || lineEnd == std::string_view::npos || lineEnd == 0) return Outcome::kAnswer;
  const bool restOfEcho = echo_.ends_with(answer.substr(0, lineEnd + 2));
  return restOfEcho ? Outcome::kBeheaded : Outcome::kAnswer;
}

}  // namespace ostrel
