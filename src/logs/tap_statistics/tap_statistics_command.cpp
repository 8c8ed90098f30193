#include <fstream>

#include "base/texts.h"
#include "cli/commands.h"
#include "logs/tap_statistics/tap_statistics_text.h"
#include "terminal/json.h"

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

bool WriteFile(const std::string& file, const std::string& bytes) {
  std::ofstream out(file, std::ios::binary);
  out << bytes << std::flush;
  return out.good();
}

}  // namespace

ExitStatus CliRun::Statistics(bool csv, const std::string& chartFile) {
  if (!service_.DeviceSelectByAddress(station_)) return ExitStatus::kRefused;
  if (!service_.Statistics().Read()) return ExitStatus::kRefused;
  const TapCounters& data = service_.Statistics().Counters();
  if (!chartFile.empty() && !WriteFile(chartFile, ports_.paintChart(data, service_.Texts()))) {
    return Refuse(text::kFileNotWritten, chartFile);
  }
  if (json_) {
    PrintJson(ToJson(data));
  } else if (csv) {
    ports_.out << TapCsv(data);
  } else {
    ports_.out << TapTextChart(data, service_.Texts(), ports_.width);
  }
  return ExitStatus::kDone;
}

ExitStatus CliRun::StatisticsClear() {
  if (!service_.DeviceSelectByAddress(station_)) return ExitStatus::kRefused;
  switch (service_.Statistics().Clear()) {
    case TapStatistics::Clearing::kDone:
      if (json_) PrintJson(JsonObject().Add("cleared", true).Text());
      return ExitStatus::kDone;
    case TapStatistics::Clearing::kRefused:
      service_.Texts().Warn(text::kNotConfirmed);
      return ExitStatus::kNotConfirmed;
    case TapStatistics::Clearing::kFailed:
      break;
  }
  return ExitStatus::kRefused;
}

}  // namespace ostrel
