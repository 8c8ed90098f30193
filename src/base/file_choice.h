#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/dialogs.h"
#include "base/messages.h"
#include "base/settings_store.h"

namespace ostrel {

/// Lets the user choose a file, starting in the folder used last for this purpose, and remembers
/// the chosen file's folder under `directoryKey` (application "Ostrel", section "Dirs"). Title and
/// filter are message numbers. Nothing when the user cancels.
std::optional<std::string> ChooseFile(Dialogs& dialogs, SettingsStore& settings,
                                      const Messages& messages, FileDialogKind kind, int titleId,
                                      int filterId, std::string_view directoryKey);

}  // namespace ostrel
