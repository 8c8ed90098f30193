#pragma once

#include "base/settings_values.h"

namespace ostrel {

/// The settings in one file of the user's, `vantrel/ostrel.conf` below $XDG_CONFIG_HOME. Other
/// programs write there too, so every look-up reads what is there now.
class RegistrySettings : public SettingsStore {
 public:
  RegistrySettings();

  std::optional<std::string> FindShared(std::string_view key, std::string_view name) const override;
  std::vector<std::string> SharedSubKeys(std::string_view key) const override;
  Error Store(const std::vector<SettingsChange>& changes) override;

  /// Where the settings are kept, for messages.
  const std::string& FileName() const { return file_; }

 private:
  struct Contents {
    int error = 0;       // why it cannot be read
    bool isText = true;  // no settings are in what is none
    SettingsValues values;
  };
  Contents Read() const;
  int Write(const SettingsValues& values) const;
  /// Gives the file another name that says what it is.
  std::string PutAside() const;

  std::string file_;
};

}  // namespace ostrel
