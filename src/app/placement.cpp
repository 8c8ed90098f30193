#include "app/placement.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "base/number.h"
#include "base/settings_path.h"

namespace ostrel {

namespace {

constexpr std::array<std::pair<const char*, int Placement::*>, 4> kFields = {{
    {"X", &Placement::left},
    {"Y", &Placement::top},
    {"W", &Placement::width},
    {"H", &Placement::height},
}};

std::string Key(std::string_view application) {
  return SettingsPath(SettingsPath(keys::kSuite, application), "Persistence");
}

}  // namespace

void SavePlacement(SettingsStore& settings, std::string_view application, std::string_view window,
                   const Placement& placement, bool minimised) {
  if (minimised) return;
  std::vector<SettingsChange> changes;
  changes.reserve(kFields.size());
  for (const auto& [suffix, field] : kFields) {
    changes.push_back(
        {Key(application), std::string(window) + suffix, std::to_string(placement.*field)});
  }
  settings.Store(changes);
}

std::optional<Placement> LoadPlacement(const SettingsStore& settings, std::string_view application,
                                       std::string_view window) {
  Placement placement;
  for (const auto& [suffix, field] : kFields) {
    const std::string text =
        settings.ReadShared(Key(application), std::string(window) + suffix, "");
    if (text.empty()) return std::nullopt;
    placement.*field = ReadInteger(text);
  }
  if (placement.width <= 0 || placement.height <= 0) return std::nullopt;
  return placement;
}

std::optional<Placement> FittedTo(const Placement& screen, const Placement& window) {
  constexpr std::int64_t kVisible = 100;
  Placement fitted = window;
  fitted.width = std::min(window.width, screen.width);
  fitted.height = std::min(window.height, screen.height);
  const auto seen = [](std::int64_t at, std::int64_t size, std::int64_t from, std::int64_t room) {
    return std::min(at + size, from + room) - std::max(at, from);
  };
  // Of what was stored, so that a large window that reached over the screen comes back.
  if (seen(window.left, window.width, screen.left, screen.width) < kVisible) return std::nullopt;
  if (seen(window.top, window.height, screen.top, screen.height) < kVisible) return std::nullopt;
  if (seen(fitted.left, fitted.width, screen.left, screen.width) < kVisible) {
    fitted.left = screen.left;
  }
  fitted.top = std::max(fitted.top, screen.top);
  return fitted;
}

}  // namespace ostrel
