#include "app/availability.h"

#include <algorithm>

#include "device/clsDevice.h"

namespace ostrel {

Availability AvailabilityOf(std::span<const int> models, Needs needs, std::optional<int> model) {
  if (!model || *model == kUnknownModel) {
    return needs == Needs::kDevice ? Availability::kUnknown : Availability::kUsable;
  }
  const bool listed = std::find(models.begin(), models.end(), *model) != models.end();
  return listed ? Availability::kUsable : Availability::kAbsent;
}

}  // namespace ostrel
