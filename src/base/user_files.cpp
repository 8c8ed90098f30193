#include "base/user_files.h"

#include <algorithm>
#include <string>
#include <system_error>

namespace ostrel {

namespace fs = std::filesystem;

namespace {

bool IsParameterFile(const fs::directory_entry& entry) {
  constexpr std::string_view kBegin = "tmp_udm_";
  constexpr std::string_view kEnd = ".txt";
  const std::string name = entry.path().filename().string();
  std::error_code failed;
  return name.size() >= kBegin.size() + kEnd.size() && name.starts_with(kBegin) &&
         name.ends_with(kEnd) && fs::is_regular_file(entry.symlink_status(failed)) && !failed;
}

void DeleteParameterFilesIn(const fs::path& folder) {
  std::error_code failed;
  if (!fs::is_directory(fs::symlink_status(folder, failed))) return;
  for (fs::directory_iterator entry(folder, failed), end; !failed && entry != end;
       entry.increment(failed)) {
    std::error_code ignored;
    if (IsParameterFile(*entry)) fs::remove(entry->path(), ignored);
  }
}

}  // namespace

fs::path ServiceLogFile(const fs::path& documents) {
  return documents / "Ostrel" / "ServiceLog.txt";
}

fs::path UnsavedScriptFile(const fs::path& documents) {
  return documents / "Ostrel" / "UnsavedScript.txt";
}

fs::path ConsoleLogFile(const SettingsStore& settings, const fs::path& profile) {
  const std::string folder = settings.ReadProgram("Ostrel", "Dirs", "RGL_Log_Path", "");
  std::string file =
      settings.ReadProgram("Ostrel", "Dirs", "RGL_Log_File", "\\Ostrel_Service_RegLLog.txt");
  std::replace(file.begin(), file.end(), '\\', '/');
  file.erase(0, file.find_first_not_of('/'));
  return (folder.empty() ? profile : fs::path(folder)) / file;
}

void DeleteParameterFiles(const fs::path& documents) {
  // Both spellings are in use; where case counts they are two folders.
  for (const char* name : {"Ostrel", "ostrel"}) DeleteParameterFilesIn(documents / name);
}

}  // namespace ostrel
