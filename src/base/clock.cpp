#include "base/clock.h"

#include <array>
#include <cstdio>

namespace ostrel {

std::string TimeStamp(const LocalTime& time) {
  std::array<char, 64> stamp{};
  std::snprintf(stamp.data(), stamp.size(), "%04d-%02d-%02d  %02d:%02d:%02d", time.year, time.month,
                time.day, time.hour, time.minute, time.second);
  return stamp.data();
}

}  // namespace ostrel
