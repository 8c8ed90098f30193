// The main window on the real server, off screen: what is clicked and closed in the middle of a
// wait.

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <functional>

#include "app/frmMain.h"
#include "end_to_end/programs.h"
#include "kit/scripted_device.h"
#include "platform/event_clock.h"
#include "platform/program_desktop.h"
#include "platform/registry_settings.h"
#include "platform/server_factory.h"
#include "platform/window_dialogs.h"

namespace ostrel {
namespace {

/// The window with all that it stands on, as the program makes it.
struct Stage {
  explicit Stage(const Programs& programs, const std::string& address) {
    programs.Enter();
    settings = std::make_unique<RegistrySettings>();
    service = std::make_unique<Service>(
        Ports{*settings, factory, dialogs, clock, desktop},
        RunOptions{.connection = {}, .language = "eng", .chooser = false});
    window = std::make_unique<frmMain>(*service, dialogs, Scheme::kLight);
    window->SelectWhenShown(address);
    window->show();
    QObject::connect(&boxes, &QTimer::timeout, [] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      ADD_FAILURE() << "unexpected message: " << box->text().toStdString();
      box->close();
    });
    boxes.start(50);
  }

  template <typename Control>
  Control* Find(const char* name) {
    return window->findChild<Control*>(name);
  }
  /// Lets the program run until it ends; false when it has to be ended after ten seconds.
  bool RunToTheEnd() {
    QTimer::singleShot(10000, window.get(), [] { QCoreApplication::exit(1); });
    return QCoreApplication::exec() == 0;
  }
  bool Selected() {
    return WaitUntil([&] { return Find<QPushButton>("butStatLesen")->isEnabled(); });
  }

  std::unique_ptr<RegistrySettings> settings;
  ServerFactory factory;
  EventClock clock;
  ProgramDesktop desktop;
  WindowDialogs dialogs;
  QTimer boxes;
  std::unique_ptr<Service> service;
  std::unique_ptr<frmMain> window;
};

/// A device that names itself and answers everything but the tap statistics.
QByteArray WithoutStatistics(const QByteArray& line) {
  if (line.contains("fori")) return {};
  return ScriptedDevice::Reply(line, line.endsWith("ver.")    ? "KT-X+;V2.27"
                                     : line.endsWith("dirn_") ? "AA:Nord <b>1</b>"
                                                              : "4711-A");
}

TEST(Window, ReadsTheSelectedDeviceAndMarksTheSimulation) {
  const Programs programs;
  Stage stage(programs, "B2:");
  ASSERT_TRUE(stage.Selected());
  EXPECT_EQ(stage.window->windowTitle().toStdString(), Service::Title());
  EXPECT_EQ(stage.Find<QLineEdit>("edtKennName")->text(),
            QString::fromUtf8("B2:Schalthaus Süd T1"));
  EXPECT_EQ(stage.Find<QLineEdit>("edtTyp")->text(), "KT-XB");
  EXPECT_TRUE(stage.Find<QLabel>("lblBanner")->isVisible());
  stage.Find<QPushButton>("butStatLesen")->click();
  const QJsonDocument read = programs.Run({"statistics", "--station", "B2", "--json"}).Json();
  EXPECT_EQ(stage.service->Statistics().Counters().total, read["total"].toInt());
  EXPECT_GT(read["total"].toInt(), 0);
  EXPECT_TRUE(stage.Find<QPushButton>("butTapStat2Clip")->isEnabled());
}

TEST(Window, IsClosedInTheMiddleOfAReading) {
  const Programs programs;
  ScriptedDevice device;
  device.answer = &WithoutStatistics;
  programs.UseTcp(device.Port());
  Stage stage(programs, "AA:");
  ASSERT_TRUE(stage.Selected());
  EXPECT_FALSE(stage.Find<QLabel>("lblBanner")->isVisible()) << "a real device";
  EXPECT_EQ(stage.Find<QLineEdit>("edtKennName")->text(), "AA:Nord <b>1</b>") << "as plain text";

  // All from inside the wait: clicks start nothing, closing ends it.
  QTimer meddling;
  QObject::connect(&meddling, &QTimer::timeout, [&] {
    if (!stage.service->ServerLink().Busy()) return;
    stage.Find<QPushButton>("butStatLesen")->click();
    stage.Find<QPushButton>("butDeviceSelect")->click();
    stage.window->close();
  });
  meddling.start(20);
  QTimer::singleShot(0, [&] { stage.Find<QPushButton>("butStatLesen")->click(); });
  EXPECT_TRUE(stage.RunToTheEnd());
  EXPECT_FALSE(stage.service->ServerLink().Busy());
  EXPECT_FALSE(stage.window->isVisible());
}

TEST(Window, EndsWhenTheServerIsStopped) {
  const Programs programs;
  Stage stage(programs, "AA:");
  ASSERT_TRUE(stage.Selected());
  EXPECT_EQ(programs.Run({"server", "stop"}).status, 0);
  EXPECT_TRUE(stage.RunToTheEnd());
}

TEST(Window, AfterALostLinkTheNextReadingConnectsAgain) {
  const Programs programs;
  Stage stage(programs, "AA:");
  ASSERT_TRUE(stage.Selected());
  ASSERT_EQ(kill(programs.ServerPid(), SIGKILL), 0);
  stage.Find<QPushButton>("butStatLesen")->click();
  EXPECT_GT(stage.service->Statistics().Counters().total, 0);
}

TEST(Window, TheMarkOfTheSimulationFollowsAConnectionThatAnotherServerOpens) {
  const Programs programs;
  Stage stage(programs, "AA:");
  ASSERT_TRUE(stage.Selected());
  ASSERT_TRUE(stage.service->Simulated());
  ASSERT_EQ(kill(programs.ServerPid(), SIGKILL), 0);
  ScriptedDevice device;
  programs.UseTcp(device.Port());
  EXPECT_TRUE(stage.service->ConnectionOpen());
  EXPECT_FALSE(stage.service->Simulated());
}

}  // namespace
}  // namespace ostrel
