#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTreeWidget>
#include <filesystem>
#include <fstream>
#include <utility>

#include "app/placement.h"
#include "kit/window.h"

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
  EXPECT_TRUE(model.toolTip().contains("&lt;b&gt;12")) << model.toolTip().toStdString();
  ASSERT_TRUE(read.isEnabled());
  read.click();
  EXPECT_EQ(Find<QLabel>(window, "lblTapSum").text().remove(QRegularExpression("\\D")), "7140");
  EXPECT_TRUE(Find<QPushButton>(window, "butTapStat2Clip").isEnabled());
}

using Ending = std::pair<const char*, void (*)(frmMain&, Session&)>;
struct EndingTest : WindowTest, testing::WithParamInterface<Ending> {};

INSTANTIATE_TEST_SUITE_P(
    Ways, EndingTest,
    testing::Values(
        Ending{"closed", [](frmMain& window, Session&) { window.close(); }},
        Ending{"asked", [](frmMain&, Session& asked) { asked.onTerminate(); }},
        Ending{"twice", [](frmMain& window, Session&) { window.Beenden(), window.close(); }}),
    [](const auto& way) { return way.param.first; });

TEST_P(EndingTest, GivesUpAReadingAndClosesTheChannelAfterIt) {
  Select(1);
  world.server.answerAfterMs = 5000;
  int passes = 0;
  world.clock.onEvents = [&] {
    EXPECT_FALSE(Find<QPushButton>(window, "butDeviceSelect").isEnabled());
    EXPECT_FALSE(Find<QPushButton>(window, "butStatDel").isEnabled());
    if (++passes == 3) GetParam().second(window, session);
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
                      [&](QMessageBox&) { GetParam().second(window, session); });
  EXPECT_EQ(world.server.sent.back(), "B1:sysSN#") << "something was deleted";
}

TEST_F(WindowTest, DeletesAfterYesAloneAndReadsAgain) {
  Select(1);
  const auto remove = [&] { Find<QPushButton>(window, "butStatDel").click(); };
  During<QMessageBox>(remove, [this](QMessageBox& box) {
    EXPECT_TRUE(window.statusBar()->currentMessage().isEmpty()) << "it is the user who is awaited";
    box.reject();
  });
  EXPECT_TRUE(window.statusBar()->currentMessage().isEmpty());
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
  program.Languages().SetLanguage("pol");
  const frmMain polish(program, dialogs, Scheme::kSystem);
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
    const frmMain next(program, dialogs, Scheme::kSystem);
    EXPECT_EQ(next.pos() == QPoint(c.stored.left, c.stored.top), c.restored) << c.stored.left;
    EXPECT_EQ(next.width() == c.stored.width, c.restored) << c.stored.left;
    EXPECT_LE(next.minimumSizeHint().width(), 800);
    EXPECT_LE(next.minimumSizeHint().height(), 600);
  }
}

TEST_F(WindowTest, APageThatTheModelDoesNotHaveSaysSo) {
  const QTreeWidgetItem* item = Find<QTreeWidget>(window, "tvwPages").topLevelItem(1)->child(0);
  const struct {
    const char* type;
    bool page, commands;
  } cases[] = {{"KT-XF", false, false}, {"other", true, false}, {"LX-X", true, true}};
  for (const auto& c : cases) {
    session.DeviceChange("B1:x", c.type, "2.27", "1");
    EXPECT_EQ(Find<QLabel>(window, "lblNoPage").isVisible(), !c.page) << c.type;
    EXPECT_EQ(item->isDisabled(), !c.page) << c.type;
    EXPECT_EQ(Find<QPushButton>(window, "butStatLesen").isEnabled(), c.commands) << c.type;
  }
}

TEST_F(WindowTest, ReadsEveryMinuteAsLongAsThatWorks) {
  Select(1);
  auto& poll = Find<QCheckBox>(window, "chkStatPoll");
  const auto readsAfter = [&](int milliseconds) {
    world.server.sent.clear();
    window.AliveTick(milliseconds);
    return !world.server.sent.empty();
  };
  EXPECT_FALSE(readsAfter(60001)) << "not wanted";
  poll.setChecked(true);
  EXPECT_FALSE(readsAfter(60000));
  EXPECT_TRUE(readsAfter(1));
  During<QMessageBox>([&] { Find<QPushButton>(window, "butStatDel").click(); },
                      [&](QMessageBox& box) {
                        EXPECT_FALSE(readsAfter(60001)) << "beside a question";
                        box.close();
                      });
  Lose();
  EXPECT_FALSE(readsAfter(60001)) << "lost";
  EXPECT_TRUE(session.ToRead());
  world.server.answers.erase("B1:RegTAPSUML#");
  During<QMessageBox>([&] { readsAfter(1); }, [](QMessageBox& box) { box.close(); });
  EXPECT_FALSE(poll.isChecked());
}

TEST_F(WindowTest, TheEndComesInItsOrderAndFromOutsideItAsksNothing) {
  const std::filesystem::path file = world.desktop.DocumentsFolder() / "ostrel/tmp_udm_1.txt";
  std::filesystem::create_directories(file.parent_path());
  const struct {
    const char* name;
    void (*end)(frmMain&);
    bool asks;
  } ways[] = {{"closed", [](frmMain& w) { w.close(); }, true},
              {"from outside", [](frmMain& w) { w.BeendenQuietly(); }, false},
              {"both", [](frmMain& w) { w.close(), w.BeendenQuietly(); }, false},
              {"end of the session", [](frmMain& w) { w.SessionEnds(), w.close(); }, false}};
  for (const auto& way : ways) {
    WindowDialogs boxes;
    Program own({world.settings, world.factory, boxes, world.clock, world.desktop}, {}, "eng");
    frmMain next(own, boxes, Scheme::kSystem);
    ASSERT_TRUE(own.MakeDesk().session.DeviceSelectByAddress("B1:"));
    world.server.closed = 0;
    own.LogPeriod() = {"1.1.", "2.2."};
    std::ofstream(file) << "x";
    bool asked = false;
    own.onSimulationOff = [&] {
      asked = true;
      EXPECT_TRUE(LoadPlacement(world.settings, "Service", "frmMain"));
      EXPECT_EQ(world.settings.ReadProgram("Ostrel", "Misc", "XFLogTo", ""), "2.2.");
      EXPECT_TRUE(!std::filesystem::exists(file) && world.server.closed == 0);
      Answering("&Yes", [&] { EXPECT_TRUE(boxes.AskYesNo("?")) << way.name; });
    };
    way.end(next);
    LeaveLoop();
    next.Finish();
    EXPECT_EQ(asked, way.asks) << way.name;
    EXPECT_TRUE(!std::filesystem::exists(file) && world.server.closed == 1) << way.name;
  }
}

TEST_F(WindowTest, NoLetterStandsTwiceInTheWindowOrAMenu) {
  const auto once = [](const QStringList& texts) {
    QString letters;
    for (const QString& text : texts) {
      const qsizetype mark = text.indexOf('&') + 1;
      EXPECT_GT(mark, 0) << text.toStdString();
      EXPECT_FALSE(letters.contains(text[mark], Qt::CaseInsensitive)) << text.toStdString();
      letters += text[mark];
    }
  };
  for (const char* code : {"mnuLanguage_deu", "mnuLanguage_eng", "mnuLanguage_fra"}) {
    Find<QAction>(window, code).trigger();
    QStringList menus;
    for (const QAction* menu : window.menuBar()->actions()) {
      menus << menu->text();
      QStringList inMenu;
      for (const QAction* action : menu->menu()->actions()) {
        if (!action->isSeparator()) inMenu << action->text();
      }
      once(inMenu);
    }
    auto& pages = Find<QTreeWidget>(window, "tvwPages");
    for (int group = 0; group < pages.topLevelItemCount(); ++group) {
      pages.setCurrentItem(pages.topLevelItem(group)->child(0));
      QStringList inWindow = menus;
      for (const auto* button : window.findChildren<QAbstractButton*>()) {
        if (!button->isVisible()) continue;
        inWindow << button->text();
        EXPECT_TRUE(button->focusPolicy() & Qt::TabFocus) << button->text().toStdString();
      }
      once(inWindow);
    }
  }
}

}  // namespace
}  // namespace ostrel
