#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/settings_path.h"

namespace ostrel {

/// The user's settings. Every value is a text. Look-ups ignore case and a trailing backslash.
/// Nothing is reported: a failed read gives the default, a failed write is lost.
class SettingsStore {
 public:
  virtual ~SettingsStore() = default;

  /// A shared value, e.g. ("Software\\vantrel\\OstrelServer\\Misc\\", "DefTimeout_s", "10").
  virtual std::string ReadShared(std::string_view key, std::string_view name,
                                 std::string_view fallback) const = 0;
  virtual void WriteShared(std::string_view key, std::string_view name, std::string_view value) = 0;

  /// A setting of one program, e.g. ("Ostrel", "Dirs", "XFLog", "").
  std::string ReadProgram(std::string_view application, std::string_view section,
                          std::string_view key, std::string_view fallback) const {
    return ReadShared(ProgramKey(application, section), key, fallback);
  }
  void WriteProgram(std::string_view application, std::string_view section, std::string_view key,
                    std::string_view value) {
    WriteShared(ProgramKey(application, section), key, value);
  }

  /// The names of the keys directly below a key, in the order of the alphabet.
  virtual std::vector<std::string> SharedSubKeys(std::string_view key) const = 0;
  /// Removes a key with all that is below it.
  virtual void RemoveSharedKey(std::string_view key) = 0;
};

/// The keys that the suite's programs share.
namespace keys {
inline constexpr std::string_view kServerMisc = R"(Software\vantrel\OstrelServer\Misc\)";
inline constexpr std::string_view kConnections = R"(Software\vantrel\OstrelServer\Connections\)";
inline constexpr std::string_view kSuite = R"(Software\vantrel\Ostrel\)";
inline constexpr std::string_view kServiceMisc = R"(Software\vantrel\Ostrel\Service\Misc)";
}  // namespace keys

}  // namespace ostrel
