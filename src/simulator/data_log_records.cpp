#include "simulator/data_log_records.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <span>
#include <string_view>

namespace ostrel::simulator {

namespace {

constexpr LogToken kError = 0x0100, kErrorAcknowledged = 0x01FF;
constexpr LogToken kDebug = 0x4004, kUserEvent = 0x4005;
constexpr LogToken kInputFunction = 0x6100, kOutputFunction = 0x6200;
constexpr LogToken kBinaryInput = 0x6300, kBinaryOutput = 0x6380;

/// A run of tokens, one for each error, function or channel.
struct TokenRange {
  LogToken first;
  int count;
};
constexpr TokenRange kTokens[] = {
    {kClockSet, 1},
    {3, 1},
    {5, 5},
    {kError, 45},
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
// Active current in A, its and the zero voltage in V, angle in radians.
constexpr Field kCoil[] = {
    {'f', 50, 900, 100}, {'f', 40, 880, 100}, {'f', 20, 3500, 1000}, {'f', -3141, 3141, 1000}};
constexpr Field kInjectionPower[] = {
    {'w', 1, 3}, {'f', 0, 1000, 10}, {'f', 0, 1000, 10}, {'f', 500, 1000, 10}};
constexpr Field kSearchRetry[] = {{'w', 1, 5}, {'w', 0, 3}, {'w', 20, 400}, {'w', 0, 65535}};
constexpr Field kInjection[] = {
    {'f', 0, 5000, 1000}, {'f', -3141, 3141, 1000}, {'f', 0, 20000, 1000}, {'f', -3141, 3141, 1000},
    {'f', 100, 4000, 10}, {'f', 1, 500, 10},        {'f', 0, 100, 100}};
constexpr Field kReferenceVoltage[] = {{'f', 9800, 10400, 100}, {'f', -3141, 3141, 1000}};
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

void PutField(LogBytes& bytes, const Field& field, Random& random) {
  const int number = field.low + random.Below(field.high - field.low + 1);
  if (field.kind == 'w') {
    PutWord(bytes, number);
  } else {
    const double value = static_cast<double>(number) / field.parts;
    PutNumber(bytes, std::bit_cast<std::uint32_t>(static_cast<float>(value)), 4);
  }
}

/// Whole seconds and milliseconds.
void PutTime(LogBytes& bytes, std::int64_t localMs) {
  PutNumber(bytes, static_cast<std::uint64_t>(localMs / 1000), 4);
  PutWord(bytes, static_cast<int>(localMs % 1000));
}

/// Values, and behind them how they were summed up.
void PutSeries(LogBytes& bytes, int series, Random& random) {
  constexpr int kCounts[] = {12, 60, 0, 24};
  for (int n = kCounts[series % std::size(kCounts)]; n > 0; --n) {
    PutField(bytes, {'f', 0, 12000, 100}, random);
  }
  PutWord(bytes, random.Below(4));
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

/// What the device found when the function or channel changed: bits that say what follows.
void PutState(LogBytes& bytes, Random& random) {
  const int a = 1 << random.Below(12) | 1 << random.Below(12) | random.Below(4) << 12;
  const int b = random.Below(0x80);
  PutWord(bytes, a);
  PutWord(bytes, b);
  const int words = std::popcount(static_cast<unsigned>(a & 0x0FFF)) +
                    std::popcount(static_cast<unsigned>(b & 0x000F));
  for (int n = 0; n < words; ++n) PutWord(bytes, random.Below(0x10000));
  if ((b & 0x10) != 0) PutField(bytes, {'f', 0, 11000, 100}, random);
  if ((b & 0x20) != 0) PutField(bytes, {'f', -3141, 3141, 1000}, random);
  if ((b & 0x40) != 0) PutField(bytes, {'f', 0, 30000, 100}, random);
}

LogBytes MakePayload(std::int64_t localMs, LogToken token, int series, Random& random) {
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
  if (plain >= kError && plain < kErrorAcknowledged) {
    PutWord(payload, plain - kError);
    PutWord(payload, 1 + random.Below(20));
  }
  return payload;
}

LogBytes Framed(std::int64_t localMs, LogToken token, const LogBytes& payload) {
  LogBytes record;
  PutTime(record, localMs);
  PutWord(record, token);
  PutWord(record, static_cast<int>(payload.size()));
  std::uint8_t check = 0;
  for (const std::uint8_t byte : payload) check ^= byte;
  record.insert(record.end(), payload.begin(), payload.end());
  PutWord(record, check);
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

LogBytes MakeLogRecord(std::int64_t localMs, LogToken token, int series, Random& random) {
  return Framed(localMs, token, MakePayload(localMs, token, series, random));
}

LogBytes MakeClockRecord(std::int64_t localMs, std::int64_t beforeMs) {
  LogBytes payload;
  // A change of zone takes a clock that stands at the first day back to the year before.
  PutTime(payload, std::max<std::int64_t>(beforeMs, 0));
  return Framed(localMs, kClockSet, payload);
}

}  // namespace ostrel::simulator
