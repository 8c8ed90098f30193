#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/desktop.h"
#include "base/messages.h"
#include "base/settings_store.h"

namespace ostrel {

/// The known languages, the current one and its place in the string table.
class CSprachen {
 public:
  /// The folders of language-specific files stand beside the program.
  CSprachen(SettingsStore& settings, Messages& messages, const Desktop& computer);

  /// Marks a language as active and stores its user index; an unknown code shows a message.
  void Activate_Test(std::string_view code, int userIndex);
  /// Appends a language.
  void add(std::string_view code, std::string_view folder, int factor, int charset);
  int Count() const { return static_cast<int>(records_.size()); }
  /// The code of the current language.
  std::string Current() const { return records_[current_].code; }
  /// The font character set: 0 ANSI, 204 Cyrillic, 238 Central European.
  int Charset() const { return records_[current_].charset; }
  std::vector<std::string> GetSprachenKurz() const;
  std::vector<std::string> GetSprachenFolder() const;
  /// The index of the code in the table, -1 when unknown; case is ignored.
  int RCFaktor(std::string_view code) const;
  /// Whether the suite accepts the code.
  static bool Folder(std::string_view code);
  /// The folder of the current language's files with a separator at its end. Where it does not
  /// exist, the language becomes German and the folder the German one.
  std::string LanguagePath();
  /// Stores the current code for all programs of the suite.
  void SaveLanguage();
  /// Makes a language the current one; a code without a record means German.
  void SetLanguage(std::string_view code);
  /// Chooses the start-up language from the settings of the server; where none is stored, that of
  /// the computer: German, French, else English.
  void UserIndex_Test();

 private:
  struct Record {
    std::string code;
    std::string folder;
    int factor = 0;
    int charset = 0;
    bool active = false;
    int userIndex = -1;
  };

  SettingsStore& settings_;
  Messages& messages_;
  const Desktop& computer_;
  std::vector<Record> records_;
  std::size_t current_ = 0;
};

}  // namespace ostrel
