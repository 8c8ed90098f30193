#pragma once

#include <span>
#include <string_view>

#include "simulator/value.h"

namespace ostrel::simulator {

struct Station;

struct WriteRequest {
  Values arguments;  ///< before "=": index, password, ...
  Values values;     ///< behind "="
  bool all = false;  ///< "x*=": all elements
  /// The same as they stand in the line: a password "007" is no 7.
  std::vector<std::string> argumentTexts, valueTexts;
};

/// A variable of the devices. Reads and writes throw Fault.
struct Variable {
  std::string_view name;  ///< in lower case
  bool (*exists)(const Station&);
  /// In the order in which a device prints them; nothing = write-only.
  Values (*read)(Station&, const Values& arguments);
  /// Nothing = read-only.
  void (*write)(Station&, const WriteRequest&);
};

using VariableTable = std::span<const Variable>;

/// Of variables that every station has.
bool Always(const Station&);

/// Nothing when the station does not know the (lower-case) name.
const Variable* FindVariable(const Station& station, std::string_view name);

/// Whether the arguments ask for all elements: "x# *".
bool AskForAll(const Values& arguments);

/// The whole number at a place of arguments or values; Fault when it is missing or out of range.
int IntegerArgument(const Values& arguments, std::size_t place, int lowest, int highest);

/// The one number behind "=", in steps of 1/scale; bounds in these steps as well. Fault when it is
/// missing or out of range, and with a scale of 1 when it is not whole.
int WrittenNumber(const Values& values, int lowest, int highest, int scale);
/// The same for a variable that has no index; Fault when one is given.
int WrittenNumber(const WriteRequest& request, int lowest, int highest, int scale);

}  // namespace ostrel::simulator
