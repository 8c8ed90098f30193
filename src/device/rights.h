#pragma once

#include <functional>
#include <string>

#include "app/messages.h"
#include "link/link.h"

namespace ostrel {

/// Shows the grant level in force and may let the user log in; false when he cancels.
using RightsDisplay = std::function<bool(int level)>;

/// Asks a station (`prefix`, e.g. "aa:") for the grant level in force. 0 or a code.
int GrantGet(Link& link, const std::string& prefix, int& level);

/// What a grant level, 0 to 5, allows; any other as its number.
std::string GrantText(const Messages& messages, int level);

}  // namespace ostrel
