#include "widgets/window_dialogs.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QImage>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QRegularExpression>
#include <algorithm>
#include <memory>

#include "base/program_title.h"
#include "base/texts.h"

namespace ostrel {

namespace {

/// A device may answer more than fits on a screen.
constexpr qsizetype kMostCharacters = 1500;

QString Title() {
  return QString::fromUtf8(kProgramTitle);
}

QString BoxText(const Message& message) {
  QString text = QString::fromStdString(message.text).remove(QLatin1Char('\r'));
  if (text.size() > kMostCharacters) {
    text.truncate(kMostCharacters);
    text += QStringLiteral(" …");
  }
  if (message.number != 0) text += QStringLiteral("\n\n(%1)").arg(message.number);
  return text;
}

/// The pieces between the "|" of a filter.
std::vector<std::string> Pieces(const std::string& filter) {
  std::vector<std::string> pieces;
  std::size_t start = 0;
  for (std::size_t bar = filter.find('|'); bar != std::string::npos;
       bar = filter.find('|', start)) {
    pieces.push_back(filter.substr(start, bar - start));
    start = bar + 1;
  }
  pieces.push_back(filter.substr(start));
  return pieces;
}

}  // namespace

bool RunModal(QDialog& dialog) {
  QApplication::setOverrideCursor(Qt::ArrowCursor);
  const bool accepted = dialog.exec() == QDialog::Accepted;
  QApplication::restoreOverrideCursor();
  return accepted;
}

std::string WindowFilter(const std::string& filter) {
  const std::vector<std::string> pieces = Pieces(filter);
  std::string result;
  for (std::size_t n = 0; n + 1 < pieces.size(); n += 2) {
    std::string patterns = pieces[n + 1];
    std::replace(patterns.begin(), patterns.end(), ';', ' ');
    // The window system shows the patterns itself.
    std::string text = pieces[n].substr(0, pieces[n].find('('));
    while (text.ends_with(' ')) text.pop_back();
    if (!result.empty()) result += ";;";
    result += text + " (" + patterns + ")";
  }
  return result;
}

void WindowDialogs::Attach(QWidget* parent, const Messages* messages) {
  parent_ = parent;
  messages_ = messages;
}

QWidget* WindowDialogs::Parent() const {
  QWidget* const open = QApplication::activeModalWidget();
  return open != nullptr ? open : parent_;
}

QString WindowDialogs::Caption(int id) const {
  return QString::fromStdString(messages_ != nullptr ? messages_->Caption(id)
                                                     : Messages::Text(id, 0));
}

void WindowDialogs::Silence() {
  silent_ = true;
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    auto* dialog = qobject_cast<QDialog*>(widget);
    if (dialog != nullptr && dialog->isVisible()) dialog->reject();
  }
}

void WindowDialogs::Show(const Message& message) {
  if (silent_) return;
  const QString title = QString::fromStdString(message.title);
  QMessageBox box(
      message.style == MessageStyle::kExclamation ? QMessageBox::Warning : QMessageBox::Information,
      title.isEmpty() ? Title() : title, {}, QMessageBox::NoButton, Parent());
  box.setTextFormat(Qt::PlainText);
  box.setText(BoxText(message));
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  box.addButton(Caption(text::kOk), QMessageBox::AcceptRole);
  RunModal(box);
}

bool WindowDialogs::AskYesNo(const std::string& question) {
  if (silent_) return false;
  QMessageBox box(QMessageBox::Question, Title(), {}, QMessageBox::NoButton, Parent());
  box.setTextFormat(Qt::PlainText);
  box.setText(QString::fromStdString(question));
  const auto* yes = box.addButton(Caption(text::kYes), QMessageBox::YesRole);
  auto* no = box.addButton(Caption(text::kNo), QMessageBox::NoRole);
  box.setDefaultButton(no);
  box.setEscapeButton(no);
  RunModal(box);
  return box.clickedButton() == yes && !silent_;
}

std::optional<std::string> WindowDialogs::AskText(const InputRequest& request) {
  if (silent_) return std::nullopt;
  QInputDialog box(Parent());
  box.setWindowTitle(QString::fromStdString(request.title));
  box.setLabelText(QString::fromStdString(request.prompt));
  box.setTextValue(QString::fromStdString(request.value));
  box.setTextEchoMode(request.password ? QLineEdit::Password : QLineEdit::Normal);
  box.setOkButtonText(Caption(text::kOk));
  box.setCancelButtonText(Caption(text::kCancel));
  for (QLabel* label : box.findChildren<QLabel*>()) label->setTextFormat(Qt::PlainText);
  // A title is shown whole, beside the buttons of its bar.
  box.setMinimumWidth(box.fontMetrics().horizontalAdvance(box.windowTitle() + "00000000000000"));
  if (!RunModal(box) || silent_) return std::nullopt;
  return box.textValue().toStdString();
}

std::optional<std::string> WindowDialogs::ChooseFile(FileDialogKind kind, const std::string& title,
                                                     const std::string& filter,
                                                     const std::string& folder) {
  if (silent_) return std::nullopt;
  QFileDialog dialog(Parent(), QString::fromStdString(title), QString::fromStdString(folder),
                     QString::fromStdString(WindowFilter(filter)));
  const bool open = kind == FileDialogKind::kOpen;
  dialog.setAcceptMode(open ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
  dialog.setOption(QFileDialog::DontConfirmOverwrite, kind == FileDialogKind::kAppend);
  dialog.setFileMode(open ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
  if (!open) {
    // By the end of its name a file is known again.
    const auto complete = [&dialog](const QString& chosen) {
      static const QRegularExpression kEnding(QStringLiteral("\\*\\.(\\w+)"));
      dialog.setDefaultSuffix(kEnding.match(chosen).captured(1));
    };
    complete(dialog.selectedNameFilter());
    QObject::connect(&dialog, &QFileDialog::filterSelected, complete);
  }
  if (!RunModal(dialog) || dialog.selectedFiles().isEmpty()) return std::nullopt;
  return dialog.selectedFiles().constFirst().toStdString();
}

void WindowDialogs::SetBusy(bool busy) {
  if (busy) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

void WindowDialogs::ToClipboard(const std::string& text, const std::string& pngPicture) {
  auto data = std::make_unique<QMimeData>();
  data->setText(QString::fromStdString(text));
  if (QImage picture; picture.loadFromData(QByteArray::fromStdString(pngPicture), "PNG")) {
    data->setImageData(picture);
  }
  QApplication::clipboard()->setMimeData(data.release());
}

}  // namespace ostrel
