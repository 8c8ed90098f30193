#pragma once

#include <chrono>
#include <cstdint>

#include "simulator/bus.h"

namespace ostrel::simulator {

/// Milliseconds of a clock that does not go back.
inline std::int64_t SteadyMs() {
  using std::chrono::milliseconds;
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  return std::chrono::duration_cast<milliseconds>(now).count();
}

/// For a bus that lives so many times as fast as the world, from now on.
inline BusClock RealTime(double speed = 1) {
  return [begin = SteadyMs(), speed] {
    return static_cast<std::int64_t>(static_cast<double>(SteadyMs() - begin) * speed);
  };
}

}  // namespace ostrel::simulator
