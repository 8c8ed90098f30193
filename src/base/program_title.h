#pragma once

namespace ostrel {

/// The title of the program's windows and boxes.
inline constexpr const char* kProgramTitle = "Service " OSTREL_VERSION;

}  // namespace ostrel
