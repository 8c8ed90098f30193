#pragma once

#include <string>
#include <vector>

#include "cli/cli.h"

namespace ostrel {

/// Runs one command of the command line on this process's terminal and settings. A
/// QCoreApplication must exist, for a picture of a chart a QApplication.
ExitStatus RunInTerminal(const std::vector<std::string>& arguments);

}  // namespace ostrel
