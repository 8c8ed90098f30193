#include "base/texts.h"
#include "cli/commands.h"
#include "terminal/json.h"
#include "wire/answers.h"

namespace ostrel {

ExitStatus CliRun::Identify() {
  if (!service_.DeviceSelectByAddress(station_)) return ExitStatus::kRefused;
  const clsDevice& device = service_.Device();
  const Selection& selected = service_.Selected();
  const std::string name = ValueAfter(selected.KennName(), ":");
  if (json_) {
    PrintJson(JsonObject()
                  .Add("address", device.Address())
                  .Add("name", name)
                  .Add("type", selected.Typ())
                  .Add("model", device.Model())
                  .Add("modelName", ModelName(device.Model()))
                  .Add("firmware", device.Firmware())
                  .Add("serial", selected.Serial())
                  .Text());
    return ExitStatus::kDone;
  }
  Table({{Text(text::kAddress), device.Address()},
         {Text(text::kName), name},
         {Text(text::kType), selected.Typ()},
         {Text(text::kModel), std::to_string(device.Model()) + " " + ModelName(device.Model())},
         {Text(text::kFirmware), device.Firmware()},
         {Text(text::kSerialNumber), selected.Serial()}});
  return ExitStatus::kDone;
}

}  // namespace ostrel
