#include "server/reply_framer.h"

#include <algorithm>
#include <utility>

namespace ostrel {
namespace {

constexpr char kEndOfReply = '\x1A';
constexpr std::string_view kPrompt = "\r\n<";

}  // namespace

void ReplyFramer::Expect(std::string_view line) {
  echo_.assign(line);
  echo_ += "\r\n";
  waiting_ = true;
  // Half a reply that broke off must not spoil the one that comes now.
  buffer_.clear();
}

void ReplyFramer::Reset() {
  buffer_.clear();
  waiting_ = false;
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
      if (complete || skipping_) {
        if (auto reply = Take(!skipping_)) found = std::move(reply);
        buffer_.clear();
      }
    }
    if (complete) skipping_ = false;
    bytes.remove_prefix(complete ? end + 1 : bytes.size());
  }
  return found;
}

std::optional<ReplyFramer::Reply> ReplyFramer::Take(bool complete) {
  if (!waiting_) return std::nullopt;
  std::string_view answer = buffer_;
  if (answer.starts_with(echo_)) {
    echoSeen_ = true;
    answer.remove_prefix(echo_.size());
  } else if (echoSeen_) {
    return std::nullopt;
  }
  waiting_ = false;
  if (answer.ends_with(kPrompt)) {
    answer.remove_suffix(kPrompt.size());
  } else if (answer == kPrompt.substr(2)) {
    answer = {};
  }
  if (!complete || answer.size() > kMaxAnswer) return Reply{true, {}};
  return Reply{false, std::string(answer)};
}

}  // namespace ostrel
