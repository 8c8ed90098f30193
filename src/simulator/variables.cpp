#include "simulator/variables.h"

#include <cmath>

#include "simulator/access.h"
#include "simulator/bootloader.h"
#include "simulator/data_log.h"
#include "simulator/device_time.h"
#include "simulator/event_log.h"
#include "simulator/file_store.h"
#include "simulator/io_map.h"
#include "simulator/programs.h"
#include "simulator/regulator.h"
#include "simulator/station.h"
#include "simulator/tap_changer.h"

namespace ostrel::simulator {

namespace {

Values ReadName(Station& station, const Values&) {
  return {std::string(station.data.name)};
}

Values ReadAddressAndName(Station& station, const Values&) {
  return {station.address + ":" + std::string(station.data.name)};
}

Values ReadSerialNumber(Station& station, const Values&) {
  return {std::string(station.data.serialNumber)};
}

bool HasFeatureNumbers(const Station& station) {
  return station.data.protocolNumber > 0;
}

/// "VER- QOL": the number of the feature set that the name stands for.
Values ReadFeatureNumber(Station& station, const Values& arguments) {
  if (arguments != Values{std::string("qol")}) throw Fault{"index out of range"};
  return {static_cast<double>(station.data.protocolNumber)};
}

/// "dd-" asks the device for nothing but to have heard the line.
Values ReadNothing(Station&, const Values&) {
  return {};
}

constexpr Variable kVariables[] = {
    {"station", Always, ReadName, nullptr},
    {"station&", Always, ReadAddressAndName, nullptr},
    {"syssn", Always, ReadSerialNumber, nullptr},
    {"ver", HasFeatureNumbers, ReadFeatureNumber, nullptr},
    {"dd", Always, ReadNothing, nullptr},
};

}  // namespace

bool Always(const Station&) {
  return true;
}

const Variable* FindVariable(const Station& station, std::string_view name) {
  for (const VariableTable& table :
       {VariableTable(kVariables), AccessVariables(), ResetVariables(), TapVariables(),
        TimeVariables(), RegulatorVariables(), EventLogVariables(), IoMapVariables(),
        ProgramVariables(), FileVariables(), DataLogVariables()}) {
    for (const Variable& variable : table) {
      if (variable.name == name) return variable.exists(station) ? &variable : nullptr;
    }
  }
  return nullptr;
}

bool AskForAll(const Values& arguments) {
  return arguments == Values{std::string("*")};
}

int IntegerArgument(const Values& arguments, std::size_t place, int lowest, int highest) {
  const auto* number = place < arguments.size() ? std::get_if<double>(&arguments[place]) : nullptr;
  if (!number || *number < lowest || *number > highest || std::trunc(*number) != *number) {
    throw Fault{"index out of range"};
  }
  return static_cast<int>(*number);
}

int WrittenNumber(const Values& values, int lowest, int highest, int scale) {
  const auto* number = values.size() == 1 ? std::get_if<double>(&values.front()) : nullptr;
  const double steps = number ? *number * scale : 0;
  const bool whole = scale > 1 || std::trunc(steps) == steps;
  if (!number || !whole || steps < lowest || steps > highest) throw Fault{"value out of range"};
  return static_cast<int>(std::lround(steps));
}

int WrittenNumber(const WriteRequest& request, int lowest, int highest, int scale) {
  if (request.all || !request.arguments.empty()) throw Fault{"index out of range"};
  return WrittenNumber(request.values, lowest, highest, scale);
}

}  // namespace ostrel::simulator
