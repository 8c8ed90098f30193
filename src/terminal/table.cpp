#include "terminal/table.h"

#include <algorithm>

#include "base/text.h"

namespace ostrel {

void WriteTable(std::ostream& out, const std::vector<std::vector<std::string>>& rows) {
  std::vector<std::size_t> widths;
  for (const auto& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t n = 0; n < row.size(); ++n) {
      widths[n] = std::max(widths[n], CharCount(VisibleLine(row[n])));
    }
  }
  for (const auto& row : rows) {
    std::string line;
    for (std::size_t n = 0; n < row.size(); ++n) line += Padded(VisibleLine(row[n]), widths[n] + 2);
    line.erase(line.find_last_not_of(' ') + 1);
    out << line << '\n';
  }
}

}  // namespace ostrel
