#include "simulator/grid.h"

#include "simulator/random.h"

namespace ostrel::simulator {

namespace {

constexpr int kHour = 3600;
// In thousandths of the rated current, at each full hour of a day.
constexpr int kLoadCurve[24] = {380, 350, 330, 320, 330, 380, 500, 650, 740, 760, 750, 770,
                                780, 740, 700, 680, 700, 780, 860, 840, 750, 640, 520, 440};
constexpr int kMeanLoad = 600;
// How far a thousandth of load pulls the voltage, in 1/100 000.
constexpr int kVoltageDrop = 9;
constexpr int kLargestDrift = 1200;
constexpr int kDriftSeconds = 1800;
// In each of these spans there may be one disturbance.
constexpr int kDisturbanceSpan = 600;
constexpr int kSpansWithout = 60;
constexpr int kShortest = 8, kLongest = 80;
constexpr int kWeakest = 3'000, kStrongest = 13'000, kDeepest = 32'000;

/// Independent numbers for every second and each purpose.
enum Purpose : std::uint64_t { kNoise = 1, kDrift, kDisturbance, kSample };

Random Dice(std::uint64_t seed, Purpose purpose, std::int64_t place) {
  return Random(seed ^ (purpose << 56) ^ static_cast<std::uint64_t>(place));
}

int Between(Random& random, int lowest, int highest) {
  return lowest + random.Below(highest - lowest + 1);
}

/// On the straight line from one value to the next.
int Interpolate(int from, int to, std::int64_t part, int whole) {
  return from + static_cast<int>((to - from) * part / whole);
}

}  // namespace

GridState Grid::At(std::int64_t second) const {
  Random noise = Dice(seed_, kNoise, second);
  GridState state;
  state.load = LoadAt(second) + Between(noise, -6, 6);
  state.deviation = kVoltageDrop * (kMeanLoad - state.load) + DriftAt(second) +
                    DisturbanceAt(second) + Between(noise, -120, 120);
  state.angle = 1500 + state.load / 2 + Between(noise, -40, 40);
  state.circulating = Between(noise, 8, 14);
  return state;
}

int Grid::SampleMs(std::int64_t second) const {
  return Dice(seed_, kSample, second).Below(1000);
}

int Grid::DriftAt(std::int64_t second) const {
  const auto target = [this](std::int64_t span) {
    Random random = Dice(seed_, kDrift, span);
    return Between(random, -kLargestDrift, kLargestDrift);
  };
  const std::int64_t span = second / kDriftSeconds;
  return Interpolate(target(span), target(span + 1), second % kDriftSeconds, kDriftSeconds);
}

int Grid::DisturbanceAt(std::int64_t second) const {
  Random random = Dice(seed_, kDisturbance, second / kDisturbanceSpan);
  if (random.Below(kSpansWithout) != 0) return 0;
  const int length = Between(random, kShortest, kLongest);
  const int start = random.Below(kDisturbanceSpan - length);
  const std::int64_t since = second % kDisturbanceSpan - start;
  if (since < 0 || since >= length) return 0;
  // Faults in the grid pull a voltage down deeper than anything lifts it.
  if (random.Below(6) == 0) return -kDeepest;
  const int strength = Between(random, kWeakest, kStrongest);
  return random.Below(3) == 0 ? strength : -strength;
}

int Grid::LoadAt(std::int64_t second) const {
  const std::int64_t local = startLocal_ + second;
  const std::int64_t hour = local / kHour;
  return Interpolate(kLoadCurve[hour % 24], kLoadCurve[(hour + 1) % 24], local % kHour, kHour);
}

}  // namespace ostrel::simulator
