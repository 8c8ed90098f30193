#include "base/file_choice.h"

#include <filesystem>

namespace ostrel {

std::optional<std::string> ChooseFile(Dialogs& dialogs, SettingsStore& settings,
                                      const Messages& messages, FileDialogKind kind, int titleId,
                                      int filterId, std::string_view directoryKey) {
  const std::string folder = settings.ReadProgram("Ostrel", "Dirs", directoryKey, "");
  std::optional<std::string> file =
      dialogs.ChooseFile(kind, messages.Text(titleId), messages.Text(filterId), folder);
  if (!file) return std::nullopt;
  const std::string chosen = std::filesystem::path(*file).parent_path().string();
  settings.WriteProgram("Ostrel", "Dirs", directoryKey, chosen);
  return file;
}

}  // namespace ostrel
