// The selection dialog by keys and clicks.

#include <QLineEdit>
#include <QTest>

#include "app/texts.h"
#include "desktop/fixture.h"

namespace ostrel {
namespace {

struct SelectTest : WindowTest {
  SelectTest() {
    world.server.follows = true;
    world.server.answers[R"(all,station&#,!+";", ver.+)"] =
        "AA:Main;KT-X+;V1\r\nB1:\x07Nord;KT-XB+;V2\r\nB2:<b>Über;KT-X+;V3\r\nB3:Main 2;KT-X+;V4";
    world.server.answers["B3:ver."] = "KT-X+;V4";
    world.server.answers["B3:sysSN#"] = "3";
  }
  /// Acts in the dialog; then it is cancelled.
  void InDialog(const std::function<void(QDialog&, QListWidget&)>& act) {
    During<QDialog>([&] { window.DeviceSelect(); },
                    [&](QDialog& dialog) {
                      EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
                      act(dialog, Find<QListWidget>(dialog, "lstStations"));
                      if (dialog.isVisible()) QTest::keyClick(&dialog, Qt::Key_Escape);
                    },
                    "frmSelect");
  }
  static void Click(const QDialog& dialog, const char* button) {
    QTest::mouseClick(&Find<QPushButton>(dialog, button), Qt::LeftButton);
  }
};

TEST_F(SelectTest, KeysFindAndChooseAStation) {
  const std::pair<const char*, int> typed[] = {{"b", 1},    {"B2", 2},  {"m", 0},  {"main 2", 3},
                                               {"<B>Ü", 2}, {"b2x", 2}, {"aa:", 0}};
  for (const auto& [letters, row] : typed) {
    InDialog([&, &keys = letters, at = row](QDialog& dialog, QListWidget& list) {
      for (const QChar letter : QString::fromUtf8(keys)) {
        const Qt::Key key = letter == ' ' ? Qt::Key_Space : Qt::Key_unknown;
        QTest::sendKeyEvent(QTest::Click, &list, key, QString(letter), Qt::NoModifier);
      }
      EXPECT_EQ(list.currentRow(), at) << keys;
      const QString shown = Find<QLineEdit>(dialog, "txtStation").text();
      EXPECT_TRUE(list.currentItem()->text().startsWith(shown)) << keys;
    });
    EXPECT_FALSE(service.Selected().GetKenn()) << "cancelled";
  }
  InDialog([](QDialog&, QListWidget& list) {
    EXPECT_TRUE(list.item(0)->text().endsWith("V1  (AA:)"));
    EXPECT_TRUE(list.item(1)->text().startsWith(QString::fromUtf8("B1:\uFFFDNord")));
    for (const auto key : {Qt::Key_End, Qt::Key_Return}) QTest::keyClick(&list, key);
  });
  EXPECT_EQ(service.Selected().KennName(), "B3:Main 2");
}

TEST_F(SelectTest, ShowsTheStationsOfTheConnectionThatIsChangedTo) {
  const struct {
    const char* chosen;
    bool cancelled;  // while it is changed
    int rows;        // -1: the dialog is closed
    const char *connection, *messages;
  } steps[] = {
      {"", false, 4, "Simulator", ""},         {"Werk", true, -1, "Werk", ""},
      {"Halle", false, 1, "Halle", ""},        {"Dach", false, 4, "Halle", "10042"},
      {"silent", false, 0, "silent", "10012"}, {"", true, -1, "silent", ""},
  };
  world.server.closedFor = {"Dach"};
  for (const auto& step : steps) {
    SCOPED_TRACE(step.chosen);
    const auto answers = world.server.answers;
    std::string told;
    QTimer boxes;  // closes what is told
    QObject::connect(&boxes, &QTimer::timeout, [&] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      told = box->text().section('(', -1).chopped(1).toStdString();
      box->reject();
    });
    world.server.onChoose = [&] {
      auto& dialog = *QApplication::activeModalWidget();
      for (const char* name : {"ButOK", "butConnection", "butHelp"}) {
        EXPECT_FALSE(Find<QPushButton>(dialog, name).isEnabled()) << name;
      }
      world.server.answers[R"(all,station&#,!+";", ver.+)"] = "B7:Only;a;b";
      if (*step.chosen == 's') world.server.answers.clear();
      if (step.cancelled) QTest::keyClick(&dialog, Qt::Key_Escape);
      EXPECT_TRUE(dialog.isVisible()) << "closed before the exchange returned";
      boxes.start(0);
    };
    InDialog([&](QDialog& dialog, QListWidget& list) {
      world.server.chosen = {step.chosen};
      Click(dialog, "butConnection");
      boxes.stop();
      EXPECT_EQ(dialog.isVisible() ? list.count() : -1, step.rows);
      EXPECT_EQ(Find<QPushButton>(dialog, "ButOK").isEnabled(), list.count() > 0);
      if (dialog.isVisible()) {
        EXPECT_EQ(Find<QLineEdit>(dialog, "txtVerbindung").text(), step.connection);
      }
    });
    EXPECT_EQ(told, step.messages);
    EXPECT_EQ(service.ServerLink().ConnectionName(), step.connection);
    world.server.answers = answers;
  }
}

}  // namespace
}  // namespace ostrel
