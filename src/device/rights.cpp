#include "device/rights.h"

#include "base/texts.h"

namespace ostrel {

namespace {

constexpr int kHighestLevel = text::kGrant5 - text::kGrant0;

}  // namespace

std::string GrantText(const Messages& messages, int level) {
  if (level < 0 || level > kHighestLevel) return std::to_string(level);
  return messages.Caption(text::kGrant0 + level);
}

}  // namespace ostrel
