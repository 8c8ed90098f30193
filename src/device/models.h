#pragma once

#include <array>

namespace ostrel {

/// The model numbers of the regulators.
inline constexpr std::array kRegulators = {0, 1, 4, 11, 12};
/// All model numbers that a type string can give.
inline constexpr std::array kEveryModel = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 80, 90};

}  // namespace ostrel
