#pragma once

#include <string>

#include "widgets/bar_chart_data.h"

namespace ostrel {

/// PNG bytes of a chart of all that was counted, 1200 × 600 pixels large, in light colours, drawn
/// off screen. A QApplication must exist.
std::string BarChartPng(const BarChartData& data);

}  // namespace ostrel
