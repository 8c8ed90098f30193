// The page of the users and its dialogs, clicked and typed.

#include <QCheckBox>
#include <QComboBox>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>
#include <map>
#include <string_view>

#include "config/users/frmLogin.h"
#include "config/users/frmMeldLogin.h"
#include "config/users/frmRechteShow.h"
#include "config/users/users.h"
#include "kit/window.h"

namespace ostrel {
namespace {

void Click(const QWidget& in, const char* button) {
  QTest::mouseClick(&Find<QPushButton>(in, button), Qt::LeftButton);
}

/// Who sits before the dialogs: types into input dialogs, confirms messages, and does in a dialog
/// of ours what is named for it, once each.
struct Person {
  explicit Person(const QStringList& words) : typing(words) {
    QObject::connect(&poll, &QTimer::timeout, [this] { Act(); });
    poll.start(0);
  }
  void Act() {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (dialog == nullptr) return;
    if (auto* input = qobject_cast<QInputDialog*>(dialog)) {
      prefilled.append(input->textValue());
      EXPECT_EQ(input->textEchoMode(), QLineEdit::Password);
      if (typing.isEmpty()) return input->reject();
      input->setTextValue(typing.takeFirst());
      input->accept();
    } else if (auto* box = qobject_cast<QMessageBox*>(dialog)) {
      told.append(box->text());
      box->buttons().constFirst()->click();  // OK, or Yes
    } else if (auto act = acts.extract(dialog->objectName()); !act.empty()) {
      // As an event of its own, so that this one may see the dialogs that it opens.
      QTimer::singleShot(0, dialog, [dialog, act = act.mapped()] { act(*dialog); });
    }
  }
  QStringList typing, prefilled, told;
  std::map<QString, std::function<void(QDialog&)>> acts;
  QTimer poll;
};

struct UsersPageTest : WindowTest {
  const std::string all = "B1:;fori 0..5,i,passwort- .,!,!,!,ni";

  void SetUp() override {
    WindowTest::SetUp();
    Protect(true);
    Select(1);
    ShowPage("User Management (COM)");
    page = window.findChild<QPushButton*>("butPWRead")->parentWidget();
    world.server.sent.clear();
  }
  void Protect(bool on, const char* feature = "130") {
    std::string values = "0\r\n2\r\n0\r\n";
    for (int user = 1; user < 6; ++user) values += on ? "1\r\n4\r\n15\r\n" : "0\r\n5\r\n0\r\n";
    for (const auto& [line, answer] : std::map<std::string, std::string>{
             {"B1:whoami", "user 0"},
             {"B1:passwort- 0,dr,!", "2"},
             {all, values},
             {"B1:,VER?-,^,if,VER- QOL,else,0,eif,!", feature},
             {"B1:pwlrelease# *", "PWLrel 1=1\r\nPWLrel 2=0\r\nPWLrel 4=0"},
             {"B1:logout", ""}}) {
      world.server.answers[line] = answer;
    }
  }
  QString Text(const char* label) { return Find<QLabel>(*page, label).text(); }
  bool Enabled(const char* control) { return Find<QWidget>(*page, control).isEnabled(); }

  QWidget* page = nullptr;
  Users users{desk};
};

TEST_F(UsersPageTest, WhatCanBeDoneFollowsWhatIsKnown) {
  const char* const single[] = {"txtPWUser",   "butPWPW",   "cmbPWGrants", "edtPWTimeout",
                                "butPWSendSi", "chkPWCOM1", "butCOMSend"};
  for (const char* control : single) EXPECT_FALSE(Enabled(control)) << control;
  Click(*page, "butPWRead");
  for (const char* control : single) EXPECT_TRUE(Enabled(control)) << control;
  EXPECT_EQ(Text("lblUser"), "Logged in: User 0 (Guest)");
  EXPECT_EQ(Text("lblGrant"), "Grant in force: 2 (Local R/-, TESK R/-)");
  auto& rows = Find<QTreeWidget>(*page, "lstUsers");
  EXPECT_EQ(rows.topLevelItem(5)->text(3), "15");
  QTest::keyClick(&rows, Qt::Key_Up);
  EXPECT_EQ(Find<QComboBox>(*page, "cmbPWGrants").currentIndex(), 2);
  EXPECT_TRUE(Find<QCheckBox>(*page, "chkPWCOM4").isVisible());
  Protect(true, "129");
  Click(*page, "butPWRead");
  EXPECT_FALSE(Find<QCheckBox>(*page, "chkPWCOM4").isVisible());
  world.server.answers["B1:whoami"] = "user 1";
  world.server.answers[all] = "nothing";
  Person person({});
  Click(*page, "butPWRead");
  EXPECT_EQ(rows.topLevelItem(5)->text(3), "–") << "that was before";
  EXPECT_FALSE(Enabled("butPWPW"));
  Protect(true);
  world.server.answers["B1:whoami"] = "user 1";
  Click(*page, "butPWRead");
  EXPECT_EQ(rows.topLevelItem(0)->text(2), "–") << "the grant in force is the administrator's";
  EXPECT_EQ(Find<QComboBox>(*page, "cmbPWGrants").currentIndex(), -1);
  Click(*page, "butPWSendSi");
  EXPECT_TRUE(person.told.value(1).contains("(20429)")) << "choose a grant";

  Select(1);
  for (const char* control : single) EXPECT_FALSE(Enabled(control)) << "another device";
  EXPECT_EQ(rows.topLevelItem(5)->text(1), "–");
}

TEST_F(UsersPageTest, WithoutAdministratorTheFirstPasswordIsDefined) {
  Protect(false);
  world.server.answers["B1:passwort 1 0=007 007"] = "";
  Person person({"007", "07", "007", "007"});
  person.acts["frmMeldLogin"] = [&](QDialog& dialog) {
    Protect(true);
    Click(dialog, "butLogin");
  };
  Click(*page, "butPWRead");
  world.server.sent.resize(std::min<std::size_t>(world.server.sent.size(), 8));
  EXPECT_EQ(world.server.sent, (std::vector<std::string>{"B1:whoami", "B1:passwort- 0,dr,!", all,
                                                         "B1:logout", "B1:passwort 1 0=007 007",
                                                         "B1:whoami", "B1:passwort- 0,dr,!", all}));
  EXPECT_TRUE(person.told.value(0).contains("(1257)") && person.told.value(1).contains("(1155)"));
  EXPECT_TRUE(Enabled("butPWPW") && Enabled("butCOMSend")) << "the page was read";
}

TEST_F(UsersPageTest, SendsWhatIsShownAndOffersThePasswordAgain) {
  for (const char* line :
       {"B1:login 1 4711", "B1:passwort* 1 4711=7 5",
        "B1:,PWLrel 1 4711=0,PWLrel 2 4711=0,PWLrel 4 4711=0", "B1:passwort 1 4711=0 0"}) {
    world.server.answers[line] = "";
  }
  Click(*page, "butPWRead");
  Person person({});
  person.acts["frmLogin"] = [](QDialog& dialog) {
    EXPECT_EQ(Find<QLineEdit>(dialog, "edtDevice").text(), "B1:<i>Nord</i>");
    QTest::keyClicks(&Find<QLineEdit>(dialog, "edtPasswort"), "4711");
    QTest::keyClick(&dialog, Qt::Key_Return);
  };
  Click(*page, "butLogin");
  EXPECT_EQ(Text("lblUser"), "Logged in: User 1 (Admin)");
  auto& rows = Find<QTreeWidget>(*page, "lstUsers");
  QTest::keyClick(&rows, Qt::Key_Up);
  EXPECT_EQ(Find<QComboBox>(*page, "cmbPWGrants").currentIndex(), 2) << "the guest's own";
  QTest::keyClick(&rows, Qt::Key_Down);

  auto& minutes = Find<QLineEdit>(*page, "edtPWTimeout");
  minutes.clear();
  QTest::keyClicks(&minutes, "-7x0000");
  Click(*page, "butPWSendSi");
  EXPECT_TRUE(person.told.takeFirst().contains("(20001)")) << "70000 minutes";
  minutes.setText("7");
  Find<QComboBox>(*page, "cmbPWGrants").setCurrentIndex(5);
  person.typing = {"4711"};
  Click(*page, "butPWSendSi");
  EXPECT_EQ(world.server.sent.back(), "B1:passwort* 1 4711=7 5");
  minutes.setText("9");
  world.server.answers["B1:passwort* 1 4711=9 5"] = "<<no>>";
  for (const QStringList& typed : {QStringList("4711"), QStringList()}) {  // refused, cancelled
    person.typing = typed;
    Click(*page, "butPWSendSi");
    EXPECT_EQ(minutes.text(), "7") << "what the device has";
    minutes.setText("9");
  }
  person.told.removeAt(1);
  auto& com2 = Find<QCheckBox>(*page, "chkPWCOM2");
  com2.setChecked(true);
  Click(*page, "butCOMSend");
  EXPECT_FALSE(com2.isChecked()) << "cancelled";
  QTest::keyClick(&Find<QCheckBox>(*page, "chkPWCOM1"), Qt::Key_Space);
  person.typing = {"4711"};
  Click(*page, "butCOMSend");
  EXPECT_TRUE(person.told[1].startsWith("If the device has a SCADA connection")) << "COM2";
  EXPECT_EQ(world.server.sent.back(), "B1:,PWLrel 1 4711=0,PWLrel 2 4711=0,PWLrel 4 4711=0");
  EXPECT_EQ(person.prefilled, QStringList({"4711", "4711", "4711", "4711", "4711"}));

  person.typing = {"4711"};
  person.acts["frmMeldLogin"] = [](QDialog& dialog) { Click(dialog, "butCancel"); };
  Protect(false);
  Click(*page, "butPWDel");
  EXPECT_EQ(world.server.sent.back(), all) << "read again";
  EXPECT_FALSE(Enabled("butCOMSend"));
}

TEST_F(UsersPageTest, ALoginCanBeClosedInTheMiddle) {
  const std::pair<const char*, std::function<void(QDialog&)>> ends[] = {
      {"Escape", [](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }},
      {"end of the program", [&](QDialog&) { window.Beenden(); }}};
  world.server.answers["B1:login 1 4711"] = "";
  for (const auto& [name, end] : ends) {
    world.server.answerAfterMs = 500;
    int passes = 0;
    Person person({});
    person.acts["frmLogin"] = [&, &how = end](QDialog& dialog) {
      Find<QLineEdit>(dialog, "edtPasswort").setText("4711");
      world.clock.onEvents = [&] {
        EXPECT_FALSE(Find<QPushButton>(dialog, "ButOK").isEnabled());
        EXPECT_FALSE(Enabled("butPWRead"));
        if (++passes == 2) how(dialog);
      };
      Click(dialog, "ButOK");
      world.clock.onEvents = {};
      EXPECT_FALSE(dialog.isVisible());
    };
    Click(*page, "butLogin");
    EXPECT_GE(passes, 2) << name;
    EXPECT_EQ(person.told, QStringList()) << name;
    // It had accepted it; what came of the line that was given up at the end nobody knows.
    const bool accepted = std::string_view(name) == "Escape";
    EXPECT_EQ(Text("lblUser"), accepted ? "Logged in: User 1 (Admin)" : "Logged in: –") << name;
  }
}

TEST_F(UsersPageTest, RightsAreShownAndRaised) {
  world.server.answers["AA:login 1 no"] = "<<wrong password>>";
  world.server.answers["AA:login 1 4711"] = "";
  world.server.answers["aa:passwort- 0,dr,!"] = "3";
  Person person({});
  person.acts["frmRechteShow"] = [&](QDialog& rights) {
    const auto shown = [&] { return Find<QLabel>(rights, "lblGrants").text().toStdString(); };
    EXPECT_EQ(shown(),
              desk.texts.Caption(1641) + " 1 (Local R/-, TESK -/-)\n" + desk.texts.Caption(1642));
    Click(rights, "butRefresh");
    EXPECT_NE(shown().find("3 (Local R/W, TESK -/-)"), std::string::npos);
    world.server.answers["aa:passwort- 0,dr,!"] = "5";
    person.acts["frmLogin"] = [&](QDialog& login) {
      auto& password = Find<QLineEdit>(login, "edtPasswort");
      password.setText("no");
      Click(login, "ButOK");
      EXPECT_TRUE(login.isVisible()) << "to try again";
      QTest::keyClicks(&password, "4711");
      Click(login, "ButOK");
    };
    Click(rights, "butLogin");
    EXPECT_NE(shown().find("5 (Local R/W, TESK R/W)"), std::string::npos);
    Click(rights, "ButOK");
  };
  EXPECT_TRUE(frmRechteShow::DoDialog(&window, desk, 1));
  EXPECT_TRUE(person.told.join(' ').contains("wrong password"));
  EXPECT_EQ(Text("lblUser"), "Logged in: –") << "it is another station";
  person.acts["frmRechteShow"] = [](QDialog& rights) { QTest::keyClick(&rights, Qt::Key_Escape); };
  EXPECT_FALSE(frmRechteShow::DoDialog(&window, desk, 1));
}

TEST_F(UsersPageTest, DataAloneAreAskedWithoutSendingThem) {
  Person person({});
  person.acts["frmLogin"] = [](QDialog& dialog) {
    for (const char* password : {"a;b", "ab"}) {
      Find<QLineEdit>(dialog, "edtPasswort").setText(password);
      Click(dialog, "ButOK");
    }
  };
  EXPECT_EQ(frmLogin::DoDiaGetLoginx(&window, desk, users), "login 1 ab");
  EXPECT_TRUE(person.told.size() == 1 && world.server.sent.empty());
}

TEST_F(UsersPageTest, EveryControlHasALetterOfItsOwn) {
  for (const char* language : {"deu", "eng", "fra"}) {
    Find<QAction>(window, (std::string("mnuLanguage_") + language).c_str()).trigger();
    ExpectLettersOfTheirOwn(*page);
    EXPECT_LE(window.minimumSizeHint().width(), 800) << language;
    Person person({});
    for (const char* name : {"frmLogin", "frmRechteShow", "frmMeldLogin"}) {
      person.acts[name] = [](QDialog& dialog) {
        ExpectLettersOfTheirOwn(dialog);
        dialog.reject();
      };
    }
    EXPECT_FALSE(frmLogin::DoDiaLogin(&window, desk, users));
    EXPECT_FALSE(frmRechteShow::DoDialog(&window, desk, 9));
    EXPECT_FALSE(frmMeldLogin::DoDialog(&window, desk, users));
    EXPECT_TRUE(person.acts.empty());
  }
}

}  // namespace
}  // namespace ostrel
