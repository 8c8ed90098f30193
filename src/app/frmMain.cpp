#include "app/frmMain.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>
#include <utility>

#include "app/frmConnections.h"
#include "app/frmPages.h"
#include "app/frmSelect.h"
#include "base/program_title.h"
#include "base/texts.h"
#include "config/users/frmRechteShow.h"
#include "widgets/plain_tip.h"

namespace ostrel {

namespace {

constexpr int kAliveMs = 1000;
constexpr int kTickPauseMs = 20;

}  // namespace

frmMain::frmMain(Program& program, WindowDialogs& dialogs, Scheme scheme)
    : program_(program), desk_(program.MakeDesk()), dialogs_(dialogs), captions_(desk_.texts) {
  setObjectName(QStringLiteral("frmMain"));
  setWindowTitle(QString::fromUtf8(kProgramTitle));
  dialogs_.Attach(this, &desk_.texts);
  BuildMenus(scheme);
  auto* central = new QWidget;
  auto* rows = new QVBoxLayout(central);
  BuildHeader(*rows);
  pages_ =
      new frmPages({.desk = desk_,
                    .run = [this](const auto& operation) { Run(operation); },
                    .status = [this](const QString& text) { statusBar()->showMessage(text); }});
  rows->addWidget(pages_, 1);
  setCentralWidget(central);
  BuildStatusBar();
  captions_.Add([this] { CurrentDevShow(); });
  RefreshAfterDevChange();
  RestorePlacement();
  butDeviceSelect->setFocus();

  desk_.session.onDeviceShow = [this] { CurrentDevShow(); };
  desk_.session.onDeviceChange = [this] { RefreshAfterDevChange(); };
  desk_.session.onTerminate = [this] { BeendenQuietly(); };
  tmrAlive = new QTimer(this);
  connect(tmrAlive, &QTimer::timeout, this, [this] { AliveTick(tmrAlive->interval()); });
  tmrAlive->start(kAliveMs);
}

frmMain::~frmMain() {
  desk_.session.onDeviceShow = {};
  desk_.session.onDeviceChange = {};
  desk_.session.onTerminate = {};
  dialogs_.Attach(nullptr, nullptr);
}

void frmMain::DeviceSelect() {
  Run([this] {
    const auto choose = [this](StationList& list, const std::string& before) {
      ShowConnection();
      return frmSelect::DoDialogQuick(this, desk_.texts, list, before);
    };
    const auto showRights = [this](int level) {
      return frmRechteShow::DoDialog(dialogs_.Parent(), desk_, level);
    };
    desk_.session.DeviceSelect(choose, showRights);
  });
}

void frmMain::ShowConnections() {
  // As a command, since no other may use the channel that the dialog closes.
  Run([this] { frmConnections::DoDialog(this, desk_, program_.Tester()); });
}

void frmMain::Run(const std::function<void()>& operation) {
  if (running_ || ending_) return;
  if (ticking_) {
    // What the timer sends is soon answered; a click meanwhile is not lost.
    QTimer::singleShot(kTickPauseMs, this, [this, operation] { Run(operation); });
    return;
  }
  running_ = true;
  sessionEnds_ = false;  // the user goes on working
  const QPointer<QWidget> focus = QApplication::focusWidget();
  EnableCommands();
  statusBar()->showMessage(captions_.Text(text::kReading));
  {
    const BusyPointer busy(dialogs_);
    operation();
  }
  running_ = false;
  statusBar()->clearMessage();
  EnableCommands();
  if (focus && focus->isEnabled()) focus->setFocus();
  ShowConnection();
}

void frmMain::EnableCommands() {
  for (QAction* action : commands_) action->setEnabled(!running_);
  butDeviceSelect->setEnabled(!running_);
  pages_->EnableCommands(!running_);
}

void frmMain::RefreshAfterDevChange() {
  pages_->DeviceChanged();
  EnableCommands();
  ShowConnection();
}

void frmMain::CurrentDevShow() {
  const Selection& selected = desk_.session.Selected();
  edtKennName->setText(QString::fromStdString(selected.KennName()));
  edtTyp->setText(QString::fromStdString(selected.Typ()));
  for (QLineEdit* edit : {edtKennName, edtTyp}) edit->setCursorPosition(0);
  if (!selected.GetKenn()) {
    lblModel->setToolTip({});
    return lblModel->clear();
  }
  const auto part = [this](int id, const std::string& value) {
    return captions_.Text(id) + QLatin1Char(' ') +
           QString::fromStdString(value.empty() ? "–" : value);
  };
  const QStringList parts = {part(text::kModel, ModelName(selected.GetTypeCode())),
                             part(text::kFirmware, desk_.session.Device().Firmware()),
                             part(text::kSerialNumber, selected.Serial())};
  lblModel->setText(parts.join(QStringLiteral("  ·  ")));
  // Whole where the window is narrow; what a device says is no markup.
  lblModel->setToolTip(PlainTip(lblModel->text()));
}

bool frmMain::event(QEvent* event) {
  // While a dialog is open it is the user who is awaited, not the device.
  const QString reading = captions_.Text(text::kReading);
  if (event->type() == QEvent::WindowBlocked && running_) {
    if (statusBar()->currentMessage() == reading) statusBar()->clearMessage();
  } else if (event->type() == QEvent::WindowUnblocked && running_) {
    if (statusBar()->currentMessage().isEmpty()) statusBar()->showMessage(reading);
  }
  return QMainWindow::event(event);
}

void frmMain::ShowConnection() {
  if (ending_) return;
  const bool simulated = desk_.session.Simulated();
  const std::string name = desk_.session.ConnectionName();
  shownState_ = desk_.session.ConnState();
  shownLost_ = desk_.session.Lost();
  lblOtherDevice->setVisible(desk_.session.WritingLocked());
  lblBanner->setVisible(simulated);
  lblSimulation->setVisible(simulated);
  if (shownLost_) {
    lblConnection->setText(captions_.Text(text::kConnectionLost));
  } else if (name.empty()) {
    lblConnection->setText(captions_.Text(text::kNotConnected));
  } else {
    lblConnection->setText(captions_.Filled(text::kConnectedTo, name));
  }
}

void frmMain::ChangeLanguage(const std::string& code) {
  program_.Languages().SetLanguage(code);
  program_.Languages().SaveLanguage();
  captions_.SetAll();
  pages_->SetCaptions();
  ShowConnection();
}

bool frmMain::Idle() const {
  return !running_ && QApplication::activeModalWidget() == nullptr &&
         QApplication::activePopupWidget() == nullptr;
}

void frmMain::AliveTick(int intervalMs) {
  // The link itself lets nothing run into a call of the server that is still waiting.
  if (ticking_ || ending_) return;
  ticking_ = true;
  desk_.session.AliveTick(intervalMs, Idle());
  ticking_ = false;
  const Session& session = desk_.session;
  const bool changed = shownState_ != session.ConnState() || shownLost_ != session.Lost();
  if (!running_ && changed) ShowConnection();
  pages_->Tick(intervalMs, Idle() && !session.Lost());
}

void frmMain::paintEvent(QPaintEvent* event) {
  QMainWindow::paintEvent(event);
  if (firstAddress_.empty()) return;
  QTimer::singleShot(0, this, [this, address = std::exchange(firstAddress_, {})] {
    Run([this, address] { desk_.session.DeviceSelectByAddress(address); });
  });
}

}  // namespace ostrel
