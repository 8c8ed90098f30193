#include "simulator/data_log_records.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <iterator>
#include <limits>
#include <span>
#include <string_view>

namespace ostrel::simulator {

namespace {

constexpr LogToken kError = 0x0100, kErrorAcknowledged = 0x01FF;
constexpr LogToken kDebug = 0x4004, kUserEvent = 0x4005;
constexpr LogToken kInputFunction = 0x6100, kOutputFunction = 0x6200;
constexpr LogToken kBinaryInput = 0x6300, kBinaryOutput = 0x6380;

constexpr int kErrors = 45;

/// A run of tokens, one for each error, function or channel.
struct TokenRange {
  LogToken first;
  int count;
};
constexpr TokenRange kTokens[] = {
    {kClockSet, 1},
    {3, 1},
    {5, 5},
    {kError, kErrors},
    {kErrorAcknowledged, 1},
    {kComesAndGoes, 6},
    {kInputFunction, 67},
    {kOutputFunction, 92},
    {kBinaryInput, 16},
    {kBinaryOutput, 12},
    {kSeries, 1},
    {kSums, 1},
};

/// One number of a payload: low to high, in parts of a unit. A float, or a word.
struct Field {
  char kind;  ///< 'f' or 'w'
  int low;
  int high;
  int parts = 1;
};

constexpr Field kFirmwareChange[] = {{'w', 2311, 2311}, {'w', 2404, 2404}};
// Two active currents in A, the zero voltage in V, its angle in degrees.
constexpr Field kCoil[] = {
    {'f', 50, 900, 100}, {'f', 40, 880, 100}, {'f', 20, 3500, 1000}, {'f', 0, 9000, 100}};
constexpr Field kInjectionPower[] = {
    {'w', 1, 3}, {'f', 0, 1000, 10}, {'f', 0, 1000, 10}, {'f', 500, 1000, 10}};
constexpr Field kSearchRetry[] = {{'w', 1, 5}, {'w', 0, 3}, {'w', 20, 400}, {'w', 0, 99}};
// Two voltages in V, each with its angle in degrees, two currents in A, a frequency in Hz.
constexpr Field kInjection[] = {
    {'f', 0, 5000, 1000},  {'f', -1800, 1800, 10}, {'f', 0, 20000, 1000}, {'f', -1800, 1800, 10},
    {'f', 100, 9900, 100}, {'f', 1, 5000, 100},    {'f', 3000, 7000, 100}};
constexpr Field kReferenceVoltage[] = {{'f', 5500, 6000, 100}, {'f', -9000, 18000, 100}};
constexpr Field kStatusError[] = {{'w', 1, 0x00FF}};

/// The payloads that have the same numbers each time.
struct FixedPayload {
  LogToken token;
  std::span<const Field> fields;
};
constexpr FixedPayload kFixedPayloads[] = {
    {3, kFirmwareChange},   {5, kCoil},      {6, kInjectionPower},
    {7, kSearchRetry},      {8, kInjection}, {9, kReferenceVoltage},
    {0x4001, kStatusError},
};

void PutNumber(LogBytes& bytes, std::uint64_t number, int size) {
  for (int shift = 8 * (size - 1); shift >= 0; shift -= 8) {
    bytes.push_back(static_cast<std::uint8_t>(number >> shift));
  }
}

void PutWord(LogBytes& bytes, int word) {
  PutNumber(bytes, static_cast<std::uint64_t>(word), 2);
}

void PutFloat(LogBytes& bytes, double value) {
  PutNumber(bytes, std::bit_cast<std::uint32_t>(static_cast<float>(value)), 4);
}

void PutField(LogBytes& bytes, const Field& field, Random& random) {
  const int number = field.low + random.Below(field.high - field.low + 1);
  if (field.kind == 'w') {
    PutWord(bytes, number);
  } else {
    PutFloat(bytes, static_cast<double>(number) / field.parts);
  }
}

/// Whole seconds and milliseconds.
void PutTime(LogBytes& bytes, std::int64_t localMs) {
  localMs = std::max<std::int64_t>(localMs, 0);
  PutNumber(bytes, static_cast<std::uint64_t>(localMs / 1000), 4);
  PutWord(bytes, static_cast<int>(localMs % 1000));
}

void PutSeries(LogBytes& bytes, const LogSeries& series, Random& random) {
  constexpr int kPoints[] = {2, 10, 0, 4};
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN(), kWidth = 8;
  const int count = kPoints[series.number % std::size(kPoints)];
  const double tuned = 20 + random.Below(60), active = 1 + random.Below(40) / 10.0;
  const double fixed = random.Below(2) * 12.5, further = random.Below(100) / 10.0;
  for (int n = 0; n < count; ++n) {
    const double current = 10 + 80.0 * (n + 1) / (count + 1), away = (current - tuned) / kWidth;
    PutFloat(bytes, current);
    PutFloat(bytes, active);
    PutFloat(bytes, 2 + 90 / (1 + away * away));
    PutFloat(bytes, series.gaps ? kNone : -90 * away / (1 + std::abs(away)));
    PutFloat(bytes, fixed);
    PutFloat(bytes, series.gaps && n % 2 == 1 ? kNone : further);
  }
  if (series.mode) PutWord(bytes, random.Below(4));
}

void PutDebug(LogBytes& bytes, Random& random) {
  const int count = random.Below(5);
  PutWord(bytes, random.Below(100));
  PutWord(bytes, count);
  for (int n = 0; n < count; ++n) PutField(bytes, {'f', -1000, 1000, 10}, random);
}

/// Flags with the number of values, the name from its end on, a number and the values.
void PutUserEvent(LogBytes& bytes, Random& random) {
  constexpr std::string_view kNames[] = {"Handbetrieb     ", "Revision        ",
                                         "Schalter offen  "};
  constexpr int kManual = 0x10;
  const int count = random.Below(9);
  const std::string_view name = kNames[random.Below(static_cast<int>(std::size(kNames)))];
  PutWord(bytes, count | (random.Below(2) * kManual));
  bytes.insert(bytes.end(), name.rbegin(), name.rend());
  PutNumber(bytes, static_cast<std::uint64_t>(random.Below(1'000'000)), 4);
  for (int n = 0; n < count; ++n) PutField(bytes, {'f', 0, 5000, 100}, random);
}

/// What the device found when the function or channel changed: bits that say what follows. The
/// angle, in radians, comes with its voltage.
void PutState(LogBytes& bytes, Random& random) {
  constexpr int kVoltageAndAngle = 0x30, kCurrent = 0x40;
  int a = random.Below(4) << 12;
  for (int n = 0; n < 2; ++n) a |= 1 << random.Below(12);
  int b = random.Below(0x10);
  if (random.Below(2) == 0) b |= kVoltageAndAngle;
  if (random.Below(2) == 0) b |= kCurrent;
  PutWord(bytes, a);
  PutWord(bytes, b);
  const int words = std::popcount(static_cast<unsigned>(a & 0x0FFF)) +
                    std::popcount(static_cast<unsigned>(b & 0x000F));
  for (int n = 0; n < words; ++n) PutWord(bytes, random.Below(0x10000));
  if ((b & kVoltageAndAngle) != 0) {
    PutField(bytes, {'f', 0, 11000, 100}, random);
    PutField(bytes, {'f', -3141, 3141, 1000}, random);
  }
  if ((b & kCurrent) != 0) PutField(bytes, {'f', 0, 9900, 100}, random);
}

/// Which error, and more about it; most have nothing more to say.
void PutError(LogBytes& bytes, int error, Random& random) {
  PutWord(bytes, error);
  PutWord(bytes, random.Below(3) == 0 ? 1 + random.Below(20) : 0);
}

LogBytes MakePayload(std::int64_t localMs, LogToken token, const LogSeries& series,
                     Random& random) {
  LogBytes payload;
  const LogToken plain = token & static_cast<LogToken>(~kComing);
  for (const FixedPayload& fixed : kFixedPayloads) {
    if (fixed.token != plain) continue;
    for (const Field& field : fixed.fields) PutField(payload, field, random);
  }
  if (plain == kClockSet) PutTime(payload, localMs - random.Below(2000));
  if (plain == kSeries || plain == kSums) PutSeries(payload, series, random);
  if (plain == kDebug) PutDebug(payload, random);
  if (plain == kUserEvent) PutUserEvent(payload, random);
  if (plain >= kInputFunction) PutState(payload, random);
  if (plain >= kError && plain < kErrorAcknowledged) PutError(payload, plain - kError, random);
  if (plain == kErrorAcknowledged) PutError(payload, random.Below(kErrors), random);
  return payload;
}

LogBytes Framed(std::int64_t localMs, LogToken token, const LogBytes& payload) {
  LogBytes record;
  PutTime(record, localMs);
  PutWord(record, token);
  PutWord(record, static_cast<int>(payload.size()));
  record.insert(record.end(), payload.begin(), payload.end());
  PutWord(record, static_cast<int>(record.size()) + 2);
  return record;
}

}  // namespace

std::vector<LogToken> AllLogTokens() {
  std::vector<LogToken> tokens;
  for (const TokenRange& range : kTokens) {
    for (int n = 0; n < range.count; ++n) tokens.push_back(static_cast<LogToken>(range.first + n));
  }
  return tokens;
}

std::vector<LogToken> OddLogTokens() {
  return {0,      10,     0x0099,           0x0200,
          0x4006, 0x5000, kError + kErrors, kInputFunction + 67,
          0x61FF, 0x6400, 0x7FFF,           kOutputFunction + 92};
}

LogBytes MakeLogRecord(std::int64_t localMs, LogToken token, const LogSeries& series,
                       Random& random) {
  return Framed(localMs, token, MakePayload(localMs, token, series, random));
}

LogBytes MakeClockRecord(std::int64_t localMs, std::int64_t beforeMs) {
  LogBytes payload;
  PutTime(payload, beforeMs);
  return Framed(localMs, kClockSet, payload);
}

void SpoilLength(LogBytes& record) {
  constexpr std::size_t kLength = 8;  // behind time and token
  record[kLength] |= 2;
}

}  // namespace ostrel::simulator
