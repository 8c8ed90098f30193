// Feeds a program what a server tells it, between the program's own calls. A line of the input is a
// step on channel 1: '>' a line goes out, '!' it is given up, '?' its status, '.' its answer is
// fetched, 'a' and bytes: the server answers them, 'e' and bytes: it fails with that reason, 'r'
// and a digit: the reply with that id is awaited. Every other line is from the server as it stands.

#include "platform/server_news.h"

#include <algorithm>
#include <set>
#include <string>
#include <string_view>

#include "require.h"
#include "server/json_rpc.h"
#include "server/line_text.h"

namespace ostrel {
namespace {

constexpr int kChannel = 1;
constexpr int kFailure = kObjectErrorBase + Code::kReceiveError;

class Watched {
 public:
  Watched() { Channel(); }  // it is open

  void Step(std::string_view step) {
    const std::string text = FromLatin1(step.substr(std::min<std::size_t>(1, step.size())));
    switch (step.empty() ? '\0' : step[0]) {
      case '>':
        ++exchange_;
        Channel().Sent();
        OSTREL_REQUIRE(Channel().status == ChannelStatus::kWaiting && !Channel().answerHere);
        break;
      case '!':
        Channel().GiveUp();
        OSTREL_REQUIRE(!Channel().answerHere);
        break;
      case '?':
        Ask();
        break;
      case '.':
        if (Channel().answerHere) OSTREL_REQUIRE(Channel().Receive().Ok());
        break;
      case 'a':
        Answer(text);
        break;
      case 'e':
        Fail(text);
        break;
      case 'r':
        Await(text);
        break;
      default:
        news_.Take(QByteArray(step.data(), static_cast<qsizetype>(step.size())));
    }
  }

 private:
  ChannelNews& Channel() { return news_.channels[kChannel]; }

  /// What was raised is not raised again, and hides no answer.
  void Ask() {
    const bool here = Channel().answerHere;
    const AutomationResult told = Channel().Status();
    OSTREL_REQUIRE(!here || told.Ok());
    if (!told.Ok()) OSTREL_REQUIRE(Channel().Status().Ok());
  }

  void Answer(const std::string& text) {
    news_.Take(rpc::EncodeStatus({kChannel, exchange_, ChannelStatus::kReady, text, 0, {}}));
    OSTREL_REQUIRE(Channel().answerHere);
    ChannelNews copy = Channel();
    OSTREL_REQUIRE(copy.Status().Int() == ChannelStatus::kReady || !copy.Status().Ok());
    // One that comes for an exchange before is none.
    news_.Take(rpc::EncodeStatus({kChannel, exchange_ - 1, ChannelStatus::kReady, "late", 0, {}}));
    const AutomationResult received = Channel().Receive();
    OSTREL_REQUIRE(received.Text() == text && !Channel().answerHere);
  }

  void Fail(const std::string& reason) {
    const bool here = Channel().answerHere;
    news_.Take(rpc::EncodeStatus(
        {kChannel, exchange_, ChannelStatus::kNothingSent, std::nullopt, kFailure, reason}));
    if (here) OSTREL_REQUIRE(Channel().Receive().Ok());
    const AutomationResult raised = Channel().Status();
    OSTREL_REQUIRE(raised.error == kFailure && raised.description == reason);
  }

  void Await(const std::string& digit) {
    const int id = digit.empty() ? 0 : digit[0] - '0';
    OSTREL_REQUIRE(!news_.Replied(id) || awaited_.contains(id));
    if (news_.Replied(id)) OSTREL_REQUIRE(!news_.TakeReply(id).isEmpty());
    news_.Await(id);
    awaited_.insert(id);
    news_.Take(rpc::EncodeResult(id, {true, 0, {}}));
    OSTREL_REQUIRE(news_.Replied(id) && news_.TakeReply(id)["result"] == true);
    news_.Await(id);
  }

  ServerNews news_;
  int exchange_ = 0;
  std::set<int> awaited_;
};

}  // namespace
}  // namespace ostrel

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  ostrel::Watched watched;
  while (!input.empty()) {
    const std::string_view step = input.substr(0, input.find('\n'));
    input.remove_prefix(std::min(input.size(), step.size() + 1));
    watched.Step(step);
  }
  return 0;
}
