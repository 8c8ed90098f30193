#pragma once

#include <string>
#include <string_view>

#include "base/dialogs.h"
#include "base/error.h"

namespace ostrel {

/// German ids of the string table: the first block (n = 0..660), the second (n = 0..323), and the
/// texts that have no number in either: n = 0..299 the shared ones, then a hundred a feature.
constexpr int First(int n) {
  return 1000 + n;
}
constexpr int Second(int n) {
  return 10000 + n;
}
constexpr int Own(int n) {
  return 20000 + n;
}
inline constexpr int kSharedTexts = 300;
inline constexpr int kTextsOfAFeature = 100;

/// The message loader: texts by German id in the language whose factor is set.
class Messages {
 public:
  explicit Messages(Dialogs& dialogs) : dialogs_(dialogs) {}

  /// 0 German, 1 English, 2 French; other factors have no texts.
  void SetFactor(int factor) { factor_ = factor; }
  int Factor() const { return factor_; }

  /// The text; empty when the table has none for the id or the factor.
  std::string Text(int id) const { return Text(id, factor_); }
  static std::string Text(int id, int factor);
  /// The text as a message shows it: the characters "\n" that some texts hold begin a line, here
  /// and in all that follows.
  std::string Shown(int id) const;
  /// What a control shows: the text, English where the language has none, so that whoever got into
  /// such a language finds the way out of it.
  std::string Caption(int id) const;
  /// The caption with its first "%s" replaced by the value as it stands.
  std::string Filled(int id, std::string_view value) const;
  /// The same with its first two.
  std::string Filled(int id, std::string_view first, std::string_view second) const;

  /// Shows the text as an information, with `added` behind it as it stands.
  void Show(int id, std::string_view added = {}) const;
  /// The same for what went wrong.
  void Warn(int id, std::string_view added = {}) const;
  /// The same for an error, with its detail below; nothing where there is none, or it was told.
  void Warn(const Error& error) const;
  /// The text of an error as it is shown: its message, that nothing was sent, and its detail.
  std::string Shown(const Error& error) const;
  /// The same with the first "%s" of the text replaced.
  void WarnFilled(int id, std::string_view value) const;
  /// The same for an error, with its detail below.
  void WarnFilled(const Error& error, std::string_view value) const;
  /// Asks the caption, since nobody can answer an empty question; false for everything but Yes.
  bool Ask(int id) const;

 private:
  std::string Below(const Error& error) const;

  Dialogs& dialogs_;
  int factor_ = 0;
};

}  // namespace ostrel
