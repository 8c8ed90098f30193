#include "app/model_table.h"

#include <algorithm>
#include <span>

#include "device/clsDevice.h"

namespace ostrel {

namespace {

constexpr int kRegulators[] = {0, 1, 4, 11, 12};
constexpr int kEveryModel[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 80, 90};

struct Row {
  Feature feature;
  std::span<const int> models;
  bool needsDevice = true;  // false: usable without a device, and on one of an unknown type
};

constexpr Row kFeatures[] = {
    {Feature::kTapStatistics, kRegulators},
    {Feature::kUsers, kEveryModel},
    {Feature::kConsole, kEveryModel, false},
};

struct Command {
  int model;
  std::string_view line;
};

constexpr Command kAutoRead[] = {
    {0, "regauto#"}, {3, "espauto#"}, {4, "regauto#"}, {5, "espauto#"}};

}  // namespace

Availability AvailabilityOf(Feature feature, std::optional<int> model) {
  const auto row = std::find_if(std::begin(kFeatures), std::end(kFeatures),
                                [feature](const Row& r) { return r.feature == feature; });
  if (row == std::end(kFeatures)) return Availability::kAbsent;
  if (!model || *model == kUnknownModel) {
    return row->needsDevice ? Availability::kUnknown : Availability::kUsable;
  }
  const bool listed =
      std::find(row->models.begin(), row->models.end(), *model) != row->models.end();
  return listed ? Availability::kUsable : Availability::kAbsent;
}

std::string_view AutoReadCommand(int model) {
  for (const Command& command : kAutoRead) {
    if (command.model == model) return command.line;
  }
  return {};
}

}  // namespace ostrel
