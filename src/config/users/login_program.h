#pragma once

#include "base/desktop.h"

namespace ostrel {

/// Brings the login program of the suite to the front, else starts it from its folder beside the
/// program's or from the program's own. False where there is none.
bool LoginProgramShow(Desktop& desktop);

}  // namespace ostrel
