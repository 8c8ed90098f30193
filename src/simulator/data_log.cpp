#include "simulator/data_log.h"

#include <algorithm>
#include <utility>

#include "simulator/station.h"

namespace ostrel::simulator {

namespace {

constexpr std::int64_t kMinute = 60'000, kHour = 60 * kMinute;
// Long enough for everything to happen once.
constexpr std::int64_t kHistory = 30 * kHour;
// Fills the ring anew; what came before would be gone from it.
constexpr std::int64_t kLongestLived = 8 * 24 * kHour;
// How often a series is written between all else that happens.
constexpr int kSeriesEach = 10;

bool HasDataLog(const Station& station) {
  return station.dataLog.has_value();
}

/// "FREAD# LOG n": a block in hexadecimal digits.
Values ReadBlock(Station& station, const Values& arguments) {
  if (arguments.empty() || arguments.front() != Value(std::string("log"))) {
    throw Fault{"no such file"};
  }
  constexpr int kHighest = 0xFFFF;
  const LogBytes* block = station.dataLog->BlockAt(IntegerArgument(arguments, 1, 0, kHighest));
  if (!block) return {};
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string hex;
  for (const std::uint8_t byte : *block) {
    hex += kDigits[byte / 16];
    hex += kDigits[byte % 16];
  }
  return {hex};
}

void ClearLog(Station& station, const WriteRequest& request) {
  WrittenNumber(request, 0, 0, 1);
  station.dataLog->Clear();
}

constexpr Variable kVariables[] = {
    {"fread", HasDataLog, ReadBlock, nullptr},
    {"esplogclear", HasDataLog, nullptr, ClearLog},
};

}  // namespace

DataLog::DataLog(const DeviceTime& clock, Random random) : random_(random), nextMs_(-kHistory) {
  ShuffleTokens();
  Advance(0, clock);
}

void DataLog::ShuffleTokens() {
  tokens_ = AllLogTokens();
  for (int n = 1; n < kSeriesEach; ++n) tokens_.insert(tokens_.end(), {kSeries, kSums});
  for (std::size_t left = tokens_.size(); left > 1; --left) {
    std::swap(tokens_[left - 1], tokens_[random_.Below(static_cast<int>(left))]);
  }
}

void DataLog::Advance(std::int64_t milliseconds, const DeviceTime& clock) {
  nextMs_ = std::max(nextMs_, milliseconds - kLongestLived);
  while (nextMs_ <= milliseconds) WriteNext(clock);
}

void DataLog::NoteClockSet(std::int64_t localMs, std::int64_t beforeMs) {
  Append(MakeClockRecord(Stamp(localMs), beforeMs), false);
}

std::int64_t DataLog::Stamp(std::int64_t localMs) {
  newest_ = std::max(newest_ + 1, localMs);
  return newest_;
}

void DataLog::WriteNext(const DeviceTime& clock) {
  LogToken token = std::exchange(open_, LogToken{0});
  if (token == 0) {
    token = tokens_[nextToken_];
    nextToken_ = (nextToken_ + 1) % tokens_.size();
    if ((token & kComesAndGoes) != 0) {
      open_ = token;
      token |= kComing;
    }
  }
  const bool series = token == kSeries || token == kSums;
  const std::int64_t at = Stamp(clock.LocalMs(nextMs_));
  Append(MakeLogRecord(at, token, series ? series_++ : 0, random_), series);
  // What has come goes again soon.
  nextMs_ += open_ != 0 ? 500 + random_.Below(40'000) : 4 * kMinute + random_.Below(2 * kMinute);
}

void DataLog::Append(const LogBytes& record, bool mayRunOn) {
  const std::size_t room = blocks_.empty() ? 0 : kBlockSize - blocks_.back().bytes.size();
  if (room == 0 || (record.size() > room && !mayRunOn)) BeginBlock(false);
  for (const std::uint8_t byte : record) {
    if (blocks_.back().bytes.size() == kBlockSize) BeginBlock(true);
    blocks_.back().bytes.push_back(byte);
  }
}

void DataLog::BeginBlock(bool continues) {
  if (blocks_.size() == kMaxBlocks) {
    // The rest of a record whose beginning is lost goes with it.
    do {
      blocks_.pop_front();
      first_ = (first_ + 1) % kMaxBlocks;
    } while (blocks_.front().continues);
  }
  blocks_.push_back({{}, continues});
}

void DataLog::Clear() {
  blocks_.clear();
  first_ = 0;
}

int DataLog::Last() const {
  const int count = static_cast<int>(blocks_.size());
  return (first_ + std::max(count, 1) - 1) % kMaxBlocks;
}

std::size_t DataLog::Size() const {
  std::size_t size = 0;
  for (const Block& block : blocks_) size += block.bytes.size();
  return size;
}

std::string DataLog::Header() const {
  return "name=LOG,blocks=" + std::to_string(kMaxBlocks) + ",size=" + std::to_string(kBlockSize);
}

const LogBytes* DataLog::BlockAt(int number) const {
  if (number < 0 || number >= kMaxBlocks) return nullptr;
  const std::size_t place = (number - first_ + kMaxBlocks) % kMaxBlocks;
  return place < blocks_.size() ? &blocks_[place].bytes : nullptr;
}

VariableTable DataLogVariables() {
  return kVariables;
}

}  // namespace ostrel::simulator
