#pragma once

#include <string_view>

#include "base/messages.h"
#include "base/settings_store.h"

namespace ostrel {

/// The setting "DefTimeout_s": the default answer time-out in whole seconds, limited to 1..15.
struct AnswerTimeout {
  int seconds = 10;
  bool corrected = false;  // the value was beyond a bound
};
AnswerTimeout ReadDefTimeout(const SettingsStore& settings);

/// Writes it where the suite's programs look for it; nothing where it stands there already.
Error WriteDefTimeout(SettingsStore& settings, int seconds);

/// What came of a value that somebody gave.
struct GivenTimeout {
  enum class Outcome { kStored, kCorrected, kNoNumber, kNotStored };
  Outcome outcome = Outcome::kStored;
  int seconds = 10;  // what holds from then on

  bool Stored() const { return outcome == Outcome::kStored || outcome == Outcome::kCorrected; }
};
/// Stores a value as it was typed. One beyond a bound becomes that bound; one that is no whole
/// number changes nothing.
GivenTimeout StoreDefTimeout(SettingsStore& settings, std::string_view given);

/// Says that a value was out of range, and what is used instead, with the name of the setting.
void TellCorrected(const Messages& texts, int seconds);
/// Says what came of a value that was given; nothing where it was stored as it stands.
void Tell(const Messages& texts, const GivenTimeout& came, std::string_view given);

}  // namespace ostrel
