#include <CLI/CLI.hpp>
#include <fstream>

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
  return JsonObject()
      .Add("first", data.first)
      .AddRaw("counters", "[" + counters + "]")
      .Add("total", data.total)
      .Add("underLoad", data.underLoad)
      .Text();
}

bool WriteChart(const std::string& file, const TapCounters& data, const Messages& texts) {
  std::ofstream out(file, std::ios::binary);
  if (out) out << BarChartPng(TapChart(data, texts)) << std::flush;
  return out.good();
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
    if (!statistics.Read()) return Ending::kFailed;
    const TapCounters& data = statistics.Counters();
    if (!chartFile_.empty() && !WriteChart(chartFile_, data, desk.texts)) {
      return terminal.Refuse(text::kFileNotWritten, chartFile_);
    }
    if (terminal.Json()) {
      terminal.PrintJson(ToJson(data));
    } else {
      terminal.Out() << (csv_ ? TapCsv(data) : TapTextChart(data, desk.texts, terminal.Width()));
    }
    return Ending::kDone;
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
