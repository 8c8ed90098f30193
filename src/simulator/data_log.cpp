#include "simulator/data_log.h"

#include <algorithm>
#include <utility>

#include "simulator/station.h"

namespace ostrel::simulator {

namespace {

constexpr std::int64_t kMinute = 60'000, kHour = 60 * kMinute;
// Of a ring of so many blocks; in a longer one, everything lasts longer.
constexpr int kUsualBlocks = 256;
// Long enough for everything to happen once.
constexpr std::int64_t kHistory = 30 * kHour;
// Fills the ring anew; what came before would be gone from it.
constexpr std::int64_t kLongestLived = 8 * 24 * kHour;
// How often a series is written between all else that happens.
constexpr int kSeriesEach = 10;
// A rush comes with one in so many events, a length that is wrong (if at all) likewise.
constexpr int kRushEvery = 24, kWrongLengthEvery = 40;

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

DataLog::DataLog(const DeviceTime& clock, const Extras& extras, Random random)
    : extras_(extras), random_(random), nextMs_(-Long(kHistory)) {
  ShuffleTokens();
  Advance(0, clock);
}

std::int64_t DataLog::Long(std::int64_t milliseconds) const {
  return milliseconds * std::max(1, extras_.logBlocks / kUsualBlocks);
}

void DataLog::ShuffleTokens() {
  tokens_ = AllLogTokens();
  if (extras_.oddRecords) {
    const std::vector<LogToken> odd = OddLogTokens();
    tokens_.insert(tokens_.end(), odd.begin(), odd.end());
  }
  for (int n = 1; n < kSeriesEach; ++n) tokens_.insert(tokens_.end(), {kSeries, kSums});
  for (std::size_t left = tokens_.size(); left > 1; --left) {
    std::swap(tokens_[left - 1], tokens_[random_.Below(static_cast<int>(left))]);
  }
}

void DataLog::Advance(std::int64_t milliseconds, const DeviceTime& clock) {
  nextMs_ = std::max(nextMs_, milliseconds - Long(kLongestLived));
  while (nextMs_ <= milliseconds) WriteNext(clock);
}

void DataLog::NoteClockSet(std::int64_t localMs, std::int64_t beforeMs) {
  WriteAlone(MakeClockRecord(localMs, beforeMs));
}

void DataLog::NotePowerDown(std::int64_t localMs) {
  WriteAlone(MakeLogRecord(localMs, kPowerDown | kComing, {}, random_));
}

LogToken DataLog::NextToken() {
  if (lasting_ != 0) return std::exchange(lasting_, LogToken{0});
  const LogToken token = tokens_[nextToken_];
  nextToken_ = (nextToken_ + 1) % tokens_.size();
  if ((token & kComesAndGoes) == 0) return token;
  lasting_ = token;
  return token | kComing;
}

void DataLog::WriteNext(const DeviceTime& clock) {
  if (rush_ == 0 && lasting_ == 0 && random_.Below(kRushEvery) == 0) {
    CloseBlock();
    rush_ = 2 + random_.Below(3);
  }
  const LogToken token = NextToken();
  const bool isSeries = token == kSeries || token == kSums;
  LogSeries form;
  if (isSeries) {
    const int variant = extras_.oddRecords ? series_ % 3 : 0;
    form = {.number = series_++, .gaps = variant == 1, .mode = variant != 2};
  }
  LogBytes record = MakeLogRecord(clock.LocalMs(nextMs_), token, form, random_);
  const bool spoiled = extras_.oddRecords && random_.Below(kWrongLengthEvery) == 0;
  if (spoiled) SpoilLength(record);
  Append(record, isSeries && !spoiled);
  if (rush_ > 0) {
    --rush_;
    CloseBlock();
    nextMs_ += 20 + random_.Below(150);
  } else if (lasting_ != 0) {
    // What has come goes again soon.
    nextMs_ += 500 + random_.Below(40'000);
  } else {
    nextMs_ += 4 * kMinute + random_.Below(2 * kMinute);
  }
}

void DataLog::WriteAlone(const LogBytes& record) {
  CloseBlock();
  Append(record, false);
  CloseBlock();
}

void DataLog::Append(const LogBytes& record, bool mayRunOn) {
  const std::size_t room = kBlockSize - open_.bytes.size();
  std::size_t fits = std::min(room, record.size());
  if (fits < record.size()) {
    // A reader that takes the ring up anew begins with block 0.
    const bool beforeZero =
        (first_ + static_cast<int>(blocks_.size()) + 1) % extras_.logBlocks == 0;
    if (!extras_.splitRecords || !mayRunOn || beforeZero) fits = 0;
    open_.bytes.insert(open_.bytes.end(), record.begin(), record.begin() + fits);
    CloseBlock();
    open_.continues = fits > 0;
  } else {
    fits = 0;
  }
  open_.bytes.insert(open_.bytes.end(), record.begin() + fits, record.end());
}

void DataLog::CloseBlock() {
  if (open_.bytes.empty()) return;
  if (std::ssize(blocks_) == extras_.logBlocks) DropOldest();
  blocks_.push_back(std::exchange(open_, {}));
  // The rest of a record whose beginning is lost goes with it.
  while (blocks_.front().continues) DropOldest();
}

void DataLog::DropOldest() {
  blocks_.pop_front();
  first_ = (first_ + 1) % extras_.logBlocks;
}

void DataLog::Clear() {
  blocks_.clear();
  open_ = {};
  first_ = 0;
}

int DataLog::Last() const {
  const int count = static_cast<int>(blocks_.size());
  return (first_ + std::max(count, 1) - 1) % extras_.logBlocks;
}

std::size_t DataLog::Size() const {
  std::size_t size = 0;
  for (const Block& block : blocks_) size += block.bytes.size();
  return size;
}

std::string DataLog::Header() const {
  return "name=LOG,blocks=" + std::to_string(extras_.logBlocks) +
         ",size=" + std::to_string(kBlockSize);
}

const LogBytes* DataLog::BlockAt(int number) const {
  if (number < 0 || number >= extras_.logBlocks) return nullptr;
  const std::size_t place = (number - first_ + extras_.logBlocks) % extras_.logBlocks;
  return place < blocks_.size() ? &blocks_[place].bytes : nullptr;
}

VariableTable DataLogVariables() {
  return kVariables;
}

}  // namespace ostrel::simulator
