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
#include <utility>

#include "pages/console/console_page.h"
#include "pages/console/console_texts.h"
#include "widgets/code_editor.h"
#include "widgets/named.h"

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

template <typename Control>
Control* ConsolePage::Captioned(Control* control, int id) {
  captions_.push_back([this, control, id] { control->setText(Text(id)); });
  return control;
}

QPushButton* ConsolePage::AddTool(Tool tool) {
  constexpr std::pair<Tool, int> kCaptions[] = {{kLoad, text::kLoadScript},
                                                {kSave, text::kSaveScript},
                                                {kSaveAs, text::kSaveScriptAs},
                                                {kNew, text::kNewScript},
                                                {kReadDevice, text::kReadScriptButton},
                                                {kSendSeveral, text::kSendSeveral},
                                                {kExport, text::kExportAnswers},
                                                {kCheck, text::kCheckScript}};
  auto* button = new QPushButton;
  button->setObjectName(QStringLiteral("butRGLTool%1").arg(static_cast<int>(tool)));
  for (const auto& [of, id] : kCaptions) {
    if (of == tool) Captioned(button, id);
  }
  connect(button, &QPushButton::clicked, this, [this, tool] { UseTool(tool); });
  (tool == kReadDevice ? deviceCommands_ : commands_).push_back(button);
  return button;
}

QBoxLayout* ConsolePage::ToolRow(std::initializer_list<Tool> tools) {
  auto* row = new QHBoxLayout;
  for (const Tool tool : tools) row->addWidget(AddTool(tool));
  return row;
}

void ConsolePage::BuildMenu() {
  mnuRGL = new QMenu(this);
  const auto add = [this](const char* name, int id, const QKeySequence& keys, auto&& act) {
    QAction* action = Captioned(mnuRGL->addAction(QString()), id);
    action->setObjectName(QLatin1String(name));
    action->setShortcut(keys);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(action, &QAction::triggered, this, act);
    addAction(action);  // its keys work without the menu
  };
  using Mode = ScriptPart::Mode;
  add("mnuSendAll", text::kSendAll, Qt::CTRL | Qt::SHIFT | Qt::Key_Return,
      [this] { Send(Mode::kAll); });
  add("mnuSendCursor", text::kSendFromCursor, {}, [this] { Send(Mode::kFromCursor); });
  add("mnuSendZeile", text::kSendLine, Qt::CTRL | Qt::Key_Return,
      [this] { Send(Mode::kCursorLine); });
  add("mnuSendMark", text::kSendSelection, {}, [this] { Send(Mode::kSelection); });
  mnuRGL->addSeparator();
  // The editor knows these keys itself.
  add("mnuCopy", text::kCopyText, {}, [this] { edtRTFRegL->copy(); });
  add("mnuPaste", text::kPasteText, {}, [this] { edtRTFRegL->paste(); });
  mnuRGL->addSeparator();
  add("mnuUndo", text::kUndo, {}, [this] { edtRTFRegL->undo(); });
  add("mnuRedo", text::kRedo, {}, [this] { edtRTFRegL->redo(); });
  add("mnuFind", text::kFind, QKeySequence::Find, [this] {
    findBar_->hide();
    FindNext(false);
  });
  butSend = Captioned(Named(new QPushButton, "butSend"), text::kSendMenu);
  butSend->setMenu(mnuRGL);
  deviceCommands_.push_back(butSend);

  mnuRecent = new QMenu(this);
  butRecent = Captioned(Named(new QPushButton, "butRecent"), text::kRecentFiles);
  butRecent->setMenu(mnuRecent);
  commands_.push_back(butRecent);
}

QWidget* ConsolePage::BuildFind() {
  findBar_ = new QWidget;
  edtFind = Named(new QLineEdit, "edtFind");
  auto* label = Captioned(new QLabel, text::kFindText);
  label->setBuddy(edtFind);
  auto* next = Captioned(Named(new QPushButton, "butFindNext"), text::kFindNext);
  auto* back = Captioned(Named(new QPushButton, "butFindBack"), text::kFindBack);
  auto* row = new QHBoxLayout(findBar_);
  row->setContentsMargins(0, 0, 0, 0);
  for (QWidget* part : std::initializer_list<QWidget*>{label, edtFind, next, back}) {
    row->addWidget(part);
  }
  connect(next, &QPushButton::clicked, this, [this] { FindNext(false); });
  connect(back, &QPushButton::clicked, this, [this] { FindNext(true); });
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

QWidget* ConsolePage::BuildAnswers() {
  edtREGLAntwort = Named(new QPlainTextEdit, "edtREGLAntwort");
  edtREGLAntwort->setReadOnly(true);
  edtREGLAntwort->setUndoRedoEnabled(false);
  edtREGLAntwort->setTabChangesFocus(true);
  edtREGLAntwort->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  edtREGLAntwort->setLineWrapMode(QPlainTextEdit::NoWrap);
  return edtREGLAntwort;
}

void ConsolePage::Arrange() {
  edtRTFRegL = Named(new CodeEditor(LookOf), "edtRTFRegL");
  lblFile = Named(new QLabel, "lblFile");
  lblCaret = Named(new QLabel, "lblCaret");
  for (QLabel* label : {lblFile, lblCaret}) label->setTextFormat(Qt::PlainText);
  // A long name is cut, not a reason for a wider window.
  lblFile->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  BuildMenu();

  QBoxLayout* files = ToolRow({kNew, kLoad});
  files->addWidget(butRecent);
  files->addLayout(ToolRow({kSave, kSaveAs}));
  files->addStretch();
  auto* device = new QHBoxLayout;
  device->addWidget(butSend);
  device->addLayout(ToolRow({kSendSeveral, kReadDevice, kCheck}));
  device->addStretch();

  auto* about = new QHBoxLayout;
  about->addWidget(lblFile, 1);
  about->addWidget(lblCaret);
  auto* script = new QWidget;
  auto* scriptRows = new QVBoxLayout(script);
  scriptRows->setContentsMargins(0, 0, 0, 0);
  scriptRows->addWidget(edtRTFRegL, 1);
  scriptRows->addWidget(BuildFind());
  scriptRows->addLayout(about);
  auto* panes = new QSplitter(Qt::Vertical);
  panes->addWidget(script);
  panes->addWidget(BuildAnswers());
  panes->setChildrenCollapsible(false);
  panes->setSizes({300, 200});

  chkRGLMonitor = Captioned(Named(new QCheckBox, "chkRGLMonitor"), text::kShowAnswers);
  chkRGLMonitor->setChecked(true);
  butRGLLogFile = Captioned(Named(new QPushButton, "butRGLLogFile"), text::kLogFile);
  commands_.push_back(butRGLLogFile);
  auto* below = new QHBoxLayout;
  below->addWidget(chkRGLMonitor);
  below->addStretch();
  below->addWidget(AddTool(kExport));
  below->addWidget(butRGLLogFile);

  auto* rows = new QVBoxLayout(this);
  rows->addLayout(files);
  rows->addLayout(device);
  rows->addWidget(panes, 1);
  rows->addLayout(below);
}

}  // namespace ostrel
