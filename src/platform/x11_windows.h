#pragma once

#include <string>

namespace ostrel {

/// Asks the window manager of the X display to bring the top-level window with this title, whatever
/// its case, to the front. False when there is no display, no such window or no window manager.
bool RaiseX11Window(const std::string& title);

}  // namespace ostrel
