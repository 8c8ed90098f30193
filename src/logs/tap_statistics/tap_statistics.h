#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/dialogs.h"
#include "base/messages.h"
#include "device/selection.h"
#include "link/commands.h"
#include "link/link.h"

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
  TapStatistics(Link& link, Commands& commands, const Selection& selection, Dialogs& dialogs,
                const Messages& messages);

  /// Takes the range of positions from the device's firmware; a new range starts with zeros.
  void RangeFromFirmware();
  /// A device was selected: nothing is read of it yet.
  void DeviceChanged();
  /// Reads all counters, then the totals. Shows the message of a failure; what could not be read
  /// is 0 (counters) or as before (totals).
  bool Read();
  /// Asks, then clears the statistics on the device. kDone also means: read again to see it.
  enum class Clearing { kDone, kRefused, kFailed };
  Clearing Clear();

  const TapCounters& Counters() const { return data_; }

 private:
  bool ReadAll(const std::string& prefix);
  bool ReadTotal(const std::string& line, std::int32_t& total);

  Link& link_;
  Commands& commands_;
  const Selection& selection_;
  Dialogs& dialogs_;
  const Messages& messages_;
  TapCounters data_;
};

}  // namespace ostrel
