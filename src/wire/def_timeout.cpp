#include "wire/def_timeout.h"

#include <algorithm>

#include "base/number.h"

namespace ostrel {

AnswerTimeout ReadDefTimeout(const SettingsStore& settings) {
  const int stored = ReadInteger(settings.ReadShared(keys::kServerMisc, "DefTimeout_s", "10"));
  const int seconds = std::clamp(stored, 1, 15);
  return {seconds, seconds != stored};
}

}  // namespace ostrel
