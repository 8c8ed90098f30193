// What goes over the channel: one line out, one answer back.

#include <utility>

#include "app/texts.h"
#include "link/answers.h"
#include "link/link.h"

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

int Link::CommandSend(int channel, const std::string& line) {
  if (busy_ || calls_ > 0) return text::kExchangeUnderWay;
  DropEarlier(channel);
  if (!server_) return lastError_.Code();
  if (lost_ != 0 && holdsWhenLost && holdsWhenLost()) return lost_;
  return Call("CSend", {channel, line}).Ok() ? 0 : lastError_.Code();
}

/// What an earlier exchange left behind, an answer or its failure, is not the next one's. Behind an
/// answer may stand that the line was lost since.
void Link::DropEarlier(int channel) {
  const AutomationResult status = Call("CStatus", {channel});
  if (!status.Ok() || status.Int() != status::kReady) return;
  Call("CReceive", {channel});
  Call("CStatus", {channel});
}

int Link::AnswerWait(int channel, std::string& answer) {
  if (busy_) return text::kExchangeUnderWay;
  busy_ = true;
  const int code = Poll(channel, answer);
  busy_ = false;
  return code;
}

int Link::Poll(int channel, std::string& answer) {
  AutomationResult status = Call("CStatus", {channel});
  if (!status.Ok()) return lastError_.Code();
  if (status.Int() == status::kNothingSent) return code::kNoCommand;
  const std::int64_t start = clock_.TickMs() / 1000;
  for (;;) {
    const AutomationResult online = Call("COnlineEnabled", {channel});
    if (!online.Ok()) return lastError_.Code();
    if (online.Bool()) return code::kOnlineActive;
    if (clock_.TickMs() / 1000 - start > defTimeout_) return TimedOut(channel);
    clock_.ProcessEvents();
    if (givenUp_) {
      Cancel(channel);
      return text::kExchangeGivenUp;
    }
    status = Call("CStatus", {channel});
    if (!status.Ok()) return lastError_.Code();
    if (status.Int() != status::kReady) continue;
    const AutomationResult received = Call("CReceive", {channel});
    answer = received.Text();
    return received.Ok() ? 0 : lastError_.Code();
  }
}

int Link::TimedOut(int channel) {
  const bool unsent = Cancel(channel);
  lastError_ = {kObjectErrorBase + code::kTimeout, unsent ? kUnsentText : std::string()};
  return code::kTimeout;
}

/// Gives the exchange up; whether its line was still waiting to go out.
bool Link::Cancel(int channel) {
  if (!server_ || calls_ > 0) return false;
  ++calls_;
  const bool unsent = server_->Call("CCancel", {channel}).Bool();
  --calls_;
  return unsent;
}

std::string Link::UnsentDetail(int code) const {
  const bool unsent = code == code::kTimeout && lastError_.Code() == code &&
                      lastError_.description.starts_with(kUnsentText);
  return unsent ? lastError_.Detail() : std::string();
}

bool Link::CommandExchange(int channel, const std::string& line, std::string& answer) {
  const int code = CommandExchangeCode(channel, line, answer);
  if (code != 0) messages_.Warn(code, UnsentDetail(code));
  return code == 0;
}

int Link::CommandExchangeCode(int channel, const std::string& line, std::string& answer) {
  const int code = CommandSend(channel, line);
  return code != 0 ? code : AnswerWait(channel, answer);
}

bool Link::OnlineExchange(int channel, const std::string& line, std::string& answer, bool showError,
                          std::optional<int> waitMs) {
  if (!Call("COnlineEnabled", {channel}).Bool()) {
    if (showError) messages_.Warn(text::kOnlineNecessary);
    return false;
  }
  Call("CSend", {channel, std::string("\r")});
  Call("CReceive", {channel});
  if (!Call("CSend", {channel, line + "\r"}).Ok()) return false;
  WaitMs(waitMs.value_or(kOnlineWaitMs));
  const AutomationResult received = Call("CReceive", {channel});
  if (!received.Ok()) return false;
  answer = Unframed(received.Text(), line);
  return true;
}

void Link::WaitMs(std::int64_t milliseconds) {
  const std::int64_t end = clock_.TickMs() + milliseconds;
  const bool outer = std::exchange(busy_, true);
  while (clock_.TickMs() < end && !givenUp_) clock_.ProcessEvents();
  busy_ = outer;
}

}  // namespace ostrel
