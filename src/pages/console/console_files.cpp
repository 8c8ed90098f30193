// The console's files: scripts, and the choice of the log.

#include <filesystem>
#include <utility>

#include "base/file_choice.h"
#include "base/texts.h"
#include "base/user_files.h"
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
    desk_.texts.WarnFilled(outcome.message, outcome.detail);
    return std::nullopt;
  }
  fileName_ = fileName;
  form_ = std::move(form);
  loaded_ = true;
  return script;
}

std::optional<std::string> Console::Load() {
  const std::optional<std::string> file =
      ChooseFile(desk_.dialogs, desk_.settings, desk_.texts, FileDialogKind::kOpen, text::kOpenFile,
                 text::kScriptFilter, kScriptFolder);
  return file ? Open(*file) : std::nullopt;
}

Ending Console::Write(const std::string& fileName, const std::string& script) {
  const ScriptForm::Encoding before = form_.encoding;
  const FileOutcome outcome = WriteScript(fileName, script, form_);
  if (outcome.message != 0) {
    desk_.texts.WarnFilled(outcome.message, outcome.detail);
    return Ending::kFailed;
  }
  fileName_ = fileName;
  loaded_ = true;
  if (form_.encoding != before) desk_.texts.Show(text::kSavedAsUtf8);
  return Ending::kDone;
}

Ending Console::Save(const std::string& script) {
  if (fileName_.empty()) return SaveAs(script);
  return NotEmpty(script, text::kNoFileOpen) ? Write(fileName_, script) : Ending::kFailed;
}

Ending Console::SaveAs(const std::string& script) {
  if (!NotEmpty(script, text::kNoFileOpen)) return Ending::kFailed;
  const std::optional<std::string> file =
      ChooseFile(desk_.dialogs, desk_.settings, desk_.texts, FileDialogKind::kSave, text::kSaveAs,
                 text::kScriptFilter, kScriptFolder);
  return file ? Write(*file, script) : Ending::kNotConfirmed;
}

std::filesystem::path Console::UnsavedFile() const {
  return UnsavedScriptFile(desk_.computer.DocumentsFolder());
}

void Console::KeepUnsaved(const std::string& script) {
  namespace fs = std::filesystem;
  std::error_code ignored;
  const fs::path file = UnsavedFile();
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
  if (ReadScript(UnsavedFile().string(), script, form).message != 0) return {};
  std::error_code ignored;
  std::filesystem::remove(UnsavedFile(), ignored);
  return script;
}

bool Console::ChooseLogFile() {
  const std::optional<std::string> file =
      ChooseFile(desk_.dialogs, desk_.settings, desk_.texts, FileDialogKind::kAppend,
                 text::kSelectLogFile, text::kLogFilter, kLogFolder);
  if (!file) return false;
  log_.SetFile(*file);
  desk_.settings.WriteProgram("Ostrel", "Dirs", kLogFile,
                              std::filesystem::path(*file).filename().string());
  return true;
}

}  // namespace ostrel
