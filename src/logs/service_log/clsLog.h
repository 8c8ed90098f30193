#pragma once

#include <filesystem>
#include <string_view>
#include <utility>

#include "base/clock.h"
#include "base/settings_store.h"

namespace ostrel {

/// The service log: a text file that gets a stamped line an entry while it is active. The file is
/// opened for each entry; what cannot be written is lost without a word.
class clsLog {
 public:
  explicit clsLog(const Clock& clock) : clock_(clock) {}

  /// Takes the file below the user's documents, and whether it is active from the settings. Its
  /// folder is made when it is switched on.
  void Open(const SettingsStore& settings, const std::filesystem::path& documents);
  /// Switches the log, now and for later runs.
  void Switch(SettingsStore& settings, bool on);

  void Active(bool active);
  bool Active() const { return active_; }
  const std::filesystem::path& FileName() const { return fileName_; }
  void Init(std::filesystem::path fileName) { fileName_ = std::move(fileName); }
  /// Appends one line: local time in brackets, two blanks, the text, CR LF.
  void SaveLog(std::string_view text) const;

 private:
  const Clock& clock_;
  bool active_ = false;
  std::filesystem::path fileName_;
};

}  // namespace ostrel
