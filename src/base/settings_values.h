#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/settings_store.h"
#include "base/text.h"

namespace ostrel {

/// Settings in memory, as a registry has them: a value keeps the spelling of its path, and every
/// spelling finds it.
class SettingsValues {
 public:
  struct Entry {
    std::string path;
    std::string value;
    bool operator==(const Entry&) const = default;
  };
  /// Gives all spellings of a path the same form.
  using Fold = std::string (*)(std::string_view path);

  explicit SettingsValues(Fold fold = LowerAscii) : fold_(fold) {}

  std::optional<std::string> Find(std::string_view key, std::string_view name) const;
  std::vector<std::string> SubKeys(std::string_view key) const;
  void Set(const std::string& path, const std::string& value);
  void Apply(const std::vector<SettingsChange>& changes);
  /// In the order of their paths.
  const std::map<std::string, Entry>& Entries() const { return entries_; }

 private:
  Fold fold_;
  std::map<std::string, Entry> entries_;  // by folded path
};

}  // namespace ostrel
