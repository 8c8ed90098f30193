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

}  // namespace

TapStatistics::TapStatistics(const Desk& desk) : desk_(desk) {
  RangeFromFirmware();
}

void TapStatistics::RangeFromFirmware() {
  const bool large =
      ReadNumber(desk_.session.Selected().GetFW().value_or("")) >= kLargeRangeFirmware;
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
  const std::optional<Reading> device = desk_.session.ToRead();
  if (!device) return false;
  const BusyPointer busy(desk_.dialogs);
  RangeFromFirmware();
  std::fill(data_.counters.begin(), data_.counters.end(), 0);
  data_.counted = false;
  const Reading::TimeoutFor timeout = device->Timeout(kReadingTimeoutSeconds);
  return ReadAll(*device);
}

bool TapStatistics::ReadAll(const Reading& device) {
  const std::string range = std::to_string(data_.first) + "," + std::to_string(data_.Last());
  std::optional<std::string> answer = device.Ask(";" + range + ",fori,RegTAPSTAT# 1 i,ni");
  if (!answer) return false;
  for (std::int32_t& counter : data_.counters) counter = Counter(NextLine(*answer));
  data_.counted = true;
  const bool totals = ReadTotal(device, "RegTAPSUM#", data_.total) &&
                      ReadTotal(device, "RegTAPSUML#", data_.underLoad);
  data_.totalled = data_.totalled || totals;
  return totals;
}

bool TapStatistics::ReadTotal(const Reading& device, std::string_view line, std::int32_t& total) {
  const std::optional<std::string> answer = device.Ask(line);
  if (answer) total = Counter(*answer);
  return answer.has_value();
}

Ending TapStatistics::Clear() {
  const std::optional<Writing> device = desk_.session.ToWrite();
  if (!device) return Ending::kFailed;
  if (!desk_.texts.Ask(text::kDeleteStatistics)) return Ending::kNotConfirmed;
  return device->Send("RegTAPSTATCL*=0") ? Ending::kDone : Ending::kFailed;
}

}  // namespace ostrel
