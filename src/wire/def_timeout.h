#pragma once

#include "base/settings_store.h"

namespace ostrel {

/// The setting "DefTimeout_s": the default answer time-out in seconds, limited to 1..15.
struct AnswerTimeout {
  int seconds = 10;
  bool corrected = false;  // the stored value was beyond a bound
};
AnswerTimeout ReadDefTimeout(const SettingsStore& settings);

}  // namespace ostrel
