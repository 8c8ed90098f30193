#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "simulator/variables.h"

namespace ostrel::simulator {

inline constexpr std::size_t kProgramLists = 10;

/// What a regulator's owner has put into it as lines: programs, menus and the data of its lines.
/// A list holds texts or numbers, numbers written out; an empty text or "0" is a free entry.
struct Programs {
  std::array<std::vector<std::string>, kProgramLists> lists;
};

/// Lists with some first entries.
Programs MakePrograms();

/// The lists. "x# *" prints the entries in use as lines that write them again.
VariableTable ProgramVariables();

}  // namespace ostrel::simulator
