#pragma once

// The main window in the scripted world, controls by their names, and what is done in a dialog
// while an operation shows it.

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>
#include <functional>
#include <set>
#include <string>

#include "app/frmMain.h"
#include "kit/kit.h"

namespace ostrel {

template <typename Control>
Control& Find(const QObject& in, const char* name) {
  auto* found = in.findChild<Control*>(QLatin1String(name));
  EXPECT_NE(found, nullptr) << name;
  return *found;
}

/// Acts on the dialog (of this name, when one is given) that the operation shows, once it is shown.
template <typename Dialog>
void During(const std::function<void()>& operation, const std::function<void(Dialog&)>& act,
            const char* name = nullptr) {
  QTimer poll;
  bool seen = false;
  QObject::connect(&poll, &QTimer::timeout, [&] {
    auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
    if (dialog == nullptr) return;
    if (name != nullptr && dialog->objectName() != QLatin1String(name)) return;
    seen = true;
    poll.stop();
    act(*dialog);
  });
  poll.start(0);
  operation();
  EXPECT_TRUE(seen);
}

/// Every button and every field with a caption is reached by a letter that no other has.
inline void ExpectLettersOfTheirOwn(const QWidget& in) {
  QStringList texts;
  for (const auto* button : in.findChildren<QAbstractButton*>()) texts.append(button->text());
  for (const auto* label : in.findChildren<QLabel*>()) {
    if (label->buddy() != nullptr) texts.append(label->text());
  }
  std::set<QChar> letters;
  for (const QString& text : texts) {
    if (text.isEmpty()) continue;  // part of another control
    const QChar letter = text.at(text.indexOf('&') + 1).toLower();
    EXPECT_TRUE(text.contains('&') && letters.insert(letter).second) << text.toStdString();
  }
}

/// Answers the question that the operation shows with the button of this text.
inline void Answering(const char* text, const std::function<void()>& operation) {
  During<QMessageBox>(operation, [text](QMessageBox& box) {
    EXPECT_EQ(box.defaultButton()->text(), "&No");
    for (QAbstractButton* button : box.buttons()) {
      if (button->text() == text) return button->click();
    }
  });
}

/// The window before the stations AA and B1, the first of them the current one.
struct WindowTest : testing::Test {
  explicit WindowTest(const std::string& connection = {})
      : program({world.settings, world.factory, dialogs, world.clock, world.desktop},
                {.connection = connection}, "eng") {
    std::string counters;
    for (int n = 0; n < 120; ++n) counters += std::to_string(n) + "\r\n";
    world.server.answers = {
        {"B1:;-60,59,fori,RegTAPSTAT# 1 i,ni", counters},
        {"B1:RegTAPSUM#", "7140"},
        {"B1:RegTAPSUML#", "7000"},
        {"B1:RegTAPSTATCL*=0", ""},
        {"AA:ver.", "KT-X+;V2.27"},
        {"AA:dirn_", "AA:<b>Main</b>"},
        {"AA:sysSN#", "12"},
        {"B1:ver.", "KT-XB+;V2.27"},
        {"B1:dirn_", "B1:<i>Nord</i>"},
        {"B1:sysSN#", "<b>12</b>"},
        {"AA:dirn_\r\n", "AA:Main"},
        {"aa:passwort- 0,dr,!", "5"},
        {R"(all,station&#,!+";", ver.+)", "AA:Main;KT-X+;V2.27\r\nB1:<i>Nord</i>;KT-XB+;V2.27"}};
  }
  void SetUp() override {
    window.show();
    ShowPage("Statistics");
  }
  void ShowPage(const char* title) {
    auto& pages = Find<QTreeWidget>(window, "tvwPages");
    pages.setCurrentItem(
        pages.findItems(QLatin1String(title), Qt::MatchExactly | Qt::MatchRecursive).value(0));
  }
  /// A program that was told to end stays so until a loop has run.
  static void LeaveLoop() {
    QTimer::singleShot(0, [] { QCoreApplication::exit(0); });
    QApplication::exec();
  }
  void TearDown() override { LeaveLoop(); }
  /// The server tells that the port was lost, and can open it again.
  void Lose() {
    world.server.fails["CStatus"] = ObjectError(Code::kPortFailure, "");
    window.AliveTick(1);
    world.server.fails.clear();
    EXPECT_TRUE(session.Lost());
  }
  void Select(int row) {
    During<QDialog>([&] { window.DeviceSelect(); },
                    [row](QDialog& dialog) {
                      Find<QListWidget>(dialog, "lstStations").setCurrentRow(row);
                      Find<QPushButton>(dialog, "ButOK").click();
                    },
                    "frmSelect");
  }

  kit::World world;
  WindowDialogs dialogs;
  Program program;
  Desk desk = program.MakeDesk();
  Session& session = desk.session;
  frmMain window{program, dialogs, Scheme::kSystem};
};

}  // namespace ostrel
