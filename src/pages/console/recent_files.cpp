#include "pages/console/recent_files.h"

#include <algorithm>

namespace ostrel {

namespace {

std::string Key(std::size_t n) {
  return "RegLRecent" + std::to_string(n + 1);
}

}  // namespace

std::vector<std::string> RecentFiles::List() const {
  std::vector<std::string> paths;
  for (std::size_t n = 0; n < kMost; ++n) {
    std::string path = settings_.ReadProgram("Ostrel", "Dirs", Key(n), "");
    if (!path.empty()) paths.push_back(std::move(path));
  }
  return paths;
}

void RecentFiles::Add(const std::string& path) {
  std::vector<std::string> paths = List();
  std::erase(paths, path);
  paths.insert(paths.begin(), path);
  std::vector<SettingsChange> changes;
  for (std::size_t n = 0; n < std::min(paths.size(), kMost); ++n) {
    changes.push_back({ProgramKey("Ostrel", "Dirs"), Key(n), paths[n]});
  }
  settings_.Store(changes);
}

}  // namespace ostrel
