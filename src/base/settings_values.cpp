#include "base/settings_values.h"

#include "base/settings_path.h"

namespace ostrel {

std::optional<std::string> SettingsValues::Find(std::string_view key, std::string_view name) const {
  const auto entry = entries_.find(fold_(SettingsPath(key, name)));
  return entry == entries_.end() ? std::nullopt : std::optional(entry->second.value);
}

std::vector<std::string> SettingsValues::SubKeys(std::string_view key) const {
  std::vector<std::string> names;
  for (const auto& [folded, entry] : entries_) {
    const std::string name = SubKeyOf(key, entry.path);
    const bool known = !names.empty() && fold_(names.back()) == fold_(name);
    if (!name.empty() && !known) names.push_back(name);
  }
  return names;
}

void SettingsValues::Set(const std::string& path, const std::string& value) {
  entries_.try_emplace(fold_(path), Entry{path, {}}).first->second.value = value;
}

void SettingsValues::Apply(const std::vector<SettingsChange>& changes) {
  for (const SettingsChange& change : changes) {
    const std::string path = SettingsPath(change.key, change.name);
    if (change.value) {
      Set(path, *change.value);
    } else {
      const std::string folded = fold_(path);
      std::erase_if(entries_, [&](const auto& item) {
        return item.first == folded || item.first.starts_with(folded + '\\');
      });
    }
  }
}

}  // namespace ostrel
