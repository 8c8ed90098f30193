#include "logs/service_log/clsLog.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "kit/kit.h"

namespace ostrel {
namespace {

namespace fs = std::filesystem;

struct LogTest : testing::Test {
  kit::World world;
  fs::path documents = world.desktop.DocumentsFolder();
  clsLog log{world.clock};

  void SetUp() override { world.clock.now = {2026, 3, 4, 12, 30, 5}; }
  std::string Content() const {
    std::ostringstream text;
    text << std::ifstream(documents / "Ostrel" / "ServiceLog.txt", std::ios::binary).rdbuf();
    return text.str();
  }
};

TEST_F(LogTest, IsWrittenWhileItIsOn) {
  for (const auto& [value, active] : {std::pair{"0", false}, {"", true}, {"2", true}}) {
    fs::remove_all(documents);
    world.settings.WriteShared(keys::kServiceMisc, "ServiceLog", value);
    log.Open(world.settings, documents);
    log.SaveLog("a");
    EXPECT_EQ(Content(), active ? "[2026-03-04  12:30:05,0505]  a\r\n" : "") << value;
  }
  const std::string before = Content();
  log.Switch(world.settings, false);
  log.SaveLog("x");
  EXPECT_EQ(Content(), before);
  log.Switch(world.settings, true);
  EXPECT_EQ(world.settings.ReadShared(keys::kServiceMisc, "ServiceLog", ""), "1");
  kit::Run run(world);
  run.session.onNote = [this](const std::string& text) { log.SaveLog(text); };
  run.session.DeviceChange("B1:a\r\nb", "KT-X", "2.27", "1");
  EXPECT_TRUE(Content().ends_with("Device: B1:a␍␊b, KT-X, 2.27, 1\r\n")) << "one line";
}

TEST_F(LogTest, WhatCannotBeWrittenIsLost) {
  std::ofstream(documents) << "a file in place of the folder";
  log.Open(world.settings, documents);
  log.Switch(world.settings, true);
  for (const fs::path& file : {log.FileName(), fs::path("/dev/full"), fs::path()}) {
    log.Init(file);
    log.SaveLog("x");
    EXPECT_FALSE(fs::is_regular_file(file));
  }
}

}  // namespace
}  // namespace ostrel
