#pragma once

#include <cstdint>
#include <vector>

#include "simulator/random.h"
#include "simulator/variables.h"

namespace ostrel::simulator {

/// The tap changer that a regulator drives, and how long it has been doing so.
struct TapChangerData {
  int lowest = 0;        ///< tap position
  int highest = 0;       ///< tap position
  int normal = 0;        ///< the position around which it moves
  int changesSoFar = 0;  ///< about; 0 = the device has no tap changer
};

/// Counts the tap changes as a device does: a 16-bit counter for each position moved to, which
/// stays at its highest number, and two totals. The first is the sum of the counters.
class TapChanger {
 public:
  /// Counters for the positions first to last, with a history of changes behind them.
  TapChanger(const TapChangerData& data, int first, int last, Random random);

  int First() const { return first_; }
  int Last() const { return first_ + static_cast<int>(counters_.size()) - 1; }
  /// Position between First() and Last().
  std::uint16_t CounterAt(int position) const { return counters_[position - first_]; }
  int Total() const { return total_; }
  int TotalUnderLoad() const { return totalUnderLoad_; }  ///< no more than Total()
  void ClearStatistics();
  /// A change to a position between First() and Last().
  void Count(int position, bool underLoad);

 private:
  int first_;
  std::vector<std::uint16_t> counters_;
  int total_ = 0;
  int totalUnderLoad_ = 0;
};

/// The statistics' variables, which a device without tap changer lacks.
VariableTable TapVariables();

}  // namespace ostrel::simulator
