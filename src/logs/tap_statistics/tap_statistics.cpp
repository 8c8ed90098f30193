#include "logs/tap_statistics/tap_statistics.h"

#include <algorithm>
#include <utility>

#include "base/number.h"
#include "base/texts.h"
#include "logs/tap_statistics/tap_statistics_texts.h"

namespace ostrel {

namespace {

constexpr double kLargeRangeFirmware = 2.22;
constexpr int kReadingTimeoutSeconds = 10;

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
  if (!device || !desk_.session.Selected().GetKennReglerFam(&desk_.texts)) return false;
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
  std::string fault;
  std::vector<std::int32_t> counters = CountersFromAnswer(std::move(*answer), fault);
  if (!fault.empty() || counters.size() != data_.counters.size()) {
    desk_.texts.Warn(fault.empty() ? Error{text::kCountersMissing, range}
                                   : Error{text::kDeviceReplied, fault});
    return false;
  }
  data_.counters = std::move(counters);
  data_.counted = true;
  return ReadTotals(device);
}

bool TapStatistics::ReadTotals(const Reading& device) {
  bool all = true;
  for (const auto& [line, total] :
       {std::pair{"RegTAPSUM#", &data_.total}, std::pair{"RegTAPSUML#", &data_.underLoad}}) {
    const Answer answer = device.Try(line);
    const bool passes = device.Passes(answer, line);
    if (!answer.Ok()) return false;  // nothing more comes over a line that is lost
    const std::optional<std::int32_t> number = CounterFromAnswer(answer.text);
    if (passes && number) *total = number;
    if (passes && !number) desk_.texts.Warn({text::kDeviceReplied, answer.text});
    all = all && passes && number;
  }
  return all;
}

Ending TapStatistics::Clear() {
  const std::optional<Writing> device = desk_.session.ToWrite();
  if (!device || !desk_.session.Selected().GetKennReglerFam(&desk_.texts)) return Ending::kFailed;
  if (!desk_.texts.Ask(text::kDeleteStatistics)) return Ending::kNotConfirmed;
  return device->Send("RegTAPSTATCL*=0") ? Ending::kDone : Ending::kFailed;
}

}  // namespace ostrel
