#pragma once

#include <QMainWindow>
#include <functional>
#include <string>

#include "app/program.h"
#include "widgets/captions.h"
#include "widgets/scheme.h"
#include "widgets/window_dialogs.h"

class QLabel;
class QLineEdit;
class QMenu;
class QPushButton;
class QTimer;
class QVBoxLayout;

namespace ostrel {

class frmPages;

/// The main window: the selected device, the pages, and the end of the program.
class frmMain : public QMainWindow {
 public:
  frmMain(Program& program, WindowDialogs& dialogs, Scheme scheme);
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
  void BuildMenus(Scheme scheme);
  void AddSchemes(QMenu& menu, Scheme current);
  void AddLanguages(QMenu& menu);
  void BuildStatusBar();
  QLabel* Banner(const char* name, int id, const QColor& back, const QColor& front);
  QMenu* AddMenu(int id);
  void AddCommand(QMenu& menu, const char* name, int id, const QKeySequence& keys,
                  std::function<void()> command);
  // frmMain_end.cpp
  void RestorePlacement();
  void KeepPlacement();
  void End(bool asks);

  /// Runs what exchanges lines with a device; all commands are disabled meanwhile.
  void Run(const std::function<void()>& operation);
  void EnableCommands();
  void RefreshAfterDevChange();
  void CurrentDevShow();
  void ShowConnection();
  bool Idle() const;
  void ChangeLanguage(const std::string& code);

  Program& program_;
  const Desk desk_;
  WindowDialogs& dialogs_;
  Captions captions_;
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
  frmPages* pages_ = nullptr;
  QTimer* tmrAlive = nullptr;
  QLabel* lblConnection = nullptr;
  QLabel* lblSimulation = nullptr;
  QList<QAction*> commands_;  // of the menus; disabled while something runs
};

}  // namespace ostrel
