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
#include "widgets/window_dialogs.h"

namespace ostrel {

namespace {

constexpr int kGap = 12;  // between the columns, in pixels

}  // namespace

frmConnections::frmConnections(QWidget* parent, const Desk& desk, ConnectionTest& tester)
    : QDialog(parent),
      desk_(desk),
      tester_(tester),
      captions_(desk.texts),
      connections_(desk.settings),
      lstConnections(Named(new QTreeWidget, "lstConnections")),
      txtResult(Named(new QPlainTextEdit, "txtResult")),
      butAdd(captions_.Button("butAdd", text::kAdd, [this] { Add(); })),
      butChange(captions_.Button("butChange", text::kChange, [this] { Change(); })),
      butRemove(captions_.Button("butRemove", text::kRemove, [this] { Remove(); })),
      butTest(captions_.Button("butTest", text::kTest, [this] { Test(); })),
      butUse(captions_.Button("butUse", text::kUse, [this] { Use(); })) {
  setObjectName(QStringLiteral("frmConnections"));
  setWindowTitle(captions_.Text(text::kConnectionsTitle));
  Arrange();
  connect(lstConnections, &QTreeWidget::currentItemChanged, this, &frmConnections::EnableButtons);
  connect(lstConnections, &QTreeWidget::itemDoubleClicked, butChange, &QPushButton::click);
  auto* remove = new QShortcut(Qt::Key_Delete, lstConnections);
  remove->setContext(Qt::WidgetShortcut);
  connect(remove, &QShortcut::activated, butRemove, &QPushButton::click);
  Fill(connections_.Current());
}

void frmConnections::Arrange() {
  lstConnections->setRootIsDecorated(false);
  lstConnections->setAllColumnsShowFocus(true);
  lstConnections->setHeaderLabels({captions_.Text(text::kName), captions_.Text(text::kKind),
                                   captions_.Text(text::kTarget), captions_.Text(text::kState)});
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
  end->addWidget(captions_.Button("butClose", text::kClose, [this] { reject(); }));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(captions_.Label(text::kConnectionList, lstConnections));
  layout->addLayout(list, 1);
  layout->addWidget(captions_.Label(text::kTestResult, txtResult));
  layout->addWidget(txtResult);
  layout->addLayout(end);
  resize(760, 500);
}

void frmConnections::Fill(const std::string& selected) {
  const std::string current = connections_.Current();
  const std::string open = desk_.session.ConnectionName();
  lstConnections->clear();
  for (const Connection& connection : connections_.List()) {
    QStringList state;
    if (SameText(connection.name, current)) state.append(captions_.Text(text::kIsCurrent));
    if (SameText(connection.name, open)) state.append(captions_.Text(text::kIsOpen));
    auto* row = new QTreeWidgetItem(
        lstConnections, {QString::fromStdString(connection.name),
                         frmConnection::KindText(desk_.texts, connection.kind),
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
  const auto added = frmConnection::DoDialog(this, desk_.texts, connections_, std::nullopt);
  if (!added) return;
  connections_.Add(*added);
  // One that took the built-in one's name may be the open one.
  desk_.session.ConnectionChanged(added->name, added->name);
  Fill(added->name);
}

void frmConnections::Change() {
  const std::string name = Selected();
  const std::optional<Connection> before = connections_.Find(name);
  if (!before) return Fill({});  // another program removed it
  const auto changed = frmConnection::DoDialog(this, desk_.texts, connections_, before);
  if (!changed || !connections_.Change(name, *changed)) return;
  desk_.session.ConnectionChanged(name, changed->name);
  Fill(changed->name);
}

void frmConnections::Remove() {
  const std::string name = Selected();
  if (!desk_.dialogs.AskYesNo(desk_.texts.Filled(text::kRemoveConnection, name))) return;
  connections_.Remove(name);
  desk_.session.ConnectionChanged(name, {});
  Fill({});
}

void frmConnections::Test() {
  const std::string name = Selected();
  const QPointer<QWidget> focus = QApplication::focusWidget();
  testing_ = true;
  EnableButtons();
  txtResult->setPlainText(captions_.Filled(text::kTesting, VisibleLine(name)));
  const ConnectionTestResult result = tester_.Run(name);
  testing_ = false;
  EnableButtons();
  if (!isVisible()) return;  // closed meanwhile
  txtResult->setPlainText(QString::fromStdString(ConnectionTestText(result, desk_.texts)));
  if (focus && focus->isEnabled()) focus->setFocus();
}

void frmConnections::Use() {
  const std::string name = Selected();
  desk_.session.ConnectionUse(name);
  Fill(name);
}

void frmConnections::reject() {
  tester_.GiveUp();
  QDialog::reject();
}

void frmConnections::DoDialog(QWidget* parent, const Desk& desk, ConnectionTest& tester) {
  frmConnections dialog(parent, desk, tester);
  RunModal(dialog);
}

}  // namespace ostrel
