#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>

#include "base/files.h"
#include "base/texts.h"
#include "logs/tap_statistics/tap_statistics.h"
#include "logs/tap_statistics/tap_statistics_text.h"
#include "terminal/command.h"
#include "terminal/json.h"
#include "widgets/bar_chart_png.h"

namespace ostrel {

namespace {

std::string ToJson(const TapCounters& data) {
  std::string counters;
  for (const std::int32_t counter : data.counters) {
    counters += (counters.empty() ? "" : ", ") + std::to_string(counter);
  }
  const auto total = [](const std::optional<std::int32_t>& read) {
    return read ? std::to_string(*read) : "null";
  };
  return JsonObject()
      .Add("first", data.first)
      .AddRaw("counters", "[" + counters + "]")
      .AddRaw("total", total(data.total))
      .AddRaw("underLoad", total(data.underLoad))
      .Text();
}

/// Writes the chart with its numbers as in the language of the run; an error number of the system.
int WriteChart(const std::string& file, const TapCounters& data, const Messages& texts) {
  constexpr std::array kLocales = {"de", "en", "fr"};
  BarChartData chart = TapChart(data, texts);
  chart.locale = kLocales[static_cast<std::size_t>(std::clamp(texts.Factor(), 0, 2))];
  return ReplaceBytes(file, BarChartPng(chart));
}

class ReadCommand : public Command {
 public:
  ReadCommand() : Command("statistics", "Read the tap-changer statistics") {}

  void Declare(CLI::App& own) override {
    own.add_flag("--csv", csv_, "Print lines \"position,count\", then the lines of the two totals");
    own.add_option("--chart", chartFile_, "Also write the chart as a PNG file");
  }

  Ending Run(const Desk& desk, Terminal& terminal) override {
    if (!desk.session.DeviceSelectByAddress(terminal.Station())) return Ending::kFailed;
    TapStatistics statistics(desk);
    const bool all = statistics.Read();
    const TapCounters& data = statistics.Counters();
    // Totals that a device does not have do not cost the counters.
    if (!data.counted) return Ending::kFailed;
    const int error = chartFile_.empty() ? 0 : WriteChart(chartFile_, data, desk.texts);
    if (error != 0) return terminal.Refuse(text::kFileNotWritten, FileFault(chartFile_, error));
    if (terminal.Json()) {
      terminal.PrintJson(ToJson(data));
    } else {
      terminal.Out() << (csv_ ? TapCsv(data) : TapTextChart(data, desk.texts, terminal.Width()));
    }
    return all ? Ending::kDone : Ending::kFailed;
  }

 private:
  bool csv_ = false;
  std::string chartFile_;
};

class ClearCommand : public Command {
 public:
  ClearCommand() : Command("statistics clear", "Clear them on the device, after a question") {}

  Ending Run(const Desk& desk, Terminal& terminal) override {
    if (!desk.session.DeviceSelectByAddress(terminal.Station())) return Ending::kFailed;
    const Ending ending = TapStatistics(desk).Clear();
    if (ending == Ending::kDone) terminal.PrintDone("cleared");
    return ending;
  }
};

}  // namespace

CommandList MakeTapStatisticsCommands() {
  return ListOf(std::make_unique<ReadCommand>(), std::make_unique<ClearCommand>());
}

}  // namespace ostrel
