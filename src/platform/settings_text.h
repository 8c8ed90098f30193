#pragma once

#include <string>
#include <string_view>

#include "base/settings_values.h"

namespace ostrel {

// The form of the settings file: "[section]", the first part of a path, and "rest\\of\\path=value"
// below it. Users edit it by hand, too.

/// False for what nobody wrote as a text: it holds other control characters than tabs and line
/// ends.
bool IsSettingsText(std::string_view bytes);

/// Takes what it can read; a text that is no UTF-8 is read as ISO 8859-1.
SettingsValues ParseSettings(std::string_view bytes);

std::string SettingsText(const SettingsValues& values);

}  // namespace ostrel
