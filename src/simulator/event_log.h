#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string_view>

#include "simulator/random.h"
#include "simulator/variables.h"
#include "simulator/words.h"

namespace ostrel::simulator {

struct TapChangerData;

/// What a device notes, by its number in the log.
enum class Event {
  kRemote = 1,
  kInhibitHigh = 7,
  kFastUp = 8,
  kFastDown = 9,
  kOvercurrent = 11,
  kOvervoltage = 12,
  kUndervoltage = 13,
  kAutomatic = 17,
  kUnnamed = 18,
  kSimulation = 19,
  kInhibitLow = 20,
  kGridBreakdown = 21,
  kHunting = 22,
  kUp = 23,
  kDown = 24,
  kTapPosition = 25,
  kSetPoint = 26,
  kStatus = 27,
  kBusError = 28,
  kTapError = 29,
  kTapChangerError = 30,
  kLaterFirmware = 41,
  kLogCleared = 64,
  kRecordsCleared = 65,
  kStatisticsCleared = 66,
  kPanelLogin = 67,
  kBeyondTable = 68,
};

struct LogEntry {
  std::int64_t localMs = 0;  ///< the device's local time, since 1990-01-01 00:00:00
  Event event = Event::kStatus;
  int value = 0;
  std::string_view more = {};  ///< further fields, with ";" before each
};

/// A device's event log: the newest 2048 entries.
class EventLog {
 public:
  static constexpr std::size_t kMaxEntries = 2048;

  void Add(std::int64_t localMs, Event event, int value);
  /// What happened in the days before: tap changes that end at this position, and the rest of a
  /// station's life. Without a position only what has nothing to do with taps.
  void AddHistory(std::int64_t localMs, const TapChangerData& changer, std::optional<int> position,
                  Random random);
  void Clear() { entries_.clear(); }
  /// The newest entry first.
  const std::deque<LogEntry>& Entries() const { return entries_; }

 private:
  std::deque<LogEntry> entries_;
};

/// The commands that read the log.
WordTable EventLogWords();

/// The variable that clears it.
VariableTable EventLogVariables();

}  // namespace ostrel::simulator
