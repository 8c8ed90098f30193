#include "link/connection_test.h"

#include <gtest/gtest.h>

#include "base/texts.h"
#include "kit/kit.h"

namespace ostrel {
namespace {

TEST(ConnectionTest, SaysWhichStepFailedAndWhatMendsIt) {
  using enum TestStep;
  const int first[] = {text::kTestNoServer, text::kTestNotOpen, text::kTestNoAnswer,
                       text::kTestPassed};  // by step
  const struct {
    const char *answer, *member;  // null: none comes; what fails, and what it raises
    AutomationResult raised;
    TestStep step;
    int code, more;
    const char* told;
  } cases[] = {
      {"AA:<b>\x1b", "", {}, kDone, 0, 0, "\nAA:dirn_ → AA:<b>␛"},
      {"a\r\nb\x07", "", {}, kDone, 0, 0, "→ a\nb␇"},
      {"<<no>>", "", {}, kDone, 0, text::kErrorAnswer, "→ <<no>>"},
      {"", "", {}, kDone, 0, text::kEmptyAnswer, "AA:dirn_"},
      {"", "create", {}, kServer, 10065, text::kHelpServer, "\nattempt failed\n"},
      {"", "COpen", ObjectError(10041, "lost"), kServer, 10041, text::kHelpServer, "\nlost\n"},
      {"", "COpen", ObjectError(10042, "re\x1b!"), kOpen, 10042, text::kHelpHost, "\nre␛!\n"},
      {"", "COpen", ObjectError(10027, ""), kOpen, 10027, text::kHelpAdapter, "\n10027: "},
      {"", "COpen", ObjectError(10014, "odd"), kOpen, 10014, 0, "\nodd"},
      {nullptr, "", {}, kAnswer, 10012, text::kHelpSilent, "\n10012: "},
      {"", "CReceive", ObjectError(10015, "?"), kAnswer, 10015, text::kHelpDisturbed, "\n?\n"},
  };
  for (const auto& c : cases) {
    kit::World world;
    Messages messages(world.dialogs);
    messages.SetFactor(1);
    ConnectionTest tester(world.factory, world.settings, world.clock, world.desktop.folder);
    if (c.answer != nullptr) world.server.answers["AA:dirn_"] = c.answer;
    if (!c.raised.Ok()) world.server.fails[c.member] = c.raised;
    if (std::string(c.member) == "create") world.server.failingCreations = 9;
    const ConnectionTestResult result = tester.Run("Werk");
    EXPECT_TRUE(result.step == c.step && result.error.code == c.code)
        << c.told << result.error.code;
    const std::string told = ConnectionTestText(result, messages);
    for (const std::string& part : {messages.Filled(first[int(c.step)], "Werk"),
                                    std::string(c.told), messages.Text(c.more)}) {
      EXPECT_NE(told.find(part), std::string::npos) << part << " in: " << told;
    }
    EXPECT_FALSE(told.ends_with('\n')) << told;
    EXPECT_EQ(world.server.closed, std::ssize(world.server.opened)) << "the channel stays open";
    EXPECT_TRUE(world.dialogs.shown.empty() && world.server.choosers.empty()) << told;
  }
}

}  // namespace
}  // namespace ostrel
