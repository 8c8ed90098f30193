// The console's files: scripts, and the choice of the log.

#include <filesystem>
#include <utility>

#include "base/file_choice.h"
#include "base/texts.h"
#include "pages/console/console.h"
#include "pages/console/console_texts.h"

namespace ostrel {

namespace {

constexpr const char* kScriptFolder = "RegL";
constexpr const char* kLogFolder = "RGL_Log_Path";
constexpr const char* kLogFile = "RGL_Log_File";

}  // namespace

std::optional<std::string> Console::Open(const std::string& fileName) {
  std::string script;
  ScriptForm form;
  const FileOutcome outcome = ReadScript(fileName, script, form);
  if (outcome.message != 0) {
    ports_.messages.WarnFilled(outcome.message, outcome.detail);
    return std::nullopt;
  }
  fileName_ = fileName;
  form_ = std::move(form);
  loaded_ = true;
  return script;
}

std::optional<std::string> Console::Load() {
  const std::optional<std::string> file =
      ChooseFile(ports_.dialogs, ports_.settings, ports_.messages, FileDialogKind::kOpen,
                 text::kOpenFile, text::kScriptFilter, kScriptFolder);
  return file ? Open(*file) : std::nullopt;
}

Console::Ending Console::Write(const std::string& fileName, const std::string& script) {
  const ScriptForm::Encoding before = form_.encoding;
  const FileOutcome outcome = WriteScript(fileName, script, form_);
  if (outcome.message != 0) {
    ports_.messages.WarnFilled(outcome.message, outcome.detail);
    return Ending::kFailed;
  }
  fileName_ = fileName;
  loaded_ = true;
  if (form_.encoding != before) ports_.messages.Show(text::kSavedAsUtf8);
  return Ending::kDone;
}

Console::Ending Console::Save(const std::string& script) {
  if (fileName_.empty()) return SaveAs(script);
  return NotEmpty(script, text::kNoFileOpen) ? Write(fileName_, script) : Ending::kFailed;
}

Console::Ending Console::SaveAs(const std::string& script) {
  if (!NotEmpty(script, text::kNoFileOpen)) return Ending::kFailed;
  const std::optional<std::string> file =
      ChooseFile(ports_.dialogs, ports_.settings, ports_.messages, FileDialogKind::kSave,
                 text::kSaveAs, text::kScriptFilter, kScriptFolder);
  return file ? Write(*file, script) : Ending::kNotConfirmed;
}

void Console::KeepUnsaved(const std::string& script) {
  namespace fs = std::filesystem;
  std::error_code ignored;
  const fs::path file = ports_.unsavedFile;
  if (script.empty()) {
    // What another window put aside is not this one's.
    if (std::exchange(aside_, false)) fs::remove(file, ignored);
    return;
  }
  fs::create_directories(file.parent_path(), ignored);
  ScriptForm form;
  aside_ = WriteScript(file.string(), script, form).message == 0;
  // Scripts may hold passwords.
  fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write, ignored);
}

std::string Console::TakeUnsaved() {
  std::string script;
  ScriptForm form;
  if (ReadScript(ports_.unsavedFile, script, form).message != 0) return {};
  std::error_code ignored;
  std::filesystem::remove(ports_.unsavedFile, ignored);
  return script;
}

bool Console::ChooseLogFile() {
  const std::optional<std::string> file =
      ChooseFile(ports_.dialogs, ports_.settings, ports_.messages, FileDialogKind::kAppend,
                 text::kSelectLogFile, text::kLogFilter, kLogFolder);
  if (!file) return false;
  log_.SetFile(*file);
  ports_.settings.WriteProgram("Ostrel", "Dirs", kLogFile,
                               std::filesystem::path(*file).filename().string());
  return true;
}

}  // namespace ostrel
