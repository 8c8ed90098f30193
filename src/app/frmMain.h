#pragma once

#include <QMainWindow>
#include <functional>
#include <string>
#include <vector>

#include "app/service.h"
#include "widgets/page.h"
#include "widgets/scheme.h"
#include "widgets/window_dialogs.h"

class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QStackedWidget;
class QTimer;
class QTreeWidget;
class QTreeWidgetItem;
class QVBoxLayout;

namespace ostrel {

/// The main window: the selected device, the pages, and the end of the program.
class frmMain : public QMainWindow {
 public:
  frmMain(Service& service, WindowDialogs& dialogs, Scheme scheme);
  ~frmMain() override;

  /// Lets the user choose a station and makes it the selected device.
  void DeviceSelect();
  /// Lets the user see, change and test the connections.
  void ShowConnections();
  /// Makes the station with this address ("B1:") the selected device after the first paint.
  void SelectWhenShown(const std::string& address) { firstAddress_ = address; }
  /// Ends the program. An exchange under way is given up first, what is open is closed: the event
  /// loop of the program ends once everything that waits has returned. Then Finish is called.
  void Beenden();
  /// The same, but nothing is asked at the end.
  void BeendenQuietly();
  /// What follows the event loop. The user may be asked whether to switch a simulation off.
  void Finish();
  /// Keeps what is to be kept: the desktop may end the program without further notice. Nothing is
  /// asked at the end, unless the user goes on working.
  void SessionEnds();
  /// One tick of the alive timer, this long after the last.
  void AliveTick(int intervalMs);

 protected:
  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  // frmMain_build.cpp
  void BuildHeader(QVBoxLayout& rows);
  void BuildTree(QVBoxLayout& rows);
  void BuildMenus(Scheme scheme);
  void AddSchemes(QMenu& menu, Scheme current);
  void AddLanguages(QMenu& menu);
  void BuildStatusBar();
  QLabel* Banner(int id, const QColor& back, const QColor& front);
  void AddLogSwitch(QMenu& menu);
  QMenu* AddMenu(int id);
  QAction* AddCommand(QMenu& menu, int id, const QKeySequence& keys, void (frmMain::*command)());
  void OnLanguage(int id, std::function<void(const QString&)> set);
  void Captions();
  // frmMain_end.cpp
  void RestorePlacement();
  void KeepUnsaved(bool unasked);
  void Quit();
  void KeepPlacement();
  void End(bool asks);

  /// Runs what exchanges lines with a device; all commands are disabled meanwhile.
  void Run(const std::function<void()>& operation);
  void EnableCommands();
  void RefreshAfterDevChange();
  void RefreshGlobal();
  void CurrentDevShow();
  void ShowConnection();
  bool Idle() const;
  void PollPages(int intervalMs);
  void AddPages();
  void ShowPage(int index);
  void ReadPage();
  void ReopenConnection();
  void ChangeLanguage(const std::string& code);
  QString Text(int id) const;

  /// A caption that follows the language.
  struct Caption {
    int id;
    std::function<void(const QString&)> set;
  };

  Service& service_;
  WindowDialogs& dialogs_;
  // By index of the table of pages.
  std::vector<Page*> pages_;  // null until shown
  std::vector<QTreeWidgetItem*> items_;
  std::vector<int> pollMs_;  // since the page was read last
  int shown_ = 0;
  std::vector<Caption> captions_;
  LinkState shownState_ = LinkState::kNoServer;
  bool shownLost_ = false;
  bool running_ = false;
  bool ticking_ = false;
  bool ending_ = false;
  bool asks_ = true;  // at the end
  bool sessionEnds_ = false;
  std::string firstAddress_;

  QLabel* lblBanner = nullptr;
  QLabel* lblOtherDevice = nullptr;
  QLineEdit* edtKennName = nullptr;
  QLineEdit* edtTyp = nullptr;
  QLabel* lblModel = nullptr;
  QPushButton* butDeviceSelect = nullptr;
  QTreeWidget* tvwPages = nullptr;
  QStackedWidget* stack_ = nullptr;
  QLabel* lblNoPage = nullptr;  // shown instead of a page that the model does not have
  QTimer* tmrAlive = nullptr;
  QLabel* lblConnection = nullptr;
  QLabel* lblSimulation = nullptr;
  QAction* mnuDeviceSelect = nullptr;
  QAction* mnuRead = nullptr;
  QAction* mnuReopen = nullptr;
  QAction* mnuConnections = nullptr;
};

}  // namespace ostrel
