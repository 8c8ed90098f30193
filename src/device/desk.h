#pragma once

#include "base/clock.h"
#include "base/desktop.h"
#include "base/dialogs.h"
#include "base/messages.h"
#include "base/settings_store.h"
#include "device/session.h"

namespace ostrel {

/// What a feature works with. Window and command line make their own.
struct Desk {
  Session& session;
  const Messages& texts;
  Dialogs& dialogs;
  SettingsStore& settings;
  Clock& clock;
  Desktop& computer;
};

}  // namespace ostrel
