#pragma once

#include <QMainWindow>
#include <functional>
#include <string>
#include <vector>

#include "app/service.h"
#include "platform/page.h"
#include "platform/scheme.h"
#include "platform/window_dialogs.h"

class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QStackedWidget;
class QTimer;
class QTreeWidget;
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
  /// Ends the program without questions. An exchange under way is given up first: the event loop
  /// of the program ends once everything that waits has returned.
  void Beenden();

 protected:
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
  QLabel* SimulationLabel(int id);
  QMenu* AddMenu(int id);
  QAction* AddCommand(QMenu& menu, int id, const QKeySequence& keys, void (frmMain::*command)());
  void OnLanguage(int id, std::function<void(const QString&)> set);
  void Captions();
  void RestorePlacement();

  /// Runs what exchanges lines with a device; all commands are disabled meanwhile.
  void Run(const std::function<void()>& operation);
  void EnableCommands();
  void RefreshAfterDevChange();
  void CurrentDevShow();
  void ShowConnection();
  void AddPages();
  void ShowPage(int index);
  void ReadPage();
  void ReopenConnection();
  void ChangeLanguage(const std::string& code);
  void AliveTick();
  QString Text(int id) const;

  /// A caption that follows the language.
  struct Caption {
    int id;
    std::function<void(const QString&)> set;
  };

  Service& service_;
  WindowDialogs& dialogs_;
  std::vector<Page*> pages_;  // by index of the table of pages; null until shown
  std::vector<Caption> captions_;
  LinkState shownState_ = LinkState::kNoServer;
  bool running_ = false;
  bool ticking_ = false;
  bool ending_ = false;
  std::string firstAddress_;

  QLabel* lblBanner = nullptr;
  QLineEdit* edtKennName = nullptr;
  QLineEdit* edtTyp = nullptr;
  QLabel* lblModel = nullptr;
  QPushButton* butDeviceSelect = nullptr;
  QTreeWidget* tvwPages = nullptr;
  QStackedWidget* stack_ = nullptr;
  QTimer* tmrAlive = nullptr;
  QLabel* lblConnection = nullptr;
  QLabel* lblSimulation = nullptr;
  QAction* mnuDeviceSelect = nullptr;
  QAction* mnuRead = nullptr;
  QAction* mnuReopen = nullptr;
  QAction* mnuConnections = nullptr;
};

}  // namespace ostrel
