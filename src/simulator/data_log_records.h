#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/random.h"

namespace ostrel::simulator {

using LogBytes = std::vector<std::uint8_t>;

/// Says what a record of a data log tells.
using LogToken = std::uint16_t;
inline constexpr LogToken kClockSet = 1, kSeries = 2, kSums = 4, kPowerDown = 0x4000;
/// Of tokens for something that comes and goes.
inline constexpr LogToken kComesAndGoes = 0x4000, kComing = 0x8000;

/// Everything that an earth-fault-coil controller writes down, without kComing.
std::vector<LogToken> AllLogTokens();

/// What none of them writes down: nothing, unknown tokens, indices past the known ones.
std::vector<LogToken> OddLogTokens();

/// The points of a resonance curve. Each has six values: the coil's current and the active one in
/// A, the zero voltage in V and its angle in degrees, the fixed coil's and a further current in A.
/// Behind them stands a word: how the currents were summed up (0 to 3).
struct LogSeries {
  int number = 0;     ///< of all series, on which the number of points depends
  bool gaps = false;  ///< values are absent (not a number)
  bool mode = true;   ///< with the word behind the points
};

/// A record, all numbers big-endian: seconds since 1990-01-01 local time (4 bytes; none before it),
/// milliseconds (2), token (2), length of the payload (2), payload, and the record's own length
/// (2).
LogBytes MakeLogRecord(std::int64_t localMs, LogToken token, const LogSeries& series,
                       Random& random);
/// The one that tells what the clock showed before it was set.
LogBytes MakeClockRecord(std::int64_t localMs, std::int64_t beforeMs);
/// Makes a record claim more bytes than one can have.
void SpoilLength(LogBytes& record);

}  // namespace ostrel::simulator
