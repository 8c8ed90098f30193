#pragma once

#include <cstddef>
#include <functional>
#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "base/clock.h"
#include "base/desktop.h"
#include "base/settings_store.h"
#include "wire/automation.h"
#include "wire/server_control.h"

namespace ostrel {

/// Ends of a run, as the shell sees them.
enum class ExitStatus { kDone = 0, kRefused = 1, kWrongUsage = 2, kNotConfirmed = 3 };

/// What the command line needs of the outside world.
struct CliPorts {
  SettingsStore& settings;
  AutomationFactory& automation;
  Clock& clock;
  Desktop& desktop;
  ServerControl& server;
  std::istream& in;
  std::ostream& out;
  std::ostream& err;
  std::function<void(bool)> echo = {};  // whether the terminal shows what is typed
  bool interactive = false;             // somebody sits at `in` and can be asked
  std::size_t width = 80;               // of the terminal, in characters
};

/// Runs one command. `arguments` do not hold the program's name.
ExitStatus RunCli(const std::vector<std::string>& arguments, const CliPorts& ports);

}  // namespace ostrel
