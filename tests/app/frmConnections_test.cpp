// The connection list and the data of a connection, clicked and typed.

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>
#include <QTreeWidget>

#include "base/texts.h"
#include "kit/window.h"
#include "wire/connections.h"

namespace ostrel {
namespace {

using Act = std::function<void(QDialog&)>;

struct ConnectionsTest : WindowTest {
  Connections stored{world.settings};

  ConnectionsTest() : WindowTest("Werk") {
    for (const char* name : {"Halle", "Werk"}) {
      stored.Add({.name = name, .kind = "tcp", .host = "h", .port = 1, .device = {}});
    }
    stored.Use("Werk");
    world.server.connection = "Werk";
  }
  /// Acts in the list; then it is closed.
  void InList(const Act& act) {
    During<QDialog>([&] { window.ShowConnections(); },
                    [&](QDialog& list) {
                      EXPECT_TRUE(QTest::qWaitForWindowActive(&list));  // takes keys from then on
                      act(list);
                      if (list.isVisible()) Click(list, "butClose");
                    });
  }
  static void Click(const QWidget& in, const char* button) {
    QTest::mouseClick(&Find<QPushButton>(in, button), Qt::LeftButton);
  }
  /// What happens in the dialog with the data that the operation shows; then it is cancelled.
  static void InData(const std::function<void()>& operation, const Act& act) {
    During<QDialog>(
        operation,
        [&](QDialog& data) {
          act(data);
          if (data.isVisible()) QTest::keyClick(&data, Qt::Key_Escape);
        },
        "frmConnection");
  }
  static QTreeWidget& Choose(const QWidget& list, const QString& name) {
    auto& rows = Find<QTreeWidget>(list, "lstConnections");
    rows.setCurrentItem(rows.findItems(name, Qt::MatchExactly).value(0));
    EXPECT_NE(rows.currentItem(), nullptr) << name.toStdString();
    return rows;
  }
};

TEST_F(ConnectionsTest, OnlyFittingAndValidDataAreTaken) {
  const struct {
    const char *kind, *name, *port, *baud;
    int problem;  // 0: it can be stored
  } cases[] = {
      {"tcp", " New ", "1", "", 0},
      {"tcp", "werk", "1", "", text::kConnectionTaken},
      {"tcp", "New", "1x", "", text::kPortProblem},
      {"serial", "New", "", "250000", 0},
      {"serial", "New", "", "9600 baud", text::kBaudProblem},
      {"simulator", "New", "x", "x", 0},
  };
  const auto fill = [&](QDialog& data) {
    Find<QLineEdit>(data, "edtHost").setText("h");
    Find<QComboBox>(data, "cmbDevice").setCurrentText("/dev/x");
    for (const auto& c : cases) {
      auto& kind = Find<QComboBox>(data, "cmbKind");
      kind.setCurrentIndex(kind.findData(c.kind));
      Find<QLineEdit>(data, "edtName").setText(c.name);
      Find<QLineEdit>(data, "edtPort").setText(c.port);
      Find<QComboBox>(data, "cmbBaud").setCurrentText(c.baud);
      const std::string told = Find<QLabel>(data, "lblProblem").text().toStdString();
      EXPECT_EQ(told, desk.texts.Filled(c.problem, c.name)) << c.kind << c.name << c.port;
      EXPECT_EQ(Find<QPushButton>(data, "ButOK").isEnabled(), c.problem == 0) << told;
      EXPECT_EQ(Find<QLineEdit>(data, "edtPort").isVisible(), kind.currentIndex() == 1);
      EXPECT_EQ(Find<QComboBox>(data, "cmbParity").isVisible(), kind.currentIndex() == 2);
    }
  };
  InList([&](QDialog& list) { InData([&] { Click(list, "butAdd"); }, fill); });
  EXPECT_EQ(stored.List().size(), 3u) << "cancelled, but stored";
}

TEST_F(ConnectionsTest, WhatIsOpenIsClosedWhenItsDataChange) {
  const struct {
    const char *name, *then;  // its new name, or the button that answers the question
    int closed;
    const char* names;
  } steps[] = {
      // one after the other
      {"Halle", "Anlage", 0, "Simulator Anlage Werk "},
      {"Werk", "Betrieb", 1, "Simulator Anlage Betrieb "},
      {"Betrieb", "&No", 0, "Simulator Anlage Betrieb "},
      {"Betrieb", "&Yes", 1, "Simulator Anlage "},
  };
  for (const auto& step : steps) {
    world.server.connection = stored.Current();
    Select(0);
    world.server.closed = 0;
    InList([&](QDialog& list) {
      auto& row = Choose(list, step.name);
      if (*step.then == '&')
        return Answering(step.then, [&] { QTest::keyClick(&row, Qt::Key_Delete); });
      InData([&] { QTest::keyClick(&row, Qt::Key_Return); },
             [&](QDialog& data) {
               Find<QLineEdit>(data, "edtName").setText(step.then);
               Click(data, "ButOK");
             });
    });
    EXPECT_EQ(world.server.closed, step.closed) << step.name << step.then;
    std::string names;
    for (const Connection& one : stored.List()) names += one.name + " ";
    EXPECT_EQ(names, step.names);
    EXPECT_TRUE(session.ConnectionOpen());
    EXPECT_EQ(session.Selected().GetKenn().has_value(), step.closed == 0)
        << names << ": a device of the earlier connection is still selected";
  }
}

TEST_F(ConnectionsTest, TheOneInUseIsGoneOverToAtTheNextSelection) {
  Select(0);
  InList([&](QDialog& list) {
    Choose(list, "Halle");
    Click(list, "butUse");
  });
  EXPECT_EQ(stored.Current(), "Halle");
  EXPECT_TRUE(session.ConnectionOpen() && session.Selected().GetKenn()) << "closed too early";
  EXPECT_EQ(world.server.opened, std::vector<std::string>{"Werk"});
  Select(0);
  EXPECT_EQ(world.server.opened.back(), "") << "the current one, not the one of the command line";
  EXPECT_EQ(world.server.closed, 1);
}

TEST_F(ConnectionsTest, ATestDisturbsNothingAndEndsWithTheDialog) {
  Select(0);
  const auto test = [&](const Act& meanwhile) {
    InList([&](QDialog& list) {
      world.clock.onEvents = [&] { meanwhile(list); };
      Choose(list, "Halle");
      Click(list, "butTest");
      if (list.isVisible()) {
        EXPECT_EQ(Find<QPlainTextEdit>(list, "txtResult").toPlainText(),
                  "Connection Halle works.\nAA:dirn_ → AA:<b>Main</b>");
      }
    });
  };
  world.server.answerAfterMs = 500;
  test([&](QDialog& list) {
    EXPECT_EQ(program.Tester().Run("").error.code, text::kExchangeUnderWay);
    for (const char* name : {"butAdd", "butChange", "butRemove", "butTest", "butUse"}) {
      EXPECT_FALSE(Find<QPushButton>(list, name).isEnabled()) << name;
    }
  });
  EXPECT_EQ(world.server.opened.back(), "Halle");
  EXPECT_EQ(world.server.closed, 1) << "its own channel alone";
  EXPECT_TRUE(session.Selected().GetKenn());

  world.server.answerAfterMs = 5000;
  const std::pair<const char*, Act> ends[] = {
      {"Close", [](QDialog& list) { Click(list, "butClose"); }},
      {"Escape", [](QDialog& list) { QTest::keyClick(&list, Qt::Key_Escape); }},
      {"end of the program", [&](QDialog&) { window.Beenden(); }}};
  for (const auto& [name, end] : ends) {
    int passes = 0;
    test([&, &how = end](QDialog& list) {
      if (++passes == 2) how(list);
    });
    EXPECT_EQ(passes, 2) << name << " did not end the test";
  }
}

TEST_F(ConnectionsTest, EveryControlHasALetterOfItsOwn) {
  for (const char* language : {"deu", "eng", "fra"}) {
    program.Languages().SetLanguage(language);
    InList([&](QDialog& list) {
      ExpectLettersOfTheirOwn(list);
      InData([&] { Click(list, "butAdd"); }, &ExpectLettersOfTheirOwn);
    });
  }
}

}  // namespace
}  // namespace ostrel
