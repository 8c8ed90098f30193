#include "logs/service_log/clsLog.h"

#include <fstream>
#include <string>

#include "base/user_files.h"

namespace ostrel {

namespace {

/// The part behind the comma is the seconds again: files of all versions compare equal.
std::string Stamp(const LocalTime& now) {
  const std::string stamp = TimeStamp(now);
  const std::string seconds = stamp.substr(stamp.size() - 2);
  return "[" + stamp + "," + seconds + seconds + "]  ";
}

}  // namespace

void clsLog::Open(const SettingsStore& settings, const std::filesystem::path& documents) {
  Init(ServiceLogFile(documents));
  Active(settings.ReadShared(keys::kServiceMisc, "ServiceLog", "0") != "0");
}

void clsLog::Switch(SettingsStore& settings, bool on) {
  settings.WriteShared(keys::kServiceMisc, "ServiceLog", on ? "1" : "0");
  Active(on);
}

void clsLog::Active(bool active) {
  active_ = active;
  std::error_code ignored;
  if (active) std::filesystem::create_directories(fileName_.parent_path(), ignored);
}

void clsLog::SaveLog(std::string_view text) const {
  if (!active_) return;
  std::ofstream file(fileName_, std::ios::binary | std::ios::app);
  file << Stamp(clock_.Now()).append(text) + "\r\n";
}

}  // namespace ostrel
