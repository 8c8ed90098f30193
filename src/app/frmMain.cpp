#include "app/frmMain.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QStackedWidget>
#include <QStatusBar>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "app/frmConnections.h"
#include "app/frmSelect.h"
#include "base/texts.h"
#include "config/users/frmRechteShow.h"
#include "config/users/users_page.h"
#include "device/clsDevice.h"
#include "logs/tap_statistics/tap_statistics_page.h"
#include "pages/console/console_page.h"
#include "pages/console/console_texts.h"
#include "widgets/plain_tip.h"

namespace ostrel {

namespace {

constexpr int kAliveMs = 1000;
constexpr int kTickPauseMs = 20;
constexpr int kPollMs = 60000;

/// A page, the group in which it stands, and how it is made. Pages of one group stand together.
struct PageEntry {
  Feature feature;
  int groupId;
  int titleId;
  Page* (*create)(Service& service, const Page::Runner& run);
};

template <typename Which>
Page* Create(Service& service, const Page::Runner& run) {
  return new Which(service, run);
}

constexpr PageEntry kPages[] = {
    {Feature::kConsole, text::kTreeOperation, text::kConsole, &Create<ConsolePage>},
    {Feature::kTapStatistics, text::kTreeLogs, text::kStatistics, &Create<TapStatisticsPage>},
    {Feature::kUsers, text::kTreeConfiguration, text::kUserManagement, &Create<UsersPage>},
};

}  // namespace

frmMain::frmMain(Service& service, WindowDialogs& dialogs, Scheme scheme)
    : service_(service),
      dialogs_(dialogs),
      pages_(std::size(kPages), nullptr),
      pollMs_(std::size(kPages), 0) {
  setObjectName(QStringLiteral("frmMain"));
  setWindowTitle(QString::fromStdString(Service::Title()));
  dialogs_.Attach(this, &service_.Texts());
  BuildMenus(scheme);
  auto* rows = new QVBoxLayout;
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

  service_.onDeviceShow = [this] { CurrentDevShow(); };
  service_.onDeviceChange = [this] { RefreshAfterDevChange(); };
  service_.ServerLink().onTerminate = [this] { BeendenQuietly(); };
  tmrAlive = new QTimer(this);
  connect(tmrAlive, &QTimer::timeout, this, [this] { AliveTick(tmrAlive->interval()); });
  tmrAlive->start(kAliveMs);
}

frmMain::~frmMain() {
  service_.onDeviceShow = {};
  service_.onDeviceChange = {};
  service_.ServerLink().onTerminate = {};
  dialogs_.Attach(nullptr, nullptr);
}

QString frmMain::Text(int id) const {
  return QString::fromStdString(service_.Texts().Caption(id));
}

void frmMain::DeviceSelect() {
  Run([this] {
    const auto choose = [this](StationList& list, const std::string& before) {
      ShowConnection();
      return frmSelect::DoDialogQuick(this, service_.Texts(), list, before);
    };
    const auto showRights = [this](int level) {
      return frmRechteShow::DoDialog(dialogs_.Parent(), service_, level);
    };
    service_.DeviceSelect(choose, showRights);
  });
}

void frmMain::ShowConnections() {
  // As a command, since no other may use the channel that the dialog closes.
  Run([this] { frmConnections::DoDialog(this, service_); });
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
  for (std::size_t n = 0; n < pages_.size(); ++n) {
    const bool usable = service_.On(kPages[n].feature) == Availability::kUsable;
    if (pages_[n] != nullptr) pages_[n]->EnableCommands(!running_ && usable);
  }
}

void frmMain::RefreshAfterDevChange() {
  RefreshGlobal();
  std::vector<std::pair<Feature, Page*>> pages;
  for (std::size_t n = 0; n < pages_.size(); ++n) {
    if (pages_[n] != nullptr) pages.emplace_back(kPages[n].feature, pages_[n]);
  }
  std::sort(pages.begin(), pages.end());
  for (const auto& [feature, page] : pages) page->Refresh();
  EnableCommands();
  ShowConnection();
}

void frmMain::RefreshGlobal() {
  for (std::size_t n = 0; n < items_.size(); ++n) {
    items_[n]->setDisabled(service_.On(kPages[n].feature) == Availability::kAbsent);
  }
  lblNoPage->setText(QString::fromStdString(service_.Texts().Filled(
      text::kPageNotOnModel, ModelName(service_.Selected().GetTypeCode()))));
  EnableCommands();
  ShowPage(shown_);
}

void frmMain::CurrentDevShow() {
  const Selection& selected = service_.Selected();
  edtKennName->setText(QString::fromStdString(selected.KennName()));
  edtTyp->setText(QString::fromStdString(selected.Typ()));
  for (QLineEdit* edit : {edtKennName, edtTyp}) edit->setCursorPosition(0);
  if (!selected.GetKenn()) {
    lblModel->setToolTip({});
    return lblModel->clear();
  }
  const auto part = [this](int id, const std::string& value) {
    return Text(id) + QLatin1Char(' ') + QString::fromStdString(value.empty() ? "–" : value);
  };
  const QStringList parts = {part(text::kModel, ModelName(selected.GetTypeCode())),
                             part(text::kFirmware, service_.Device().Firmware()),
                             part(text::kSerialNumber, selected.Serial())};
  lblModel->setText(parts.join(QStringLiteral("  ·  ")));
  // Whole where the window is narrow; what a device says is no markup.
  lblModel->setToolTip(PlainTip(lblModel->text()));
}

bool frmMain::event(QEvent* event) {
  // While a dialog is open it is the user who is awaited, not the device.
  if (event->type() == QEvent::WindowBlocked && running_) {
    if (statusBar()->currentMessage() == Text(text::kReading)) statusBar()->clearMessage();
  } else if (event->type() == QEvent::WindowUnblocked && running_) {
    if (statusBar()->currentMessage().isEmpty()) statusBar()->showMessage(Text(text::kReading));
  }
  return QMainWindow::event(event);
}

void frmMain::ShowConnection() {
  if (ending_) return;
  const bool simulated = service_.Simulated();
  const std::string name = service_.ServerLink().ConnectionName();
  shownState_ = service_.ServerLink().ConnState();
  shownLost_ = service_.ServerLink().Lost();
  lblOtherDevice->setVisible(service_.WritingLocked());
  lblBanner->setVisible(simulated);
  lblSimulation->setVisible(simulated);
  if (shownLost_) {
    lblConnection->setText(Text(text::kConnectionLost));
  } else if (name.empty()) {
    lblConnection->setText(Text(text::kNotConnected));
  } else {
    lblConnection->setText(
        QString::fromStdString(service_.Texts().Filled(text::kConnectedTo, name)));
  }
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
    items_.push_back(item);
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
  shown_ = index;
  if (service_.On(kPages[index].feature) == Availability::kAbsent) {
    stack_->setCurrentWidget(lblNoPage);
    return;
  }
  Page*& page = pages_[static_cast<std::size_t>(index)];
  if (page == nullptr) {
    page = kPages[index].create(service_, [this](const auto& operation) { Run(operation); });
    page->onStatus = [this](const QString& text) { statusBar()->showMessage(text); };
    page->Captions();
    stack_->addWidget(page);
    EnableCommands();
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
  RefreshGlobal();
  CurrentDevShow();
  ShowConnection();
}

void frmMain::ChangeLanguage(const std::string& code) {
  service_.Languages().SetLanguage(code);
  service_.Languages().SaveLanguage();
  Captions();
}

bool frmMain::Idle() const {
  return !running_ && QApplication::activeModalWidget() == nullptr &&
         QApplication::activePopupWidget() == nullptr;
}

void frmMain::AliveTick(int intervalMs) {
  // The link itself lets nothing run into a call of the server that is still waiting.
  if (ticking_ || ending_) return;
  ticking_ = true;
  service_.AliveTick(intervalMs, Idle());
  ticking_ = false;
  const Link& link = service_.ServerLink();
  if (!running_ && (shownState_ != link.ConnState() || shownLost_ != link.Lost())) ShowConnection();
  PollPages(intervalMs);
}

void frmMain::PollPages(int intervalMs) {
  for (std::size_t n = 0; n < pages_.size(); ++n) {
    if (pages_[n] == nullptr) continue;
    pollMs_[n] = pages_[n]->Polls() ? pollMs_[n] + intervalMs : 0;
    if (pollMs_[n] <= kPollMs || !Idle() || service_.ServerLink().Lost()) continue;
    pollMs_[n] = 0;
    pages_[n]->Read();
  }
}

void frmMain::paintEvent(QPaintEvent* event) {
  QMainWindow::paintEvent(event);
  if (firstAddress_.empty()) return;
  QTimer::singleShot(0, this, [this, address = std::exchange(firstAddress_, {})] {
    Run([this, address] { service_.DeviceSelectByAddress(address); });
  });
}

}  // namespace ostrel
