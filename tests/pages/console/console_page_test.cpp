// The page of the console, typed and clicked.

#include <QCheckBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>
#include <QTextBlock>
#include <QTextLayout>
#include <filesystem>
#include <fstream>

#include "base/files.h"
#include "kit/window.h"
#include "pages/console/console.h"
#include "widgets/code_editor.h"

namespace ostrel {
namespace {

struct ConsolePageTest : WindowTest {
  void SetUp() override {
    WindowTest::SetUp();
    ShowPage("Console");
    Select(0);
    world.server.answers["AA:;RegSW#"] = "100.5";
    world.server.answers["AA:;station#"] = "<b>Main</b>\x01";
    editor = &Find<CodeEditor>(window, "edtRTFRegL");
    editor->setFocus();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    sentBefore = world.server.sent.size();
  }
  std::vector<std::string> Sent() const {
    return {world.server.sent.begin() + static_cast<std::ptrdiff_t>(sentBefore),
            world.server.sent.end()};
  }
  std::string Answers() const {
    return Find<QPlainTextEdit>(window, "edtREGLAntwort").toPlainText().toStdString();
  }
  /// Presses the keys, says Yes and takes the message that follows.
  std::string Sending(Qt::KeyboardModifiers modifiers) {
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    std::string last;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box == nullptr) return;
      last = box->text().toStdString();
      box->buttons().constFirst()->click();
    });
    poll.start(0);
    QTest::keyClick(editor, Qt::Key_Return, modifiers);
    return last;
  }

  CodeEditor* editor = nullptr;
  std::size_t sentBefore = 0;
};

TEST_F(ConsolePageTest, SendsWhatWasTyped) {
  QTest::keyClicks(editor, "# comment");
  QTest::keyClick(editor, Qt::Key_Return);
  QTest::keyClicks(editor, "RegSW#");
  QTest::keyClick(editor, Qt::Key_Return, Qt::ShiftModifier);
  QTest::keyClicks(editor, "aa::station#");
  QTest::keyClick(editor, Qt::Key_Return);
  QTest::keyClicks(editor, "station#");
  std::vector<int> rows;
  world.clock.onEvents = [&] {
    EXPECT_TRUE(editor->isReadOnly());
    rows.push_back(editor->extraSelections().value(0).cursor.blockNumber() + 1);
  };
  world.server.answerAfterMs = 50;
  EXPECT_NE(Sending(Qt::ControlModifier | Qt::ShiftModifier).find("1126"), std::string::npos);
  EXPECT_EQ(Sent(), (std::vector<std::string>{"AA:;RegSW#", "AA:;station#"}));
  EXPECT_EQ(rows, (std::vector{2, 4})) << "the line that runs is shown";
  EXPECT_FALSE(editor->isReadOnly());
  EXPECT_TRUE(editor->extraSelections().isEmpty());
  EXPECT_NE(Answers().find("]: AA:;RegSW#\n100.5\n["), std::string::npos) << Answers();
  EXPECT_NE(Answers().find("<b>Main</b>\u2401\n"), std::string::npos) << Answers();

  // The caret is on the last line.
  Sending(Qt::ControlModifier);
  EXPECT_EQ(Sent().size(), 3U);
  EXPECT_EQ(Sent().back(), "AA:;station#");
}

TEST_F(ConsolePageTest, ShowsWhichLinesAreNotSentOrTooLong) {
  const struct {
    std::string line;
    bool dimmed, marked;
  } cases[] = {
      {"# comment", true, false},
      {"aa::", true, false},
      {std::string(125, 'x'), false, false},
      {std::string(126, 'x'), false, true},
      {std::string(130, 'x'), false, true},
  };
  for (const auto& c : cases) {
    editor->SetText(c.line);
    const auto looks = editor->document()->firstBlock().layout()->formats();
    ASSERT_EQ(looks.size(), c.dimmed || c.marked ? 1 : 0) << c.line;
    if (looks.isEmpty()) continue;
    EXPECT_EQ(looks[0].format.hasProperty(QTextFormat::ForegroundBrush), c.dimmed) << c.line;
    EXPECT_EQ(looks[0].format.hasProperty(QTextFormat::BackgroundBrush), c.marked) << c.line;
  }
}

TEST_F(ConsolePageTest, KeepsTextsAndKeys) {
  QTest::keyClicks(editor, "a");
  QTest::keyClick(editor, Qt::Key_M, Qt::ControlModifier);
  QTest::keyClicks(editor, "mb");
  EXPECT_EQ(editor->Text(), "amb");
  editor->moveCursor(QTextCursor::Start);
  QTest::keyClick(editor, Qt::Key_Delete);
  EXPECT_EQ(Find<QLabel>(window, "lblCaret").text(), QString::fromUtf8("Line 1  ·  2 characters"));
  editor->SetText("x\xC2\xA0y\r\nz");
  EXPECT_EQ(editor->Text(), "x\xC2\xA0y\r\nz");

  editor->SetText("new", true);
  EXPECT_EQ(editor->Text(), "new");
  QTest::keyClick(editor, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(editor->Text(), "x\xC2\xA0y\r\nz");

  QTest::keyClick(editor, Qt::Key_F, Qt::ControlModifier);
  auto& find = Find<QLineEdit>(window, "edtFind");
  ASSERT_TRUE(find.isVisible());
  QTest::keyClicks(&find, "Z");
  QTest::keyClick(&find, Qt::Key_Return);
  EXPECT_EQ(editor->SelectedText(), "z");
  QTest::keyClick(&find, Qt::Key_Escape);
  EXPECT_FALSE(find.isVisible());
}

TEST_F(ConsolePageTest, SavesWithTheEndingThatSaysForWhatItIs) {
  const auto file = world.desktop.folder / "setup";
  QTest::keyClicks(editor, "ver.");
  During<QFileDialog>([&] { QTest::keyClick(editor, Qt::Key_S, Qt::ControlModifier); },
                      [&](QFileDialog& dialog) {
                        const auto name = QString::fromStdString(file.string());
                        Find<QLineEdit>(dialog, "fileNameEdit").setText(name);
                        QMetaObject::invokeMethod(&dialog, "accept");
                      });
  EXPECT_TRUE(std::filesystem::exists(file.string() + ".rgl"));
}

TEST_F(ConsolePageTest, AsksBeforeTextIsLost) {
  const std::string file = (world.desktop.folder / "a.rgl").string();
  std::ofstream(file) << "RegSW#\r\n";
  QTest::keyClicks(editor, "RegUn=1");
  const auto close = [&](const char* answer) {
    Answering(answer, [&] { window.close(); });
    return !window.isVisible();
  };
  EXPECT_FALSE(close("&No"));
  EXPECT_EQ(editor->Text(), "RegUn=1");
  Answering("&No", [&] { Find<QPushButton>(window, "butRGLTool3").click(); });
  EXPECT_EQ(editor->Text(), "RegUn=1");
  EXPECT_TRUE(close("&Yes"));
}

TEST_F(ConsolePageTest, KeepsWhatIsNotSavedForTheNextRun) {
  const auto aside = world.desktop.DocumentsFolder() / "Ostrel" / "UnsavedScript.txt";
  const auto kept = [&aside] { return std::filesystem::exists(aside); };
  auto& now = Find<QTimer>(window, "tmrUnsaved");
  now.setInterval(0);
  QTest::keyClicks(editor, "a");
  EXPECT_TRUE(QTest::qWaitFor(kept)) << "now and then";
  editor->undo();
  EXPECT_FALSE(kept()) << "it is as it was";
  QTest::keyClicks(editor, "b");
  EXPECT_TRUE(QTest::qWaitFor(kept));
  Answering("&Yes", [&] { Find<QPushButton>(window, "butRGLTool3").click(); });
  EXPECT_FALSE(kept()) << "discarded";

  {
    Console ending(desk);
    ending.SetOrigin({"/scripts/lx.lxl", {}});
    ending.KeepUnsaved("RegUn=1");
  }
  QTest::keyClicks(editor, "c");
  window.BeendenQuietly();
  EXPECT_TRUE(std::filesystem::exists(aside.parent_path() / "UnsavedScript-2.txt"));
  const frmMain next(program, dialogs, Scheme::kSystem);
  auto& again = Find<CodeEditor>(next, "edtRTFRegL");
  EXPECT_EQ(again.Text(), "RegUn=1");
  EXPECT_TRUE(again.document()->isModified());
  EXPECT_EQ(Find<QLabel>(next, "lblFile").text(), "lx.lxl *");
  EXPECT_TRUE(kept()) << "shown is not safe";
  again.document()->setModified(false);
  EXPECT_FALSE(kept());
}

TEST_F(ConsolePageTest, NameAndTypeGoWithTheText) {
  const std::string file = (world.desktop.folder / "lx.lxl").string();
  std::ofstream(file) << "RegSW#\n";
  During<QFileDialog>([&] { Find<QPushButton>(window, "butRGLTool0").click(); },
                      [&](QFileDialog& dialog) {
                        Find<QLineEdit>(dialog, "fileNameEdit").setText(file.c_str());
                        QMetaObject::invokeMethod(&dialog, "accept");
                      });
  const auto& label = Find<QLabel>(window, "lblFile");
  EXPECT_EQ(label.text(), "lx.lxl");
  QTest::keyClicks(editor, "#");
  for (const char* line : {"ver", "Hlist*", "PList*", "QList*", "menuappn *", "menuapp *",
                           "LName *", "Urat *", "Irat *", "KFaktor *", "EUnit *"}) {
    world.server.answers[std::string("AA:") + line] = line;
  }
  QString during;
  QTimer poll;
  QObject::connect(&poll, &QTimer::timeout, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (box == nullptr) return;
    during = label.text();  // at last that of the message
    box->buttons().constFirst()->click();
  });
  poll.start(0);
  Find<QPushButton>(window, "butRGLTool4").click();
  EXPECT_EQ(during, "(new script) *");
  poll.stop();

  editor->undo();
  EXPECT_EQ(label.text(), "lx.lxl *");
  sentBefore = world.server.sent.size();
  EXPECT_NE(Sending(Qt::ControlModifier | Qt::ShiftModifier).find("10259"), std::string::npos);
  EXPECT_EQ(Sent(), std::vector<std::string>{}) << "it is another model's";
  editor->undo();
  EXPECT_EQ(label.text(), "lx.lxl");
  editor->redo();
  editor->redo();
  EXPECT_EQ(label.text(), "(new script) *");
  editor->undo();
  Find<QPushButton>(window, "butRGLTool1").click();
  std::string saved;
  ASSERT_EQ(ReadBytes(file, 100, saved), 0);
  EXPECT_EQ(saved, "#RegSW#\n") << "with the line ends of its file";
}

TEST_F(WindowTest, SendingToSeveralStationsOpensTheLinkWhereThereIsNone) {
  world.server.answers[R"(all,station&#,!+";  ", ver.+)"] = "AA:Main;  KT-X+\r\nB1:Nord;  KT-XB+";
  ShowPage("Console");
  Find<CodeEditor>(window, "edtRTFRegL").SetText("RegSW#");
  const auto offers = [&] {
    int stations = 0;
    During<QDialog>([&] { Find<QPushButton>(window, "butRGLTool5").click(); },
                    [&](QDialog& dialog) {
                      const auto* list = dialog.findChild<QListWidget*>("lstDevices");
                      if (list != nullptr) stations = list->count();
                      dialog.reject();
                    });
    return stations;
  };
  EXPECT_EQ(offers(), 2) << "at a fresh start";
  Select(0);
  Lose();
  world.server.sent.clear();
  EXPECT_EQ(offers(), 2) << "after a loss";
  EXPECT_EQ(world.server.sent.front(), "AA:dirn_") << "who answers was not asked";
  EXPECT_FALSE(session.Lost());
}

}  // namespace
}  // namespace ostrel
