#include "app/frmConnections.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "app/frmConnection.h"
#include "base/text.h"
#include "base/texts.h"
#include "widgets/named.h"
#include "widgets/window_dialogs.h"

namespace ostrel {

namespace {

constexpr int kGap = 12;  // between the columns, in pixels

}  // namespace

frmConnections::frmConnections(QWidget* parent, Service& service)
    : QDialog(parent),
      service_(service),
      connections_(service.Settings()),
      lstConnections(Named(new QTreeWidget, "lstConnections")),
      txtResult(Named(new QPlainTextEdit, "txtResult")),
      butAdd(Button("butAdd", text::kAdd, &frmConnections::Add)),
      butChange(Button("butChange", text::kChange, &frmConnections::Change)),
      butRemove(Button("butRemove", text::kRemove, &frmConnections::Remove)),
      butTest(Button("butTest", text::kTest, &frmConnections::Test)),
      butUse(Button("butUse", text::kUse, &frmConnections::Use)),
      butClose(Button("butClose", text::kClose, &frmConnections::reject)) {
  setObjectName(QStringLiteral("frmConnections"));
  setWindowTitle(Text(text::kConnectionsTitle));
  Arrange();
  connect(lstConnections, &QTreeWidget::currentItemChanged, this, &frmConnections::EnableButtons);
  connect(lstConnections, &QTreeWidget::itemDoubleClicked, butChange, &QPushButton::click);
  auto* remove = new QShortcut(Qt::Key_Delete, lstConnections);
  remove->setContext(Qt::WidgetShortcut);
  connect(remove, &QShortcut::activated, butRemove, &QPushButton::click);
  Fill(connections_.Current());
}

QString frmConnections::Text(int id) const {
  return QString::fromStdString(service_.Texts().Caption(id));
}

QPushButton* frmConnections::Button(const char* name, int id, void (frmConnections::*command)()) {
  auto* button = Named(new QPushButton(Text(id)), name);
  connect(button, &QPushButton::clicked, this, command);
  return button;
}

void frmConnections::Arrange() {
  auto* listLabel = new QLabel(Text(text::kConnectionList));
  listLabel->setBuddy(lstConnections);
  lstConnections->setRootIsDecorated(false);
  lstConnections->setAllColumnsShowFocus(true);
  lstConnections->setHeaderLabels(
      {Text(text::kName), Text(text::kKind), Text(text::kTarget), Text(text::kState)});
  auto* resultLabel = new QLabel(Text(text::kTestResult));
  resultLabel->setBuddy(txtResult);
  txtResult->setReadOnly(true);
  txtResult->setTabChangesFocus(true);
  txtResult->setFixedHeight(8 * fontMetrics().lineSpacing());
  butChange->setDefault(true);  // what Enter does in the list

  auto* buttons = new QVBoxLayout;
  for (QPushButton* button : {butAdd, butChange, butRemove, butTest, butUse}) {
    buttons->addWidget(button);
  }
  buttons->addStretch();
  auto* list = new QHBoxLayout;
  list->addWidget(lstConnections, 1);
  list->addLayout(buttons);
  auto* end = new QHBoxLayout;
  end->addStretch();
  end->addWidget(butClose);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(listLabel);
  layout->addLayout(list, 1);
  layout->addWidget(resultLabel);
  layout->addWidget(txtResult);
  layout->addLayout(end);
  resize(760, 500);
}

void frmConnections::Fill(const std::string& selected) {
  const std::string current = connections_.Current();
  const std::string open = service_.ServerLink().ConnectionName();
  lstConnections->clear();
  for (const Connection& connection : connections_.List()) {
    QStringList state;
    if (SameText(connection.name, current)) state.append(Text(text::kIsCurrent));
    if (SameText(connection.name, open)) state.append(Text(text::kIsOpen));
    auto* row = new QTreeWidgetItem(
        lstConnections, {QString::fromStdString(connection.name),
                         frmConnection::KindText(service_.Texts(), connection.kind),
                         QString::fromStdString(connection.Target()), state.join(", ")});
    if (SameText(connection.name, selected)) lstConnections->setCurrentItem(row);
  }
  if (lstConnections->currentItem() == nullptr) {
    lstConnections->setCurrentItem(lstConnections->topLevelItem(0));
  }
  QHeaderView* const header = lstConnections->header();
  header->resizeSections(QHeaderView::ResizeToContents);
  for (int column = 0; column + 1 < header->count(); ++column) {
    header->resizeSection(column, header->sectionSize(column) + kGap);
  }
  lstConnections->setFocus();
  EnableButtons();
}

std::string frmConnections::Selected() const {
  const QTreeWidgetItem* item = lstConnections->currentItem();
  return item == nullptr ? std::string() : item->text(0).toStdString();
}

void frmConnections::EnableButtons() {
  const std::string name = Selected();
  const bool one = !testing_ && !name.empty();
  butAdd->setEnabled(!testing_);
  for (QPushButton* button : {butChange, butRemove}) {
    button->setEnabled(one && connections_.Stored(name));
  }
  butTest->setEnabled(one);
  butUse->setEnabled(one && !SameText(name, connections_.Current()));
}

void frmConnections::Add() {
  const auto added = frmConnection::DoDialog(this, service_.Texts(), connections_, std::nullopt);
  if (!added) return;
  connections_.Add(*added);
  // One that took the built-in one's name may be the open one.
  service_.ConnectionChanged(added->name, added->name);
  Fill(added->name);
}

void frmConnections::Change() {
  const std::string name = Selected();
  const std::optional<Connection> before = connections_.Find(name);
  if (!before) return Fill({});  // another program removed it
  const auto changed = frmConnection::DoDialog(this, service_.Texts(), connections_, before);
  if (!changed || !connections_.Change(name, *changed)) return;
  service_.ConnectionChanged(name, changed->name);
  Fill(changed->name);
}

void frmConnections::Remove() {
  const std::string name = Selected();
  if (!service_.Boxes().AskYesNo(service_.Texts().Filled(text::kRemoveConnection, name))) return;
  connections_.Remove(name);
  service_.ConnectionChanged(name, {});
  Fill({});
}

void frmConnections::Test() {
  const std::string name = Selected();
  const QPointer<QWidget> focus = QApplication::focusWidget();
  testing_ = true;
  EnableButtons();
  txtResult->setPlainText(
      QString::fromStdString(service_.Texts().Filled(text::kTesting, VisibleLine(name))));
  const ConnectionTestResult result = service_.Tester().Run(name);
  testing_ = false;
  EnableButtons();
  if (!isVisible()) return;  // closed meanwhile
  txtResult->setPlainText(QString::fromStdString(ConnectionTestText(result, service_.Texts())));
  if (focus && focus->isEnabled()) focus->setFocus();
}

void frmConnections::Use() {
  const std::string name = Selected();
  service_.ConnectionUse(name);
  Fill(name);
}

void frmConnections::reject() {
  service_.Tester().GiveUp();
  QDialog::reject();
}

void frmConnections::DoDialog(QWidget* parent, Service& service) {
  frmConnections dialog(parent, service);
  RunModal(dialog);
}

}  // namespace ostrel
