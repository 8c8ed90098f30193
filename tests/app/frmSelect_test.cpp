// The selection dialog by keys and clicks.

#include <QLineEdit>
#include <QTest>

#include "kit/window.h"

namespace ostrel {
namespace {

constexpr const char* kAll = R"(all,station&#,!+";", ver.+)";

struct SelectTest : WindowTest {
  SelectTest() {
    world.server.follows = true;
    world.server.answers[kAll] =
        "AA:Main;KT-X+;V1\r\nB1:\x07Nord;KT-XB+;V2\r\nB2:<b>Über;KT-X+;V3\r\nB3:Main 2;KT-X+;V4";
    world.server.answers["B3:ver."] = "KT-X+;V4";
    world.server.answers["B3:sysSN#"] = "3";
  }
  /// Acts in the dialog; then it is cancelled.
  void InDialog(const std::function<void(QDialog&, QListWidget&)>& act) {
    const auto inside = [&](QDialog& dialog) {
      EXPECT_TRUE(QTest::qWaitForWindowActive(&dialog));
      act(dialog, Find<QListWidget>(dialog, "lstStations"));
      if (dialog.isVisible()) QTest::keyClick(&dialog, Qt::Key_Escape);
    };
    During<QDialog>([&] { window.DeviceSelect(); }, inside, "frmSelect");
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
    EXPECT_FALSE(session.Selected().GetKenn()) << "cancelled";
  }
  InDialog([](QDialog&, QListWidget& list) {
    EXPECT_TRUE(list.item(0)->text().endsWith("V1  (AA:)"));
    EXPECT_TRUE(list.item(1)->text().startsWith(QString::fromUtf8("B1:\uFFFDNord")));
    for (const auto key : {Qt::Key_End, Qt::Key_Return}) QTest::keyClick(&list, key);
  });
  EXPECT_EQ(session.Selected().KennName(), "B3:Main 2");
}

TEST_F(SelectTest, ChangesTheConnectionAndIsClosedOnlyAfterwards) {
  Select(0);
  const auto change = [](QDialog& dialog, QListWidget&) {
    Find<QPushButton>(dialog, "butConnection").click();
  };
  world.server.chosen = {"Halle", "Werk", "Dach"};
  world.server.onChoose = [&] {
    auto& dialog = *QApplication::activeModalWidget();
    for (const char* name : {"ButOK", "butConnection", "butHelp"}) {
      EXPECT_FALSE(Find<QPushButton>(dialog, name).isEnabled()) << name;
    }
    world.server.answers[kAll] = "B7:Only;a;b";
    if (world.server.chosen.size() == 2) QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_TRUE(dialog.isVisible()) << "closed before the exchange returned";
  };
  InDialog([&](QDialog& dialog, QListWidget& list) {
    change(dialog, list);
    EXPECT_EQ(list.count(), 1);
    EXPECT_EQ(Find<QLineEdit>(dialog, "txtVerbindung").text(), "Halle");
    change(dialog, list);
    EXPECT_FALSE(dialog.isVisible());
  });
  EXPECT_EQ(session.ConnectionName(), "Werk");
  EXPECT_FALSE(session.Selected().GetKenn()) << "a device of the connection before";
  world.server.closedFor = {"Dach", "Werk"};
  During<QMessageBox>([&] { InDialog(change); },
                      [](QMessageBox& box) {
                        EXPECT_TRUE(box.text().endsWith("(10061)")) << box.text().toStdString();
                        box.reject();
                      });
}

}  // namespace
}  // namespace ostrel
