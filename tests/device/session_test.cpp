// What happens once a run: start values, alive timer, end; and the link that gets lost.

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <sstream>

#include "app/placement.h"
#include "base/user_files.h"
#include "kit/kit.h"

namespace ostrel {
namespace {

namespace fs = std::filesystem;

struct RunTest : testing::Test {
  RunTest() {
    world.server.answers = {{"B1:dirn_", "B1:Nord"}, {"B1:ver.", "KT-XB+;V2.10"},
                            {"B1:sysSN#", "123"},    {"B1:dd-", ""},
                            {"AA:dirn", "AA:x"},     {"B1:RegTAPSTATCL*=0", ""}};
    world.clock.now = {2026, 3, 4, 12, 30, 5};
  }
  std::ptrdiff_t Sent(const std::string& line) const {
    return std::count(world.server.sent.begin(), world.server.sent.end(), line);
  }
  void Start() {
    service.emplace(Ports{world.settings, world.factory, world.dialogs, world.clock, world.desktop},
                    RunOptions{.connection = {}, .language = "eng"});
  }
  void Select() {
    Start();
    ASSERT_TRUE(service->DeviceSelectByAddress("B1:"));
    world.server.sent.clear();
    world.dialogs.shown.clear();
  }

  kit::World world;
  fs::path documents = world.desktop.DocumentsFolder();
  std::optional<Service> service;
};

TEST_F(RunTest, TheServiceLogIsWrittenWhileItIsOn) {
  const auto content = [this] {
    std::ostringstream text;
    text << std::ifstream(documents / "Ostrel" / "ServiceLog.txt", std::ios::binary).rdbuf();
    return text.str();
  };
  for (const auto& [value, active] : {std::pair{"0", false}, {"", true}, {"2", true}}) {
    fs::remove_all(documents);
    world.settings.WriteShared(keys::kServiceMisc, "ServiceLog", value);
    Start();
    const std::string line = "[2026-03-04  12:30:05,0505]  Start: " + Service::Title() + "\r\n";
    EXPECT_EQ(content(), active ? line : "") << value;
  }
  service->SwitchLog(false);
  const std::string before = content();
  service->Log().SaveLog("x");
  EXPECT_EQ(content(), before);
  service->SwitchLog(true);
  service->DeviceChange("B1:a\r\nb", "KT-X", "2.27", "1");
  EXPECT_TRUE(content().ends_with("Device: B1:a␍␊b, KT-X, 2.27, 1\r\n")) << "one line";
  EXPECT_EQ(world.settings.ReadShared(keys::kServiceMisc, "ServiceLog", ""), "1");
}

TEST_F(RunTest, ALogThatCannotBeWrittenIsLost) {
  std::ofstream(documents) << "a file in place of the folder";
  Start();
  service->SwitchLog(true);
  clsLog log = service->Log();
  for (const fs::path& file : {log.FileName(), fs::path("/dev/full"), fs::path()}) {
    log.Init(file);
    log.SaveLog("x");
    EXPECT_FALSE(fs::is_regular_file(file));
  }
}

TEST_F(RunTest, WhereTheConsoleWritesItsCommands) {
  const auto file = [this] { return ConsoleLogFile(world.settings, "/home/x"); };
  EXPECT_EQ(file(), "/home/x/Ostrel_Service_RegLLog.txt");
  world.settings.WriteProgram("Ostrel", "Dirs", "RGL_Log_Path", "/data");
  world.settings.WriteProgram("Ostrel", "Dirs", "RGL_Log_File", R"(\sub\a.txt)");
  EXPECT_EQ(file(), "/data/sub/a.txt");
}

TEST_F(RunTest, NowAndThenARegulatorIsToldThatTheProgramLives) {
  Select();
  const struct {
    int interval;
    bool idle, lost;
    const char* type;
    int sent;
  } steps[] = {{600000, true, false, "KT-X", 0}, {1, true, false, "KT-X", 1},
               {600000, true, false, "KT-X", 1}, {1, false, false, "KT-X", 1},
               {1, true, false, "KT-X", 2},      {600001, true, true, "KT-X", 2},
               {1, true, false, "KT-X", 2},      {600001, true, false, "KT-XF", 2}};
  for (const auto& step : steps) {
    service->DeviceChange("B1:x", step.type, "2.27", "1");
    service->ServerLink().Identified();
    if (step.lost) service->ServerLink().Doubt();
    service->AliveTick(step.interval, step.idle);
    EXPECT_EQ(Sent("B1:dd-"), step.sent) << &step - steps;
  }
}

TEST_F(RunTest, OnlyTemporaryParameterFilesAreDeleted) {
  const std::pair<const char*, bool> files[] = {
      {"Ostrel/tmp_udm_1.txt", false}, {"ostrel/tmp_udm_.txt", false}, {"ostrel/tmp_udm.txt", true},
      {"ostrel/tmp_udm_1.txt~", true}, {"ostrel/TMP_udm_1.txt", true}, {"else/tmp_udm_1.txt", true},
      {"ostrel/tmp_udm_2.txt", true}};
  for (const char* name : {"Ostrel", "ostrel", "else"}) fs::create_directories(documents / name);
  fs::create_symlink(documents / "else/tmp_udm_1.txt", documents / "ostrel/tmp_udm_2.txt");
  for (const auto& [file, stays] : files) std::ofstream(documents / file) << "x";
  DeleteParameterFiles(documents);
  for (const auto& [file, stays] : files) EXPECT_EQ(fs::exists(documents / file), stays) << file;
  fs::remove_all(documents / "ostrel");
  fs::create_directory_symlink(documents / "else", documents / "ostrel");
  DeleteParameterFiles(documents);
  EXPECT_TRUE(fs::exists(documents / "else/tmp_udm_1.txt")) << "outside";
}

TEST(Placement, FitsTheScreen) {
  const struct {
    Placement stored;
    const char* fitted;
  } cases[] = {{{-1200, 50, 700, 520}, "-1200,50,700,520"},
               {{-1300, -40, 700, 520}, "-1300,0,700,520"},
               {{-90, 50, 700, 520}, ""},
               {{-1200, 1000, 700, 520}, ""},
               {{-2147483647, 0, 2147483647, 2147483647}, "-1280,0,1280,1024"},
               {{2147483647, 0, 2147483647, 700}, ""}};
  for (const auto& c : cases) {
    const auto at = FittedTo({-1280, 0, 1280, 1024}, c.stored);
    std::ostringstream text;
    if (at) text << at->left << ',' << at->top << ',' << at->width << ',' << at->height;
    EXPECT_EQ(text.str(), c.fitted) << c.stored.left;
  }
}

TEST_F(RunTest, AfterALossNothingReachesAnotherDeviceUnasked) {
  const struct {
    const char *version, *serial;
    const char* messages;
    const char* firmware;
  } cases[] = {{"KT-XB+;V2.10", "123", "", "2.10"},   {"KT-XB+;V2.27", "123", "", "2.27"},
               {"KT-XB+;V2.1", "124", "20280", ""},   {"KT-X+;V2.10", "123", "20280", ""},
               {"KT-XB+;V2.1", "<<x>>", "20280", ""}, {"<<no>>", "123", "20280", ""}};
  for (const auto& c : cases) {
    world.server.answers["B1:ver."] = "KT-XB+;V2.10";
    world.server.answers["B1:sysSN#"] = "123";
    Select();
    world.server.fails["CStatus"] = ObjectError(10015, "");
    service->AliveTick(1000, true);
    world.server.fails.clear();
    const auto clear = [&] {
      world.dialogs.yesNo = {true};
      return service->Statistics().Clear() == TapStatistics::Clearing::kDone;
    };
    EXPECT_FALSE(clear());
    EXPECT_TRUE(world.server.sent.empty()) << "to whom?";

    world.dialogs.shown.clear();
    world.server.answers["B1:ver."] = c.version;
    world.server.answers["B1:sysSN#"] = c.serial;
    const bool same = *c.messages == 0;
    EXPECT_EQ(service->Reconnect(), same) << c.version << c.serial;
    EXPECT_EQ(world.dialogs.Numbers(), c.messages);
    EXPECT_TRUE(!same || service->Selected().GetFW() == c.firmware) << c.firmware;
    EXPECT_TRUE(service->Reconnect()) << "reading is possible";
    EXPECT_EQ(clear(), same);
    EXPECT_EQ(Sent("B1:RegTAPSTATCL*=0"), same) << c.version << c.serial;
    EXPECT_TRUE(service->DeviceSelectByAddress("B1:") && clear()) << "selected anew";
  }
}

TEST_F(RunTest, ALostLinkIsReopenedWhereTheDeviceWasSelected) {
  Select();
  world.server.follows = true;
  world.settings.WriteShared(keys::kServerMisc, "CurrentConnection", "Other");
  service->ServerLink().ConnectionClose();
  EXPECT_TRUE(service->Reconnect() && service->Selected().GetKenn());
  EXPECT_EQ(world.server.opened.back(), service->ServerLink().ConnectionName());

  Start();
  world.dialogs.yesNo = {true};
  ASSERT_TRUE(service->ConnectionOpen());
  service->ServerLink().Doubt();
  EXPECT_TRUE(service->ConnectionReselect());
  EXPECT_FALSE(service->ServerLink().Lost()) << "no device to be mistaken for another";
}

TEST_F(RunTest, ALostLinkWithoutAnswerStaysLost) {
  Select();
  service->ServerLink().Doubt();
  world.server.answers.erase("B1:dirn_");
  EXPECT_FALSE(service->Reconnect());
  EXPECT_EQ(world.dialogs.Numbers(), "10012");
  EXPECT_TRUE(service->ServerLink().Lost() && service->Selected().GetKennSel());
  world.server.answers["B1:dirn_"] = "B1:Nord";
  world.server.answers["B1:sysSN#"] = "7";
  EXPECT_FALSE(service->ConnectionReselect());
  EXPECT_TRUE(world.dialogs.asked.empty()) << "a lost line is opened without a question";
  EXPECT_TRUE(service->WritingLocked()) << "another device";
  service->DeviceChange("B1:x", "KT-X", "2.27", "SIM1");
  service->ServerLink().ConnectionClose();
  EXPECT_TRUE(service->Simulated());
  EXPECT_FALSE(service->Reconnect() || service->Selected().GetKennSel());
  service->ServerLink().ConnectionClose();
  EXPECT_FALSE(service->Simulated()) << "a real one answers";
}

}  // namespace
}  // namespace ostrel
