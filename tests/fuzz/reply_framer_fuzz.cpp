// Feeds what a device sends, between the calls of the line's owner. A line of the input is a step:
// '>' and the line that goes out, '<' and bytes that come in, '!' nobody waits any more, '0' begin
// anew. In the bytes '|' is a cut, '~' CR LF, '$' Ctrl-Z, '*' 100,000 letters, all else is itself.

#include "server/reply_framer.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "require.h"

namespace ostrel {
namespace {

constexpr char kEnd = '\x1A';
constexpr int kMaxRuns = 6;  // of letters, so that an input stays quick

bool IsAnswer(const ReplyFramer::Reply& reply) {
  return reply.outcome == ReplyFramer::Outcome::kAnswer;
}

/// A framer, and what is known about it from outside.
class Watched {
 public:
  void Expect(std::string_view line) {
    framer_.Expect(line);
    echo_ = std::string(line) + "\r\n";
    waiting_ = true;
    since_.clear();
  }
  void Stop() {
    framer_.Stop();
    waiting_ = false;
  }
  void Reset() {
    framer_.Reset();
    waiting_ = false;
    since_.clear();
  }
  void Feed(std::string_view bytes) {
    const auto reply = framer_.Feed(bytes);
    since_ += bytes;
    if (reply) Check(*reply);
    OSTREL_REQUIRE(!bytes.ends_with(kEnd) || !framer_.Skipping());
    // Found with find(), which the fuzzer does not watch byte for byte.
    for (std::size_t end = bytes.find(kEnd); end != std::string_view::npos;
         end = bytes.find(kEnd)) {
      bytes.remove_prefix(end + 1);
      since_ = bytes;
    }
  }
  bool Skipping() const { return framer_.Skipping(); }
  const std::vector<std::string>& Outcomes() const { return outcomes_; }

 private:
  void Check(const ReplyFramer::Reply& reply) {
    OSTREL_REQUIRE(waiting_);
    waiting_ = false;
    outcomes_.push_back(std::to_string(static_cast<int>(reply.outcome)) + reply.answer);
    OSTREL_REQUIRE(reply.answer.size() <= ReplyFramer::kMaxAnswer);
    OSTREL_REQUIRE(IsAnswer(reply) || reply.answer.empty());
    // Where more came behind a Ctrl-Z, it is not known here which reply this is.
    if (since_.find(kEnd) < since_.size() - 1) return;
    const bool echoed = since_.starts_with(echo_);
    OSTREL_REQUIRE(echoed || !echoSeen_);
    echoSeen_ = echoed;
    OSTREL_REQUIRE(since_.find(reply.answer, echoed ? echo_.size() : 0) != std::string::npos);
  }

  ReplyFramer framer_;
  std::string echo_;
  std::string since_;  // what came since the line went out or the last Ctrl-Z
  bool waiting_ = false;
  bool echoSeen_ = false;
  std::vector<std::string> outcomes_;  // their numbers, and the answers
};

std::vector<std::string> Portions(std::string_view text, int& runs) {
  std::vector<std::string> portions(1);
  for (const char c : text) {
    std::string& last = portions.back();
    if (c == '|') {
      portions.emplace_back();
    } else if (c == '~') {
      last += "\r\n";
    } else if (c == '*') {
      last.append(++runs > kMaxRuns ? 1 : 100'000, 'y');
    } else {
      last += c == '$' ? kEnd : c;
    }
  }
  return portions;
}

/// The same bytes in three ways: as the input cuts them, at once, and piece by piece.
struct Ways {
  void Feed(const std::vector<std::string>& portions) {
    std::string whole;
    for (const std::string& portion : portions) {
      asCut.Feed(portion);
      whole += portion;
    }
    atOnce.Feed(whole);
    const std::size_t piece = whole.size() < 5000 ? 1 : 4999;
    for (std::size_t from = 0; from < whole.size(); from += piece) {
      pieces.Feed(std::string_view(whole).substr(from, piece));
    }
  }
  template <typename Step>
  void Each(Step step) {
    for (Watched* way : {&asCut, &atOnce, &pieces}) step(*way);
  }
  Watched asCut, atOnce, pieces;
};

void Run(std::string_view input) {
  Ways ways;
  int runs = 0;
  while (!input.empty()) {
    const std::string_view step = input.substr(0, input.find('\n'));
    input.remove_prefix(std::min(input.size(), step.size() + 1));
    const std::string_view text = step.substr(std::min<std::size_t>(1, step.size()));
    if (step.starts_with('>')) {
      ways.Each([text](Watched& way) { way.Expect(text); });
    } else if (step.starts_with('<')) {
      ways.Feed(Portions(text, runs));
    } else if (step.starts_with('!')) {
      ways.Each([](Watched& way) { way.Stop(); });
    } else if (step.starts_with('0')) {
      ways.Each([](Watched& way) { way.Reset(); });
    }
    ways.Each([&ways](const Watched& way) {
      OSTREL_REQUIRE(way.Outcomes() == ways.atOnce.Outcomes());
      OSTREL_REQUIRE(way.Skipping() == ways.atOnce.Skipping());
    });
  }
}

}  // namespace
}  // namespace ostrel

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  ostrel::Run({reinterpret_cast<const char*>(data), size});
  return 0;
}
