#include "simulator/variables.h"

#include <cmath>

#include "simulator/data_log.h"
#include "simulator/file_store.h"
#include "simulator/io_map.h"
#include "simulator/programs.h"
#include "simulator/station.h"
#include "simulator/tap_changer.h"

namespace ostrel::simulator {

namespace {

bool Always(const Station&) {
  return true;
}

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

/// Whether a password is set, the grant level, and the minutes until logout.
Values ReadUser(Station& station, const Values& arguments) {
  const int last = static_cast<int>(station.users.size()) - 1;
  const User& user = station.users[IntegerArgument(arguments, 0, 0, last)];
  return {user.password == kNoPassword ? 0.0 : 1.0, static_cast<double>(user.grant),
          static_cast<double>(user.timeoutMinutes)};
}

constexpr Variable kVariables[] = {
    {"station", Always, ReadName, nullptr},
    {"station&", Always, ReadAddressAndName, nullptr},
    {"syssn", Always, ReadSerialNumber, nullptr},
    {"ver", HasFeatureNumbers, ReadFeatureNumber, nullptr},
    {"passwort", Always, ReadUser, nullptr},
};

}  // namespace

const Variable* FindVariable(const Station& station, std::string_view name) {
  for (const VariableTable& table : {VariableTable(kVariables), TapVariables(), IoMapVariables(),
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

}  // namespace ostrel::simulator
