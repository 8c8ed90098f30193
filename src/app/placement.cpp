#include "app/placement.h"

#include <array>
#include <string>
#include <utility>

#include "app/number.h"
#include "app/settings_path.h"

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
  for (const auto& [suffix, field] : kFields) {
    settings.WriteShared(Key(application), std::string(window) + suffix,
                         std::to_string(placement.*field));
  }
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

}  // namespace ostrel
