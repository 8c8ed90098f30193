#pragma once

#include <array>
#include <span>
#include <string_view>

namespace ostrel {

/// One text of the system: its German id and the texts by factor (German, English, French).
struct TableEntry {
  int id;
  std::array<std::string_view, 3> texts;
};

/// All entries in ascending order of their ids.
std::span<const TableEntry> StringTable();

}  // namespace ostrel
