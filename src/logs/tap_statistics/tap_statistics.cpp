#include "logs/tap_statistics/tap_statistics.h"

#include <algorithm>

#include "base/number.h"
#include "base/texts.h"
#include "wire/answers.h"

namespace ostrel {

namespace {

constexpr double kLargeRangeFirmware = 2.22;
constexpr int kReadingTimeoutSeconds = 10;

/// Counters have 16 bits; those above 32767 arrive as negative numbers. What is still negative then
/// is none, and counts as 0.
std::int32_t Counter(std::string_view text) {
  const std::int32_t number = ReadInteger(text);
  return std::max(number < 0 ? number + 65536 : number, 0);
}

/// Another time-out while it lives.
class TimeoutFor {
 public:
  TimeoutFor(Link& link, int seconds) : link_(link), earlier_(link.ChannelTimeoutSet(seconds)) {}
  ~TimeoutFor() { link_.ChannelTimeoutSet(earlier_); }
  TimeoutFor(const TimeoutFor&) = delete;
  TimeoutFor& operator=(const TimeoutFor&) = delete;

 private:
  Link& link_;
  int earlier_;
};

}  // namespace

TapStatistics::TapStatistics(Link& link, Commands& commands, const Selection& selection,
                             Dialogs& dialogs, const Messages& messages)
    : link_(link),
      commands_(commands),
      selection_(selection),
      dialogs_(dialogs),
      messages_(messages) {
  RangeFromFirmware();
}

void TapStatistics::RangeFromFirmware() {
  const bool large = ReadNumber(selection_.GetFW().value_or("")) >= kLargeRangeFirmware;
  const int first = large ? -60 : -40;
  const std::size_t count = large ? 120 : 80;
  if (data_.first == first && data_.counters.size() == count) return;
  data_.first = first;
  data_.counters.assign(count, 0);
  data_.counted = false;
}

void TapStatistics::DeviceChanged() {
  data_ = {};
  RangeFromFirmware();
}

bool TapStatistics::Read() {
  const std::optional<std::string> prefix = selection_.GetKenn();
  if (!prefix) {
    messages_.Warn(text::kNoDeviceSelected);
    return false;
  }
  const BusyPointer busy(dialogs_);
  RangeFromFirmware();
  std::fill(data_.counters.begin(), data_.counters.end(), 0);
  data_.counted = false;
  const TimeoutFor timeout(link_, kReadingTimeoutSeconds);
  return ReadAll(*prefix);
}

bool TapStatistics::ReadAll(const std::string& prefix) {
  const std::string range = std::to_string(data_.first) + "," + std::to_string(data_.Last());
  std::string answer;
  if (!commands_.DevQueryMsg(link_.CurrentChannel(),
                             prefix + ";" + range + ",fori,RegTAPSTAT# 1 i,ni", answer)) {
    return false;
  }
  for (std::int32_t& counter : data_.counters) counter = Counter(NextLine(answer));
  data_.counted = true;
  const bool totals = ReadTotal(prefix + "RegTAPSUM#", data_.total) &&
                      ReadTotal(prefix + "RegTAPSUML#", data_.underLoad);
  data_.totalled = data_.totalled || totals;
  return totals;
}

bool TapStatistics::ReadTotal(const std::string& line, std::int32_t& total) {
  std::string answer;
  if (!commands_.DevQueryMsg(link_.CurrentChannel(), line, answer)) return false;
  total = Counter(answer);
  return true;
}

TapStatistics::Clearing TapStatistics::Clear() {
  if (!selection_.GetKenn()) {
    messages_.Warn(text::kNoDeviceSelected);
    return Clearing::kFailed;
  }
  const std::optional<std::string> prefix = selection_.GetKennSel();
  if (!prefix) return Clearing::kFailed;
  if (!messages_.Ask(text::kDeleteStatistics)) return Clearing::kRefused;
  std::string answer;
  const bool done =
      commands_.DevQueryMsg(link_.CurrentChannel(), *prefix + "RegTAPSTATCL*=0", answer);
  return done ? Clearing::kDone : Clearing::kFailed;
}

}  // namespace ostrel
