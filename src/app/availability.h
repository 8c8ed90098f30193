#pragma once

#include <optional>
#include <span>

namespace ostrel {

/// What a page needs before anything on it can be started.
enum class Needs { kNothing, kDevice };

/// What the selected device makes of a page.
enum class Availability {
  kAbsent,   // the model does not have it
  kUnknown,  // no device, or one of an unknown type: shown, but nothing can be started
  kUsable,
};

/// Of a page that `models` have. `model` is the selected device's; nothing when none is selected.
Availability AvailabilityOf(std::span<const int> models, Needs needs, std::optional<int> model);

}  // namespace ostrel
