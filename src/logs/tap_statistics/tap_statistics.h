#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "device/desk.h"

namespace ostrel {

/// What was read of a tap changer: how often it moved to each position, and the two totals.
struct TapCounters {
  int first = -60;                     // position of counters[0]
  std::vector<std::int32_t> counters;  // 0 or more
  std::int32_t total = 0;              // all tap changes
  std::int32_t underLoad = 0;          // tap changes under load
  bool counted = false;                // the counters are the device's
  bool totalled = false;               // the totals are the device's

  int Last() const { return first + static_cast<int>(counters.size()) - 1; }
};

/// The tap-changer statistics of the selected device.
class TapStatistics {
 public:
  explicit TapStatistics(const Desk& desk);

  /// Takes the range of positions from the device's firmware; a new range starts with zeros.
  void RangeFromFirmware();
  /// A device was selected: nothing is read of it yet.
  void DeviceChanged();
  /// Reads all counters, then the totals. Shows the message of a failure; what could not be read
  /// is 0 (counters) or as before (totals).
  bool Read();
  /// Asks, then clears the statistics on the device. kDone also means: read again to see it.
  Ending Clear();

  const TapCounters& Counters() const { return data_; }

 private:
  bool ReadAll(const Reading& device);
  bool ReadTotal(const Reading& device, std::string_view line, std::int32_t& total);

  Desk desk_;
  TapCounters data_;
};

}  // namespace ostrel
