// What the page of the command console consists of.

#include <QAction>
#include <QCheckBox>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

#include "base/text.h"
#include "pages/console/console_page.h"
#include "pages/console/console_texts.h"
#include "widgets/code_editor.h"

namespace ostrel {

namespace {

LineLook LookOf(const std::string& line) {
  switch (ClassifyLine(line)) {
    case LineClass::kIgnored:
      return LineLook::kDimmed;
    case LineClass::kLong:
      return LineLook::kMarked;
    case LineClass::kTooLong:
      return LineLook::kWrong;
    default:
      return LineLook::kPlain;
  }
}

}  // namespace

QPushButton* ConsolePage::SendButton() {
  mnuRGL = new QMenu(this);
  const auto add = [this](const char* name, int id, const QKeySequence& keys, About about,
                          const Action& act) {
    QAction* action = captions_.On(Named(mnuRGL->addAction(QString()), name), id);
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(action, &QAction::triggered, this, [this, about, act] { Start(about, act); });
    addAction(Follows(action, about));  // its keys work without the menu
  };
  const auto send = [&](const char* name, int id, const QKeySequence& keys, ScriptPart::Mode mode) {
    add(name, id, keys, About::kLines, [this, mode] { Send(mode); });
  };
  using Mode = ScriptPart::Mode;
  send("mnuSendAll", text::kSendAll, Qt::CTRL | Qt::SHIFT | Qt::Key_Return, Mode::kAll);
  send("mnuSendCursor", text::kSendFromCursor, {}, Mode::kFromCursor);
  send("mnuSendZeile", text::kSendLine, Qt::CTRL | Qt::Key_Return, Mode::kCursorLine);
  send("mnuSendMark", text::kSendSelection, {}, Mode::kSelection);
  mnuRGL->addSeparator();
  // The editor knows these keys itself.
  const auto edit = [&](const char* name, int id, const Action& act) {
    add(name, id, {}, About::kFiles, act);
  };
  edit("mnuCopy", text::kCopyText, [this] { edtRTFRegL->copy(); });
  edit("mnuPaste", text::kPasteText, [this] { edtRTFRegL->paste(); });
  mnuRGL->addSeparator();
  edit("mnuUndo", text::kUndo, [this] { edtRTFRegL->undo(); });
  edit("mnuRedo", text::kRedo, [this] { edtRTFRegL->redo(); });
  add("mnuFind", text::kFind, QKeySequence::Find, About::kFiles, [this] {
    findBar_->hide();
    FindNext(false);
  });
  auto* button = captions_.On(Named(new QPushButton, "butSend"), text::kSendMenu);
  button->setMenu(mnuRGL);
  return Follows(button, About::kDevice);
}

QPushButton* ConsolePage::RecentButton() {
  auto* menu = new QMenu(this);
  connect(menu, &QMenu::aboutToShow, this, [this, menu] {
    menu->clear();
    for (const std::string& file : recent_.List()) {
      // An ampersand of the name is no mnemonic.
      QString shown = QString::fromStdString(VisibleLine(file));
      menu->addAction(shown.replace(QLatin1Char('&'), QLatin1String("&&")), this,
                      [this, file] { Start(About::kFiles, [&] { Open(file); }); });
    }
    if (menu->isEmpty()) menu->addAction(captions_.Text(text::kNoFiles))->setEnabled(false);
  });
  auto* button = captions_.On(Named(new QPushButton, "butRecent"), text::kRecentFiles);
  button->setMenu(menu);
  return Follows(button, About::kFiles);
}

QBoxLayout* ConsolePage::FileRow() {
  QPushButton* save = Command("butRGLTool1", text::kSaveScript, About::kFiles,
                              [this] { Saved(console_.Save(edtRTFRegL->Text())); });
  auto* keys = new QShortcut(QKeySequence::Save, this);
  keys->setContext(Qt::WidgetWithChildrenShortcut);
  connect(keys, &QShortcut::activated, save, &QPushButton::click);
  auto* row = new QHBoxLayout;
  row->addWidget(Command("butRGLTool3", text::kNewScript, About::kFiles, [this] { New(); }));
  row->addWidget(Command("butRGLTool0", text::kLoadScript, About::kFiles, [this] { Load(); }));
  row->addWidget(RecentButton());
  row->addWidget(save);
  row->addWidget(Command("butRGLTool2", text::kSaveScriptAs, About::kFiles,
                         [this] { Saved(console_.SaveAs(edtRTFRegL->Text())); }));
  row->addStretch();
  return row;
}

QBoxLayout* ConsolePage::DeviceRow() {
  auto* row = new QHBoxLayout;
  row->addWidget(SendButton());
  row->addWidget(
      Command("butRGLTool5", text::kSendSeveral, About::kLines, [this] { SendSeveral(); }));
  row->addWidget(Command("butRGLTool4", text::kReadScriptButton, About::kDevice,
                         [this] { ReadFromDevice(); }));
  row->addWidget(Command("butRGLTool100", text::kCheckScript, About::kFiles,
                         [this] { console_.SyntaxCheck(edtRTFRegL->Text()); }));
  row->addStretch();
  return row;
}

QBoxLayout* ConsolePage::AnswerRow() {
  chkRGLMonitor = captions_.On(Named(new QCheckBox, "chkRGLMonitor"), text::kShowAnswers);
  chkRGLMonitor->setChecked(true);
  butRGLLogFile =
      Command("butRGLLogFile", text::kLogFile, About::kFiles, [this] { console_.ChooseLogFile(); });
  auto* row = new QHBoxLayout;
  row->addWidget(chkRGLMonitor);
  row->addStretch();
  row->addWidget(Command("butRGLTool6", text::kExportAnswers, About::kFiles, [this] { Export(); }));
  row->addWidget(butRGLLogFile);
  return row;
}

QWidget* ConsolePage::BuildFind() {
  findBar_ = new QWidget;
  edtFind = Named(new QLineEdit, "edtFind");
  auto* label = captions_.Label(text::kFindText, edtFind);
  auto* next = captions_.Button("butFindNext", text::kFindNext, [this] { FindNext(false); });
  auto* back = captions_.Button("butFindBack", text::kFindBack, [this] { FindNext(true); });
  auto* row = new QHBoxLayout(findBar_);
  row->setContentsMargins(0, 0, 0, 0);
  for (QWidget* part : std::initializer_list<QWidget*>{label, edtFind, next, back}) {
    row->addWidget(part);
  }
  connect(edtFind, &QLineEdit::returnPressed, this, [this] { FindNext(false); });
  const auto onKey = [this](const QKeySequence& key, QWidget* in, auto&& act) {
    auto* shortcut = new QShortcut(key, in);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, this, act);
  };
  onKey(QKeySequence::FindNext, this, [this] { FindNext(false); });
  onKey(QKeySequence::FindPrevious, this, [this] { FindNext(true); });
  onKey(Qt::Key_Escape, findBar_, [this] {
    findBar_->hide();
    edtRTFRegL->setFocus();
  });
  findBar_->hide();
  return findBar_;
}

void ConsolePage::BuildAnswers() {
  edtREGLAntwort = Named(new QPlainTextEdit, "edtREGLAntwort");
  edtREGLAntwort->setReadOnly(true);
  edtREGLAntwort->setUndoRedoEnabled(false);
  edtREGLAntwort->setTabChangesFocus(true);
  edtREGLAntwort->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  edtREGLAntwort->setLineWrapMode(QPlainTextEdit::NoWrap);
  captions_.Add([this] { edtREGLAntwort->setAccessibleName(captions_.Text(text::kAnswerPane)); });
}

QWidget* ConsolePage::BuildScript() {
  captions_.Add([this] { edtRTFRegL->setAccessibleName(captions_.Text(text::kScriptPane)); });
  // Rows must stay where they are while they are sent.
  OnEnable(About::kFiles, [this](bool on) { edtRTFRegL->setReadOnly(!on); });
  lblFile = Named(new QLabel, "lblFile");
  lblCaret = Named(new QLabel, "lblCaret");
  for (QLabel* label : {lblFile, lblCaret}) label->setTextFormat(Qt::PlainText);
  // A long name is cut, not a reason for a wider window.
  lblFile->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  auto* about = new QHBoxLayout;
  about->addWidget(lblFile, 1);
  about->addWidget(lblCaret);
  auto* script = new QWidget;
  auto* rows = new QVBoxLayout(script);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->addWidget(edtRTFRegL, 1);
  rows->addWidget(BuildFind());
  rows->addLayout(about);
  return script;
}

void ConsolePage::Arrange() {
  edtRTFRegL = Named(new CodeEditor(LookOf), "edtRTFRegL");
  BuildAnswers();
  auto* rows = new QVBoxLayout(this);
  rows->addLayout(FileRow());
  rows->addLayout(DeviceRow());
  auto* panes = new QSplitter(Qt::Vertical);
  panes->addWidget(BuildScript());
  panes->addWidget(edtREGLAntwort);
  panes->setChildrenCollapsible(false);
  panes->setSizes({300, 200});
  rows->addWidget(panes, 1);
  rows->addLayout(AnswerRow());
}

}  // namespace ostrel
