#include "app/frmChooser.h"

#include <QDialog>
#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "app/frmConnection.h"
#include "base/text.h"
#include "base/texts.h"
#include "widgets/captions.h"
#include "widgets/window_dialogs.h"

namespace ostrel {

namespace {

QTreeWidget* ConnectionList(const Messages& messages, const std::vector<Connection>& connections,
                            const std::string& preselected) {
  auto* list = Named(new QTreeWidget, "lstConnections");
  list->setRootIsDecorated(false);
  const Captions captions(messages);
  list->setHeaderLabels(
      {captions.Text(text::kName), captions.Text(text::kKind), captions.Text(text::kTarget)});
  for (const Connection& connection : connections) {
    auto* row = new QTreeWidgetItem(list, {QString::fromStdString(connection.name),
                                           frmConnection::KindText(messages, connection.kind),
                                           QString::fromStdString(connection.Target())});
    if (SameText(connection.name, preselected)) list->setCurrentItem(row);
  }
  if (list->currentItem() == nullptr) list->setCurrentItem(list->topLevelItem(0));
  list->header()->resizeSections(QHeaderView::ResizeToContents);
  return list;
}

}  // namespace

std::string ChooseConnection(QWidget* parent, const Messages& messages,
                             const std::vector<Connection>& connections,
                             const std::string& preselected, const std::string& reason) {
  QDialog dialog(parent);
  const Captions captions(messages);
  dialog.setWindowTitle(captions.Text(text::kSelectConnection));
  auto* why = new QLabel(QString::fromStdString(reason).trimmed());
  why->setTextFormat(Qt::PlainText);
  why->setWordWrap(true);
  why->setVisible(!why->text().isEmpty());
  auto* list = ConnectionList(messages, connections, preselected);
  auto* buttons = new QDialogButtonBox;
  auto* ok = buttons->addButton(captions.Text(text::kOk), QDialogButtonBox::AcceptRole);
  ok->setDefault(true);
  buttons->addButton(captions.Text(text::kCancel), QDialogButtonBox::RejectRole);

  auto* layout = new QVBoxLayout(&dialog);
  layout->addWidget(why);
  layout->addWidget(list);
  layout->addWidget(buttons);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  QObject::connect(list, &QTreeWidget::itemDoubleClicked, &dialog, &QDialog::accept);
  dialog.resize(560, 320);
  list->setFocus();
  if (!RunModal(dialog) || list->currentItem() == nullptr) return {};
  return list->currentItem()->text(0).toStdString();
}

}  // namespace ostrel
