#pragma once

#include <cstdint>

namespace ostrel::simulator {

/// A small generator of its own (a mixed counter), so that a seed gives the same history with every
/// compiler and library.
class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}

  /// 0 to limit - 1; limit is at least 1.
  int Below(int limit) {
    state_ += 0x9e3779b97f4a7c15u;
    std::uint64_t mixed = state_;
    mixed = (mixed ^ (mixed >> 30)) * 0xbf58476d1ce4e5b9u;
    mixed = (mixed ^ (mixed >> 27)) * 0x94d049bb133111ebu;
    return static_cast<int>((mixed ^ (mixed >> 31)) % static_cast<std::uint64_t>(limit));
  }

 private:
  std::uint64_t state_;
};

}  // namespace ostrel::simulator
