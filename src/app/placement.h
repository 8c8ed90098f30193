#pragma once

#include <optional>
#include <string_view>

#include "base/settings_store.h"

namespace ostrel {

/// Position and size of a window in pixels.
struct Placement {
  int left = 0, top = 0, width = 0, height = 0;
};

/// Stores the placement of a window below the application's key. A minimised window stores nothing,
/// so that its last normal placement survives.
void SavePlacement(SettingsStore& settings, std::string_view application, std::string_view window,
                   const Placement& placement, bool minimised);

/// The stored placement; nothing when it is incomplete or has no size.
std::optional<Placement> LoadPlacement(const SettingsStore& settings, std::string_view application,
                                       std::string_view window);

/// The placement as it fits a screen: not larger than it, its top edge on it; nothing when hardly
/// anything of the window would be seen there.
std::optional<Placement> FittedTo(const Placement& screen, const Placement& window);

}  // namespace ostrel
