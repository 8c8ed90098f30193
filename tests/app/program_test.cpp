#include "app/program.h"

#include <gtest/gtest.h>

#include <fstream>

#include "base/program_title.h"
#include "kit/kit.h"

namespace ostrel {
namespace {

TEST(Program, NotesItsStartWhatHappensAndItsEnd) {
  kit::World world;
  world.settings.WriteShared(keys::kServiceMisc, "ServiceLog", "1");
  {
    Program program({world.settings, world.factory, world.dialogs, world.clock, world.desktop}, {},
                    "fra");
    program.MakeDesk().session.DeviceChange("B1:Nord", "KT-X", "2.27", "1");
    EXPECT_EQ(program.MakeDesk().texts.Factor(), 2);
  }
  std::ifstream file(world.desktop.DocumentsFolder() / "Ostrel" / "ServiceLog.txt");
  std::string lines, line;
  while (std::getline(file, line)) lines += line.substr(line.find("]  ") + 3);
  const std::string title = kProgramTitle;
  EXPECT_EQ(lines, "Start: " + title + "\rDevice: B1:Nord, KT-X, 2.27, 1\rEnd: " + title + "\r");
}

TEST(Program, SpeaksTheLanguageOfTheRunBeforeAnythingIsShown) {
  kit::World world;
  world.settings.WriteShared(keys::kServerMisc, "DefTimeout_s", "99");
  const Program program({world.settings, world.factory, world.dialogs, world.clock, world.desktop},
                        {}, "eng");
  ASSERT_EQ(world.dialogs.shown.size(), 1U);
  EXPECT_EQ(world.dialogs.shown[0].text.substr(0, 5), Messages::Text(20001, 1).substr(0, 5));
}

}  // namespace
}  // namespace ostrel
