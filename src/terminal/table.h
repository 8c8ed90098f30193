#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace ostrel {

/// Writes columns, each as wide as its widest cell.
void WriteTable(std::ostream& out, const std::vector<std::vector<std::string>>& rows);

}  // namespace ostrel
