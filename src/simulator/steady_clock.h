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

/// For a bus that lives as fast as the world, from now on.
inline BusClock RealTime() {
  return [begin = SteadyMs()] { return SteadyMs() - begin; };
}

}  // namespace ostrel::simulator
