#include "device/frmSelect.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <initializer_list>

#include "app/texts.h"
#include "platform/named.h"
#include "platform/window_dialogs.h"

namespace ostrel {

namespace {

/// Text of a device on one line: what would break the line or the columns is made visible.
QString OneLine(const std::string& line) {
  QString shown = QString::fromStdString(line);
  for (QChar& character : shown) {
    if (character.category() == QChar::Other_Control) character = QChar::ReplacementCharacter;
  }
  return shown;
}

}  // namespace

frmSelect::frmSelect(QWidget* parent)
    : QDialog(parent),
      connectionLabel_(new QLabel),
      txtVerbindung(Named(new QLineEdit, "txtVerbindung")),
      stationsLabel_(new QLabel),
      lstStations(Named(new QListWidget, "lstStations")),
      txtStation(Named(new QLineEdit, "txtStation")),
      ButOK(Named(new QPushButton, "ButOK")),
      butCancel(Named(new QPushButton, "butCancel")) {
  setObjectName(QStringLiteral("frmSelect"));
  Arrange();
  connect(ButOK, &QPushButton::clicked, this, &QDialog::accept);
  connect(butCancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(lstStations, &QListWidget::itemDoubleClicked, this, &QDialog::accept);
}

void frmSelect::Arrange() {
  connectionLabel_->setBuddy(txtVerbindung);
  stationsLabel_->setBuddy(lstStations);
  for (QLineEdit* edit : {txtVerbindung, txtStation}) edit->setReadOnly(true);
  lstStations->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  ButOK->setDefault(true);

  auto* buttons = new QDialogButtonBox;
  buttons->addButton(ButOK, QDialogButtonBox::AcceptRole);
  buttons->addButton(butCancel, QDialogButtonBox::RejectRole);
  auto* layout = new QVBoxLayout(this);
  for (QWidget* row : std::initializer_list<QWidget*>{
           connectionLabel_, txtVerbindung, stationsLabel_, lstStations, txtStation, buttons}) {
    layout->addWidget(row);
  }
  resize(460, 400);
}

void frmSelect::Captions(const Messages& messages) {
  const auto caption = [&](int id) { return QString::fromStdString(messages.Caption(id)); };
  setWindowTitle(caption(text::kSelectDevice));
  connectionLabel_->setText(caption(text::kConnection));
  stationsLabel_->setText(caption(text::kDevice));
  ButOK->setText(caption(text::kOk));
  butCancel->setText(caption(text::kCancel));
}

void frmSelect::Fill(const std::vector<Station>& stations, const std::string& preselected) {
  const auto rowOf = [&](auto&& wanted) {
    const auto found = std::find_if(stations.begin(), stations.end(), wanted);
    return found == stations.end() ? -1 : static_cast<int>(found - stations.begin());
  };
  connect(lstStations, &QListWidget::currentRowChanged, this, [this, &stations](int row) {
    txtStation->setText(row < 0 ? QString()
                                : OneLine(stations[static_cast<std::size_t>(row)].KennName()));
    txtStation->setCursorPosition(0);
  });
  for (const Station& station : stations) lstStations->addItem(OneLine(station.ListLine()));
  int row = rowOf([&](const Station& station) { return station.address == preselected; });
  if (row < 0) row = rowOf([](const Station& station) { return station.current; });
  lstStations->setCurrentRow(std::max(row, 0));
  ButOK->setEnabled(!stations.empty());
  lstStations->setFocus();
}

std::optional<Station> frmSelect::DoDialog(QWidget* parent, const Messages& messages,
                                           const std::string& connection,
                                           const std::vector<Station>& stations,
                                           const std::string& preselected) {
  frmSelect dialog(parent);
  dialog.Captions(messages);
  dialog.txtVerbindung->setText(OneLine(connection));
  dialog.Fill(stations, preselected);
  if (!RunModal(dialog)) return std::nullopt;
  return stations[static_cast<std::size_t>(dialog.lstStations->currentRow())];
}

}  // namespace ostrel
