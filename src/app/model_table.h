#pragma once

#include <optional>
#include <string_view>

namespace ostrel {

/// What not every model has: a page, or buttons on a page that others have without them. Pages are
/// refreshed in this order after a device change.
enum class Feature {
  kTapStatistics,
  kUsers,
  kConsole,
};

/// What the selected device makes of a feature.
enum class Availability {
  kAbsent,   // the model does not have it
  kUnknown,  // no device, or one of an unknown type: shown, but nothing can be started
  kUsable,
};

/// `model` is the selected device's; nothing when none is selected.
Availability AvailabilityOf(Feature feature, std::optional<int> model);

/// The read command, without an address, for the automatic or manual state of a model; empty for
/// models that have none.
std::string_view AutoReadCommand(int model);

}  // namespace ostrel
