#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>

namespace ostrel::simulator {

/// The two changes of a year, as the devices count them.
enum class ClockChange { kToSummer = 1, kToWinter = 2 };

/// Whether a number is a packed rule [W]DDMMHHmm. Without weekday W it is a date. W is 1 (Monday)
/// to 7 (Sunday), and DD then 00 = the last of the month, 91 to 95 = the first to the fifth,
/// another day = the first one on or after it, with a minus sign the last one before it. HH is 00
/// to 23, or 97 to 99 for three to one hours before midnight of that day.
bool IsChangeRule(std::int64_t packed);

/// When a rule takes effect in a year: local time before the change, in seconds since 1990-01-01
/// 00:00:00.
std::int64_t ChangeSeconds(int rule, int year);

/// When a device puts its clock forward and back: a general rule for each change, which its
/// hemisphere gives until it is set, and rules of single years.
class SummerTimeRules {
 public:
  static constexpr int kFirstYear = 1990;
  static constexpr int kLastYear = 2099;
  static constexpr int kEveryYear = 0;

  int RuleOf(ClockChange change, int year) const;
  /// For kEveryYear it sets the general rule; years with a rule of their own keep it.
  void Set(ClockChange change, int year, int rule);
  /// Sets the general rule and forgets those of single years.
  void SetAll(ClockChange change, int rule);

  /// Local time without summer time, in seconds since 1990-01-01 00:00:00.
  bool InForce(std::int64_t standardSeconds) const;

  int southern = 0;  ///< 1 = the general rules are those of the southern hemisphere

 private:
  struct Rules {
    std::optional<int> general;
    std::map<int, int> ofYear;
  };
  static std::size_t PlaceOf(ClockChange change) {
    return change == ClockChange::kToSummer ? 0 : 1;
  }

  std::array<Rules, 2> rules_;
};

}  // namespace ostrel::simulator
