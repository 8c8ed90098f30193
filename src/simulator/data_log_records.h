#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/random.h"

namespace ostrel::simulator {

using LogBytes = std::vector<std::uint8_t>;

/// Says what a record of a data log tells.
using LogToken = std::uint16_t;
inline constexpr LogToken kClockSet = 1, kSeries = 2, kSums = 4;
/// Of tokens for something that comes and goes.
inline constexpr LogToken kComesAndGoes = 0x4000, kComing = 0x8000;

/// Everything that an earth-fault-coil controller writes down, without kComing.
std::vector<LogToken> AllLogTokens();

/// A record, all numbers big-endian: seconds since 1990-01-01 local time (4 bytes), milliseconds
/// (2), token (2), length of the payload (2), payload, and the payload's bytes combined by
/// exclusive or (2). The number of values in a series varies with `series`.
LogBytes MakeLogRecord(std::int64_t localMs, LogToken token, int series, Random& random);
/// The one that tells what the clock showed before it was set.
LogBytes MakeClockRecord(std::int64_t localMs, std::int64_t beforeMs);

}  // namespace ostrel::simulator
