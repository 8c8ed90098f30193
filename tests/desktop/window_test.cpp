#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>
#include <string>
#include <utility>

#include "app/frmMain.h"
#include "app/placement.h"
#include "desktop/dialogs.h"
#include "kit/kit.h"

namespace ostrel {
namespace {

struct WindowTest : testing::Test {
  kit::World world;
  WindowDialogs dialogs;
  Service service{{world.settings, world.factory, dialogs, world.clock, world.desktop},
                  {.connection = {}, .language = "eng"}};

  void SetUp() override {
    std::string counters;
    for (int n = 0; n < 120; ++n) counters += std::to_string(n) + "\r\n";
    world.server.answers = {
        {"B1:;-60,59,fori,RegTAPSTAT# 1 i,ni", counters},
        {"B1:RegTAPSUM#", "7140"},
        {"B1:RegTAPSUML#", "7000"},
        {"B1:RegTAPSTATCL*=0", ""},
        {"B1:ver.", "KT-XB+;V2.27"},
        {"B1:dirn_", "B1:<i>Nord</i>"},
        {"B1:sysSN#", "<b>12</b>"},
        {"AA:dirn_", "AA:Main"},
        {"AA:dirn_\r\n", "AA:Main"},
        {R"(all,station&#,!+";", ver.+)", "AA:Main;KT-X+;V2.27\r\nB1:<i>Nord</i>;KT-XB+;V2.27"}};
  }
  /// A program that was told to end stays so until a loop runs again.
  void TearDown() override {
    QTimer::singleShot(0, [] { QCoreApplication::exit(0); });
    QApplication::exec();
  }

  void SelectB1(frmMain& window) {
    During<QDialog>([&] { window.DeviceSelect(); },
                    [&](QDialog& dialog) {
                      Find<QListWidget>(dialog, "lstStations").setCurrentRow(1);
                      Find<QPushButton>(dialog, "ButOK").click();
                    });
  }
};

TEST_F(WindowTest, SelectsReadsAndShowsDeviceTextsAsTheyAre) {
  frmMain window(service, dialogs, Scheme::kSystem);
  window.show();
  const auto& read = Find<QPushButton>(window, "butStatLesen");
  EXPECT_FALSE(read.isEnabled());
  EXPECT_TRUE(world.server.created.empty()) << "a connection before it is wanted";
  SelectB1(window);
  EXPECT_EQ(Find<QLineEdit>(window, "edtKennName").text(), "B1:<i>Nord</i>");
  EXPECT_EQ(Find<QLineEdit>(window, "edtTyp").text(), "KT-XB");
  const auto& model = Find<QLabel>(window, "lblModel");
  EXPECT_TRUE(model.text().contains("<b>12</b>") && model.textFormat() == Qt::PlainText)
      << model.text().toStdString();
  ASSERT_TRUE(read.isEnabled());
  Find<QPushButton>(window, "butStatLesen").click();
  EXPECT_EQ(Find<QLabel>(window, "lblTapSum").text().remove(QRegularExpression("\\D")), "7140");
  EXPECT_TRUE(Find<QPushButton>(window, "butTapStat2Clip").isEnabled());
}

using Ending = std::pair<const char*, void (*)(frmMain&, Service&)>;
struct EndingTest : WindowTest, testing::WithParamInterface<Ending> {};

INSTANTIATE_TEST_SUITE_P(
    Ways, EndingTest,
    testing::Values(
        Ending{"closed", [](frmMain& window, Service&) { window.close(); }},
        Ending{"asked", [](frmMain&, Service& asked) { asked.ServerLink().onTerminate(); }},
        Ending{"twice", [](frmMain& window, Service&) { window.Beenden(), window.close(); }}),
    [](const auto& way) { return way.param.first; });

TEST_P(EndingTest, GivesUpAReadingAndClosesTheChannelAfterIt) {
  frmMain window(service, dialogs, Scheme::kSystem);
  window.show();
  SelectB1(window);
  world.server.answerAfterMs = 5000;
  int passes = 0;
  world.clock.onEvents = [&] {
    EXPECT_FALSE(Find<QPushButton>(window, "butDeviceSelect").isEnabled());
    EXPECT_FALSE(Find<QPushButton>(window, "butStatDel").isEnabled());
    if (++passes == 3) GetParam().second(window, service);
    EXPECT_EQ(world.server.closed, 0) << "closed under a waiting exchange";
  };
  Find<QPushButton>(window, "butStatLesen").click();
  EXPECT_EQ(passes, 3) << "the exchange was not given up";
  EXPECT_FALSE(window.isVisible());
  service.Beenden();
  EXPECT_EQ(world.server.closed, 1);
}

TEST_P(EndingTest, ClosesAnOpenQuestionWithNo) {
  frmMain window(service, dialogs, Scheme::kSystem);
  window.show();
  SelectB1(window);
  During<QMessageBox>([&] { Find<QPushButton>(window, "butStatDel").click(); },
                      [&](QMessageBox&) { GetParam().second(window, service); });
  EXPECT_EQ(world.server.sent.back(), "B1:sysSN#") << "something was deleted";
}

TEST_F(WindowTest, DeletesAfterYesAloneAndReadsAgain) {
  frmMain window(service, dialogs, Scheme::kSystem);
  window.show();
  SelectB1(window);
  for (const int answer : {1, 0}) {  // No, then Yes
    During<QMessageBox>([&] { Find<QPushButton>(window, "butStatDel").click(); },
                        [&](QMessageBox& box) {
                          EXPECT_EQ(box.defaultButton()->text(), "&No");
                          for (QAbstractButton* button : box.buttons()) {
                            if (button->text() == (answer ? "&No" : "&Yes")) return button->click();
                          }
                        });
    EXPECT_EQ(world.server.sent.back(), answer ? "B1:sysSN#" : "B1:RegTAPSUML#");
  }
}

TEST_F(WindowTest, ReopensTheConnectionAndIdentifiesTheDeviceThere) {
  frmMain window(service, dialogs, Scheme::kSystem);
  window.show();
  SelectB1(window);
  world.server.sent.clear();
  Find<QAction>(window, "mnuReopen").trigger();
  EXPECT_EQ(world.server.closed, 1);
  EXPECT_EQ(world.server.opened, (std::vector<std::string>{"", "Simulator"}));
  EXPECT_EQ(world.server.sent.front(), "AA:dirn");
  EXPECT_EQ(world.server.sent.back(), "B1:sysSN#");
  EXPECT_TRUE(Find<QPushButton>(window, "butStatLesen").isEnabled());
}

TEST_F(WindowTest, FromALanguageWithoutTextsTheMenuLeadsBack) {
  service.Languages().SetLanguage("pol");
  const frmMain window(service, dialogs, Scheme::kSystem);
  EXPECT_EQ(Find<QPushButton>(window, "butDeviceSelect").text(), "Select &Device ...");
  EXPECT_EQ(window.menuBar()->actions()[1]->text(), "&View");
  Find<QAction>(window, "mnuLanguage_deu").trigger();
  EXPECT_EQ(Find<QPushButton>(window, "butDeviceSelect").text(), "&Gerät auswählen ...");
  EXPECT_EQ(world.settings.ReadShared(keys::kServerMisc, "language", ""), "deu");
}

TEST_F(WindowTest, PlacementComesBackUnlessItIsOnNoScreen) {
  const struct {
    Placement stored;
    bool restored;
  } cases[] = {
      {{40, 50, 700, 520}, true}, {{-9000, 20, 700, 520}, false}, {{100, 100000, 700, 520}, false}};
  for (const auto& c : cases) {
    SavePlacement(world.settings, "Service", "frmMain", c.stored, false);
    const frmMain window(service, dialogs, Scheme::kSystem);
    EXPECT_EQ(window.pos() == QPoint(c.stored.left, c.stored.top), c.restored) << c.stored.left;
    EXPECT_EQ(window.width() == c.stored.width, c.restored) << c.stored.left;
    EXPECT_LE(window.minimumSizeHint().width(), 800);
    EXPECT_LE(window.minimumSizeHint().height(), 600);
  }
}

}  // namespace
}  // namespace ostrel
