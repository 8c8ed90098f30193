#include "simulator/faulty_line.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

#include "simulator/reply_form.h"

namespace ostrel::simulator {

namespace {

/// A portion of text without end.
std::string EndlessText(int lines) {
  std::string text;
  for (int n = 0; n < lines; ++n) {
    text += "there is always another line behind this one";
    text += kLineEnd;
  }
  return text;
}

std::string Joined(const std::vector<Portion>& portions) {
  std::string bytes;
  for (const Portion& portion : portions) bytes += portion.bytes;
  return bytes;
}

}  // namespace

std::string Count::Text() const {
  return "received " + std::to_string(lines) + " lines, " + std::to_string(bytes) + " bytes, " +
         std::to_string(faults) + " faults";
}

bool FaultyLine::Feed(char byte, std::int64_t now) {
  Count& count = simulation_.count;
  ++count.bytes;
  if (host_ == 0) host_ = ++simulation_.hosts;
  std::optional<std::vector<Portion>> reply = line_.Feed(byte);
  if (!reply) return false;
  std::vector<Portion>& portions = *reply;
  if (simulation_.fault.Hits(++count.lines)) {
    ++count.faults;
    // Nothing goes wrong on the way with what no device sends.
    if (!portions.empty()) portions = simulation_.fault.Instead(Joined(portions));
  }
  if (simulation_.record) simulation_.record->Write(host_, line_.LastLine(), portions);
  // The first waits from now on, however long the reply before it takes.
  if (!portions.empty()) now += std::exchange(portions.front().delay, 0);
  for (Portion& portion : portions) Enqueue(std::move(portion), std::exchange(now, 0));
  return true;
}

FaultyLine::Step FaultyLine::Next(std::int64_t now) {
  if (!pace_.Busy()) {
    Step step = NextWhole(now);
    const bool paced = simulation_.baud > 0 && step.kind == Step::Kind::kSend;
    if (!paced || step.bytes.empty()) return step;
    pace_.Start(std::move(step.bytes), simulation_.baud, now);
  }
  if (const int wait = pace_.Wait(now); wait > 0) return {Step::Kind::kWait, {}, wait};
  lastSent_ = now;
  return {Step::Kind::kSend, pace_.Take(now)};
}

/// As if a reply went out in no time.
FaultyLine::Step FaultyLine::NextWhole(std::int64_t now) {
  if (queue_.empty()) return {};
  const Queued& first = queue_.front();
  const std::int64_t wait = std::max(first.due, lastSent_ + first.portion.delay) - now;
  if (wait > 0) return {Step::Kind::kWait, {}, static_cast<int>(wait)};
  switch (first.portion.kind) {
    case Portion::Kind::kEndless:
      // On a slow line only little is ahead of the end.
      if (queue_.size() == 1)
        return {Step::Kind::kSend, EndlessText(simulation_.baud > 0 ? 1 : 64)};
      TakeFirst(now);
      return {Step::Kind::kSend, std::string(kReplyEnd)};
    case Portion::Kind::kDropLink:
      TakeFirst(now);
      return {Step::Kind::kDropLink};
    case Portion::Kind::kBytes:
      break;
  }
  return {Step::Kind::kSend, TakeFirst(now).bytes};
}

void FaultyLine::DropReplies() {
  queue_.clear();
  pace_.Drop();
  waiting_ = 0;
}

void FaultyLine::Enqueue(Portion portion, std::int64_t due) {
  waiting_ += sizeof(Queued) + portion.bytes.size();
  queue_.push_back({std::move(portion), due});
}

Portion FaultyLine::TakeFirst(std::int64_t now) {
  Portion portion = std::move(queue_.front().portion);
  queue_.pop_front();
  waiting_ -= sizeof(Queued) + portion.bytes.size();
  lastSent_ = now;
  return portion;
}

}  // namespace ostrel::simulator
