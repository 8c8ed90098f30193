#include "app/frmMain.h"

#include <QApplication>
#include <QCloseEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <utility>

#include "app/placement.h"
#include "app/texts.h"
#include "device/clsDevice.h"
#include "device/frmSelect.h"
#include "link/frmConnections.h"
#include "logs/tap_statistics_page.h"
#include "pages/console_page.h"

namespace ostrel {

namespace {

constexpr int kAliveMs = 1000;
constexpr int kTickPauseMs = 20;
constexpr std::string_view kApplication = "Service";
constexpr std::string_view kWindow = "frmMain";

/// A page, the group in which it stands, and how it is made. Pages of one group stand together.
struct PageEntry {
  int groupId;
  int titleId;
  Page* (*create)(Service& service, const Page::Runner& run);
};

template <typename Which>
Page* Create(Service& service, const Page::Runner& run) {
  return new Which(service, run);
}

constexpr PageEntry kPages[] = {
    {text::kTreeOperation, text::kConsole, &Create<ConsolePage>},
    {text::kTreeLogs, text::kStatistics, &Create<TapStatisticsPage>},
};

}  // namespace

frmMain::frmMain(Service& service, WindowDialogs& dialogs, Scheme scheme)
    : service_(service), dialogs_(dialogs), pages_(std::size(kPages), nullptr) {
  setObjectName(QStringLiteral("frmMain"));
  setWindowTitle(QString::fromStdString(Service::Title()));
  dialogs_.Attach(this, &service_.Texts());
  BuildMenus(scheme);
  auto* rows = new QVBoxLayout;
  lblBanner = SimulationLabel(text::kSimulatedDevices);
  lblBanner->setObjectName(QStringLiteral("lblBanner"));
  rows->addWidget(lblBanner);
  BuildHeader(*rows);
  BuildTree(*rows);
  auto* central = new QWidget;
  central->setLayout(rows);
  setCentralWidget(central);
  BuildStatusBar();
  AddPages();
  Captions();
  RefreshAfterDevChange();
  RestorePlacement();
  butDeviceSelect->setFocus();

  service_.onDeviceChange = [this] { RefreshAfterDevChange(); };
  service_.ServerLink().onTerminate = [this] { Beenden(); };
  tmrAlive = new QTimer(this);
  connect(tmrAlive, &QTimer::timeout, this, &frmMain::AliveTick);
  tmrAlive->start(kAliveMs);
}

frmMain::~frmMain() {
  service_.onDeviceChange = {};
  service_.ServerLink().onTerminate = {};
  dialogs_.Attach(nullptr, nullptr);
}

QString frmMain::Text(int id) const {
  return QString::fromStdString(service_.Texts().Caption(id));
}

void frmMain::DeviceSelect() {
  Run([this] {
    service_.DeviceSelect([this](const std::vector<Station>& stations, const std::string& before) {
      statusBar()->clearMessage();  // it is the user who is awaited now
      ShowConnection();
      return frmSelect::DoDialog(this, service_.Texts(), service_.ServerLink().ConnectionName(),
                                 stations, before);
    });
  });
}

void frmMain::ShowConnections() {
  // As a command, since no other may use the channel that the dialog closes.
  Run([this] {
    statusBar()->clearMessage();
    frmConnections::DoDialog(this, service_);
  });
}

void frmMain::Run(const std::function<void()>& operation) {
  if (running_ || ending_) return;
  if (ticking_) {
    // What the timer sends is soon answered; a click meanwhile is not lost.
    QTimer::singleShot(kTickPauseMs, this, [this, operation] { Run(operation); });
    return;
  }
  running_ = true;
  const QPointer<QWidget> focus = QApplication::focusWidget();
  EnableCommands();
  statusBar()->showMessage(Text(text::kReading));
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
  for (QAction* action : {mnuDeviceSelect, mnuRead, mnuReopen, mnuConnections}) {
    action->setEnabled(!running_);
  }
  butDeviceSelect->setEnabled(!running_);
  for (Page* page : pages_) {
    if (page != nullptr) page->EnableCommands(!running_);
  }
}

void frmMain::RefreshAfterDevChange() {
  CurrentDevShow();
  for (Page* page : pages_) {
    if (page != nullptr) page->Refresh();
  }
  EnableCommands();
  ShowConnection();
}

void frmMain::CurrentDevShow() {
  const Selection& selected = service_.Selected();
  edtKennName->setText(QString::fromStdString(selected.KennName()));
  edtTyp->setText(QString::fromStdString(selected.Typ()));
  for (QLineEdit* edit : {edtKennName, edtTyp}) edit->setCursorPosition(0);
  if (!selected.GetKenn()) return lblModel->clear();
  const auto part = [this](int id, const std::string& value) {
    return Text(id) + QLatin1Char(' ') + QString::fromStdString(value.empty() ? "–" : value);
  };
  const QStringList parts = {part(text::kModel, ModelName(selected.GetTypeCode())),
                             part(text::kFirmware, service_.Device().Firmware()),
                             part(text::kSerialNumber, selected.Serial())};
  lblModel->setText(parts.join(QStringLiteral("  ·  ")));
}

void frmMain::ShowConnection() {
  if (ending_) return;
  const bool simulated = service_.Simulated();
  const std::string name = service_.ServerLink().ConnectionName();
  shownState_ = service_.ServerLink().ConnState();
  lblBanner->setVisible(simulated);
  lblSimulation->setVisible(simulated);
  lblConnection->setText(
      name.empty() ? Text(text::kNotConnected)
                   : QString::fromStdString(service_.Texts().Filled(text::kConnectedTo, name)));
}

void frmMain::AddPages() {
  QTreeWidgetItem* group = nullptr;
  int groupId = 0;
  for (int index = 0; index < static_cast<int>(std::size(kPages)); ++index) {
    const PageEntry& entry = kPages[index];
    if (entry.groupId != groupId) {
      group = new QTreeWidgetItem(tvwPages);
      group->setFlags(Qt::ItemIsEnabled);
      group->setExpanded(true);
      groupId = entry.groupId;
      OnLanguage(groupId, [group](const QString& text) { group->setText(0, text); });
    }
    auto* item = new QTreeWidgetItem(group);
    item->setData(0, Qt::UserRole, index);
    OnLanguage(entry.titleId, [item](const QString& text) { item->setText(0, text); });
    if (index == 0) tvwPages->setCurrentItem(item);
  }
  connect(tvwPages, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) {
    const QVariant index = item != nullptr ? item->data(0, Qt::UserRole) : QVariant();
    if (index.isValid()) ShowPage(index.toInt());
  });
  ShowPage(0);
}

void frmMain::ShowPage(int index) {
  Page*& page = pages_[static_cast<std::size_t>(index)];
  if (page == nullptr) {
    page = kPages[index].create(service_, [this](const auto& operation) { Run(operation); });
    page->onStatus = [this](const QString& text) { statusBar()->showMessage(text); };
    page->Captions();
    page->EnableCommands(!running_);
    stack_->addWidget(page);
  }
  stack_->setCurrentWidget(page);
}

void frmMain::ReadPage() {
  for (Page* page : pages_) {
    if (page != nullptr && page == stack_->currentWidget()) return page->Read();
  }
}

void frmMain::ReopenConnection() {
  Run([this] { service_.ConnectionReselect(); });
}

void frmMain::Captions() {
  for (const Caption& caption : captions_) caption.set(Text(caption.id));
  for (Page* page : pages_) {
    if (page != nullptr) page->Captions();
  }
  CurrentDevShow();
  ShowConnection();
}

void frmMain::ChangeLanguage(const std::string& code) {
  service_.Languages().SetLanguage(code);
  service_.Languages().SaveLanguage();
  Captions();
}

void frmMain::AliveTick() {
  // Nothing may run into a call to the server that is still waiting; a dialog is no such call.
  if (ticking_ || (running_ && QApplication::activeModalWidget() == nullptr)) return;
  ticking_ = true;
  service_.AliveTick(tmrAlive->interval());
  ticking_ = false;
  if (!running_ && shownState_ != service_.ServerLink().ConnState()) ShowConnection();
}

void frmMain::RestorePlacement() {
  resize(960, 640);
  const auto stored = LoadPlacement(service_.Settings(), kApplication, kWindow);
  if (!stored) return;
  const QRect place(stored->left, stored->top, stored->width, stored->height);
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect visible = screen->availableGeometry().intersected(place);
    if (visible.width() < 100 || visible.height() < 100) continue;
    move(place.topLeft());
    resize(place.size().boundedTo(screen->availableSize()));
    return;
  }
}

void frmMain::Beenden() {
  if (std::exchange(ending_, true)) return;
  tmrAlive->stop();
  const QRect place = isMaximized() ? normalGeometry() : QRect(pos(), size());
  SavePlacement(service_.Settings(), kApplication, kWindow,
                {place.left(), place.top(), place.width(), place.height()}, isMinimized());
  hide();
  dialogs_.Silence();
  service_.ServerLink().GiveUp();
  QCoreApplication::exit(0);
}

void frmMain::closeEvent(QCloseEvent* event) {
  for (Page* page : pages_) {
    if (!ending_ && page != nullptr && !page->MayClose()) return event->ignore();
  }
  Beenden();
  event->accept();
}

void frmMain::paintEvent(QPaintEvent* event) {
  QMainWindow::paintEvent(event);
  if (firstAddress_.empty()) return;
  QTimer::singleShot(0, this, [this, address = std::exchange(firstAddress_, {})] {
    Run([this, address] { service_.DeviceSelectByAddress(address); });
  });
}

}  // namespace ostrel
