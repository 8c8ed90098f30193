#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "simulator/summer_time.h"
#include "simulator/variables.h"

namespace ostrel::simulator {

/// How a device makes its local time from UTC.
struct TimeZone {
  int hours = 1;       ///< -13..13, east is positive
  int summerTime = 1;  ///< 0 = none, others: by the rules
  SummerTimeRules rules;
};

/// The clock of a device. Local times are milliseconds since 1990-01-01 00:00:00.
class DeviceTime {
 public:
  explicit DeviceTime(std::int64_t localSeconds) { SetLocalMs(0, localSeconds * 1000); }

  /// At a simulated time in milliseconds since the bus began.
  std::int64_t LocalMs(std::int64_t nowMs) const;
  /// Makes it this local time now. Of the hour that comes twice, it means the first.
  void SetLocalMs(std::int64_t nowMs, std::int64_t localMs);

  /// Notes what the clock shows now, for whoever reads it to put it back.
  void NoteRead(std::int64_t nowMs) { readAhead_ = LocalMs(nowMs) - nowMs; }
  /// What it would show now had nothing changed since it was read last; nothing when it was not, or
  /// was set in the meantime.
  std::optional<std::int64_t> LocalMsAsRead(std::int64_t nowMs) const {
    return readAhead_ ? std::optional(*readAhead_ + nowMs) : std::nullopt;
  }

  TimeZone zone;  ///< a change moves the local time, for the clock runs in UTC

 private:
  std::int64_t utcAtZero_ = 0;             ///< at simulated time 0
  std::optional<std::int64_t> readAhead_;  ///< of simulated time
};

/// A local time in its parts.
struct LocalMoment {
  int year, month, day, hour, minute, second, millisecond;
};
LocalMoment SplitLocal(std::int64_t localMs);

/// With leading zeros: "05".
std::string Padded(int number, std::size_t width);

std::string TimeText(std::int64_t localMs);  ///< "08:00:00"
std::string DateText(std::int64_t localMs);  ///< "05.01.2026"

/// Time, date, zone and the rules of summer time, which every device has.
VariableTable TimeVariables();

}  // namespace ostrel::simulator
