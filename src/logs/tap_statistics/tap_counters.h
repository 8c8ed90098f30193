#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel {

/// What was read of a tap changer: how often it moved to each position, and the two totals.
struct TapCounters {
  int first = -60;                        // position of counters[0]
  std::vector<std::int32_t> counters;     // 0 or more
  std::optional<std::int32_t> total;      // all tap changes; absent = never read
  std::optional<std::int32_t> underLoad;  // tap changes under load; the same
  bool counted = false;                   // the counters are the device's

  int Last() const { return first + static_cast<int>(counters.size()) - 1; }
};

/// A counter as the device prints it, with 16 bits: those above 32767 arrive as negative numbers.
/// Nothing for what is none.
std::optional<std::int32_t> CounterFromAnswer(std::string_view text);

/// The counters in an answer, one a line, up to the first line that is none, which is then what
/// `fault` holds.
std::vector<std::int32_t> CountersFromAnswer(std::string answer, std::string& fault);

}  // namespace ostrel
