#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace ostrel {

/// How often something happened at each of a row of positions.
struct BarChartData {
  int first = 0;  // position of counts[0]
  std::vector<std::int32_t> counts;
  std::string positionLabel;
  std::string countLabel;
  std::string locale = {};  // of the numbers, such as "de"; empty = the user's
};

}  // namespace ostrel
