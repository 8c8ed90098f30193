#pragma once

#include <functional>

#include "app/service.h"
#include "pages/console/recent_files.h"
#include "widgets/page.h"

class QAction;
class QBoxLayout;
class QCheckBox;
class QLabel;
class QLineEdit;
class QMenu;
class QPlainTextEdit;
class QPushButton;
class QSplitter;

namespace ostrel {

class CodeEditor;

/// The page of the command console: the script and, below it, what was sent and answered.
class ConsolePage : public Page {
 public:
  ConsolePage(Service& service, Runner run);
  ~ConsolePage() override;

  void Captions() override;
  void Refresh() override;
  void Read() override;
  void EnableCommands(bool free) override;
  /// Asks before text is lost that was not saved.
  bool MayClose() override;
  void KeepUnsaved(bool unasked) override;

 private:
  /// The actions of the buttons `butRGLTool`, by their index.
  enum Tool {
    kLoad = 0,
    kSave = 1,
    kSaveAs = 2,
    kNew = 3,
    kReadDevice = 4,
    kSendSeveral = 5,
    kExport = 6,
    kCheck = 100
  };

  // build_console_page.cpp
  void Arrange();
  QBoxLayout* ToolRow(std::initializer_list<Tool> tools);
  QPushButton* AddTool(Tool tool);
  void BuildMenu();
  QWidget* BuildFind();
  QWidget* BuildAnswers();
  template <typename Control>
  Control* Captioned(Control* control, int id);

  void UseTool(Tool tool);
  void Connect();
  void Send(ScriptPart::Mode mode);
  void SendSeveral();
  void New();
  void Load();
  void Open(const std::string& file);
  void Export();
  void Saved(Console::Ending ending);
  void SetScript(const std::string& text);
  void ShowFile();
  void ShowCaret();
  void ShowRecent();
  void ShowProgress(const SentLine& line);
  void AddAnswer(const std::string& text);
  void FindNext(bool backward);
  Console& Device() { return service_.CommandConsole(); }
  QString Text(int id) const;

  Service& service_;
  Runner run_;
  RecentFiles recent_;
  std::vector<std::function<void()>> captions_;
  std::vector<QWidget*> commands_;        // disabled while something runs
  std::vector<QWidget*> deviceCommands_;  // and without a device
  bool free_ = true;

  CodeEditor* edtRTFRegL;
  QPlainTextEdit* edtREGLAntwort;
  QCheckBox* chkRGLMonitor;
  QPushButton* butRGLLogFile;
  QPushButton* butSend;
  QPushButton* butRecent;
  QMenu* mnuRGL;
  QMenu* mnuRecent;
  QWidget* findBar_;
  QLineEdit* edtFind;
  QLabel* lblFile;
  QLabel* lblCaret;
};

}  // namespace ostrel
