#pragma once

#include <string_view>

namespace ostrel {

/// The title of the program's windows and boxes.
inline constexpr std::string_view kProgramTitle = "Service " OSTREL_VERSION;

}  // namespace ostrel
