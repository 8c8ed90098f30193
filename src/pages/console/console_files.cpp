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
    desk_.texts.WarnFilled(outcome.message, outcome.detail);
    return std::nullopt;
  }
  origin_ = {fileName, std::move(form)};
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
  const ScriptForm::Encoding before = origin_.form.encoding;
  const FileOutcome outcome = WriteScript(fileName, script, origin_.form);
  if (outcome.message != 0) {
    desk_.texts.WarnFilled(outcome.message, outcome.detail);
    return Ending::kFailed;
  }
  origin_.fileName = fileName;
  loaded_ = true;
  if (origin_.form.encoding != before) desk_.texts.Show(text::kSavedAsUtf8);
  return Ending::kDone;
}

Ending Console::Save(const std::string& script) {
  if (FileName().empty()) return SaveAs(script);
  return NotEmpty(script, text::kNoFileOpen) ? Write(FileName(), script) : Ending::kFailed;
}

Ending Console::SaveAs(const std::string& script) {
  if (!NotEmpty(script, text::kNoFileOpen)) return Ending::kFailed;
  const std::optional<std::string> file =
      ChooseFile(desk_.dialogs, desk_.settings, desk_.texts, FileDialogKind::kSave, text::kSaveAs,
                 text::kScriptFilter, kScriptFolder);
  return file ? Write(*file, script) : Ending::kNotConfirmed;
}

void Console::KeepUnsaved(const std::string& script) {
  if (script.empty()) return unsaved_.Drop();
  unsaved_.Keep(script, origin_);
}

std::string Console::TakeUnsaved() {
  std::optional<UnsavedScript::Contents> left = unsaved_.TakeUp();
  if (!left) return {};
  origin_ = std::move(left->origin);
  return std::move(left->text);
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
