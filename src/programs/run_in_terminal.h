#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/cli.h"

namespace ostrel {

/// Paints the chart of the tap statistics as PNG bytes.
using ChartPainter = std::function<std::string(const TapCounters& data, const Messages& messages)>;

/// Runs one command of the command line on this process's terminal and settings. A
/// QCoreApplication must exist.
ExitStatus RunInTerminal(const std::vector<std::string>& arguments, const ChartPainter& paint);

}  // namespace ostrel
