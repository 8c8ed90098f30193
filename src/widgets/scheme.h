#pragma once

#include <QPalette>
#include <string>

namespace ostrel {

enum class Scheme { kSystem, kLight, kDark };

/// The scheme named "light" or "dark"; any other name means that of the system.
Scheme SchemeFromName(const std::string& name);
std::string SchemeName(Scheme scheme);

/// The colours of a scheme; those of the system are an empty palette.
QPalette SchemePalette(Scheme scheme);

/// Gives all windows the colours of a scheme at once.
void ApplyScheme(Scheme scheme);

}  // namespace ostrel
