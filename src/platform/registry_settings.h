#pragma once

#include <QSettings>

#include "base/settings_store.h"

namespace ostrel {

/// The settings in one file of the user's, `vantrel/ostrel.conf` below $XDG_CONFIG_HOME; on Windows
/// in the registry itself. Other programs write there too, so every look-up reads what is new.
class RegistrySettings : public SettingsStore {
 public:
  RegistrySettings();

  std::string ReadShared(std::string_view key, std::string_view name,
                         std::string_view fallback) const override;
  void WriteShared(std::string_view key, std::string_view name, std::string_view value) override;
  std::vector<std::string> SharedSubKeys(std::string_view key) const override;
  void RemoveSharedKey(std::string_view key) override;

  /// Where the settings are kept, for messages.
  std::string FileName() const;

 private:
  /// The stored spelling of a path, as the store writes it; the path itself when it is new.
  QString Stored(const std::string& path) const;

  mutable QSettings store_;
};

}  // namespace ostrel
