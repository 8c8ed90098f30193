#include "app/frmSelect.h"

#include <QDialogButtonBox>
#include <QElapsedTimer>
#include <QFontDatabase>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/texts.h"
#include "widgets/named.h"
#include "widgets/window_dialogs.h"

namespace ostrel {

namespace {

constexpr int kAddressRole = Qt::UserRole;
constexpr int kNameRole = Qt::UserRole + 1;
/// Letters typed within this time belong together.
constexpr qint64 kTypingMs = 1000;

/// Text of a device on one line: what would break the line or the columns is made visible.
QString OneLine(const std::string& line) {
  QString shown = QString::fromStdString(line);
  for (QChar& character : shown) {
    const bool unseen =
        character.category() == QChar::Other_Control || character.category() == QChar::Other_Format;
    if (unseen) character = QChar::ReplacementCharacter;
  }
  return shown;
}

/// A list in which typing jumps to the address that begins so, else to the name.
class StationBox : public QListWidget {
 public:
  void keyboardSearch(const QString& letters) override {
    if (!typed_.isEmpty() && sinceTyped_.elapsed() > kTypingMs) typed_.clear();
    typed_ += letters;
    sinceTyped_.start();
    for (const int role : {kAddressRole, kNameRole}) {
      for (int row = 0; row < count(); ++row) {
        const QString text = item(row)->data(role).toString();
        if (text.startsWith(typed_, Qt::CaseInsensitive)) return setCurrentRow(row);
      }
    }
  }

 private:
  QString typed_;
  QElapsedTimer sinceTyped_;
};

}  // namespace

frmSelect::frmSelect(QWidget* parent, const Messages& messages, StationList& list)
    : QDialog(parent),
      messages_(messages),
      list_(list),
      txtVerbindung(Named(new QLineEdit, "txtVerbindung")),
      butConnection(Named(new QPushButton, "butConnection")),
      stationsLabel_(new QLabel),
      typeLabel_(new QLabel),
      lstStations(Named(new StationBox, "lstStations")),
      txtStation(Named(new QLineEdit, "txtStation")),
      ButOK(Named(new QPushButton, "ButOK")),
      butCancel(Named(new QPushButton, "butCancel")),
      butHelp(Named(new QPushButton, "butHelp")) {
  setObjectName(QStringLiteral("frmSelect"));
  Arrange();
  connect(ButOK, &QPushButton::clicked, this, &QDialog::accept);
  connect(butCancel, &QPushButton::clicked, this, &frmSelect::reject);
  connect(butConnection, &QPushButton::clicked, this, &frmSelect::ChangeConnection);
  connect(butHelp, &QPushButton::clicked, this, [this] { messages_.Show(text::kHelpStations); });
  connect(lstStations, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
  connect(lstStations, &QListWidget::currentRowChanged, this, &frmSelect::ShowStation);
}

void frmSelect::Arrange() {
  stationsLabel_->setBuddy(lstStations);
  for (QLineEdit* edit : {txtVerbindung, txtStation}) edit->setReadOnly(true);
  lstStations->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  ButOK->setDefault(true);
  for (QPushButton* button : {butConnection, butHelp}) button->setAutoDefault(false);

  auto* connection = new QHBoxLayout;
  connection->addWidget(txtVerbindung);
  connection->addWidget(butConnection);
  auto* captions = new QHBoxLayout;
  // Above the columns of the list.
  const QFontMetrics list(lstStations->font());
  stationsLabel_->setMinimumWidth(list.horizontalAdvance(QString(12, QLatin1Char('0'))));
  captions->addWidget(stationsLabel_);
  captions->addWidget(typeLabel_, 1);
  auto* buttons = new QDialogButtonBox;
  buttons->addButton(ButOK, QDialogButtonBox::AcceptRole);
  buttons->addButton(butCancel, QDialogButtonBox::RejectRole);
  buttons->addButton(butHelp, QDialogButtonBox::HelpRole);

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(connection);
  layout->addLayout(captions);
  layout->addWidget(lstStations);
  layout->addWidget(txtStation);
  layout->addWidget(buttons);
  resize(460, 400);
}

void frmSelect::Captions(int titleId) {
  const auto caption = [this](int id) { return QString::fromStdString(messages_.Caption(id)); };
  setWindowTitle(caption(titleId));
  butConnection->setText(caption(text::kConnection) + QStringLiteral(" ..."));
  txtVerbindung->setAccessibleName(caption(text::kConnection).remove(QLatin1Char('&')));
  stationsLabel_->setText(caption(text::kDevice));
  typeLabel_->setText(caption(text::kType));
  ButOK->setText(caption(text::kOk));
  butCancel->setText(caption(text::kCancel));
  butHelp->setText(caption(text::kHelp));
}

void frmSelect::ShowRows() {
  txtVerbindung->setText(OneLine(list_.Connection()));
  lstStations->clear();
  for (const Station& station : list_.Rows()) {
    auto* row = new QListWidgetItem(OneLine(station.ListLine()), lstStations);
    row->setData(kAddressRole, QString::fromStdString(station.address));
    row->setData(kNameRole, QString::fromStdString(station.name));
  }
  lstStations->setCurrentRow(static_cast<int>(list_.Preselected()));
  ButOK->setEnabled(!list_.Rows().empty());
  lstStations->setFocus();
}

void frmSelect::ShowStation(int row) {
  const bool some = row >= 0 && static_cast<std::size_t>(row) < list_.Rows().size();
  txtStation->setText(some ? OneLine(list_.Rows()[static_cast<std::size_t>(row)].KennName())
                           : QString());
  txtStation->setCursorPosition(0);
}

void frmSelect::SetWaiting(bool waiting) {
  waiting_ = waiting;
  for (QWidget* control : std::initializer_list<QWidget*>{lstStations, butConnection, butHelp}) {
    control->setEnabled(!waiting);
  }
  ButOK->setEnabled(!waiting && !list_.Rows().empty());
}

void frmSelect::ChangeConnection() {
  if (waiting_) return;
  SetWaiting(true);
  const int code = list_.ConnectionChange();
  SetWaiting(false);
  if (code == StationList::kEnded || code == text::kNoneRestored) {
    code_ = code;
    return QDialog::reject();
  }
  if (rejected_) return QDialog::reject();
  if (code == StationList::kUnchanged) return lstStations->setFocus();
  ShowRows();
  // The list may be empty then, but another connection can be chosen.
  if (code != 0) list_.Tell(code);
}

void frmSelect::reject() {
  rejected_ = waiting_;
  if (!waiting_) QDialog::reject();
}

StationChoice frmSelect::DoDialog(QWidget* parent, const Messages& messages, StationList& list,
                                  int titleId, const std::function<int()>& fill) {
  const int code = fill();
  if (!StationList::Usable(code)) return {.code = code};
  if (code != 0) list.Tell(code);
  frmSelect dialog(parent, messages, list);
  dialog.Captions(titleId);
  dialog.ShowRows();
  const bool accepted = RunModal(dialog);
  const int row = dialog.lstStations->currentRow();
  if (!accepted || row < 0) return {.code = dialog.code_};
  return {.station = list.Rows()[static_cast<std::size_t>(row)]};
}

StationChoice frmSelect::DoDialogTxtLong(QWidget* parent, const Messages& messages,
                                         StationList& list, int titleId,
                                         const std::string& preselected) {
  return DoDialog(parent, messages, list, titleId, [&] { return list.Fill(preselected); });
}

StationChoice frmSelect::DoDialogQuick(QWidget* parent, const Messages& messages, StationList& list,
                                       const std::string& preselected) {
  return DoDialogTxtLong(parent, messages, list, text::kSelectDevice, preselected);
}

}  // namespace ostrel
