#include "platform/registry_settings.h"

#include <QStandardPaths>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "base/files.h"
#include "base/texts.h"
#include "platform/settings_text.h"

namespace ostrel {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostBytes = 1UL << 20;

int MakeFolder(const fs::path& folder) {
  std::error_code error;
  if (fs::create_directories(folder, error)) fs::permissions(folder, fs::perms::owner_all, error);
  return error.value();
}

Error NotStored(const std::string& file, int error) {
  return {text::kSettingsNotStored, FileFault(file, error)};
}

}  // namespace

RegistrySettings::RegistrySettings()
    : file_(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation).toStdString() +
            "/vantrel/ostrel.conf") {}

RegistrySettings::Contents RegistrySettings::Read() const {
  std::string bytes;
  const int error = ReadBytes(file_, kMostBytes, bytes);
  if (error == ENOENT) return {};
  // Nobody's settings are that long.
  if (error == EFBIG) return {.isText = false};
  if (error != 0) return {.error = error};
  if (!IsSettingsText(bytes)) return {.isText = false};
  return {.values = ParseSettings(bytes)};
}

std::optional<std::string> RegistrySettings::FindShared(std::string_view key,
                                                        std::string_view name) const {
  return Read().values.Find(key, name);
}

std::vector<std::string> RegistrySettings::SharedSubKeys(std::string_view key) const {
  return Read().values.SubKeys(key);
}

Error RegistrySettings::Store(const std::vector<SettingsChange>& changes) {
  // Most starts change nothing; they need not wait for one another.
  const auto changed = [&changes](Contents& contents) {
    const auto before = contents.values.Entries();
    contents.values.Apply(changes);
    return !contents.isText || contents.values.Entries() != before;
  };
  Contents contents = Read();
  if (contents.error == 0 && !changed(contents)) return {};

  const fs::path folder = fs::path(file_).parent_path();
  if (const int error = MakeFolder(folder); error != 0) return NotStored(folder.string(), error);
  std::string aside;
  int error = 0;
  {
    const FolderLock lock(folder.string());
    contents = Read();
    if (contents.error != 0) return NotStored(file_, contents.error);
    if (!changed(contents)) return {};
    if (!contents.isText) aside = PutAside();
    error = Write(contents.values);
  }
  if (!aside.empty() && onPutAside) onPutAside(aside);
  return error == 0 ? Error() : NotStored(file_, error);
}

int RegistrySettings::Write(const SettingsValues& values) const {
  const std::string text = SettingsText(values);
  if (const int error = ReplaceBytes(file_, text); error != 0) return error;
  std::string stored;
  const int error = ReadBytes(file_, kMostBytes, stored);
  return error == 0 && stored != text ? EIO : error;
}

std::string RegistrySettings::PutAside() const {
  std::error_code error;
  std::string name = file_ + ".unreadable";
  for (int n = 2; fs::exists(fs::symlink_status(name, error)); ++n) {
    name = file_ + ".unreadable-" + std::to_string(n);
  }
  fs::rename(file_, name, error);
  return error ? std::string() : name;
}

}  // namespace ostrel
