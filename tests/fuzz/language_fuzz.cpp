// Feeds what a host sends to a bus of simulated devices, a line of the input after the other. "@N"
// is no line: N seconds pass. A first line "*" asks for all built-in stations instead of three.

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "require.h"
#include "simulator/bus.h"
#include "simulator/station.h"

namespace ostrel::simulator {
namespace {

constexpr std::size_t kMaxAnswer = 1024 * 1024;
constexpr std::size_t kMaxLines = 64;
// So that an input stays quick: a leap may cost a day of the devices' life.
constexpr int kMaxLeaps = 4;
constexpr std::int64_t kLongestLeap = 4'000'000'000;  // s
constexpr std::int64_t kLongestRestart = 60'000;      // ms
const std::string kIdentity = "KT-X+;V2.27";

/// Of the built-in stations the first ones, without a long history: that takes its time.
std::vector<StationData> YoungStations(std::size_t count) {
  constexpr int kFewChanges = 100;
  std::vector<StationData> stations(BuiltInStations().begin(), BuiltInStations().end());
  stations.resize(std::min(count, stations.size()));
  for (StationData& data : stations) {
    int& changes = data.tapChanger.changesSoFar;
    changes = std::min(changes, kFewChanges);
  }
  return stations;
}

std::int64_t Leap(std::string_view number) {
  std::int64_t seconds = 0;
  std::from_chars(number.data(), number.data() + number.size(), seconds);
  return std::clamp<std::int64_t>(seconds, 0, kLongestLeap) * 1000;
}

std::vector<std::string> AnswersTo(std::string_view input) {
  const auto stations = YoungStations(input.starts_with("*\n") ? kMaxStations : 3);
  std::int64_t now = 0;
  Bus bus({.clock = [&now] { return now; }, .stations = stations});
  std::vector<std::string> answers;
  const auto ask = [&](std::string_view line) {
    const std::string& answer = answers.emplace_back(bus.Answer(line));
    OSTREL_REQUIRE(answer.find('\x1a') == std::string::npos && answer.size() <= kMaxAnswer);
    return answer;
  };
  int leaps = 0;
  for (std::size_t n = 0; n < kMaxLines && !input.empty(); ++n) {
    const std::string_view line = input.substr(0, input.find('\n'));
    if (!line.starts_with('@')) {
      ask(line);
    } else if (leaps++ < kMaxLeaps) {
      now += Leap(line.substr(1));
    }
    input.remove_prefix(std::min(input.size(), line.size() + 1));
  }
  // Whatever was said, the connected device is the same again after a while.
  now += kLongestRestart;
  if (ask("AA:ver.") == kIdentity) return answers;
  OSTREL_REQUIRE(answers.back().starts_with("Error: "));  // it is in its bootloader
  ask("reset");
  OSTREL_REQUIRE(ask("AA:ver.") == kIdentity);
  return answers;
}

}  // namespace
}  // namespace ostrel::simulator

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  OSTREL_REQUIRE(ostrel::simulator::AnswersTo(input) == ostrel::simulator::AnswersTo(input));
  return 0;
}
