#pragma once

#include <string>
#include <vector>

#include "base/messages.h"
#include "wire/connections.h"

class QWidget;

namespace ostrel {

/// Shows the connections, and the reason why the last one did not open unless it is empty. The
/// chosen name; empty when the user cancels.
std::string ChooseConnection(QWidget* parent, const Messages& messages,
                             const std::vector<Connection>& connections,
                             const std::string& preselected, const std::string& reason);

}  // namespace ostrel
