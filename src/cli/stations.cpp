#include "device/stations.h"

#include "app/texts.h"
#include "cli/commands.h"
#include "cli/json.h"
#include "link/answers.h"

namespace ostrel {

ExitStatus CliRun::Stations() {
  if (!service_.ConnectionOpen()) return ExitStatus::kRefused;
  std::vector<Station> stations;
  const int code = service_.Bus().ListFill(stations);
  if (code != 0) service_.Texts().Warn(code);
  if (code != 0 && stations.empty()) return ExitStatus::kRefused;

  std::vector<std::string> json;
  std::vector<std::vector<std::string>> rows = {
      {" ", Text(text::kAddress), Text(text::kName), Text(text::kType), Text(text::kVersion)}};
  for (const Station& station : stations) {
    const std::string type = TypeFromVerAnswer(station.type);
    const std::string version = station.Firmware();
    rows.push_back({station.current ? "*" : " ", station.address, station.name, type, version});
    json.push_back(JsonObject()
                       .Add("address", station.address)
                       .Add("name", station.name)
                       .Add("type", type)
                       .Add("version", version)
                       .Add("current", station.current)
                       .Text());
  }
  if (json_) {
    PrintJson(JsonList(json));
  } else {
    Table(rows);
  }
  return code == 0 ? ExitStatus::kDone : ExitStatus::kRefused;
}

}  // namespace ostrel
