#pragma once

#include <cstdint>
#include <string>

namespace ostrel {

/// Local date and time of the wall clock.
struct LocalTime {
  int year = 1970, month = 1, day = 1;
  int hour = 0, minute = 0, second = 0;
};

/// "2024-05-06  07:08:09", two blanks between: as the logs have it.
std::string TimeStamp(const LocalTime& time);

/// Time, and the events that go on while something is awaited.
class Clock {
 public:
  virtual ~Clock() = default;
  virtual LocalTime Now() const = 0;
  /// Milliseconds on a clock that no change of the wall clock moves.
  virtual std::int64_t TickMs() const = 0;
  /// Lets pending events run. Returns as soon as anything arrived, after about 2 ms at the latest.
  virtual void ProcessEvents() = 0;
};

}  // namespace ostrel
