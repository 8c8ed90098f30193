#include "base/csprachen.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/number.h"
#include "base/text.h"
#include "base/texts.h"

namespace ostrel {

namespace {

constexpr std::string_view kGerman = "deu";
constexpr std::string_view kEnglish = "eng";
constexpr std::array<std::string_view, 11> kAccepted = {"deu", "eng", "esp", "rus", "ces", "pol",
                                                        "prt", "fra", "ita", "fin", "ned"};

bool Numeric(std::string_view text) {
  text = Trim(text);
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string CodeOf(std::string_view setting) {
  if (setting == "300") return std::string(kGerman);
  if (Numeric(setting)) return std::string(ReadInteger(setting) == 1 ? kEnglish : kGerman);
  return CSprachen::Folder(setting) ? LowerAscii(setting) : std::string(kGerman);
}

}  // namespace

CSprachen::CSprachen(SettingsStore& settings, Messages& messages,
                     std::filesystem::path programFolder)
    : settings_(settings), messages_(messages), programFolder_(std::move(programFolder)) {
  add("deu", "deutsch", 0, 0);
  add("eng", "english", 1, 0);
  add("fra", "francais", 2, 0);
  add("pol", "polski", 3, 238);
  add("ces", "cesky", 4, 238);
  add("ita", "italiano", 5, 0);
  add("rus", "russki", 6, 204);
  add("spa", "espanol", 7, 0);
  add("ned", "nederl", 8, 0);
  add("suo", "suomi", 9, 0);
}

void CSprachen::Activate_Test(std::string_view code, int userIndex) {
  const int index = RCFaktor(code);
  if (index < 0) {
    messages_.Warn(text::kLanguageNotAllowed, code);
    return;
  }
  Record& record = records_[static_cast<std::size_t>(index)];
  record.active = true;
  record.userIndex = userIndex;
}

void CSprachen::add(std::string_view code, std::string_view folder, int factor, int charset) {
  Record record;
  record.code = code;
  record.folder = folder;
  record.factor = factor;
  record.charset = charset;
  records_.push_back(std::move(record));
}

std::vector<std::string> CSprachen::GetSprachenKurz() const {
  std::vector<std::string> codes;
  for (const Record& record : records_) codes.push_back(record.code);
  return codes;
}

std::vector<std::string> CSprachen::GetSprachenFolder() const {
  std::vector<std::string> folders;
  for (const Record& record : records_) folders.push_back(record.folder);
  return folders;
}

int CSprachen::RCFaktor(std::string_view code) const {
  const auto record = std::find_if(records_.begin(), records_.end(),
                                   [&](const Record& known) { return SameText(known.code, code); });
  return record == records_.end() ? -1 : static_cast<int>(record - records_.begin());
}

bool CSprachen::Folder(std::string_view code) {
  return std::find(kAccepted.begin(), kAccepted.end(), LowerAscii(code)) != kAccepted.end();
}

std::string CSprachen::LanguagePath() {
  std::error_code ignored;
  if (!std::filesystem::is_directory(programFolder_ / records_[current_].folder, ignored)) {
    SetLanguage(kGerman);
  }
  return (programFolder_ / records_[current_].folder / "").string();
}

void CSprachen::SaveLanguage() {
  settings_.WriteShared(keys::kServerMisc, "language", Current());
}

void CSprachen::SetLanguage(std::string_view code) {
  const int index = RCFaktor(code);
  current_ = index < 0 ? 0 : static_cast<std::size_t>(index);
  messages_.SetFactor(records_[current_].factor);
}

void CSprachen::UserIndex_Test() {
  const std::string older = settings_.ReadProgram("ZubServer", "Misc", "Language", "0");
  SetLanguage(CodeOf(settings_.ReadShared(keys::kServerMisc, "language", older)));
  LanguagePath();
}

}  // namespace ostrel
