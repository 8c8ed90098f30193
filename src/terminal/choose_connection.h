#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include "base/messages.h"
#include "wire/connections.h"

namespace ostrel {

/// The connection list by numbers, where somebody can be asked for one: the name of the chosen
/// connection, empty when the input is empty or ends. Anything but a number of the list is asked
/// again.
std::string ChooseInTerminal(const std::vector<Connection>& connections,
                             const std::string& preselected, const Messages& messages,
                             std::istream& in, std::ostream& err);

}  // namespace ostrel
