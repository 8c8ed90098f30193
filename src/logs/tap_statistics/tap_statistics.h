#pragma once

#include "device/desk.h"
#include "logs/tap_statistics/tap_counters.h"

namespace ostrel {

/// The tap-changer statistics of the selected device.
class TapStatistics {
 public:
  explicit TapStatistics(const Desk& desk);

  /// Takes the range of positions from the device's firmware; a new range starts with zeros.
  void RangeFromFirmware();
  /// A device was selected: nothing is read of it yet.
  void DeviceChanged();
  /// Reads all counters, then the totals. Shows the message of a failure; what could not be read
  /// is 0 (counters: all, when one is missing or none) or as before (totals). Refused where the
  /// model has none.
  bool Read();
  /// Asks, then clears the statistics on the device. kDone also means: read again to see it.
  Ending Clear();

  const TapCounters& Counters() const { return data_; }

 private:
  bool ReadAll(const Reading& device);
  bool ReadTotals(const Reading& device);

  Desk desk_;
  TapCounters data_;
};

}  // namespace ostrel
