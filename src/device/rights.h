#pragma once

#include <functional>
#include <string>

#include "base/messages.h"
#include "link/link.h"

namespace ostrel {

/// Shows what the user may do and lets him log in; false when he cancels.
using RightsDisplay = std::function<bool(int level)>;

/// The line that asks a station for the grant level in force. `prefix` is its address with ":".
std::string GrantLine(const std::string& prefix);

/// Asks for the grant level in force. 0 or a code: text::kDeviceReplied for an error answer, which
/// is level 0.
int GrantGet(Link& link, const std::string& prefix, int& level);

/// What a grant level allows; the number itself where there is no such level.
std::string GrantText(const Messages& messages, int level);

}  // namespace ostrel
