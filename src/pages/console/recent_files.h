#pragma once

#include <string>
#include <vector>

#include "base/settings_store.h"

namespace ostrel {

/// The script files that were opened or saved last.
class RecentFiles {
 public:
  static constexpr std::size_t kMost = 8;

  explicit RecentFiles(SettingsStore& settings) : settings_(settings) {}

  /// Their paths, the last one first.
  std::vector<std::string> List() const;
  void Add(const std::string& path);

 private:
  SettingsStore& settings_;
};

}  // namespace ostrel
