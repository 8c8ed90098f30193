#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QRegularExpression>
#include <utility>

#include "app/placement.h"
#include "desktop/fixture.h"

namespace ostrel {
namespace {

TEST_F(WindowTest, SelectsReadsAndShowsDeviceTextsAsTheyAre) {
  auto& read = Find<QPushButton>(window, "butStatLesen");
  EXPECT_FALSE(read.isEnabled());
  EXPECT_TRUE(world.server.created.empty()) << "a connection before it is wanted";
  Select(1);
  EXPECT_EQ(Find<QLineEdit>(window, "edtKennName").text(), "B1:<i>Nord</i>");
  EXPECT_EQ(Find<QLineEdit>(window, "edtTyp").text(), "KT-XB");
  const auto& model = Find<QLabel>(window, "lblModel");
  EXPECT_TRUE(model.text().contains("<b>12</b>") && model.textFormat() == Qt::PlainText)
      << model.text().toStdString();
  ASSERT_TRUE(read.isEnabled());
  read.click();
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
  Select(1);
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
  window.Finish();
  EXPECT_EQ(world.server.closed, 1);
}

TEST_P(EndingTest, ClosesAnOpenQuestionWithNo) {
  Select(1);
  During<QMessageBox>([&] { Find<QPushButton>(window, "butStatDel").click(); },
                      [&](QMessageBox&) { GetParam().second(window, service); });
  EXPECT_EQ(world.server.sent.back(), "B1:sysSN#") << "something was deleted";
}

TEST_F(WindowTest, DeletesAfterYesAloneAndReadsAgain) {
  Select(1);
  const auto remove = [&] { Find<QPushButton>(window, "butStatDel").click(); };
  Answering("&No", remove);
  EXPECT_EQ(world.server.sent.back(), "B1:sysSN#");
  Answering("&Yes", remove);
  EXPECT_EQ(world.server.sent.back(), "B1:RegTAPSUML#");
}

TEST_F(WindowTest, ReopensTheConnectionAndIdentifiesTheDeviceThere) {
  Select(1);
  world.server.sent.clear();
  Find<QAction>(window, "mnuReopen").trigger();
  EXPECT_EQ(world.server.closed, 1);
  EXPECT_EQ(world.server.opened, (std::vector<std::string>{"", "Simulator"}));
  EXPECT_EQ(world.server.sent.back(), "B1:sysSN#");
  EXPECT_TRUE(Find<QPushButton>(window, "butStatLesen").isEnabled());
}

TEST_F(WindowTest, FromALanguageWithoutTextsTheMenuLeadsBack) {
  service.Languages().SetLanguage("pol");
  const frmMain polish(service, dialogs, Scheme::kSystem);
  EXPECT_EQ(Find<QPushButton>(polish, "butDeviceSelect").text(), "Select &Device ...");
  EXPECT_EQ(polish.menuBar()->actions()[1]->text(), "&View");
  Find<QAction>(polish, "mnuLanguage_deu").trigger();
  EXPECT_EQ(Find<QPushButton>(polish, "butDeviceSelect").text(), "&Gerät auswählen ...");
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
    const frmMain next(service, dialogs, Scheme::kSystem);
    EXPECT_EQ(next.pos() == QPoint(c.stored.left, c.stored.top), c.restored) << c.stored.left;
    EXPECT_EQ(next.width() == c.stored.width, c.restored) << c.stored.left;
    EXPECT_LE(next.minimumSizeHint().width(), 800);
    EXPECT_LE(next.minimumSizeHint().height(), 600);
  }
}

}  // namespace
}  // namespace ostrel
