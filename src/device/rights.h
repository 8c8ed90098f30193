#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "base/messages.h"

namespace ostrel {

/// Shows what the user may do and lets him log in; false when he cancels.
using RightsDisplay = std::function<bool(int level)>;

/// The line that asks a station for the grant level in force, without its address.
inline constexpr std::string_view kGrantLine = "passwort- 0,dr,!";

/// What a grant level allows; the number itself where there is no such level.
std::string GrantText(const Messages& messages, int level);

}  // namespace ostrel
