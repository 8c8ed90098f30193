#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "simulator/reply_form.h"
#include "simulator/variables.h"

namespace ostrel::simulator {

struct BootloaderData {
  std::string_view version = "2.14";
  bool secondFlash = true;  ///< holds a copy of the RAM
};

/// Where a device is between two of its programs.
struct Boot {
  bool inBootloader = false;
  std::int64_t silentUntilMs = 0;         ///< simulated; it restarts until then
  std::shared_ptr<const Station> backup;  ///< of the RAM, if there is one
};

/// As by the device's own menu or button, which every device has.
void StartBootloader(Station& station);

/// The bootloader's answer to a line without address, in the pieces in which it comes.
std::vector<Portion> BootloaderAnswer(Station& station, std::string_view line);

/// The restarts.
VariableTable ResetVariables();

}  // namespace ostrel::simulator
