#pragma once

#include "pages/console/console.h"
#include "pages/console/recent_files.h"
#include "widgets/page.h"

class QBoxLayout;
class QLabel;
class QLineEdit;
class QMenu;
class QPlainTextEdit;
class QTimer;

namespace ostrel {

class CodeEditor;

/// The page of the command console: the script and, below it, what was sent and answered.
class ConsolePage : public Page {
 public:
  explicit ConsolePage(const Seat& seat);

  void Read() override;
  /// Asks before text is lost that was not saved.
  bool MayClose() override;
  void KeepUnsaved(bool unasked) override;

 protected:
  void Refresh() override;

 private:
  // build_console_page.cpp
  void Arrange();
  QBoxLayout* FileRow();
  QBoxLayout* DeviceRow();
  QBoxLayout* AnswerRow();
  QPushButton* SendButton();
  QPushButton* RecentButton();
  QWidget* BuildScript();
  QWidget* BuildFind();
  void BuildAnswers();

  void Connect();
  void Send(ScriptPart::Mode mode);
  void SendSeveral();
  void ReadFromDevice();
  void New();
  void Load();
  void Open(const std::string& file);
  void Export();
  void Saved(Ending ending);
  void Loaded(const std::string& script);
  /// Shows a text that comes from where the console's script comes from.
  void SetScript(const std::string& text, bool undoable = false);
  void TextChanged();
  void ShowFile();
  void ShowCaret();
  void ShowProgress(const SentLine& line);
  void AddAnswer(const std::string& text);
  void FindNext(bool backward);

  Console console_;
  RecentFiles recent_;
  std::vector<ScriptOrigin> origins_{1};  // by the marks of the texts that undo brings back
  int mark_ = 0;                          // of the text that is shown
  QTimer* tmrUnsaved;
  CodeEditor* edtRTFRegL;
  QPlainTextEdit* edtREGLAntwort;
  QCheckBox* chkRGLMonitor;
  QPushButton* butRGLLogFile;
  QMenu* mnuRGL;
  QWidget* findBar_;
  QLineEdit* edtFind;
  QLabel* lblFile;
  QLabel* lblCaret;
};

}  // namespace ostrel
