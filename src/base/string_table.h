#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

namespace ostrel {

/// One text of the system: its German id and the texts by factor (German, English, French).
struct TableEntry {
  int id;
  std::array<std::string_view, 3> texts;
};

/// The blocks of the string table, each in ascending order of its ids.
std::span<const TableEntry> FirstBlock();
std::span<const TableEntry> SecondBlock();
std::span<const TableEntry> OwnBlock();

/// The tables of the features, one each; defined beside their list.
std::vector<std::span<const TableEntry>> FeatureTables();

/// What look-ups need of a table: its ids ascend and are some of the `count` from `first` on.
constexpr bool Ascending(std::span<const TableEntry> block, int first, int count) {
  if (block.empty() || block.front().id < first || block.back().id >= first + count) return false;
  for (std::size_t n = 1; n < block.size(); ++n) {
    if (block[n - 1].id >= block[n].id) return false;
  }
  return true;
}

}  // namespace ostrel
