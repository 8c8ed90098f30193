#include "link/link.h"

#include <gtest/gtest.h>

#include <fstream>

#include "base/texts.h"
#include "kit/kit.h"
#include "link/commands.h"
#include "wire/def_timeout.h"

namespace ostrel {
namespace {

struct LinkTest : testing::Test {
  kit::World world;
  Messages messages{world.dialogs};
  Link link{world.factory, world.settings, world.clock, world.desktop.folder};
  Commands commands{link, world.dialogs, messages};

  int Ask(const std::string& line, std::string& answer) {
    Answer got = link.CommandExchangeCode(link.CurrentChannel(), line);
    if (got.Ok()) answer = std::move(got.text);
    return got.error.code;
  }
  void SetUp() override {
    messages.SetFactor(1);
    ASSERT_FALSE(link.ConnectionOpen(""));
    link.ChannelTimeoutSet(1);
  }
};

TEST_F(LinkTest, ServerClassAndAttempts) {
  link.ConnectionClose();
  const struct {
    bool library;
    const char* prior;
    const char* className;
    std::size_t attempts;
  } cases[] = {
      {false, nullptr, "ZubServer.TESKComm", 5},
      {true, nullptr, "OstrelTESK.TESKComm", 1},
      {true, "1", "ZubServer.TESKComm", 5},
      {true, "0", "OstrelTESK.TESKComm", 1},
  };
  for (const auto& c : cases) {
    world.server.created.clear();
    if (c.library) std::ofstream(world.desktop.folder / "OstrelTESK.dll") << "x";
    if (c.prior) world.settings.WriteShared(keys::kServerMisc, "UsePriorServer", c.prior);
    world.server.failingCreations = 9;
    const Error error = link.ConnectionOpen("");
    EXPECT_EQ(error.code, 10065);
    EXPECT_EQ(error.detail, std::string("attempt failed\nClassname: ") + c.className);
    EXPECT_EQ(world.server.created, std::vector<std::string>(c.attempts, c.className));
  }
}

TEST_F(LinkTest, OpeningGoesThroughTheChooserUntilItIsCancelled) {
  link.ConnectionClose();
  world.server.created.clear();
  world.server.fails["COpen"] = ObjectError(10032, "nix");
  world.server.chosen = {"second", "third"};
  link.explain = [this](const Error& error) { return messages.Shown(error); };
  EXPECT_TRUE(link.ConnectionOpen("first").told);
  EXPECT_EQ(link.ConnState(), LinkState::kServer);
  EXPECT_EQ(world.server.choosers.size(), 3u);
  EXPECT_EQ(world.server.choosers[0], messages.Text(10032) + "\nnix");

  world.server.fails.clear();
  EXPECT_FALSE(link.ConnectionOpen("first"));
  EXPECT_EQ(world.server.created.size(), 2u) << "server and chooser are kept";
  EXPECT_EQ(world.server.frame, 2);
  EXPECT_EQ(link.CurrentChannel(), 7);
}

TEST_F(LinkTest, ReopensTheConnectionUnlessTheUserKeepsIt) {
  const AutomationResult refused = ObjectError(10013, "why"), negative{-10032, 0, {}},
                         lost = ObjectError(10041, "");
  const struct {
    const char* name;
    const char* answer;  // to "AA:dirn"; null: none
    bool yes;
    const char* failing;
    AutomationResult fail;
    int closed;  // how many channels: one when it is reopened
    int code;
    LinkState after;
  } cases[] = {
      {"silent", nullptr, false, "", {}, 1, 0, LinkState::kChannel},
      {"kept", "AA:x", false, "", {}, 0, 0, LinkState::kChannel},
      {"confirmed", "AA:x", true, "", {}, 1, 0, LinkState::kChannel},
      {"error answer", "<<x>>", false, "", {}, 1, 0, LinkState::kChannel},
      {"online", nullptr, false, "COnlineEnabled", {true, 0, {}}, 0, 10019, LinkState::kChannel},
      {"refused", nullptr, false, "COpen", refused, 1, 10013, LinkState::kServer},
      {"negative", nullptr, false, "COpen", negative, 1, 10032, LinkState::kServer},
      {"unframed", nullptr, false, "CFrame", refused, 2, 10013, LinkState::kServer},
      {"gone", nullptr, false, "CSend", lost, 0, 10041, LinkState::kNoServer},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    link.ConnectionClose();
    world.server = {};
    ASSERT_FALSE(link.ConnectionOpen("first"));
    world.server.connection = "second";
    world.server.opened.clear();
    world.server.frame = 0;
    if (c.answer != nullptr) world.server.answers["AA:dirn"] = c.answer;
    if (*c.failing != 0) world.server.fails[c.failing] = c.fail;
    const bool reopened = c.closed == 1 && c.code == 0;
    const Error error = link.ConnectionReselect([&c] { return c.yes; });
    EXPECT_EQ(!error, reopened);
    EXPECT_EQ(error.code, c.code);
    EXPECT_EQ(link.ConnState(), c.after);
    EXPECT_EQ(world.server.closed, c.closed);
    EXPECT_EQ(world.server.frame, reopened ? 2 : 0);
    EXPECT_TRUE(!reopened || world.server.opened == std::vector<std::string>{"second"});
  }
}

TEST_F(LinkTest, FrameAndTimeoutComeBackAfterATemporaryChange) {
  world.server.translate = 5;
  link.FrameSave();
  world.server.frame = world.server.translate = 0;
  link.FrameRestore();
  EXPECT_EQ(world.server.frame, 2);
  EXPECT_EQ(world.server.translate, 5);
  world.server.timeout = 12;
  EXPECT_EQ(link.ChannelTimeoutSet(3), 12) << "the channel's own";
  EXPECT_EQ(link.DefTimeout(), 3);
  EXPECT_EQ(link.ChannelTimeoutSet(12), 3);
}

TEST_F(LinkTest, TimeoutIsCountedInWholeSeconds) {
  link.ChannelTimeoutSet(3);
  std::string answer;
  // Sent at 0.5 s: the first whole second more than 3 later is 4.0 s.
  EXPECT_EQ(Ask("never", answer), Code::kTimeout);
  EXPECT_EQ(world.clock.tickMs, 4000);
  world.server.answers["late"] = "x";
  world.server.answerAfterMs = 3000;
  EXPECT_EQ(Ask("late", answer), 0);
  EXPECT_EQ(answer, "x");
  // What is there after the events of a pass counts, however late it is.
  world.clock.stepMs = 9000;
  EXPECT_EQ(Ask("late", answer), 0);
  world.server.answerAfterMs = 9001;
  EXPECT_EQ(Ask("late", answer), Code::kTimeout);
}

TEST_F(LinkTest, WhatAWaitMeets) {
  world.server.answers = {{"a", "1"}, {"b", "2"}};
  world.server.answerAfterMs = 300;
  std::string answer, inner;
  int innerCode = 0;
  world.clock.onEvents = [&] { innerCode = Ask("b", inner); };
  EXPECT_EQ(Ask("a", answer), 0) << "not overtaken by what a timer wants";
  EXPECT_EQ(answer, "1");
  EXPECT_EQ(innerCode, text::kExchangeUnderWay);
  EXPECT_EQ(world.server.sent, std::vector<std::string>{"a"});

  world.clock.onEvents = [&] { world.server.online = true; };
  EXPECT_EQ(Ask("a", answer), Code::kOnlineActive);
  world.server.online = false;
  world.clock.onEvents = [&] { link.GiveUp(); };
  EXPECT_EQ(Ask("a", answer), text::kExchangeGivenUp);
  EXPECT_FALSE(link.Busy());
}

TEST_F(LinkTest, ALineThatStillWaitsAtTheServerIsTakenBack) {
  const struct {
    std::function<void()> meanwhile;
    int code;
  } cases[] = {{[] {}, Code::kTimeout},
               {[this] { world.server.online = true; }, Code::kOnlineActive},
               {[this] { link.GiveUp(); }, text::kExchangeGivenUp}};
  for (const auto& c : cases) {
    for (const bool queues : {true, false}) {
      SCOPED_TRACE(std::to_string(c.code) + (queues ? " waits" : " is out"));
      world.server.queues = queues;
      world.server.takenBack.clear();
      world.clock.onEvents = c.meanwhile;
      const Error error = link.CommandExchangeCode(7, "B1:x=1").error;
      EXPECT_EQ(error.code, c.code);
      EXPECT_EQ(world.server.takenBack.size(), queues ? 1u : 0u);
      EXPECT_EQ(messages.Shown(error).ends_with("\nNothing was sent."), queues);
      world.server.online = false;
      link.GiveUp(false);
    }
  }
  link.GiveUp();
  world.server.sent.clear();
  EXPECT_TRUE(link.CommandExchangeCode(7, "y").error.unsent);
  EXPECT_TRUE(world.server.sent.empty());
  link.GiveUp(false);
  // The server's own limit may run out first.
  world.server.fails["CStatus"] = ObjectError(Code::kTimeout, "nothing was sent: B1 is busy");
  commands.DevCmd(7, "y");
  EXPECT_EQ(world.dialogs.shown.at(0).text,
            messages.Text(Code::kTimeout) + "\nNothing was sent.\nB1 is busy");
}

TEST_F(LinkTest, StaleAnswerIsDroppedAndNothingSentIsSaid) {
  world.server.answers = {{"a", "1"}, {"b", "2"}};
  std::string answer;
  EXPECT_EQ(link.AnswerWait(7).error.code, Code::kNoCommand);
  EXPECT_FALSE(link.CommandSend(7, "a"));
  EXPECT_EQ(Ask("b", answer), 0);
  EXPECT_EQ(answer, "2");
  EXPECT_EQ(world.server.received, 2);
}

TEST_F(LinkTest, RaisedErrorsBecomeCodesAndALostServerStartsAfresh) {
  const struct {
    const char* member;
    int code;
    LinkState after;
  } cases[] = {
      {"CStatus", 10017, LinkState::kChannel}, {"CReceive", 10036, LinkState::kChannel},
      {"CSend", 10014, LinkState::kChannel},   {"CSend", 10041, LinkState::kNoServer},
      {"CSend", 10026, LinkState::kNoServer},  {"CStatus", 10041, LinkState::kNoServer},
  };
  world.server.answers["a"] = "1";
  for (const auto& c : cases) {
    ASSERT_FALSE(link.ConnectionOpen(""));
    world.server.fails[c.member] = ObjectError(c.code, "why");
    std::string answer;
    EXPECT_EQ(Ask("a", answer), c.code) << c.member;
    EXPECT_EQ(link.ConnState(), c.after) << c.member << c.code;
    world.server.fails.clear();
  }
  link.ConnectionClose();
  std::string answer;
  EXPECT_EQ(Ask("a", answer), Code::kNoChannel) << "without a connection";
}

TEST_F(LinkTest, DefTimeoutIsCorrectedAndWrittenBack) {
  const struct {
    const char* stored;
    int used;
    bool stays;
  } cases[] = {{"0", 1, false}, {"99", 15, false}, {"12", 12, true}, {"x", 1, false}};
  for (const auto& c : cases) {
    world.settings.WriteShared(keys::kServerMisc, "DefTimeout_s", c.stored);
    EXPECT_EQ(link.LoadSettings(), c.stays) << c.stored;
    EXPECT_EQ(link.DefTimeout(), c.used) << c.stored;
    const std::string written = std::to_string(c.used);
    EXPECT_EQ(world.settings.ReadShared(keys::kServerMisc, "DefTimeout_s", ""), written);
    EXPECT_EQ(world.settings.ReadProgram("ZubServer", "Misc", "DefTimeout_s", ""), written);
  }
  for (const char* stored : {"9", "1"}) {
    world.settings.WriteShared(keys::kServerMisc, "Testmode", stored);
    link.LoadSettings();
    EXPECT_EQ(link.TestMode(), *stored == '9') << stored;
  }
}

TEST_F(LinkTest, DefTimeoutIsStoredAsTypedWithinItsLimits) {
  const struct {
    const char* given;
    bool full;  // nothing can be stored
    int seconds;
    const char* told;
  } cases[] = {
      {" 12 ", false, 12, ""},
      {"0", false, 1,
       "Entered value is out of range!\nThe following value is used instead: "
       "DefTimeout_s = 1"},
      {"99999999999", false, 15,
       "Entered value is out of range!\nThe following value is used "
       "instead: DefTimeout_s = 15"},
      {"7x", false, 15, "Entered value is out of range!\nDefTimeout_s = 7x"},
      {"", false, 15, "Entered value is out of range!\nDefTimeout_s = "},
      {"9", true, 15, "The file could not be written: DefTimeout_s = 9"},
  };
  for (const auto& c : cases) {
    world.dialogs.shown.clear();
    world.settings.fails = c.full ? Error{text::kSettingsNotStored, {}} : Error();
    const GivenTimeout came = StoreDefTimeout(world.settings, c.given);
    Tell(messages, came, c.given);
    EXPECT_EQ(came.seconds, c.seconds) << c.given;
    EXPECT_EQ(ReadDefTimeout(world.settings).seconds, c.seconds) << c.given;
    EXPECT_EQ(world.dialogs.shown.empty() ? "" : world.dialogs.shown[0].text, c.told);
  }
}

TEST_F(LinkTest, ServerErrorsAreReportedByTheirRange) {
  const struct {
    int number;
    bool quiet;
    const char* text;
    const char* why = "why";
  } cases[] = {
      {kObjectErrorBase + 10042, true, "Error! 10042: Error while trying", ""},
      {kObjectErrorBase + 10038, true, "The Connection You want"},
      {kObjectErrorBase + 10039, true, "Error! 10039: why"},
      {kObjectErrorBase + 10010, false, "Error! 10010: why"},
      {kObjectErrorBase + 10011, false, "Maximum count of channels on this port has reached.\nwhy"},
      {76, false, "Runtime Error\nNr. 76 = why"},
      {76, true, nullptr},
      {0, false, nullptr},
  };
  for (const auto& c : cases) {
    world.dialogs.shown.clear();
    commands.ServerErrorReport(c.number, c.why, c.quiet);
    ASSERT_EQ(world.dialogs.shown.size(), c.text != nullptr ? 1u : 0u) << c.number;
    if (c.text == nullptr) continue;
    EXPECT_TRUE(world.dialogs.shown[0].text.starts_with(c.text)) << world.dialogs.shown[0].text;
  }
}

TEST_F(LinkTest, OnlineExchangeTakesOffEchoPromptAndCtrlZ) {
  ASSERT_FALSE(link.ConnectionOpen("", 0));
  std::string answer;
  EXPECT_FALSE(commands.OnlineQueryChecked(7, "ver", answer, true));
  EXPECT_EQ(world.dialogs.Numbers(), "10096");
  world.server.online = true;
  const std::pair<const char*, const char*> cases[] = {
      {"ver\r\nBOOT 1\r\n<\x1a", "BOOT 1"},
      {"BOOT\r\n< a", "BOOT"},
      {"BOOT\r\n< ab", "BOOT\r\n< ab"},
      {"x\r\nver\r\nB\r\n<", "B"},
      {" \r\n B \r\n", "B"},
  };
  for (const auto& [received, expected] : cases) {
    world.server.answers = {{"ver\r", received}};
    const std::int64_t start = world.clock.tickMs;
    EXPECT_TRUE(commands.OnlineQueryChecked(7, "ver", answer, true)) << received;
    EXPECT_EQ(answer, expected);
    EXPECT_EQ(world.clock.tickMs - start, 400) << "350 ms in steps of 100";
  }
}

TEST_F(LinkTest, SendAndCheck) {
  world.server.answers = {{"good", "1"}, {"bad", "<<no>>"}};
  using Operation = std::function<bool(const std::string&, std::string&)>;
  const struct {
    const char* name;
    Operation run;
    const char* results;   // good, bad, silent line
    const char* messages;  // shown in all
  } cases[] = {
      {"DevCmd", [&](auto& l, auto&) { return commands.DevCmd(7, l); }, "110", "10012"},
      {"DevCmdQuiet", [&](auto& l, auto&) { return commands.DevCmdQuiet(7, l); }, "110", ""},
      {"DevQuery", [&](auto& l, auto& a) { return commands.DevQuery(7, l, a); }, "110", ""},
      {"Checked", [&](auto& l, auto& a) { return commands.DevQueryChecked(7, l, a); }, "100", ""},
      {"Msg", [&](auto& l, auto& a) { return commands.DevQueryMsg(7, l, a); }, "100", "1280 10012"},
  };
  for (const auto& c : cases) {
    world.dialogs.shown.clear();
    std::string results, answer;
    for (const std::string line : {"good", "bad", "silent"}) {
      results += c.run(line, answer) ? '1' : '0';
    }
    EXPECT_EQ(results, c.results) << c.name;
    EXPECT_EQ(world.dialogs.Numbers(), c.messages) << c.name;
  }
  EXPECT_EQ(world.dialogs.shown[0].text,
            "An Error has occurred. Device replied as follows:\nbad\n<<no>>");
}

TEST_F(LinkTest, BlocksOfLines) {
  world.server.answers = {{"dirn_", "AA:Nord"}, {"B1:::", ""}, {"x;", "1"}, {"y;", "<<no>>"},
                          {"AA::", ""},         {"B1:x;", ""}, {"z;", ""}};
  const struct {
    const char* lines;
    bool switchStation, result;
    std::vector<std::string> sent;
  } cases[] = {
      {"", true, false, {}},
      {" x \r\n<<old error>>\r\nz", true, true, {"dirn_", "B1:::", "x;", "z;", "AA::"}},
      {"x\r\ny\r\nz", true, false, {"dirn_", "B1:::", "x;", "y;"}},
      {"x", false, true, {"B1:x;"}},
  };
  for (const auto& c : cases) {
    world.server.sent.clear();
    EXPECT_EQ(commands.DevSendLines("B1:Süd", c.lines, ";", c.switchStation, true), c.result);
    EXPECT_EQ(world.server.sent, c.sent) << c.lines;
  }
  EXPECT_EQ(world.dialogs.Numbers(), "");
  EXPECT_EQ(world.dialogs.busy, 0);
}

TEST_F(LinkTest, VersionIsAskedAgainWhileAnOnlineChannelIsActive) {
  world.server.answers["AA:ver."] = "kt-x+;V2.27";
  int passes = 0;
  world.server.fails["CSend"] = ObjectError(Code::kOnlineActive, "");
  world.clock.onEvents = [&] {
    if (++passes == 4) world.server.fails.clear();  // after the first pause, in the second
  };
  EXPECT_EQ(commands.DevVersionGet("AA:"), "KT-X");
  world.clock.onEvents = nullptr;
  world.server.fails["CSend"] = ObjectError(Code::kOnlineActive, "");
  const std::int64_t start = world.clock.tickMs;
  EXPECT_EQ(commands.DevVersionGet("AA:"), "");
  EXPECT_EQ(world.clock.tickMs - start, 900) << "three pauses of 250 ms in steps of 100";
}

TEST_F(LinkTest, KeepAlive) {
  int ended = 0;
  link.onTerminate = [&] {
    ++ended;
    link.GiveUp();
  };
  link.KeepAliveTick("channel");
  EXPECT_EQ(world.server.notices, std::vector<std::string>{"channel"});
  world.server.terminate = true;
  world.clock.onEvents = [&] { link.KeepAliveTick("ends"); };
  std::string answer;
  EXPECT_EQ(Ask("never", answer), text::kExchangeGivenUp) << "asked while a line is under way";
  EXPECT_EQ(ended, 1);
  link.GiveUp(false);
  link.ConnectionClose();
  world.server.locked = true;  // a server, but no channel
  link.OfferChooser(false);
  world.server.opened.clear();
  EXPECT_TRUE(link.ConnectionOpen(""));
  EXPECT_EQ(link.ConnState(), LinkState::kServer);
  EXPECT_TRUE(world.server.opened.empty());
  link.KeepAliveTick("server");
  EXPECT_EQ(world.server.notices.back(), "server");
}

}  // namespace
}  // namespace ostrel
