#include "simulator/replay.h"

#include <algorithm>
#include <utility>

#include "simulator/record.h"
#include "simulator/text_file.h"

namespace ostrel::simulator {

namespace {

constexpr std::size_t kMaxRecord = 64 * 1024 * 1024;
constexpr std::string_view kUnknown = "<<not in the record>>";

std::string_view TakeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  std::string_view line = text.substr(0, end);
  text.remove_prefix(end + 1);
  if (line.ends_with('\r')) line.remove_suffix(1);
  return line;
}

}  // namespace

std::string Replay::Load(const std::string& path) {
  std::string text;
  std::string failure = ReadTextFile(path, kMaxRecord, text);
  if (failure.empty()) Read(text);
  return failure.empty() ? failure : path + ": " + failure;
}

void Replay::Read(std::string_view text) {
  std::map<int, std::string> unanswered;  // by host: its last line
  const auto add = [&](int host, std::string reply) {
    auto line = unanswered.extract(host);
    if (!line.empty()) replies_[std::move(line.mapped())].all.push_back(std::move(reply));
    return !line.empty();
  };
  for (std::size_t number = 1; text.find('\n') != std::string_view::npos; ++number) {
    const std::string_view line = TakeLine(text);
    if (line.empty()) continue;
    auto entry = ParseEntry(line);
    bool useful = entry.has_value();
    if (useful && entry->isReply) {
      useful = add(entry->host, std::move(entry->bytes));
    } else if (useful) {
      add(entry->host, {});
      unanswered[entry->host] = std::move(entry->bytes);
    }
    if (!useful && faulty_++ == 0) firstFaulty_ = number;
  }
  // What is torn may have been their reply.
  if (!text.empty()) return;
  while (!unanswered.empty()) add(unanswered.begin()->first, {});
}

std::string Replay::Complaint() const {
  if (faulty_ == 0) return {};
  return "faulty lines: " + std::to_string(faulty_) + ", the first is line " +
         std::to_string(firstFaulty_);
}

std::vector<Portion> Replay::ReplyTo(const std::string& line) {
  const auto found = replies_.find(line);
  if (found == replies_.end()) {
    return {{line + std::string(kLineEnd) + std::string(kUnknown) + std::string(kReplyEnd)}};
  }
  Replies& replies = found->second;
  const std::string& reply = replies.all[replies.next];
  replies.next = std::min(replies.next + 1, replies.all.size() - 1);
  if (reply.empty()) return {};
  return {{reply}};
}

}  // namespace ostrel::simulator
