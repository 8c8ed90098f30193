#include <CLI/CLI.hpp>

#include "base/text.h"
#include "base/texts.h"
#include "cli/own_commands.h"
#include "device/station_list.h"
#include "terminal/json.h"
#include "wire/answers.h"

namespace ostrel {

namespace {

class StationsCommand : public Command {
 public:
  StationsCommand() : Command("stations", "List the stations on the bus") {}

  void Declare(CLI::App& own) override {
    own.add_flag("--short", short_,
                 "Only where a line without address goes, from a single exchange");
  }

  Ending Run(const Desk& desk, Terminal& terminal) override {
    if (!desk.session.ConnectionOpen()) return Ending::kFailed;
    // Nobody logs in here: the list goes on with what there is.
    StationList list = desk.session.ListOfStations([&](int level) {
      terminal.Err() << VisibleLine(terminal.Text(text::kGrantsCurrently)) << '\n'
                     << VisibleLine(GrantText(desk.texts, level)) << '\n';
      return true;
    });
    const Error error = short_ ? list.FillShort(true, {}) : list.Fill({});
    list.Tell(error);
    if (error && list.Rows().empty()) return Ending::kFailed;
    if (short_) {
      PrintShort(list.Rows(), terminal);
    } else {
      Print(list.Rows(), terminal);
    }
    return error ? Ending::kFailed : Ending::kDone;
  }

 private:
  static void PrintShort(const std::vector<Station>& stations, Terminal& terminal) {
    std::vector<std::string> json;
    std::vector<std::vector<std::string>> rows = {
        {terminal.Text(text::kAddress), terminal.Text(text::kName)}};
    for (const Station& station : stations) {
      rows.push_back({station.address, station.name});
      json.push_back(JsonObject().Add("address", station.address).Add("name", station.name).Text());
    }
    terminal.PrintList(rows, json);
  }

  static void Print(const std::vector<Station>& stations, Terminal& terminal) {
    std::vector<std::string> json;
    std::vector<std::vector<std::string>> rows = {
        {" ", terminal.Text(text::kAddress), terminal.Text(text::kName), terminal.Text(text::kType),
         terminal.Text(text::kVersion)}};
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
    terminal.PrintList(rows, json);
  }

  bool short_ = false;
};

}  // namespace

CommandList MakeStationsCommands() {
  return ListOf(std::make_unique<StationsCommand>());
}

}  // namespace ostrel
