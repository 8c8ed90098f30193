#pragma once

#include <QLatin1String>

namespace ostrel {

/// Gives a control its name in this system, which is its Qt object name too.
template <typename Control>
Control* Named(Control* control, const char* name) {
  control->setObjectName(QLatin1String(name));
  return control;
}

}  // namespace ostrel
