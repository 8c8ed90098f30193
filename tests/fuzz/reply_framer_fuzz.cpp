// Feeds what a device sends, between the calls of the line's owner. A line of the input is a step:
// '>' and the line that goes out, '<' and bytes that come in, '!' nobody waits any more, '0' begin
// anew. In the bytes '|' is a cut, '~' CR LF, '$' Ctrl-Z, '*' 65,536 letters, all else is itself.

#include "server/reply_framer.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "require.h"

namespace ostrel {
namespace {

constexpr char kEnd = '\x1A';
constexpr int kMaxRuns = 8;  // of letters, four of which are the longest answer; quick enough

/// A framer, and what is known about it from outside.
class Watched {
 public:
  void Expect(std::string_view line) {
    framer_.Expect(line);
    echo_ = std::string(line) + "\r\n";
    waiting_ = true;
    since_ = kEnd;
  }
  void Stop() {
    framer_.Stop();
    waiting_ = false;
  }
  void Reset() {
    framer_.Reset();
    waiting_ = false;
  }
  void Feed(std::string_view bytes) {
    since_ += bytes;
    const bool echoes = framer_.ShowsEchoes();
    const auto reply = framer_.Feed(bytes);
    if (!reply) return;
    OSTREL_REQUIRE(waiting_);
    waiting_ = false;
    OSTREL_REQUIRE(reply->answer.size() <= ReplyFramer::kMaxAnswer);
    OSTREL_REQUIRE(!echoes || since_.find(kEnd + echo_) != std::string::npos);
    seen.push_back(std::to_string(static_cast<int>(reply->outcome)) + reply->answer);
  }
  void EndStep() { seen.emplace_back(framer_.Skipping() ? "skipping" : ""); }

  std::vector<std::string> seen;  // the outcomes with their answers, and the end of each step

 private:
  ReplyFramer framer_;
  std::string echo_;
  std::string since_;  // what came since the line went out, as behind another reply
  bool waiting_ = false;
};

/// The bytes of a step in the portions in which the input cuts them.
std::vector<std::string> Portions(std::string_view text, int& runs) {
  std::vector<std::string> portions(1);
  for (const char c : text) {
    std::string& last = portions.back();
    if (c == '|') {
      portions.emplace_back();
    } else if (c == '~') {
      last += "\r\n";
    } else if (c == '*') {
      last.append(++runs > kMaxRuns ? 1 : 65'536, 'y');
    } else {
      last += c == '$' ? kEnd : c;
    }
  }
  return portions;
}

enum class Cut { kAsGiven, kNowhere, kEverywhere };

void Feed(Watched& framer, const std::vector<std::string>& portions, Cut cut) {
  std::string whole;
  for (const std::string& portion : portions) {
    if (cut == Cut::kAsGiven) framer.Feed(portion);
    whole += portion;
  }
  if (cut == Cut::kNowhere) framer.Feed(whole);
  if (cut != Cut::kEverywhere) return;
  const std::size_t piece = whole.size() < 5000 ? 1 : 4999;
  for (std::size_t from = 0; from < whole.size(); from += piece) {
    framer.Feed(std::string_view(whole).substr(from, piece));
  }
}

std::vector<std::string> Run(std::string_view input, Cut cut) {
  Watched framer;
  int runs = 0;
  while (!input.empty()) {
    const std::string_view step = input.substr(0, input.find('\n'));
    input.remove_prefix(std::min(input.size(), step.size() + 1));
    if (step.starts_with('>')) framer.Expect(step.substr(1));
    if (step.starts_with('<')) Feed(framer, Portions(step.substr(1), runs), cut);
    if (step.starts_with('!')) framer.Stop();
    if (step.starts_with('0')) framer.Reset();
    framer.EndStep();
  }
  return framer.seen;
}

}  // namespace
}  // namespace ostrel

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const auto seen = ostrel::Run(input, ostrel::Cut::kNowhere);
  OSTREL_REQUIRE(ostrel::Run(input, ostrel::Cut::kAsGiven) == seen);
  OSTREL_REQUIRE(ostrel::Run(input, ostrel::Cut::kEverywhere) == seen);
  return 0;
}
