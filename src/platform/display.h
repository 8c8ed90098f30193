#pragma once

namespace ostrel {

/// Whether a window could be shown: a display is named in the environment and somebody listens
/// there, or another platform of the window system was asked for.
bool HasDisplay();

}  // namespace ostrel
