#include "simulator/summer_time.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <limits>
#include <utility>

namespace ostrel::simulator {

namespace {

using std::chrono::days;
using std::chrono::sys_days;
using std::chrono::weekday;

constexpr sys_days kEpoch = std::chrono::year(1990) / 1 / 1;
constexpr std::int64_t kHour = 3600;
constexpr int kLast = 0;
constexpr int kFirstOfMonth = 91;
constexpr int kFifthOfMonth = 95;
constexpr std::int64_t kLargestRule = 7'95'12'23'59;
constexpr int kFirstHourBefore = 97;
constexpr int kLeapYear = 2000;
// By hemisphere: the last Sundays of March at 2:00 and of October at 3:00; the first Sundays of
// October at 2:00 and of April at 3:00.
constexpr int kDefaults[2][2] = {{700030200, 700100300}, {791100200, 791040300}};

struct Rule {
  bool before;
  int weekday, day, month, hour, minute;
};

Rule Unpack(std::int64_t packed) {
  std::int64_t rest = std::abs(packed);
  const auto take = [&rest] {
    const int field = static_cast<int>(rest % 100);
    rest /= 100;
    return field;
  };
  Rule rule{};
  rule.before = packed < 0;
  rule.minute = take();
  rule.hour = take();
  if (rule.hour >= kFirstHourBefore) rule.hour -= 100;
  rule.month = take();
  rule.day = take();
  rule.weekday = take();
  return rule;
}

std::chrono::year_month MonthOf(const Rule& rule, int year) {
  return std::chrono::year(year) / rule.month;
}

int LastDay(std::chrono::year_month month) {
  return static_cast<int>(static_cast<unsigned>((month / std::chrono::last).day()));
}

sys_days DateOf(const Rule& rule, int year) {
  const auto month = MonthOf(rule, year);
  const weekday wanted(static_cast<unsigned>(rule.weekday));
  if (rule.weekday != 0 && rule.day == kLast) return month / wanted[std::chrono::last];
  if (rule.weekday != 0 && rule.day >= kFirstOfMonth) {
    const auto counted = month / wanted[static_cast<unsigned>(rule.day - kFirstOfMonth + 1)];
    return counted.ok() ? sys_days(counted) : sys_days(month / wanted[std::chrono::last]);
  }
  const sys_days date = month / std::min(rule.day, LastDay(month));
  if (rule.weekday == 0) return date;
  if (!rule.before) return date + (wanted - weekday(date));
  const sys_days latest = date - days(1);
  return latest - (weekday(latest) - wanted);
}

}  // namespace

bool IsChangeRule(std::int64_t packed) {
  if (packed < -kLargestRule || packed > kLargestRule) return false;
  const Rule rule = Unpack(packed);
  const bool isTime = rule.month >= 1 && rule.month <= 12 && rule.hour <= 23 && rule.minute <= 59;
  if (!isTime || rule.weekday > 7) return false;
  if (rule.day >= 1 && rule.day <= LastDay(MonthOf(rule, kLeapYear))) {
    return !rule.before || rule.weekday != 0;
  }
  const bool counted = rule.day >= kFirstOfMonth && rule.day <= kFifthOfMonth;
  return rule.weekday != 0 && !rule.before && (rule.day == kLast || counted);
}

std::int64_t ChangeSeconds(int packed, int year) {
  const Rule rule = Unpack(packed);
  const std::chrono::seconds atMidnight = DateOf(rule, year) - kEpoch;
  return atMidnight.count() + rule.hour * kHour + rule.minute * 60;
}

int SummerTimeRules::RuleOf(ClockChange change, int year) const {
  const std::size_t place = PlaceOf(change);
  const Rules& rules = rules_[place];
  const auto own = rules.ofYear.find(year);
  if (own != rules.ofYear.end()) return own->second;
  return rules.general.value_or(kDefaults[southern][place]);
}

void SummerTimeRules::Set(ClockChange change, int year, int rule) {
  Rules& rules = rules_[PlaceOf(change)];
  if (year == kEveryYear) {
    rules.general = rule;
  } else {
    rules.ofYear[year] = rule;
  }
}

void SummerTimeRules::SetAll(ClockChange change, int rule) {
  rules_[PlaceOf(change)] = {rule, {}};
}

bool SummerTimeRules::InForce(std::int64_t standardSeconds) const {
  const auto date = std::chrono::floor<days>(kEpoch + std::chrono::seconds(standardSeconds));
  const int year = static_cast<int>(std::chrono::year_month_day(date).year());
  // A rule may reach into the year before; a summer may last across the end of one.
  std::int64_t latest = std::numeric_limits<std::int64_t>::min();
  bool summer = false;
  for (int of = year - 1; of <= year + 1; ++of) {
    const std::int64_t begin = ChangeSeconds(RuleOf(ClockChange::kToSummer, of), of);
    const std::int64_t end = ChangeSeconds(RuleOf(ClockChange::kToWinter, of), of) - kHour;
    for (const auto& [at, toSummer] : {std::pair(begin, true), std::pair(end, false)}) {
      if (at > standardSeconds || at < latest) continue;
      latest = at;
      summer = toSummer;
    }
  }
  return summer;
}

}  // namespace ostrel::simulator
