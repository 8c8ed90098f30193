#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "base/settings_path.h"

namespace ostrel {

/// One step of a change: a value that is stored or, without one, the value or key that is removed
/// with all that is below it; no name means the key itself.
struct SettingsChange {
  std::string key, name;
  std::optional<std::string> value;
};

/// The user's settings. Every value is a text. Look-ups ignore case and a trailing backslash.
/// A failed read gives the default.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;

  /// A shared value, e.g. ("Software\\vantrel\\OstrelServer\\Misc\\", "DefTimeout_s", "10").
  std::string ReadShared(std::string_view key, std::string_view name,
                         std::string_view fallback) const {
    return FindShared(key, name).value_or(std::string(fallback));
  }
  /// The same; nothing where none is stored.
  virtual std::optional<std::string> FindShared(std::string_view key,
                                                std::string_view name) const = 0;
  /// Makes changes in this order and in one write: all of them are stored, or none is and the error
  /// says why (text::kSettingsNotStored). Where everything is so already nothing is written.
  virtual Error Store(const std::vector<SettingsChange>& changes) = 0;
  Error WriteShared(std::string_view key, std::string_view name, std::string_view value) {
    return Store({{std::string(key), std::string(name), std::string(value)}});
  }

  /// A setting of one program, e.g. ("Ostrel", "Dirs", "XFLog", "").
  std::string ReadProgram(std::string_view application, std::string_view section,
                          std::string_view key, std::string_view fallback) const {
    return ReadShared(ProgramKey(application, section), key, fallback);
  }
  Error WriteProgram(std::string_view application, std::string_view section, std::string_view key,
                     std::string_view value) {
    return WriteShared(ProgramKey(application, section), key, value);
  }

  /// The names of the keys directly below a key, in the order of the alphabet.
  virtual std::vector<std::string> SharedSubKeys(std::string_view key) const = 0;

  /// Called with the new name of settings that were no text and were put aside for a write.
  std::function<void(const std::string& file)> onPutAside;
};

/// The keys that the suite's programs share.
namespace keys {
inline constexpr std::string_view kServerMisc = R"(Software\vantrel\OstrelServer\Misc\)";
inline constexpr std::string_view kConnections = R"(Software\vantrel\OstrelServer\Connections\)";
inline constexpr std::string_view kSuite = R"(Software\vantrel\Ostrel\)";
inline constexpr std::string_view kServiceMisc = R"(Software\vantrel\Ostrel\Service\Misc)";
}  // namespace keys

}  // namespace ostrel
