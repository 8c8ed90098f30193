#include "pages/console/console.h"

#include <gtest/gtest.h>

#include "base/files.h"
#include "base/texts.h"
#include "kit/kit.h"

namespace ostrel {
namespace {

using Mode = ScriptPart::Mode;
using Lines = std::vector<std::string>;

struct ConsoleTest : testing::Test {
  kit::World world;
  kit::Run run{world};
  Session& session = run.session;
  Console console{run.desk};
  std::string pane;
  const std::string x129 = std::string(129, 'x');

  void SetUp() override {
    ASSERT_TRUE(session.ConnectionOpen());
    session.DeviceChange("B1:Nord", "KT-X", "2.27", "1");
    world.clock.now = {2024, 2, 9, 7, 5, 3};
    world.dialogs.yesNo.assign(20, true);
    console.onPane = [this](const std::string& text) { pane += text; };
    world.server.answers = {
        {"B1:;a", "1"},       {"B1:;b", "2\r\n"},   {"B1:;c", ""},       {"B1:;bad", "<<no>>"},
        {"B3:;a", "1"},       {"dirn_", "AA:S"},    {"B1::", ""},        {"B3:;bad", "<<no>>"},
        {"AA::", ""},         {"a", "1"},           {"b", "2"},          {x129, "long"},
        {"B1:dirn_", "B1:N"}, {"B2:dirn_", "B2:S"}, {"B3:dirn_", "B3:"}, {"B1:ver.", "KT-X"},
        {"B2:ver.", "LX-X"},  {"B3:ver.", "KT-XB"}};
  }
  /// The lines that were sent since the last time.
  Lines Sent() { return std::exchange(world.server.sent, {}); }
};

TEST_F(ConsoleTest, WhatIsSentAndWhatIsShown) {
  const struct {
    std::string script;
    ScriptPart part;
    Lines sent;
    const char* messages;
    const char *to = "", *answer = "";  // an answer that is another one than usual
  } cases[] = {
      {"", {}, {}, "1223"},
      {"# a\n\naa::", {}, {}, "1300"},
      {"# a\na\n\n  b  \n", {}, {"B1:;a", "B1:;b"}, "1126"},
      {"a\nb\nc", {Mode::kFromCursor, 1, {}}, {"B1:;b", "B1:;c"}, "1126"},
      {"a\nb\nc", {Mode::kCursorLine, 2, {}}, {"B1:;c"}, "1126"},
      {"a\nb\nc", {Mode::kCursorLine, 3, {}}, {}, "1300"},
      {"a\nb\nc", {Mode::kSelection, 0, "a\nc"}, {"B1:;a", "B1:;c"}, "1126"},
      {"a\nbad\nc", {}, {"B1:;a", "B1:;bad"}, "1280 10263"},
      {"a\nsilent\nc", {}, {"B1:;a", "B1:;silent"}, "10012 10263"},
      {"a\n" + x129, {}, {"dirn_", "B1::", "a", x129, "AA::"}, "1126"},
      {x129 + "\nbad", {}, {"dirn_", "B1::", x129, "bad"}, "10012 10263"},
      {x129 + "x", {}, {}, "10258"},
      {x129, {}, {"dirn_"}, "1280 10263", "dirn_", "<<no>>"},
      {x129, {}, {"dirn_"}, "1280 10263", "dirn_", "nameless"},
      {x129, {}, {"dirn_", "B1::"}, "1280 10263", "B1::", "<<no>>"},
      {x129, {}, {"dirn_", "B1::", x129, "AA::"}, "1280 10263", "AA::", "<<no>>"},
  };
  const auto answers = world.server.answers;
  for (const auto& c : cases) {
    world.server.answers = answers;
    if (*c.to != 0) world.server.answers[c.to] = c.answer;
    const Ending ending = console.Send(c.script, c.part);
    EXPECT_EQ(Sent(), c.sent) << c.script;
    EXPECT_EQ(world.dialogs.Numbers(), c.messages) << c.script;
    EXPECT_EQ(ending == Ending::kDone, std::string(c.messages) == "1126") << c.script;
    EXPECT_EQ(world.dialogs.busy, 0);
    world.dialogs.shown.clear();
  }
  EXPECT_EQ(world.dialogs.asked[0], "Send RegL-Commands to device B1:Nord ?");
  world.dialogs.yesNo = {false};
  EXPECT_EQ(console.Send("a", {}), Ending::kNotConfirmed);
  EXPECT_EQ(Sent(), Lines{});
}

TEST_F(ConsoleTest, PaneAndLogHoldEchoAndAnswerButNoPassword) {
  const std::string log = world.desktop.folder / "log.txt", stamp = "[2024-02-09  07:05:03]: ";
  console.Log().SetFile(log);
  std::string order;
  console.onSending = [&](const SentLine& line) {
    order += std::to_string(line.number * 10 + line.total) + std::to_string(line.row) + " ";
  };
  console.RGLCommandCursorDown = [&] { order += pane.ends_with("a\r\n") ? "down " : ""; };
  console.RGLAntwortAdd("not logged: the monitor is off");
  pane.clear();
  EXPECT_EQ(console.Send("#\na\n\nb\nbad", {}), Ending::kFailed);
  EXPECT_EQ(pane, stamp + "B1:;a\r\n1\r\n" + stamp + "B1:;b\r\n2\r\n\r\n" + stamp + "B1:;bad\r\n");
  std::string logged;
  ASSERT_EQ(ReadBytes(log, 1000, logged), 0);
  EXPECT_EQ(logged, pane);
  EXPECT_EQ(order, "132 down 234 335 ");

  pane.clear();
  Sent();
  world.server.answers["B1:;login 1 geheim"] = "geheim is welcome";
  console.Log().SetFile(world.desktop.folder / "none" / "log.txt");
  EXPECT_EQ(console.Send("login 1 geheim", {}), Ending::kDone);
  EXPECT_EQ(Sent(), Lines{"B1:;login 1 geheim"});
  EXPECT_EQ(pane, stamp + "B1:;login ***\r\n*** is welcome\r\n");
  EXPECT_EQ(world.dialogs.Numbers(), "1280 10263 20305 1126");

  // What a device does not understand it may repeat.
  const std::string line = "PWLrel 1 geheim=0,PWLrel 2 neu=1";
  world.server.answers["B1:;" + line] = "<<10: " + line + " GEHEIM>>";
  EXPECT_EQ(console.Send(line, {}), Ending::kFailed);
  const Message& shown = *(world.dialogs.shown.end() - 2);
  EXPECT_EQ(shown.number, text::kDeviceReplied);
  EXPECT_NE(shown.text.find("<<10: *** 1 ***=0,"), std::string::npos) << shown.text;
  for (const char* secret : {"geheim", "GEHEIM", "neu"}) {
    EXPECT_EQ(shown.text.find(secret), std::string::npos) << shown.text;
  }
}

TEST_F(ConsoleTest, WhileLinesAreSentEventsRun) {
  // What a click may do meanwhile: send again, switch the log, select another device.
  int clicks = 0;
  world.clock.onEvents = [&] {
    if (clicks++ > 0) return;
    EXPECT_EQ(console.Send("c", {}), Ending::kFailed);
    EXPECT_EQ(console.SendToStations("c", {}), Ending::kFailed);
    EXPECT_EQ(console.ReadFromDevice({}), Ending::kFailed);
    console.Log().SetFile(world.desktop.folder / "other");
    session.DeviceChange("B2:Other", "LX-X", "1", "2");
  };
  EXPECT_EQ(console.Send("a\nb", {}), Ending::kFailed);
  EXPECT_EQ(Sent(), Lines{"B1:;a"}) << "the rest was meant for the device before";
  EXPECT_EQ(world.dialogs.Numbers(), "20003 20003 20003 20022 10263");
}

TEST_F(ConsoleTest, ReadingMakesAScriptOrLeavesTheEditorAlone) {
  const Lines commands = {"B1:ver",        "B1:Hlist*",    "B1:PList*",  "B1:QList*",
                          "B1:menuappn *", "B1:menuapp *", "B1:LName *", "B1:Urat *",
                          "B1:Irat *",     "B1:KFaktor *", "B1:EUnit *"};
  std::string expected = "# Quelle: B1:Nord, ", editor = "as it was";
  for (const std::string& command : commands) {
    world.server.answers[command] = "re " + command + (command == "B1:PList*" ? "\r\n" : "");
    expected += "re " + command + "\r\n";
  }
  const auto replace = [&](const std::string& script) { editor = script; };
  for (const std::string& failing : commands) {
    const std::string answer = std::exchange(world.server.answers[failing], "<<no>>");
    EXPECT_EQ(console.ReadFromDevice(replace), Ending::kFailed);
    EXPECT_EQ(Sent().back(), failing);
    world.server.answers[failing] = answer;
  }
  EXPECT_EQ(editor, "as it was");
  EXPECT_EQ(console.ReadFromDevice(replace), Ending::kDone);
  EXPECT_EQ(Sent(), commands);
  EXPECT_EQ(editor, expected);
}

TEST_F(ConsoleTest, SeveralStationsInTurn) {
  world.dialogs.files = {world.desktop.folder / "s.rgl"};
  ASSERT_EQ(console.SaveAs("a"), Ending::kDone);
  const std::string type = " Type of File does not match the Type of Device.\r\n";
  const std::string failed = " Sending was cancelled by an Error.\r\n";
  const struct {
    const char* script;
    Lines chosen;
    Lines sent;
    std::string report;
    Ending ending;
  } cases[] = {
      {"a", {}, {}, "", Ending::kNotConfirmed},
      {"# a\naa::", {"B1:"}, {}, "There is nothing to send.", Ending::kFailed},
      {"", {"B1:"}, {}, "There is nothing to send.", Ending::kFailed},
      {"a",
       {"B1:Nord ;KT-X", "B2:Süd;LX-X", "B3:"},
       {"B1:;a", "B3:;a"},
       "Device B1: finished\r\nDevice B2:Süd:" + type + "Device B3: finished\r\n",
       Ending::kFailed},
      {"a", {"B3:"}, {"B3:;a"}, "Device B3: finished\r\n", Ending::kDone},
      {"a\nbad", {"B1:", "B3:"}, {"B1:;a", "B1:;bad"}, "Device B1:" + failed, Ending::kFailed},
      {"a", {"B9:x", "B3:"}, {}, "Device B9:x:" + failed, Ending::kFailed},
  };
  for (const auto& c : cases) {
    world.dialogs.shown.clear();
    const auto choose = [&](const std::string&) { return c.chosen; };
    EXPECT_EQ(console.SendToStations(c.script, choose), c.ending) << c.report;
    Lines sent = Sent();
    std::erase_if(sent, [](const std::string& line) { return line.find(';') == line.npos; });
    EXPECT_EQ(sent, c.sent) << c.report;
    const std::string report = world.dialogs.shown.empty() ? "" : world.dialogs.shown.back().text;
    EXPECT_EQ(report, c.report);
  }
}

TEST_F(ConsoleTest, FilesAndTheTypeTheyAreFor) {
  const std::string other = world.desktop.folder / "s.xfl", log = world.desktop.folder / "my.log";
  EXPECT_EQ(console.Save(" "), Ending::kFailed);
  EXPECT_EQ(console.Save("a\r\n"), Ending::kNotConfirmed);
  world.dialogs.files = {other, log};
  EXPECT_EQ(console.Save("a\r\n"), Ending::kDone);
  EXPECT_EQ(console.Save("b\r\n"), Ending::kDone);
  EXPECT_EQ(console.Open(other), "b\r\n");
  EXPECT_EQ(console.Send("a", {}), Ending::kFailed);
  EXPECT_EQ(world.dialogs.Numbers(), "1223 10259");
  EXPECT_TRUE(console.ChooseLogFile());
  EXPECT_EQ(console.Log().File(), log);
  EXPECT_EQ(world.settings.ReadProgram("Ostrel", "Dirs", "RGL_Log_File", ""), "my.log");
  EXPECT_EQ(world.settings.ReadProgram("Ostrel", "Dirs", "RGL_Log_Path", ""), world.desktop.folder);
}

TEST_F(ConsoleTest, QuietlyThroughTheBatchSender) {
  EXPECT_TRUE(console.SendQuietly(*session.ToWrite(), ExtractCommands("a\r\n#\r\n b")));
  EXPECT_EQ(Sent(), (Lines{"B1:;a", "B1:;b"}));
  EXPECT_EQ(world.dialogs.Numbers() + pane, "");
}

}  // namespace
}  // namespace ostrel
