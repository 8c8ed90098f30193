#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace ostrel {

/// Finds a device's replies in the bytes that come from it: echo, answer, prompt, Ctrl-Z.
class ReplyFramer {
 public:
  /// The longest answer, in bytes.
  static constexpr std::size_t kMaxAnswer = 256 * 1024;

  enum class Outcome {
    kAnswer,
    kTooLong,
    kDamaged,   // control characters other than TAB, CR and LF in the answer
    kBeheaded,  // begins with the rest of the line's echo, on a line that never showed a whole one
  };
  struct Reply {
    Outcome outcome = Outcome::kAnswer;
    std::string answer;  // without echo, prompt and Ctrl-Z; only with kAnswer
  };

  /// A line goes out (given without its line end): the next reply that fits is its reply.
  void Expect(std::string_view line);
  /// Nobody waits any more.
  void Stop();
  /// Forgets all that has come so far, but not that the line shows echoes.
  void Reset();

  /// Takes bytes in any portions; returns the awaited reply when they complete it. A reply with
  /// another echo (on a line that has ever shown one) and one that nobody waits for are dropped.
  std::optional<Reply> Feed(std::string_view bytes);

  /// True from a reply that was too long until the Ctrl-Z that ends it.
  bool Skipping() const { return skipping_; }
  /// True once a line has been echoed, whether its reply came to an end or not.
  bool ShowsEchoes() const { return echoSeen_; }

 private:
  std::optional<Reply> Take(bool complete);
  Outcome Judge(std::string_view answer, bool echoed) const;
  std::size_t Limit() const;

  std::string echo_;    // of the line that is awaited
  std::string missed_;  // of the last one whose reply did not come
  std::string buffer_;
  bool waiting_ = false;
  bool skipping_ = false;
  bool echoSeen_ = false;
  bool broken_ = false;  // the rest of a reply that nobody waits for any more may still come
};

}  // namespace ostrel
