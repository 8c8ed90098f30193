#include "pages/console.h"

#include <gtest/gtest.h>

#include "app/files.h"
#include "app/service.h"
#include "app/texts.h"
#include "kit/kit.h"

namespace ostrel {
namespace {

using Ending = Console::Ending;
using Mode = ScriptPart::Mode;
using Lines = std::vector<std::string>;

struct ConsoleTest : testing::Test {
  kit::World world;
  Service service{{world.settings, world.factory, world.dialogs, world.clock, world.desktop},
                  {.connection = {}, .language = "eng"}};
  Console& console = service.CommandConsole();
  std::string pane;
  const std::string x129 = std::string(129, 'x');

  void SetUp() override {
    ASSERT_TRUE(service.ConnectionOpen());
    service.DeviceChange("B1:Nord", "KT-X", "2.27", "1");
    world.clock.now = {2024, 2, 9, 7, 5, 3};
    world.dialogs.yesNo.assign(20, true);
    console.onPane = [this](const std::string& text) { pane += text; };
    world.server.answers = {{"B1:;a", "1"},
                            {"B1:;b", "2\r\n"},
                            {"B1:;c", ""},
                            {"B1:;bad", "<<no>>"},
                            {"B1::", ""},
                            {"dirn_", "AA:Süd"},
                            {"AA::", ""},
                            {x129, "long"},
                            {"a", "1"},
                            {"b", "2"},
                            {"B1:;login 1 geheim", "geheim is welcome"},
                            {"B1:dirn_", "B1:Nord"},
                            {"B2:dirn_", "B2:Süd"},
                            {"B3:dirn_", "B3:"},
                            {"B1:ver.", "KT-X"},
                            {"B2:ver.", "LX-X"},
                            {"B3:ver.", "KT-XB"},
                            {"B3:;a", "1"},
                            {"B3:;bad", "<<no>>"}};
  }
  /// The lines that were sent since the last time.
  Lines Sent() { return std::exchange(world.server.sent, {}); }
};

TEST_F(ConsoleTest, WhatIsSentAndWhatIsShown) {
  const std::string y126(126, 'y');
  const struct {
    std::string script;
    ScriptPart part;
    Lines sent;
    const char* messages;
  } cases[] = {
      {"", {}, {}, "1223"},
      {"  ", {}, {}, "1223"},
      {"# a\n\naa::", {}, {}, "1300"},
      {"# a\na\n\n  b  \n", {}, {"B1:;a", "B1:;b"}, "1126"},
      {"a\nb\nc", {Mode::kFromCursor, 0, {}}, {"B1:;a", "B1:;b", "B1:;c"}, "1126"},
      {"a\nb\nc", {Mode::kFromCursor, 1, {}}, {"B1:;b", "B1:;c"}, "1126"},
      {"a\nb\nc", {Mode::kCursorLine, 2, {}}, {"B1:;c"}, "1126"},
      {"a\nb\nc", {Mode::kCursorLine, 3, {}}, {}, "1300"},
      {"a\nb\nc", {Mode::kSelection, 0, "a\nc"}, {"B1:;a", "B1:;c"}, "1126"},
      {"a\nb\nc", {Mode::kSelection, 0, ""}, {}, "1300"},
      {"a\nbad\nc", {}, {"B1:;a", "B1:;bad"}, "1280 10263"},
      {"a\nsilent\nc", {}, {"B1:;a", "B1:;silent"}, "10012 10263"},
      {"a\n" + x129, {}, {"dirn_", "B1::", "a", x129, "AA::"}, "1126"},
      {x129 + "\na", {Mode::kCursorLine, 1, {}}, {"B1:;a"}, "1126"},
      {x129 + "\nbad", {}, {"dirn_", "B1::", x129, "bad"}, "10012 10263"},
      {x129 + "x", {}, {}, "10258"},
      {"a\n" + y126, {}, {"dirn_", "B1::", "a", y126}, "10012 10263"},
  };
  for (const auto& c : cases) {
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

TEST_F(ConsoleTest, NothingGoesOutWhereTheStationsCannotBeSwitched) {
  const struct {
    const char *line, *answer;
    Lines sent;
  } cases[] = {
      {"dirn_", "<<no>>", {"dirn_"}},
      {"dirn_", "nameless", {"dirn_"}},
      {"B1::", "<<no>>", {"dirn_", "B1::"}},
      {"AA::", "<<no>>", {"dirn_", "B1::", x129, "AA::"}},
  };
  for (const auto& c : cases) {
    const auto before = world.server.answers;
    world.server.answers[c.line] = c.answer;
    EXPECT_EQ(console.Send(x129, {}), Ending::kFailed) << c.line;
    EXPECT_EQ(Sent(), c.sent);
    EXPECT_EQ(world.dialogs.Numbers(), "1280 10263") << c.line << c.answer;
    world.dialogs.shown.clear();
    world.server.answers = before;
  }
}

TEST_F(ConsoleTest, PaneAndLogHoldEchoAndAnswerButNoPassword) {
  const std::string log = world.desktop.folder / "log.txt", stamp = "[2024-02-09  07:05:03]: ";
  console.Log().SetFile(log);
  std::string order;
  console.onSending = [&](const SentLine& line) {
    order += std::to_string(line.number) + "/" + std::to_string(line.total) + "@" +
             std::to_string(line.row) + " ";
  };
  console.RGLCommandCursorDown = [&] { order += pane.ends_with("a\r\n") ? "down " : ""; };
  console.RGLAntwortAdd("not logged: the monitor is off");
  pane.clear();
  EXPECT_EQ(console.Send("#\na\n\nb\nbad", {}), Ending::kFailed);
  const std::string shown = stamp + "B1:;a\r\n1\r\n" + stamp + "B1:;b\r\n2\r\n\r\n";
  EXPECT_EQ(pane, shown + stamp + "B1:;bad\r\n");
  std::string logged;
  ASSERT_EQ(ReadBytes(log, 1000, logged), 0);
  EXPECT_EQ(logged, pane);
  EXPECT_EQ(order, "1/3@2 down 2/3@4 3/3@5 ");

  pane.clear();
  Sent();
  console.Log().SetFile(world.desktop.folder / "none" / "log.txt");
  world.dialogs.shown.clear();
  EXPECT_EQ(console.Send("login 1 geheim", {}), Ending::kDone);
  EXPECT_EQ(Sent(), Lines{"B1:;login 1 geheim"});
  EXPECT_EQ(pane, stamp + "B1:;login ***\r\n*** is welcome\r\n");
  EXPECT_EQ(world.dialogs.Numbers(), "20305 1126");
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
    service.DeviceChange("B2:Other", "LX-X", "1", "2");
  };
  EXPECT_EQ(console.Send("a\nb", {}), Ending::kDone);
  EXPECT_EQ(Sent(), (Lines{"B1:;a", "B1:;b"}));
  EXPECT_EQ(world.dialogs.Numbers(), "20003 20003 20003 1126");
}

TEST_F(ConsoleTest, ReadingMakesAScriptOrLeavesTheEditorAlone) {
  const Lines commands = {"Hlist*",  "PList*", "QList*", "menuappn *", "menuapp *",
                          "LName *", "Urat *", "Irat *", "KFaktor *",  "EUnit *"};
  Lines sent = {"B1:ver"};
  std::string expected = "# Quelle: B1:Nord, KT-X;V2.27\r\n";
  world.server.answers["B1:ver"] = "KT-X;V2.27";
  for (const std::string& command : commands) {
    sent.push_back("B1:" + command);
    const bool ended = command == "PList*";
    world.server.answers[sent.back()] = "re " + command + (ended ? "\r\n" : "");
    expected += "re " + command + "\r\n";
  }
  std::string editor = "as it was";
  const auto replace = [&](const std::string& script) { editor = script; };
  for (const std::string failing : {"B1:ver", "B1:Hlist*", "B1:EUnit *"}) {
    const auto before = world.server.answers;
    world.server.answers[failing] = "<<no>>";
    EXPECT_EQ(console.ReadFromDevice(replace), Ending::kFailed);
    EXPECT_EQ(editor, "as it was");
    EXPECT_EQ(Sent().back(), failing);
    world.server.answers = before;
  }
  world.dialogs.shown.clear();
  EXPECT_EQ(console.ReadFromDevice(replace), Ending::kDone);
  EXPECT_EQ(Sent(), sent);
  EXPECT_EQ(editor, expected);
  EXPECT_EQ(world.dialogs.Numbers(), "1126");
}

TEST_F(ConsoleTest, SeveralStationsInTurn) {
  const std::string rgl = world.desktop.folder / "s.rgl";
  ASSERT_EQ(AppendBytes(rgl, "a"), 0);
  ASSERT_EQ(console.Open(rgl), "a");
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
      {"a",
       {"B1:Nord ;KT-X", "B2:Süd;LX-X", "B3:"},
       {"B1:;a", "B3:;a"},
       "Device B1: finished\r\nDevice B2:Süd:" + type + "Device B3: finished\r\n",
       Ending::kFailed},
      {"a\nbad", {"B1:", "B3:"}, {"B1:;a", "B1:;bad"}, "Device B1::" + failed, Ending::kFailed},
      {"a", {"B9:x", "B3:"}, {}, "Device B9:x:" + failed, Ending::kFailed},
      {"a",
       {"B1:", "B3:"},
       {"B1:;a", "B3:;a"},
       "Device B1: finished\r\nDevice B3: finished\r\n",
       Ending::kDone},
  };
  for (const auto& c : cases) {
    world.dialogs.shown.clear();
    const auto choose = [&](const std::string& title) {
      EXPECT_EQ(title, "Select Devices");
      return c.chosen;
    };
    EXPECT_EQ(console.SendToStations(c.script, choose), c.ending) << c.report;
    Lines sent = Sent();
    std::erase_if(sent, [](const std::string& line) { return line.find(';') == line.npos; });
    EXPECT_EQ(sent, c.sent) << c.report;
    const std::string report = world.dialogs.shown.empty() ? "" : world.dialogs.shown.back().text;
    EXPECT_EQ(report, c.report);
  }
  for (const char* const nothing : {"", "# only\naa::"}) {
    world.dialogs.shown.clear();
    EXPECT_EQ(console.SendToStations(nothing, {}), Ending::kFailed);
    EXPECT_EQ(world.dialogs.Numbers(), "1300");
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
  EXPECT_EQ(Sent(), Lines{});
  EXPECT_EQ(world.dialogs.Numbers(), "1223 10259");
  EXPECT_EQ(world.settings.ReadProgram("Ostrel", "Dirs", "RegL", ""), world.desktop.folder);
  EXPECT_TRUE(console.ChooseLogFile());
  EXPECT_EQ(console.Log().File(), log);
  EXPECT_EQ(world.settings.ReadProgram("Ostrel", "Dirs", "RGL_Log_File", ""), "my.log");
  EXPECT_EQ(world.settings.ReadProgram("Ostrel", "Dirs", "RGL_Log_Path", ""), world.desktop.folder);
}

TEST_F(ConsoleTest, QuietlyThroughTheBatchSender) {
  EXPECT_TRUE(console.SendQuietly("B1:", ExtractCommands("a\r\n#\r\n b")));
  EXPECT_EQ(Sent(), (Lines{"B1:;a", "B1:;b"}));
  EXPECT_FALSE(console.SendQuietly("B1:", ExtractCommands("bad\r\nb")));
  EXPECT_EQ(Sent(), Lines{"B1:;bad"});
  EXPECT_EQ(world.dialogs.Numbers() + pane, "");
}

}  // namespace
}  // namespace ostrel
