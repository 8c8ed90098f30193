#include "pages/console/console_page.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QTextBlock>
#include <QTimer>
#include <utility>

#include "base/file_choice.h"
#include "base/files.h"
#include "base/text.h"
#include "base/texts.h"
#include "pages/console/console_texts.h"
#include "pages/console/frmDevices.h"
#include "widgets/code_editor.h"
#include "widgets/plain_tip.h"
#include "widgets/window_dialogs.h"

namespace ostrel {

namespace {

QString PathTip(const std::string& path) {
  return PlainTip(QString::fromStdString(VisibleLine(path)));
}

}  // namespace

ConsolePage::ConsolePage(Service& service, Runner run)
    : service_(service), run_(std::move(run)), recent_(service.Settings()) {
  Arrange();
  Connect();
  Device().Log().SetFile(service_.ConsoleLogPath().string());
  Device().MonitorSet(chkRGLMonitor->isChecked());
  if (const std::string script = Device().TakeUnsaved(); !script.empty()) {
    edtRTFRegL->SetText(script, true);
  }
  ShowFile();
  ShowCaret();
}

ConsolePage::~ConsolePage() {
  Device().onPane = {};
  Device().onMonitor = {};
  Device().onSending = {};
  Device().onAnswered = {};
}

QString ConsolePage::Text(int id) const {
  return QString::fromStdString(service_.Texts().Caption(id));
}

void ConsolePage::Connect() {
  Device().onPane = [this](const std::string& text) { AddAnswer(text); };
  Device().onMonitor = [this](bool on) {
    chkRGLMonitor->setChecked(on);
    edtREGLAntwort->setVisible(on);
  };
  Device().onSending = [this](const SentLine& line) { ShowProgress(line); };
  Device().onAnswered = [this](const SentLine& line) {
    // The line that failed stays marked.
    if (line.ok) edtRTFRegL->ShowRunning(-1);
  };
  connect(chkRGLMonitor, &QCheckBox::toggled, this, [this](bool on) {
    if (on != Device().Monitor()) Device().MonitorSet(on);
  });
  connect(butRGLLogFile, &QPushButton::clicked, this, [this] {
    Device().ChooseLogFile();
    Captions();
  });
  connect(edtRTFRegL, &QPlainTextEdit::cursorPositionChanged, this, &ConsolePage::ShowCaret);
  connect(edtRTFRegL->document(), &QTextDocument::contentsChanged, this, [this] {
    edtRTFRegL->ShowRunning(-1);
    ShowCaret();  // a character behind the caret does not move it
  });
  connect(edtRTFRegL->document(), &QTextDocument::modificationChanged, this,
          &ConsolePage::ShowFile);
  connect(mnuRecent, &QMenu::aboutToShow, this, &ConsolePage::ShowRecent);
  auto* save = new QShortcut(QKeySequence::Save, this);
  save->setContext(Qt::WidgetWithChildrenShortcut);
  connect(save, &QShortcut::activated, this, [this] { UseTool(kSave); });
  // Questions and messages wait until the drop is over.
  edtRTFRegL->onFile = [this](const std::string& file) {
    QTimer::singleShot(0, this, [this, file] { Open(file); });
  };
  edtRTFRegL->onMenu = [this](const QPoint& place) {
    if (free_) mnuRGL->popup(place);
  };
}

void ConsolePage::Captions() {
  for (const auto& set : captions_) set();
  edtRTFRegL->setAccessibleName(Text(text::kScriptPane));
  edtREGLAntwort->setAccessibleName(Text(text::kAnswerPane));
  butRGLLogFile->setToolTip(PathTip(Device().Log().File()));
  ShowFile();
  ShowCaret();
}

void ConsolePage::Refresh() {
  EnableCommands(free_);
}

void ConsolePage::Read() {
  UseTool(kReadDevice);
}

void ConsolePage::EnableCommands(bool free) {
  free_ = free;
  const bool device = service_.Selected().GetKenn().has_value();
  for (QWidget* command : commands_) command->setEnabled(free);
  for (QWidget* command : deviceCommands_) command->setEnabled(free && device);
  for (QAction* action : mnuRGL->actions()) action->setEnabled(free);
  // Rows must stay where they are while they are sent.
  edtRTFRegL->setReadOnly(!free);
}

bool ConsolePage::MayClose() {
  return !edtRTFRegL->document()->isModified() || service_.Texts().Ask(text::kDiscardScript);
}

void ConsolePage::KeepUnsaved(bool unasked) {
  const bool lost = unasked && edtRTFRegL->document()->isModified();
  Device().KeepUnsaved(lost ? edtRTFRegL->Text() : std::string());
}

void ConsolePage::UseTool(Tool tool) {
  if (!free_) return;
  switch (tool) {
    case kLoad:
      Load();
      break;
    case kSave:
      Saved(Device().Save(edtRTFRegL->Text()));
      break;
    case kSaveAs:
      Saved(Device().SaveAs(edtRTFRegL->Text()));
      break;
    case kNew:
      New();
      break;
    case kReadDevice:
      run_([this] {
        // Undo brings the text back that it replaces.
        Device().ReadFromDevice(
            [this](const std::string& script) { edtRTFRegL->SetText(script, true); });
      });
      break;
    case kSendSeveral:
      SendSeveral();
      break;
    case kExport:
      Export();
      break;
    case kCheck:
      Device().SyntaxCheck(edtRTFRegL->Text());
      break;
  }
  EnableCommands(free_);
}

void ConsolePage::Send(ScriptPart::Mode mode) {
  ScriptPart part;
  part.mode = mode;
  part.line = static_cast<std::size_t>(edtRTFRegL->CaretLine());
  if (mode == ScriptPart::Mode::kSelection) {
    part.selection = edtRTFRegL->SelectedText();
    const int start = edtRTFRegL->textCursor().selectionStart();
    part.line = static_cast<std::size_t>(edtRTFRegL->document()->findBlock(start).blockNumber());
  }
  run_([this, part] { Device().Send(edtRTFRegL->Text(), part); });
}

void ConsolePage::SendSeveral() {
  run_([this] {
    Device().SendToStations(edtRTFRegL->Text(), [this](const std::string& title) {
      std::vector<std::string> stations;
      if (!service_.Bus().StationsListAll(stations)) return std::vector<std::string>();
      return ChooseDevices(this, service_.Texts(), title, stations);
    });
  });
}

void ConsolePage::New() {
  if (!MayClose()) return;
  Device().New();
  SetScript({});
}

void ConsolePage::Load() {
  if (!MayClose()) return;
  if (const auto script = Device().Load()) SetScript(*script);
}

void ConsolePage::Open(const std::string& file) {
  if (!free_ || !MayClose()) return;
  if (const auto script = Device().Open(file)) SetScript(*script);
}

void ConsolePage::SetScript(const std::string& text) {
  edtRTFRegL->SetText(text);
  Saved(Console::Ending::kDone);
}

void ConsolePage::Saved(Console::Ending ending) {
  if (ending != Console::Ending::kDone) return;
  edtRTFRegL->document()->setModified(false);
  if (!Device().FileName().empty()) recent_.Add(Device().FileName());
  ShowFile();
}

void ConsolePage::Export() {
  const auto file =
      ChooseFile(service_.Boxes(), service_.Settings(), service_.Texts(), FileDialogKind::kSave,
                 text::kSaveAs, text::kTextFiles, "RegLAnswers");
  if (!file) return;
  QString text = edtREGLAntwort->document()->toRawText();
  text.replace(QChar::ParagraphSeparator, QLatin1String("\r\n"));
  if (const int error = ReplaceBytes(*file, text.toStdString()); error != 0) {
    service_.Texts().WarnFilled(text::kFileNotWritten, FileFault(*file, error));
  }
}

void ConsolePage::ShowFile() {
  const std::string& name = Device().FileName();
  const QString file = name.empty() ? Text(text::kNewScriptName)
                                    : QFileInfo(QString::fromStdString(name)).fileName();
  lblFile->setText(file +
                   (edtRTFRegL->document()->isModified() ? QStringLiteral(" *") : QString()));
  lblFile->setToolTip(PathTip(name));
}

void ConsolePage::ShowCaret() {
  const QTextCursor caret = edtRTFRegL->textCursor();
  const std::string length = std::to_string(CharCount(Trim(caret.block().text().toStdString())));
  lblCaret->setText(QString::fromStdString(
      service_.Texts().Filled(text::kCaretLine, std::to_string(caret.blockNumber() + 1)) + "  ·  " +
      service_.Texts().Filled(text::kCharacters, length)));
}

void ConsolePage::ShowRecent() {
  mnuRecent->clear();
  for (const std::string& file : recent_.List()) {
    // An ampersand of the name is no mnemonic.
    QString shown = QString::fromStdString(VisibleLine(file));
    mnuRecent->addAction(shown.replace(QLatin1Char('&'), QLatin1String("&&")), this,
                         [this, file] { Open(file); });
  }
  if (mnuRecent->isEmpty()) mnuRecent->addAction(Text(text::kNoFiles))->setEnabled(false);
}

void ConsolePage::ShowProgress(const SentLine& line) {
  edtRTFRegL->ShowRunning(line.row - 1);
  if (onStatus) {
    const std::string of = service_.Texts().Filled(text::kLineOf, std::to_string(line.number));
    onStatus(QString::fromStdString(of).replace(QLatin1String("%s"), QString::number(line.total)));
  }
}

void ConsolePage::AddAnswer(const std::string& text) {
  QTextCursor end(edtREGLAntwort->document());
  end.movePosition(QTextCursor::End);
  end.insertText(QString::fromStdString(Visible(text)));
  edtREGLAntwort->setTextCursor(end);
}

void ConsolePage::FindNext(bool backward) {
  if (!findBar_->isVisible()) {
    findBar_->show();
    edtFind->setFocus();
    return edtFind->selectAll();
  }
  const bool found = edtRTFRegL->Find(edtFind->text(), backward);
  if (onStatus) onStatus(found ? QString() : Text(text::kNotFound));
}

}  // namespace ostrel
