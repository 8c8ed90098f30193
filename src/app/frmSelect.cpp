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
      captions_(messages),
      txtVerbindung(Named(new QLineEdit, "txtVerbindung")),
      butConnection(Named(new QPushButton, "butConnection")),
      lstStations(Named(new StationBox, "lstStations")),
      txtStation(Named(new QLineEdit, "txtStation")),
      ButOK(captions_.Button("ButOK", text::kOk, [this] { accept(); })),
      butHelp(captions_.Button("butHelp", text::kHelp,
                               [this] { messages_.Show(text::kHelpStations); })) {
  setObjectName(QStringLiteral("frmSelect"));
  Arrange();
  connect(butConnection, &QPushButton::clicked, this, &frmSelect::ChangeConnection);
  connect(lstStations, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
  connect(lstStations, &QListWidget::currentRowChanged, this, &frmSelect::ShowStation);
}

void frmSelect::Arrange() {
  butConnection->setText(captions_.Text(text::kConnection) + QStringLiteral(" ..."));
  txtVerbindung->setAccessibleName(captions_.Plain(text::kConnection));
  for (QLineEdit* edit : {txtVerbindung, txtStation}) edit->setReadOnly(true);
  lstStations->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  ButOK->setDefault(true);
  for (QPushButton* button : {butConnection, butHelp}) button->setAutoDefault(false);

  auto* connection = new QHBoxLayout;
  connection->addWidget(txtVerbindung);
  connection->addWidget(butConnection);
  auto* headings = new QHBoxLayout;
  // Above the columns of the list.
  const QFontMetrics list(lstStations->font());
  QLabel* stations = captions_.Label(text::kDevice, lstStations);
  stations->setMinimumWidth(list.horizontalAdvance(QString(12, QLatin1Char('0'))));
  headings->addWidget(stations);
  headings->addWidget(captions_.On(new QLabel, text::kType), 1);
  auto* buttons = new QDialogButtonBox;
  buttons->addButton(ButOK, QDialogButtonBox::AcceptRole);
  buttons->addButton(captions_.Button("butCancel", text::kCancel, [this] { reject(); }),
                     QDialogButtonBox::RejectRole);
  buttons->addButton(butHelp, QDialogButtonBox::HelpRole);

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(connection);
  layout->addLayout(headings);
  layout->addWidget(lstStations);
  layout->addWidget(txtStation);
  layout->addWidget(buttons);
  resize(460, 400);
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
  const std::optional<Error> error = list_.ConnectionChange();
  SetWaiting(false);
  if (error && (error->told || error->code == text::kNoneRestored)) {
    error_ = *error;
    return QDialog::reject();
  }
  if (rejected_) return QDialog::reject();
  if (!error) return lstStations->setFocus();
  ShowRows();
  // The list may be empty then, but another connection can be chosen.
  list_.Tell(*error);
}

void frmSelect::reject() {
  rejected_ = waiting_;
  if (!waiting_) QDialog::reject();
}

StationChoice frmSelect::DoDialog(QWidget* parent, const Messages& messages, StationList& list,
                                  int titleId, const std::function<Error()>& fill) {
  const Error error = fill();
  if (!StationList::Usable(error)) return {.error = error};
  list.Tell(error);
  frmSelect dialog(parent, messages, list);
  dialog.setWindowTitle(dialog.captions_.Text(titleId));
  dialog.ShowRows();
  const bool accepted = RunModal(dialog);
  const int row = dialog.lstStations->currentRow();
  if (!accepted || row < 0) return {.error = dialog.error_};
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
