#pragma once

#include <string>
#include <vector>

#include "base/messages.h"

class QWidget;

namespace ostrel {

/// Lets the user tick stations of a list. Their lines as they were given; none when he cancels.
std::vector<std::string> ChooseDevices(QWidget* parent, const Messages& messages,
                                       const std::string& title,
                                       const std::vector<std::string>& stations);

}  // namespace ostrel
