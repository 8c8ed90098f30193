#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/random.h"
#include "simulator/reply_form.h"

namespace ostrel::simulator {

/// What may go wrong on the way from the devices to the host: one kind of fault, at one line or at
/// every line.
class LineFault {
 public:
  /// No fault.
  LineFault() = default;
  /// From "name" or "name:N", N being the only line that it hits, from 1; nothing when the text is
  /// no such thing. The seed is that of what comes at random.
  static std::optional<LineFault> Parse(std::string_view text, std::uint32_t seed);
  /// A line for each fault: its name and what it does.
  static std::string Help();

  /// Whether it hits this line of all lines received, counted from 1.
  bool Hits(std::uint64_t line) const;
  /// What goes out for a line that it hits instead of the proper reply, which has echo and end.
  /// Nothing goes out when it is empty.
  std::vector<Portion> Instead(const std::string& reply);

 private:
  enum class Kind {
    kNone,
    kSilent,
    kLate,
    kSplit,
    kLostFirst,
    kDoubled,
    kGarbage,
    kTruncated,
    kEndless,
    kDropLink
  };
  struct Entry;
  static const Entry kEntries[];

  std::string WithGarbage(const std::string& reply);

  Kind kind_ = Kind::kNone;
  std::uint64_t line_ = 0;  ///< 0 = every line
  Random random_{0};
};

}  // namespace ostrel::simulator
