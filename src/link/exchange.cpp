// What goes over the channel: one line out, one answer back.

#include <utility>

#include "base/texts.h"
#include "link/link.h"
#include "wire/answers.h"

namespace ostrel {

namespace {

constexpr int kOnlineWaitMs = 350;
constexpr char kCtrlZ = 26;

/// The answer without what the transparent channel brings beside it: Ctrl-Z, prompt and echo.
std::string Unframed(std::string answer, const std::string& line) {
  std::erase(answer, kCtrlZ);
  const std::size_t prompt = answer.rfind("\r\n<");
  if (prompt != std::string::npos && prompt + 5 >= answer.size()) answer.resize(prompt);
  const std::string echo = line + "\r\n";
  if (const std::size_t place = answer.find(echo); place != std::string::npos) {
    answer.erase(0, place + echo.size());
  }
  return TrimAnswer(answer);
}

}  // namespace

Error Link::CommandSend(int channel, const std::string& line) {
  if (busy_ || calls_ > 0) return {text::kExchangeUnderWay, {}};
  if (givenUp_) return {text::kExchangeGivenUp, {}, false, true};
  DropEarlier(channel);
  if (!server_) return lastError_;
  if (lost_ != 0 && holdsWhenLost && holdsWhenLost()) return {lost_, {}};
  return Call("CSend", {channel, line}).Ok() ? Error() : lastError_;
}

/// What an earlier exchange left behind, an answer or its failure, is not the next one's. Behind an
/// answer may stand that the line was lost since.
void Link::DropEarlier(int channel) {
  const AutomationResult status = Call("CStatus", {channel});
  if (!status.Ok() || status.Int() != ChannelStatus::kReady) return;
  Call("CReceive", {channel});
  Call("CStatus", {channel});
}

Answer Link::AnswerWait(int channel) {
  if (busy_) return {{text::kExchangeUnderWay, {}}, {}};
  busy_ = true;
  Answer answer = Poll(channel);
  // Whatever ended the wait, nobody awaits the line any more.
  if (!answer.Ok() && TakeBack(channel)) answer.error.unsent = true;
  busy_ = false;
  return answer;
}

/// Gives up what was sent on a channel; whether the line had still not gone out. A link that was
/// given up does so as well.
bool Link::TakeBack(int channel) {
  if (!server_ || calls_ > 0) return false;
  ++calls_;
  const bool unsent = server_->Call("CCancel", {channel}).Bool();
  --calls_;
  return unsent;
}

Answer Link::Poll(int channel) {
  const auto failed = [](int code) { return Answer{{code, {}}, {}}; };
  AutomationResult status = Call("CStatus", {channel});
  if (!status.Ok()) return {lastError_, {}};
  if (status.Int() == ChannelStatus::kNothingSent) return failed(Code::kNoCommand);
  const std::int64_t start = clock_.TickMs() / 1000;
  for (;;) {
    const AutomationResult online = Call("COnlineEnabled", {channel});
    if (!online.Ok()) return {lastError_, {}};
    if (online.Bool()) return failed(Code::kOnlineActive);
    if (clock_.TickMs() / 1000 - start > defTimeout_) return failed(Code::kTimeout);
    clock_.ProcessEvents();
    if (givenUp_) return failed(text::kExchangeGivenUp);
    status = Call("CStatus", {channel});
    if (!status.Ok()) return {lastError_, {}};
    if (status.Int() != ChannelStatus::kReady) continue;
    const AutomationResult received = Call("CReceive", {channel});
    if (!received.Ok()) return {lastError_, {}};
    return {{}, received.Text()};
  }
}

Answer Link::CommandExchangeCode(int channel, const std::string& line) {
  if (Error error = CommandSend(channel, line)) return {std::move(error), {}};
  return AnswerWait(channel);
}

Answer Link::OnlineExchange(int channel, const std::string& line, std::optional<int> waitMs) {
  if (!Call("COnlineEnabled", {channel}).Bool()) return {{text::kOnlineNecessary, {}}, {}};
  Call("CSend", {channel, std::string("\r")});
  Call("CReceive", {channel});
  if (Error error = BytesSend(channel, line + "\r")) return {std::move(error), {}};
  WaitMs(waitMs.value_or(kOnlineWaitMs));
  Answer answer = BytesReceive(channel);
  if (answer.Ok()) answer.text = Unframed(std::move(answer.text), line);
  return answer;
}

Error Link::BytesSend(int channel, const std::string& bytes) {
  return Call("CSend", {channel, bytes}).Ok() ? Error() : lastError_;
}

Answer Link::BytesReceive(int channel) {
  const AutomationResult received = Call("CReceive", {channel});
  if (!received.Ok()) return {lastError_, {}};
  return {{}, received.Text()};
}

void Link::WaitMs(std::int64_t milliseconds) {
  const std::int64_t end = clock_.TickMs() + milliseconds;
  const bool outer = std::exchange(busy_, true);
  while (clock_.TickMs() < end && !givenUp_) clock_.ProcessEvents();
  busy_ = outer;
}

}  // namespace ostrel
