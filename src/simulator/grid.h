#pragma once

#include <cstdint>

namespace ostrel::simulator {

/// What the grid offers a transformer in one second.
struct GridState {
  int deviation = 0;    ///< of the voltage at the normal tap position, in 1/100 000
  int load = 0;         ///< current in thousandths of the rated one
  int angle = 0;        ///< of the current, in 1/100 degree
  int circulating = 0;  ///< current between parallel transformers, as the load
};

/// The grid on the primary side: load that follows the time of day, a voltage that drifts, and now
/// and then a dip or a swell. What it is like depends on the seed and the second alone, so that
/// leaping over a time and living through it lead to the same.
class Grid {
 public:
  /// Local time at simulated second 0, in seconds since 1990-01-01 00:00:00.
  Grid(std::uint64_t seed, std::int64_t localSeconds) : seed_(seed), startLocal_(localSeconds) {}

  /// At a simulated second, from 0.
  GridState At(std::int64_t second) const;
  /// A millisecond of this second, 0 to 999: when a device that samples once a second does so.
  int SampleMs(std::int64_t second) const;

 private:
  int DriftAt(std::int64_t second) const;
  int DisturbanceAt(std::int64_t second) const;
  int LoadAt(std::int64_t second) const;

  std::uint64_t seed_;
  std::int64_t startLocal_;
};

}  // namespace ostrel::simulator
