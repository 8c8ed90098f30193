#include "base/text.h"
#include "base/texts.h"
#include "cli/commands.h"
#include "device/station_list.h"
#include "terminal/json.h"
#include "wire/answers.h"

namespace ostrel {

ExitStatus CliRun::Stations(bool addressesOnly) {
  if (!service_.ConnectionOpen()) return ExitStatus::kRefused;
  // Nobody logs in here: the list goes on with what there is.
  StationList list = service_.ListOfStations([this](int level) {
    ports_.err << VisibleLine(Text(text::kGrantsCurrently)) << '\n'
               << VisibleLine(GrantText(service_.Texts(), level)) << '\n';
    return true;
  });
  const int code = addressesOnly ? list.FillShort(true, {}) : list.Fill({});
  if (code > 0) list.Tell(code);
  if (code != 0 && list.Rows().empty()) return ExitStatus::kRefused;
  if (addressesOnly) {
    PrintAddresses(list.Rows());
  } else {
    PrintStations(list.Rows());
  }
  return code == 0 ? ExitStatus::kDone : ExitStatus::kRefused;
}

void CliRun::PrintAddresses(const std::vector<Station>& stations) {
  std::vector<std::string> json;
  std::vector<std::vector<std::string>> rows = {{Text(text::kAddress), Text(text::kName)}};
  for (const Station& station : stations) {
    rows.push_back({station.address, station.name});
    json.push_back(JsonObject().Add("address", station.address).Add("name", station.name).Text());
  }
  if (json_) {
    PrintJson(JsonList(json));
  } else {
    Table(rows);
  }
}

void CliRun::PrintStations(const std::vector<Station>& stations) {
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
}

}  // namespace ostrel
