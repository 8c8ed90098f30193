#include "base/texts.h"
#include "cli/own_commands.h"
#include "terminal/json.h"
#include "wire/answers.h"

namespace ostrel {

namespace {

class IdentifyCommand : public Command {
 public:
  IdentifyCommand() : Command("identify", "Say what kind of device the station is") {}

  Ending Run(const Desk& desk, Terminal& terminal) override {
    if (!desk.session.DeviceSelectByAddress(terminal.Station())) return Ending::kFailed;
    const clsDevice& device = desk.session.Device();
    const Selection& selected = desk.session.Selected();
    const std::string name = ValueAfter(selected.KennName(), ":");
    const std::string model = ModelName(device.Model());
    if (terminal.Json()) {
      terminal.PrintJson(JsonObject()
                             .Add("address", device.Address())
                             .Add("name", name)
                             .Add("type", selected.Typ())
                             .Add("model", device.Model())
                             .Add("modelName", model)
                             .Add("firmware", device.Firmware())
                             .Add("serial", selected.Serial())
                             .Text());
      return Ending::kDone;
    }
    terminal.PrintTable(
        {{terminal.Text(text::kAddress), device.Address()},
         {terminal.Text(text::kName), name},
         {terminal.Text(text::kType), selected.Typ()},
         {terminal.Text(text::kModel), std::to_string(device.Model()) + " " + model},
         {terminal.Text(text::kFirmware), device.Firmware()},
         {terminal.Text(text::kSerialNumber), selected.Serial()}});
    return Ending::kDone;
  }
};

}  // namespace

CommandList MakeIdentifyCommands() {
  return ListOf(std::make_unique<IdentifyCommand>());
}

}  // namespace ostrel
