#include "logs/tap_statistics/tap_counters.h"

#include "base/number.h"
#include "wire/answers.h"

namespace ostrel {

std::optional<std::int32_t> CounterFromAnswer(std::string_view text) {
  std::optional<std::int32_t> number = WholeNumber(TrimAnswer(text));
  if (number && *number < 0) *number += 65536;
  return number && *number >= 0 ? number : std::nullopt;
}

std::vector<std::int32_t> CountersFromAnswer(std::string answer, std::string& fault) {
  std::vector<std::int32_t> counters;
  for (answer = TrimAnswer(answer); !answer.empty();) {
    const std::string line = NextLine(answer);
    const std::optional<std::int32_t> counter = CounterFromAnswer(line);
    if (!counter) {
      fault = line;
      break;
    }
    counters.push_back(*counter);
  }
  return counters;
}

}  // namespace ostrel
