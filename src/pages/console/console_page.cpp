#include "pages/console/console_page.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTextBlock>
#include <QTimer>

#include "base/file_choice.h"
#include "base/files.h"
#include "base/text.h"
#include "base/texts.h"
#include "base/user_files.h"
#include "pages/console/console_texts.h"
#include "pages/console/frmDevices.h"
#include "widgets/code_editor.h"
#include "widgets/plain_tip.h"
#include "widgets/window_dialogs.h"

namespace ostrel {

namespace {

/// How much of the user's typing a crash may cost.
constexpr int kUnsavedMs = 3000;

QString PathTip(const std::string& path) {
  return PlainTip(QString::fromStdString(VisibleLine(path)));
}

}  // namespace

ConsolePage::ConsolePage(const Seat& seat) : Page(seat), console_(desk_), recent_(desk_.settings) {
  console_.Log().SetFile(ConsoleLogFile(desk_.settings, desk_.computer.ProfileFolder()).string());
  Arrange();
  Connect();
  console_.MonitorSet(chkRGLMonitor->isChecked());
  if (const std::string script = console_.TakeUnsaved(); !script.empty()) {
    SetScript(script, true);
  }
}

void ConsolePage::Connect() {
  console_.onPane = [this](const std::string& text) { AddAnswer(text); };
  console_.onMonitor = [this](bool on) {
    chkRGLMonitor->setChecked(on);
    edtREGLAntwort->setVisible(on);
  };
  console_.onSending = [this](const SentLine& line) { ShowProgress(line); };
  console_.onAnswered = [this](const SentLine& line) {
    // The line that failed stays marked.
    if (line.ok) edtRTFRegL->ShowRunning(-1);
  };
  connect(chkRGLMonitor, &QCheckBox::toggled, this, [this](bool on) {
    if (on != console_.Monitor()) console_.MonitorSet(on);
  });
  connect(edtRTFRegL, &QPlainTextEdit::cursorPositionChanged, this, &ConsolePage::ShowCaret);
  connect(edtRTFRegL->document(), &QTextDocument::contentsChanged, this, &ConsolePage::TextChanged);
  connect(edtRTFRegL->document(), &QTextDocument::modificationChanged, this, [this](bool modified) {
    ShowFile();
    if (modified) return;
    tmrUnsaved->stop();
    KeepUnsaved(false);
  });
  tmrUnsaved = Named(new QTimer(this), "tmrUnsaved");
  tmrUnsaved->setSingleShot(true);
  tmrUnsaved->setInterval(kUnsavedMs);
  connect(tmrUnsaved, &QTimer::timeout, this, [this] { KeepUnsaved(true); });
  // Questions and messages wait until the drop is over.
  edtRTFRegL->onFile = [this](const std::string& file) {
    QTimer::singleShot(0, this, [=, this] { Start(About::kFiles, [&] { Open(file); }); });
  };
  edtRTFRegL->onMenu = [this](const QPoint& place) {
    if (Free()) mnuRGL->popup(place);
  };
}

void ConsolePage::Refresh() {
  butRGLLogFile->setToolTip(PathTip(console_.Log().File()));
  ShowFile();
  ShowCaret();
}

void ConsolePage::Read() {
  Start(About::kDevice, [this] { ReadFromDevice(); });
}

bool ConsolePage::MayClose() {
  return !edtRTFRegL->document()->isModified() || desk_.texts.Ask(text::kDiscardScript);
}

void ConsolePage::KeepUnsaved(bool unasked) {
  const bool lost = unasked && edtRTFRegL->document()->isModified();
  console_.KeepUnsaved(lost ? edtRTFRegL->Text() : std::string());
}

void ConsolePage::ReadFromDevice() {
  // Undo brings the text back that it replaces.
  console_.ReadFromDevice([this](const std::string& script) { SetScript(script, true); });
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
  console_.Send(edtRTFRegL->Text(), part);
}

void ConsolePage::SendSeveral() {
  console_.SendToStations(edtRTFRegL->Text(), [this](const std::string& title) {
    const auto stations = desk_.session.StationsListAll();
    return stations ? ChooseDevices(this, desk_.texts, title, *stations)
                    : std::vector<std::string>();
  });
}

void ConsolePage::New() {
  if (!MayClose()) return;
  console_.New();
  Loaded({});
}

void ConsolePage::Load() {
  if (!MayClose()) return;
  if (const auto script = console_.Load()) Loaded(*script);
}

void ConsolePage::Open(const std::string& file) {
  if (!MayClose()) return;
  if (const auto script = console_.Open(file)) Loaded(*script);
}

void ConsolePage::Loaded(const std::string& script) {
  SetScript(script);
  Saved(Ending::kDone);
}

void ConsolePage::SetScript(const std::string& text, bool undoable) {
  if (!undoable) origins_.clear();
  origins_.push_back(console_.Origin());
  mark_ = static_cast<int>(origins_.size()) - 1;
  edtRTFRegL->SetText(text, undoable, mark_);
  ShowFile();
}

void ConsolePage::TextChanged() {
  if (edtRTFRegL->Mark() != mark_) {
    mark_ = edtRTFRegL->Mark();
    console_.SetOrigin(origins_.at(static_cast<std::size_t>(mark_)));
    ShowFile();
  }
  if (edtRTFRegL->document()->isModified() && !tmrUnsaved->isActive()) tmrUnsaved->start();
  edtRTFRegL->ShowRunning(-1);
  ShowCaret();  // a character behind the caret does not move it
}

void ConsolePage::Saved(Ending ending) {
  if (ending != Ending::kDone) return;
  origins_.at(static_cast<std::size_t>(mark_)) = console_.Origin();
  edtRTFRegL->document()->setModified(false);
  if (!console_.FileName().empty()) recent_.Add(console_.FileName());
}

void ConsolePage::Export() {
  const auto file = ChooseFile(desk_.dialogs, desk_.settings, desk_.texts, FileDialogKind::kSave,
                               text::kSaveAs, text::kTextFiles, "RegLAnswers");
  if (!file) return;
  QString text = edtREGLAntwort->document()->toRawText();
  text.replace(QChar::ParagraphSeparator, QLatin1String("\r\n"));
  if (const int error = ReplaceBytes(*file, text.toStdString()); error != 0) {
    desk_.texts.WarnFilled(text::kFileNotWritten, FileFault(*file, error));
  }
}

void ConsolePage::ShowFile() {
  const std::string& name = console_.FileName();
  const QString file = name.empty() ? captions_.Text(text::kNewScriptName)
                                    : QFileInfo(QString::fromStdString(name)).fileName();
  lblFile->setText(file +
                   (edtRTFRegL->document()->isModified() ? QStringLiteral(" *") : QString()));
  lblFile->setToolTip(PathTip(name));
}

void ConsolePage::ShowCaret() {
  const QTextCursor caret = edtRTFRegL->textCursor();
  const std::string length = std::to_string(CharCount(Trim(caret.block().text().toStdString())));
  lblCaret->setText(captions_.Filled(text::kCaretLine, std::to_string(caret.blockNumber() + 1)) +
                    QStringLiteral("  ·  ") + captions_.Filled(text::kCharacters, length));
}

void ConsolePage::ShowProgress(const SentLine& line) {
  edtRTFRegL->ShowRunning(line.row - 1);
  ShowStatus(captions_.Filled(text::kLineOf, std::to_string(line.number))
                 .replace(QLatin1String("%s"), QString::number(line.total)));
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
  ShowStatus(found ? QString() : captions_.Text(text::kNotFound));
}

Page* MakeConsolePage(const Page::Seat& seat) {
  return new ConsolePage(seat);
}

}  // namespace ostrel
