#include "base/string_table.h"

namespace ostrel {

#define FEATURE(name, ...) std::span<const TableEntry> name##Texts();
#include "app/features.inc"
#undef FEATURE

std::vector<std::span<const TableEntry>> FeatureTables() {
  return {
#define FEATURE(name, ...) name##Texts(),
#include "app/features.inc"
#undef FEATURE
  };
}

}  // namespace ostrel
