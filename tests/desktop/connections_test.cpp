// The connection list and the data of a connection, clicked and typed.

#include <gtest/gtest.h>

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTreeWidget>
#include <set>

#include "app/frmMain.h"
#include "app/texts.h"
#include "desktop/dialogs.h"
#include "kit/kit.h"
#include "link/connections.h"

namespace ostrel {
namespace {

using Act = std::function<void(QDialog&)>;

struct ConnectionsTest : testing::Test {
  kit::World world;
  WindowDialogs dialogs;
  Service service{{world.settings, world.factory, dialogs, world.clock, world.desktop},
                  {.connection = "Werk", .language = "eng"}};
  Connections stored{world.settings};
  frmMain window{service, dialogs, Scheme::kSystem};

  void SetUp() override {
    for (const char* name : {"Halle", "Werk"}) {
      ASSERT_TRUE(stored.Add({.name = name, .kind = "tcp", .host = "h", .port = 1, .device = {}}));
    }
    ASSERT_TRUE(stored.Use("Werk"));
    world.server.connection = "Werk";
    world.server.answers = {{"AA:dirn_", "AA:<b>Main</b>"},
                            {"AA:ver.", "KT-X+;V2.27"},
                            {"AA:sysSN#", "12"},
                            {"AA:dirn_\r\n", "AA:Main"},
                            {R"(all,station&#,!+";", ver.+)", "AA:Main;KT-X+;V2.27"}};
    window.show();
  }
  /// A program that was told to end stays so until a loop runs again.
  void TearDown() override {
    QTimer::singleShot(0, [] { QCoreApplication::exit(0); });
    QApplication::exec();
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
  static QTreeWidget& Select(const QWidget& list, const QString& name) {
    auto& rows = Find<QTreeWidget>(list, "lstConnections");
    rows.setCurrentItem(rows.findItems(name, Qt::MatchExactly).value(0));
    EXPECT_NE(rows.currentItem(), nullptr) << name.toStdString();
    return rows;
  }
  void SelectDevice() {
    During<QDialog>([&] { window.DeviceSelect(); }, [](QDialog& dialog) { Click(dialog, "ButOK"); },
                    "frmSelect");
  }
};

TEST_F(ConnectionsTest, OnlyFittingAndValidDataAreTaken) {
  const struct {
    const char *kind, *name, *host, *port, *device, *baud;
    int problem;  // 0: it can be stored
  } cases[] = {
      {"tcp", " New ", "h", "1", "", "", 0},
      {"tcp", "werk", "h", "1", "", "", text::kConnectionTaken},
      {"tcp", "a/b", "h", "1", "", "", text::kNameProblem},
      {"tcp", "New", " ", "1", "", "", text::kHostProblem},
      {"tcp", "New", "h", "65536", "", "", text::kPortProblem},
      {"tcp", "New", "h", "1x", "", "", text::kPortProblem},
      {"serial", "New", "", "", "/dev/x", "250000", 0},
      {"serial", "New", "", "", " ", "9600", text::kDeviceProblem},
      {"serial", "New", "", "", "/dev/x", "9600 baud", text::kBaudProblem},
      {"simulator", "New", "", "x", "", "x", 0},
  };
  InList([&](QDialog& list) {
    InData([&] { Click(list, "butAdd"); },
           [&](QDialog& data) {
             for (const auto& c : cases) {
               auto& kind = Find<QComboBox>(data, "cmbKind");
               kind.setCurrentIndex(kind.findData(c.kind));
               Find<QLineEdit>(data, "edtName").setText(c.name);
               Find<QLineEdit>(data, "edtHost").setText(c.host);
               Find<QLineEdit>(data, "edtPort").setText(c.port);
               Find<QComboBox>(data, "cmbDevice").setCurrentText(c.device);
               Find<QComboBox>(data, "cmbBaud").setCurrentText(c.baud);
               const std::string problem =
                   service.Texts().Filled(c.problem, QString(c.name).trimmed().toStdString());
               const std::string told = Find<QLabel>(data, "lblProblem").text().toStdString();
               EXPECT_EQ(told, problem) << c.kind << c.name << c.port;
               EXPECT_EQ(Find<QPushButton>(data, "ButOK").isEnabled(), c.problem == 0) << told;
               EXPECT_EQ(Find<QLineEdit>(data, "edtPort").isVisible(), kind.currentIndex() == 1);
               EXPECT_EQ(Find<QComboBox>(data, "cmbParity").isVisible(), kind.currentIndex() == 2);
             }
           });
  });
  EXPECT_EQ(stored.List().size(), 3u) << "cancelled, but stored";
}

TEST_F(ConnectionsTest, WhatIsOpenIsClosedWhenItsDataChange) {
  const struct {
    const char* name;
    Qt::Key key;
    const char* then;  // the other name, or the button of the question
    int closed;
    const char *current, *names;
  } steps[] = {
      // one after the other
      {"Halle", Qt::Key_Return, "Anlage", 0, "Werk", "Simulator Anlage Werk"},
      {"Werk", Qt::Key_Return, "Betrieb", 1, "Betrieb", "Simulator Anlage Betrieb"},
      {"Betrieb", Qt::Key_Delete, "&No", 0, "Betrieb", "Simulator Anlage Betrieb"},
      {"Betrieb", Qt::Key_Delete, "&Yes", 1, "Simulator", "Simulator Anlage"},
      {"Simulator", Qt::Key_Delete, nullptr, 0, "Simulator", "Simulator Anlage"},
  };
  for (const auto& step : steps) {
    world.server.connection = stored.Current();
    SelectDevice();
    world.server.closed = 0;
    InList([&](QDialog& list) {
      const auto press = [&] { QTest::keyClick(&Select(list, step.name), step.key); };
      if (step.key == Qt::Key_Return) {
        InData(press, [&](QDialog& data) {
          Find<QLineEdit>(data, "edtName").setText(step.then);
          Click(data, "ButOK");
        });
      } else if (step.then == nullptr) {
        press();
      } else {
        During<QMessageBox>(press, [&](QMessageBox& box) {
          for (QAbstractButton* button : box.buttons()) {
            if (button->text() == step.then) return button->click();
          }
        });
      }
      EXPECT_EQ(world.server.closed, step.closed) << step.name << step.then;
    });
    std::string names;
    for (const Connection& one : stored.List()) names += (names.empty() ? "" : " ") + one.name;
    EXPECT_EQ(names, step.names);
    EXPECT_EQ(stored.Current(), step.current) << names;
    EXPECT_TRUE(service.ConnectionOpen());
    EXPECT_EQ(service.Selected().GetKenn().has_value(), step.closed == 0)
        << names << ": a device of the earlier connection is still selected";
  }
}

TEST_F(ConnectionsTest, TheOneInUseIsGoneOverToAtTheNextSelection) {
  SelectDevice();
  InList([&](QDialog& list) {
    Select(list, "Halle");
    Click(list, "butUse");
  });
  EXPECT_EQ(stored.Current(), "Halle");
  EXPECT_TRUE(service.ConnectionOpen() && service.Selected().GetKenn()) << "closed too early";
  EXPECT_EQ(world.server.opened, std::vector<std::string>{"Werk"});
  SelectDevice();
  EXPECT_EQ(world.server.opened.back(), "") << "the current one, not the one of the command line";
  EXPECT_EQ(world.server.closed, 1);
}

TEST_F(ConnectionsTest, ATestDisturbsNothingAndEndsWithTheDialog) {
  SelectDevice();
  InList([&](QDialog& list) {
    world.server.answerAfterMs = 500;
    Select(list, "Halle");
    world.clock.onEvents = [&] {
      for (const char* name : {"butAdd", "butChange", "butRemove", "butTest", "butUse"}) {
        EXPECT_FALSE(Find<QPushButton>(list, name).isEnabled()) << name;
      }
      EXPECT_TRUE(Find<QPushButton>(list, "butClose").isEnabled());
    };
    Click(list, "butTest");
    EXPECT_EQ(Find<QPlainTextEdit>(list, "txtResult").toPlainText(),
              "Connection Halle works.\nAA:dirn_ → AA:<b>Main</b>");
    EXPECT_EQ(world.server.opened.back(), "Halle");
    EXPECT_EQ(world.server.closed, 1) << "its own channel alone";
    EXPECT_TRUE(service.Selected().GetKenn());
  });
  const std::pair<const char*, std::function<void(QDialog&)>> ends[] = {
      {"Close", [](QDialog& list) { Click(list, "butClose"); }},
      {"Escape", [](QDialog& list) { QTest::keyClick(&list, Qt::Key_Escape); }},
      {"end of the program", [&](QDialog&) { window.Beenden(); }}};
  for (const auto& [name, end] : ends) {
    int passes = 0;
    InList([&, &how = end](QDialog& list) {
      world.server.answerAfterMs = 5000;
      world.clock.onEvents = [&] {
        if (++passes == 2) how(list);
      };
      Select(list, "Halle");
      Click(list, "butTest");
      EXPECT_FALSE(list.isVisible());
    });
    EXPECT_EQ(passes, 2) << name << " did not end the test";
  }
}

TEST_F(ConnectionsTest, EveryControlHasALetterOfItsOwn) {
  const auto check = [](const QDialog& dialog) {
    QStringList texts;
    for (const auto* button : dialog.findChildren<QPushButton*>()) texts.append(button->text());
    for (const auto* label : dialog.findChildren<QLabel*>()) {
      if (label->buddy() != nullptr) texts.append(label->text());
    }
    std::set<QChar> letters;
    for (const QString& text : texts) {
      const QChar letter = text.at(text.indexOf('&') + 1).toLower();
      EXPECT_TRUE(text.contains('&') && letters.insert(letter).second) << text.toStdString();
    }
  };
  for (const char* language : {"deu", "eng", "fra"}) {
    service.Languages().SetLanguage(language);
    InList([&](QDialog& list) {
      check(list);
      InData([&] { Click(list, "butAdd"); }, check);
    });
  }
}

}  // namespace
}  // namespace ostrel
