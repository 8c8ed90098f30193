// What the main window consists of.

#include <QActionGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QStatusBar>
#include <QVBoxLayout>
#include <utility>

#include "app/frmMain.h"
#include "app/frmPages.h"
#include "base/texts.h"

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

QLabel* frmMain::Banner(const char* name, int id, const QColor& back, const QColor& front) {
  auto* label = captions_.On(Named(new QLabel, name), id);
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
  return label;
}

void frmMain::BuildHeader(QVBoxLayout& rows) {
  lblBanner = Banner("lblBanner", text::kSimulatedDevices, kAmber, Qt::black);
  lblOtherDevice = Banner("lblOtherDevice", text::kOtherDeviceMark, kRed, Qt::white);
  for (QLabel* banner : {lblBanner, lblOtherDevice}) rows.addWidget(banner);
  edtKennName = ShowingEdit("edtKennName", 190);
  edtTyp = ShowingEdit("edtTyp", 90);
  lblModel = Named(new QLabel, "lblModel");
  lblModel->setTextFormat(Qt::PlainText);
  // A long text of a device is cut, not a reason for a wider window.
  lblModel->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  butDeviceSelect =
      captions_.Button("butDeviceSelect", text::kSelectDeviceButton, [this] { DeviceSelect(); });

  auto* header = new QHBoxLayout;
  const auto addCaptioned = [&](int id, QLineEdit* edit) {
    auto* label = new QLabel;
    header->addWidget(label);
    header->addWidget(edit);
    header->addSpacing(8);
    // The letter that the caption underlines elsewhere belongs to the button here.
    captions_.Add([=, this] { label->setText(captions_.Plain(id) + ':'); });
  };
  addCaptioned(text::kDevice, edtKennName);
  addCaptioned(text::kType, edtTyp);
  header->addWidget(lblModel, 1);
  header->addWidget(butDeviceSelect);
  rows.addLayout(header);
}

QMenu* frmMain::AddMenu(int id) {
  QMenu* menu = menuBar()->addMenu(QString());
  captions_.Add([=, this] { menu->setTitle(captions_.Text(id)); });
  return menu;
}

void frmMain::AddCommand(QMenu& menu, const char* name, int id, const QKeySequence& keys,
                         std::function<void()> command) {
  QAction* action = captions_.On(Named(menu.addAction(QString()), name), id);
  action->setShortcut(keys);
  connect(action, &QAction::triggered, this, std::move(command));
  commands_.append(action);
}

void frmMain::BuildMenus(Scheme scheme) {
  QMenu* program = AddMenu(text::kMenuProgram);
  AddCommand(*program, "mnuDeviceSelect", text::kSelectDeviceButton, QKeySequence::Open,
             [this] { DeviceSelect(); });
  AddCommand(*program, "mnuRead", text::kReadPage, Qt::Key_F5, [this] { pages_->Read(); });
  AddCommand(*program, "mnuReopen", text::kReopenConnection, {},
             [this] { Run([this] { desk_.session.ConnectionReselect(); }); });
  program->addSeparator();
  AddCommand(*program, "mnuConnections", text::kMenuConnections, {}, [this] { ShowConnections(); });
  program->addSeparator();
  QAction* log =
      captions_.On(Named(program->addAction(QString()), "mnuServiceLog"), text::kServiceLog);
  log->setCheckable(true);
  log->setChecked(program_.Log().Active());
  connect(log, &QAction::triggered, this,
          [this](bool on) { program_.Log().Switch(desk_.settings, on); });
  program->addSeparator();
  QAction* quit = captions_.On(program->addAction(QString()), text::kMenuQuit);
  quit->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q));
  connect(quit, &QAction::triggered, this, [this] { close(); });
  QMenu* view = AddMenu(text::kMenuView);
  AddSchemes(*view, scheme);
  view->addSeparator();
  AddLanguages(*view);
}

void frmMain::AddSchemes(QMenu& menu, Scheme current) {
  auto* group = new QActionGroup(this);
  for (const auto& [scheme, id] : {std::pair{Scheme::kSystem, text::kSchemeSystem},
                                   std::pair{Scheme::kLight, text::kSchemeLight},
                                   std::pair{Scheme::kDark, text::kSchemeDark}}) {
    QAction* action = captions_.On(group->addAction(menu.addAction(QString())), id);
    action->setCheckable(true);
    action->setChecked(scheme == current);
    connect(action, &QAction::triggered, this, [this, chosen = scheme] {
      ApplyScheme(chosen);
      desk_.settings.WriteProgram("Ostrel", "Misc", "Scheme", SchemeName(chosen));
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
    action->setChecked(program_.Languages().Current() == code);
    connect(action, &QAction::triggered, this, [this, chosen = code] { ChangeLanguage(chosen); });
  }
}

void frmMain::BuildStatusBar() {
  lblSimulation = Banner("lblSimulation", text::kSimulationMark, kAmber, Qt::black);
  lblSimulation->setMargin(1);
  lblConnection = Named(new QLabel, "lblConnection");
  lblConnection->setTextFormat(Qt::PlainText);
  statusBar()->addPermanentWidget(lblSimulation);
  statusBar()->addPermanentWidget(lblConnection);
}

}  // namespace ostrel
