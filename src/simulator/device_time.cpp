#include "simulator/device_time.h"

#include <array>
#include <chrono>
#include <cmath>
#include <optional>
#include <utility>

#include "simulator/station.h"

namespace ostrel::simulator {

namespace {

constexpr std::int64_t kHourMs = 3'600'000;
constexpr std::int64_t kDayMs = 24 * kHourMs;
constexpr std::chrono::sys_days kEpoch = std::chrono::year(1990) / 1 / 1;

std::int64_t Floor(std::int64_t number, std::int64_t divisor) {
  return number / divisor - (number % divisor < 0 ? 1 : 0);
}

/// The three numbers of a text that has a digit at each "0" of the form and is like it elsewhere.
std::optional<std::array<int, 3>> ReadThree(std::string_view text, std::string_view form) {
  if (text.size() != form.size()) return std::nullopt;
  std::array<int, 3> numbers{};
  std::size_t field = 0;
  for (std::size_t n = 0; n < form.size(); ++n) {
    const bool isDigit = text[n] >= '0' && text[n] <= '9';
    if (form[n] == '0' ? !isDigit : text[n] != form[n]) return std::nullopt;
    if (isDigit) {
      numbers[field] = numbers[field] * 10 + (text[n] - '0');
    } else {
      ++field;
    }
  }
  return numbers;
}

/// The only value that is written, which is a text.
std::string_view WrittenText(const WriteRequest& request) {
  const auto* text =
      request.values.size() == 1 ? std::get_if<std::string>(&request.values.front()) : nullptr;
  return text ? std::string_view(*text) : std::string_view();
}

std::int64_t WrittenTimeOfDay(const WriteRequest& request) {
  const auto time = ReadThree(WrittenText(request), "00:00:00");
  if (!time || (*time)[0] > 23 || (*time)[1] > 59 || (*time)[2] > 59) throw Fault{"no time"};
  return (((*time)[0] * 60 + (*time)[1]) * 60 + (*time)[2]) * std::int64_t{1000};
}

/// As a user does it, which a data log notes.
void SetClock(Station& station, std::int64_t localMs) {
  const std::int64_t before = station.LocalMs();
  station.time.SetLocalMs(station.nowMs, localMs);
  if (station.dataLog) station.dataLog->NoteClockSet(station.LocalMs(), before);
}

Values ReadTime(Station& station, const Values&) {
  station.time.NoteRead(station.nowMs);
  return {TimeText(station.LocalMs())};
}

void WriteTime(Station& station, const WriteRequest& request) {
  const std::int64_t midnight = Floor(station.LocalMs(), kDayMs) * kDayMs;
  SetClock(station, midnight + WrittenTimeOfDay(request));
}

/// Puts the clock back to a time that was read before the zone changed. That may have taken it to
/// another day, so the day is the one that is nearest to what it showed.
void WriteTimeBack(Station& station, const WriteRequest& request) {
  const std::int64_t shown = station.time.LocalMsAsRead(station.nowMs).value_or(station.LocalMs());
  const std::int64_t ahead = WrittenTimeOfDay(request) - (shown - Floor(shown, kDayMs) * kDayMs);
  const std::int64_t days = Floor(ahead + kDayMs / 2, kDayMs);
  SetClock(station, shown + ahead - days * kDayMs);
}

Values ReadDate(Station& station, const Values&) {
  return {DateText(station.LocalMs())};
}

void WriteDate(Station& station, const WriteRequest& request) {
  const auto parts = ReadThree(WrittenText(request), "00.00.0000").value_or(std::array<int, 3>{});
  const std::chrono::year_month_day date = std::chrono::year(parts[2]) / parts[1] / parts[0];
  const bool inRange =
      parts[2] >= SummerTimeRules::kFirstYear && parts[2] <= SummerTimeRules::kLastYear;
  if (!inRange || !date.ok()) throw Fault{"no date"};
  const std::int64_t now = station.LocalMs();
  const std::int64_t day = (std::chrono::sys_days(date) - kEpoch).count();
  SetClock(station, day * kDayMs + now - Floor(now, kDayMs) * kDayMs);
}

template <int TimeZone::*member>
Values ReadZone(Station& station, const Values&) {
  return {static_cast<double>(station.time.zone.*member)};
}

template <int TimeZone::*member, int lowest, int highest>
void WriteZone(Station& station, const WriteRequest& request) {
  station.time.zone.*member = WrittenNumber(request, lowest, highest, 1);
}

Values ReadHemisphere(Station& station, const Values&) {
  return {static_cast<double>(station.time.zone.rules.southern)};
}

void WriteHemisphere(Station& station, const WriteRequest& request) {
  station.time.zone.rules.southern = WrittenNumber(request, 0, 1, 1);
}

/// Which change of which year the arguments mean.
std::pair<ClockChange, int> ChangeOf(const Values& arguments) {
  const auto change = static_cast<ClockChange>(IntegerArgument(arguments, 0, 1, 2));
  const int year = IntegerArgument(arguments, 1, 0, SummerTimeRules::kLastYear);
  if (year != SummerTimeRules::kEveryYear && year < SummerTimeRules::kFirstYear) {
    throw Fault{"index out of range"};
  }
  return {change, year};
}

Values ReadRule(Station& station, const Values& arguments) {
  const auto [change, year] = ChangeOf(arguments);
  return {static_cast<double>(station.time.zone.rules.RuleOf(change, year))};
}

void WriteRule(Station& station, const WriteRequest& request) {
  const auto [change, year] = ChangeOf(request.arguments);
  const auto* number =
      request.values.size() == 1 ? std::get_if<double>(&request.values.front()) : nullptr;
  const bool isWhole = number && std::abs(*number) < 1e9 && std::trunc(*number) == *number;
  if (!isWhole || !IsChangeRule(static_cast<std::int64_t>(*number))) {
    throw Fault{"value out of range"};
  }
  SummerTimeRules& rules = station.time.zone.rules;
  if (request.all) {
    rules.SetAll(change, static_cast<int>(*number));
  } else {
    rules.Set(change, year, static_cast<int>(*number));
  }
}

constexpr Variable kVariables[] = {
    {"time", Always, ReadTime, WriteTime},
    {"time//", Always, nullptr, WriteTimeBack},
    {"date", Always, ReadDate, WriteDate},
    {"utctz", Always, ReadZone<&TimeZone::hours>, WriteZone<&TimeZone::hours, -13, 13>},
    {"utcsh", Always, ReadHemisphere, WriteHemisphere},
    {"utcdst", Always, ReadZone<&TimeZone::summerTime>, WriteZone<&TimeZone::summerTime, 0, 9>},
    {"utcdstt", Always, ReadRule, WriteRule},
};

}  // namespace

std::int64_t DeviceTime::LocalMs(std::int64_t nowMs) const {
  const std::int64_t standard = utcAtZero_ + nowMs + zone.hours * kHourMs;
  const bool summer = zone.summerTime != 0 && zone.rules.InForce(Floor(standard, 1000));
  return standard + (summer ? kHourMs : 0);
}

void DeviceTime::SetLocalMs(std::int64_t nowMs, std::int64_t localMs) {
  const bool summer = zone.summerTime != 0 && zone.rules.InForce(Floor(localMs - kHourMs, 1000));
  readAhead_.reset();
  utcAtZero_ = localMs - (summer ? kHourMs : 0) - zone.hours * kHourMs - nowMs;
}

LocalMoment SplitLocal(std::int64_t localMs) {
  const std::int64_t day = Floor(localMs, kDayMs);
  const int inDay = static_cast<int>(localMs - day * kDayMs);
  const std::chrono::year_month_day date(kEpoch + std::chrono::days(day));
  return {.year = static_cast<int>(date.year()),
          .month = static_cast<int>(static_cast<unsigned>(date.month())),
          .day = static_cast<int>(static_cast<unsigned>(date.day())),
          .hour = inDay / 3'600'000,
          .minute = inDay / 60'000 % 60,
          .second = inDay / 1000 % 60,
          .millisecond = inDay % 1000};
}

std::string Padded(int number, std::size_t width) {
  const std::string digits = std::to_string(number);
  return digits.size() < width ? std::string(width - digits.size(), '0') + digits : digits;
}

std::string TimeText(std::int64_t localMs) {
  const LocalMoment at = SplitLocal(localMs);
  return Padded(at.hour, 2) + ":" + Padded(at.minute, 2) + ":" + Padded(at.second, 2);
}

std::string DateText(std::int64_t localMs) {
  const LocalMoment at = SplitLocal(localMs);
  return Padded(at.day, 2) + "." + Padded(at.month, 2) + "." + Padded(at.year, 4);
}

VariableTable TimeVariables() {
  return kVariables;
}

}  // namespace ostrel::simulator
