#include "pages/console/frmDevices.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/text.h"
#include "base/texts.h"
#include "widgets/captions.h"
#include "widgets/window_dialogs.h"

namespace ostrel {

namespace {

std::vector<int> Ticked(const QListWidget& list) {
  std::vector<int> rows;
  for (int row = 0; row < list.count(); ++row) {
    if (list.item(row)->checkState() == Qt::Checked) rows.push_back(row);
  }
  return rows;
}

}  // namespace

std::vector<std::string> ChooseDevices(QWidget* parent, const Messages& messages,
                                       const std::string& title,
                                       const std::vector<std::string>& stations) {
  QDialog dialog(parent);
  dialog.setObjectName(QStringLiteral("frmDevices"));
  dialog.setWindowTitle(QString::fromStdString(title));
  auto* list = Named(new QListWidget, "lstDevices");
  list->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  for (const std::string& station : stations) {
    auto* item = new QListWidgetItem(QString::fromStdString(VisibleLine(station)), list);
    item->setCheckState(Qt::Unchecked);
  }
  auto* buttons = new QDialogButtonBox;
  Captions captions(messages);
  auto* ok = captions.On(Named(new QPushButton, "ButOK"), text::kOk);
  buttons->addButton(ok, QDialogButtonBox::AcceptRole);
  buttons->addButton(captions.Text(text::kCancel), QDialogButtonBox::RejectRole);
  ok->setDefault(true);
  ok->setEnabled(false);
  auto* layout = new QVBoxLayout(&dialog);
  layout->addWidget(list);
  layout->addWidget(buttons);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  QObject::connect(list, &QListWidget::itemChanged, ok,
                   [=] { ok->setEnabled(!Ticked(*list).empty()); });
  list->setCurrentRow(0);
  dialog.resize(460, 360);
  std::vector<std::string> chosen;
  if (!RunModal(dialog)) return chosen;
  for (const int row : Ticked(*list)) chosen.push_back(stations[static_cast<std::size_t>(row)]);
  return chosen;
}

}  // namespace ostrel
