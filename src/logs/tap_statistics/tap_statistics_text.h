#pragma once

#include <string>

#include "base/messages.h"
#include "logs/tap_statistics/tap_statistics.h"
#include "widgets/bar_chart_data.h"

namespace ostrel {

/// What a chart of the counters shows.
BarChartData TapChart(const TapCounters& data, const Messages& messages);

/// All positions as lines "position TAB counter", the totals behind them, "–" for one
/// that was never read; lines end with CR LF.
std::string TapTable(const TapCounters& data, const Messages& messages);

/// "position,count" and a line a position, then the lines "total,…" and "underLoad,…"; a total that
/// was never read is empty.
std::string TapCsv(const TapCounters& data);

/// A table with a bar behind every position from the first to the last that was ever used, then
/// the totals. `width` is that of the terminal in characters.
std::string TapTextChart(const TapCounters& data, const Messages& messages, std::size_t width);

}  // namespace ostrel
