// What the main window consists of, and its captions.

#include <QActionGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "app/frmMain.h"
#include "base/texts.h"
#include "widgets/named.h"

namespace ostrel {

namespace {

constexpr QColor kAmber(0xff, 0xb3, 0x00);
constexpr QColor kRed(0xb7, 0x1c, 0x1c);

QLineEdit* ShowingEdit(const char* name, int width) {
  auto* edit = Named(new QLineEdit, name);
  edit->setReadOnly(true);
  edit->setFixedWidth(width);
  return edit;
}

}  // namespace

void frmMain::OnLanguage(int id, std::function<void(const QString&)> set) {
  captions_.push_back({id, std::move(set)});
}

QLabel* frmMain::Banner(int id, const QColor& back, const QColor& front) {
  auto* label = new QLabel;
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignCenter);
  label->setMargin(4);
  // The same in every scheme: it must not be overlooked.
  QPalette colours = label->palette();
  colours.setColor(QPalette::Window, back);
  colours.setColor(QPalette::WindowText, front);
  label->setPalette(colours);
  label->setAutoFillBackground(true);
  QFont bold = label->font();
  bold.setBold(true);
  label->setFont(bold);
  label->hide();
  OnLanguage(id, [label](const QString& text) { label->setText(text); });
  return label;
}

void frmMain::BuildHeader(QVBoxLayout& rows) {
  lblBanner = Banner(text::kSimulatedDevices, kAmber, Qt::black);
  lblBanner->setObjectName(QStringLiteral("lblBanner"));
  lblOtherDevice = Banner(text::kOtherDeviceMark, kRed, Qt::white);
  lblOtherDevice->setObjectName(QStringLiteral("lblOtherDevice"));
  for (QLabel* banner : {lblBanner, lblOtherDevice}) rows.addWidget(banner);
  edtKennName = ShowingEdit("edtKennName", 190);
  edtTyp = ShowingEdit("edtTyp", 90);
  lblModel = Named(new QLabel, "lblModel");
  lblModel->setTextFormat(Qt::PlainText);
  // A long text of a device is cut, not a reason for a wider window.
  lblModel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  butDeviceSelect = Named(new QPushButton, "butDeviceSelect");
  connect(butDeviceSelect, &QPushButton::clicked, this, &frmMain::DeviceSelect);
  OnLanguage(text::kSelectDeviceButton,
             [this](const QString& text) { butDeviceSelect->setText(text); });

  auto* header = new QHBoxLayout;
  const auto addCaptioned = [&](int id, QLineEdit* edit) {
    auto* label = new QLabel;
    header->addWidget(label);
    header->addWidget(edit);
    header->addSpacing(8);
    // The letter that the caption underlines elsewhere belongs to the button here.
    OnLanguage(id, [label](QString text) { label->setText(text.remove(QLatin1Char('&')) + ':'); });
  };
  addCaptioned(text::kDevice, edtKennName);
  addCaptioned(text::kType, edtTyp);
  header->addWidget(lblModel, 1);
  header->addWidget(butDeviceSelect);
  rows.addLayout(header);
}

void frmMain::BuildTree(QVBoxLayout& rows) {
  tvwPages = Named(new QTreeWidget, "tvwPages");
  tvwPages->setHeaderHidden(true);
  tvwPages->setMinimumWidth(120);
  stack_ = new QStackedWidget;
  lblNoPage = Named(new QLabel, "lblNoPage");
  lblNoPage->setTextFormat(Qt::PlainText);
  lblNoPage->setAlignment(Qt::AlignCenter);
  lblNoPage->setWordWrap(true);
  stack_->addWidget(lblNoPage);
  auto* splitter = new QSplitter;
  splitter->addWidget(tvwPages);
  splitter->addWidget(stack_);
  splitter->setStretchFactor(1, 1);
  splitter->setSizes({240, 710});
  splitter->setChildrenCollapsible(false);
  rows.addWidget(splitter, 1);
}

QMenu* frmMain::AddMenu(int id) {
  QMenu* menu = menuBar()->addMenu(QString());
  OnLanguage(id, [menu](const QString& text) { menu->setTitle(text); });
  return menu;
}

QAction* frmMain::AddCommand(QMenu& menu, int id, const QKeySequence& keys,
                             void (frmMain::*command)()) {
  QAction* action = menu.addAction(QString());
  action->setShortcut(keys);
  connect(action, &QAction::triggered, this, command);
  OnLanguage(id, [action](const QString& text) { action->setText(text); });
  return action;
}

void frmMain::BuildMenus(Scheme scheme) {
  QMenu* program = AddMenu(text::kMenuProgram);
  mnuDeviceSelect =
      AddCommand(*program, text::kSelectDeviceButton, QKeySequence::Open, &frmMain::DeviceSelect);
  mnuRead = AddCommand(*program, text::kReadPage, Qt::Key_F5, &frmMain::ReadPage);
  mnuReopen = AddCommand(*program, text::kReopenConnection, {}, &frmMain::ReopenConnection);
  mnuReopen->setObjectName(QStringLiteral("mnuReopen"));
  program->addSeparator();
  mnuConnections = AddCommand(*program, text::kMenuConnections, {}, &frmMain::ShowConnections);
  program->addSeparator();
  AddLogSwitch(*program);
  program->addSeparator();
  AddCommand(*program, text::kMenuQuit, QKeySequence(Qt::CTRL | Qt::Key_Q), &frmMain::Quit);
  QMenu* view = AddMenu(text::kMenuView);
  AddSchemes(*view, scheme);
  view->addSeparator();
  AddLanguages(*view);
}

void frmMain::AddLogSwitch(QMenu& menu) {
  QAction* action = menu.addAction(QString());
  action->setObjectName(QStringLiteral("mnuServiceLog"));
  action->setCheckable(true);
  action->setChecked(service_.Log().Active());
  connect(action, &QAction::triggered, this, [this](bool on) { service_.SwitchLog(on); });
  OnLanguage(text::kServiceLog, [action](const QString& text) { action->setText(text); });
}

void frmMain::AddSchemes(QMenu& menu, Scheme current) {
  auto* group = new QActionGroup(this);
  for (const auto& [scheme, id] : {std::pair{Scheme::kSystem, text::kSchemeSystem},
                                   std::pair{Scheme::kLight, text::kSchemeLight},
                                   std::pair{Scheme::kDark, text::kSchemeDark}}) {
    QAction* action = group->addAction(menu.addAction(QString()));
    action->setCheckable(true);
    action->setChecked(scheme == current);
    OnLanguage(id, [action](const QString& text) { action->setText(text); });
    connect(action, &QAction::triggered, this, [this, chosen = scheme] {
      ApplyScheme(chosen);
      service_.Settings().WriteProgram("Ostrel", "Misc", "Scheme", SchemeName(chosen));
    });
  }
}

void frmMain::AddLanguages(QMenu& menu) {
  auto* group = new QActionGroup(this);
  // Each in its own language, so that it is found from every other.
  for (const auto& [code, name] : {std::pair{"deu", "D&eutsch"}, std::pair{"eng", "E&nglish"},
                                   std::pair{"fra", "&Français"}}) {
    QAction* action = group->addAction(menu.addAction(QString::fromUtf8(name)));
    action->setCheckable(true);
    action->setObjectName(QStringLiteral("mnuLanguage_") + QLatin1String(code));
    action->setChecked(service_.Languages().Current() == code);
    connect(action, &QAction::triggered, this, [this, chosen = code] { ChangeLanguage(chosen); });
  }
}

void frmMain::BuildStatusBar() {
  lblSimulation = Banner(text::kSimulationMark, kAmber, Qt::black);
  lblSimulation->setMargin(1);
  lblConnection = Named(new QLabel, "lblConnection");
  lblConnection->setTextFormat(Qt::PlainText);
  statusBar()->addPermanentWidget(lblSimulation);
  statusBar()->addPermanentWidget(lblConnection);
}

}  // namespace ostrel
