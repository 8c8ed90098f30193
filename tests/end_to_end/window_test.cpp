// The main window on the real server, off screen: what is clicked and closed in the middle of a
// wait.

#include <QApplication>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>
#include <QTreeWidget>
#include <algorithm>
#include <fstream>

#include "app/frmMain.h"
#include "base/program_title.h"
#include "end_to_end/programs.h"
#include "kit/kit.h"
#include "kit/scripted_device.h"
#include "logs/tap_statistics/tap_statistics.h"
#include "platform/event_clock.h"
#include "platform/program_desktop.h"
#include "platform/registry_settings.h"
#include "platform/server_factory.h"
#include "server/socket_path.h"
#include "widgets/window_dialogs.h"

namespace ostrel {
namespace {

/// The window with all that it stands on, as the program makes it, before a device.
struct Stage {
  explicit Stage(const std::string& address) {
    window.SelectWhenShown(address);
    window.show();
    auto* pages = Find<QTreeWidget>("tvwPages");
    pages->setCurrentItem(
        pages->findItems("Statistics", Qt::MatchExactly | Qt::MatchRecursive).value(0));
    QObject::connect(&boxes, &QTimer::timeout, [this] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      if (expected.isEmpty() || !box->text().contains(expected)) {
        ADD_FAILURE() << "unexpected message: " << box->text().toStdString();
      }
      expected.clear();
      box->close();
    });
    boxes.start(50);
    EXPECT_TRUE(WaitUntil([this] { return Find<QPushButton>("butStatLesen")->isEnabled(); }));
  }
  template <typename Control>
  Control* Find(const char* name) {
    return window.findChild<Control*>(name);
  }
  void Click(const char* name) { Find<QPushButton>(name)->click(); }
  /// All tap changes, as the page shows them.
  int Total() {
    QString digits = Find<QLabel>("lblTapSum")->text();
    return digits.remove(QRegularExpression("\\D")).toInt();
  }
  /// Lets the program run until it ends; false when it has to be ended after ten seconds.
  bool RunToTheEnd() {
    QTimer::singleShot(10000, &window, [] { QCoreApplication::exit(1); });
    return QCoreApplication::exec() == 0;
  }

  RegistrySettings settings;
  ServerFactory factory;
  EventClock clock;
  ProgramDesktop desktop;
  WindowDialogs dialogs;
  QTimer boxes;
  QString expected;  // in the next message
  Program program{{settings, factory, dialogs, clock, desktop}, {.chooser = false}, "eng"};
  Session& session = program.MakeDesk().session;
  frmMain window{program, dialogs, Scheme::kLight};
};

struct Window : testing::Test {
  Window() { programs.Enter(); }
  Programs programs;
};

TEST_F(Window, ReadsTheSelectedDeviceAndMarksTheSimulation) {
  Stage stage("B2:");
  EXPECT_EQ(stage.window.windowTitle().toStdString(), kProgramTitle);
  EXPECT_EQ(stage.Find<QLineEdit>("edtKennName")->text(),
            QString::fromUtf8("B2:Schalthaus Süd T1"));
  EXPECT_TRUE(stage.Find<QLabel>("lblBanner")->isVisible());
  stage.Click("butStatLesen");
  const QJsonDocument read = programs.Run({"statistics", "--station", "B2", "--json"}).Json();
  EXPECT_EQ(stage.Total(), read["total"].toInt());
  EXPECT_GT(read["total"].toInt(), 0);
}

TEST_F(Window, IsClosedInTheMiddleOfAReading) {
  ScriptedDevice device;
  device.answer = [](const QByteArray& line) {
    if (line.contains("fori")) return QByteArray();
    return ScriptedDevice::Reply(line, line.contains("ver.") ? "KT-X+;V2.27" : "AA:Nord");
  };
  programs.UseTcp(device.Port());
  Stage stage("AA:");
  EXPECT_FALSE(stage.Find<QLabel>("lblBanner")->isVisible()) << "a real device";

  // All from inside the wait: clicks start nothing, closing ends it.
  QTimer meddling;
  QObject::connect(&meddling, &QTimer::timeout, [&] {
    if (stage.Find<QPushButton>("butStatLesen")->isEnabled()) return;
    stage.Click("butStatLesen");
    stage.Click("butDeviceSelect");
    stage.window.close();
  });
  meddling.start(20);
  QTimer::singleShot(0, [&] { stage.Click("butStatLesen"); });
  EXPECT_TRUE(stage.RunToTheEnd());
  EXPECT_FALSE(stage.window.isVisible());
}

TEST_F(Window, KnowsThatAnotherDeviceWasPluggedInMeanwhile) {
  ScriptedDevice device;
  QByteArray serial = "1";
  device.answer = [&](const QByteArray& line) {
    const bool version = line.contains("ver."), number = line.contains("sysSN");
    if (line.contains("fori"))
      return ScriptedDevice::Reply(line, QByteArray("0\r\n").repeated(120));
    if (line.contains("RegTAPSUM")) return ScriptedDevice::Reply(line, "0");
    return ScriptedDevice::Reply(line, version ? "KT-X+;V2.27" : number ? serial : "AA:Nord");
  };
  programs.UseTcp(device.Port());
  Stage stage("AA:");
  for (const char* other : {"1", "2"}) {
    serial = other;
    device.Drop();
    const auto says = [&](const char* start) {
      return stage.Find<QLabel>("lblConnection")->text().startsWith(start);
    };
    EXPECT_TRUE(WaitUntil([&] { return says("Connection lost"); }));
    stage.expected = serial == "2" ? "Selected: KT-X, 1\nAnswering: KT-X, 2\n\n(20280)" : "";
    stage.Click("butStatLesen");
    EXPECT_TRUE(says("Connected") && stage.expected.isEmpty());
    EXPECT_EQ(stage.Find<QLabel>("lblOtherDevice")->isVisible(), serial == "2");
  }
  stage.expected = "(20283)";
  stage.Click("butStatDel");
  EXPECT_EQ(std::count(device.lines.begin(), device.lines.end(), "AA:RegTAPSTATCL*=0"), 0);
}

TEST_F(Window, EndsWhenTheServerIsStopped) {
  Stage stage("AA:");
  EXPECT_EQ(programs.Run({"server", "stop"}).status, 0);
  EXPECT_TRUE(stage.RunToTheEnd());
}

TEST_F(Window, AfterALostLinkConnectsAgainToWhatIsTheCurrentConnectionThen) {
  Stage stage("AA:");
  ASSERT_EQ(kill(programs.ServerPid(), SIGKILL), 0);
  stage.Click("butStatLesen");
  EXPECT_GT(stage.Total(), 0);
  EXPECT_TRUE(stage.session.Simulated());
  ASSERT_EQ(kill(programs.ServerPid(), SIGKILL), 0);
  ScriptedDevice device;
  programs.UseTcp(device.Port());
  EXPECT_TRUE(stage.session.ConnectionOpen());
  EXPECT_FALSE(stage.session.Simulated());
}

TEST_F(Window, StandsOnTheSameProgramWithoutAServerProgram) {
  kit::World world;
  std::ofstream(world.desktop.folder / "OstrelTESK.dll") << "x";
  RegistrySettings settings;
  ServerFactory factory;
  EventClock clock;
  Program program({settings, factory, world.dialogs, clock, world.desktop}, {.chooser = false}, {});
  const Desk desk = program.MakeDesk();
  ASSERT_TRUE(desk.session.DeviceSelectByAddress("B3:")) << world.dialogs.Numbers();
  EXPECT_EQ(desk.session.Selected().KennName(), "B3:Kraftwerk Aue");
  TapStatistics statistics(desk);
  EXPECT_TRUE(statistics.Read());
  EXPECT_GT(statistics.Counters().total, 0);
  EXPECT_FALSE(desk.session.DeviceSelectByAddress("ZZ:"));
  EXPECT_EQ(world.dialogs.Numbers(), "20013");
  EXPECT_FALSE(QFileInfo::exists(SocketPath())) << "no server program runs";
}

}  // namespace
}  // namespace ostrel
