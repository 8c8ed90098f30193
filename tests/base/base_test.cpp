#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "base/csprachen.h"
#include "base/file_choice.h"
#include "base/files.h"
#include "base/settings_path.h"
#include "base/string_table.h"
#include "base/text.h"
#include "base/texts.h"
#include "base/user_files.h"
#include "kit/kit.h"
#include "wire/codes.h"

namespace ostrel {
namespace {

namespace fs = std::filesystem;

TEST(Texts, EveryEntryIsWholeInThreeLanguages) {
  const auto holders = [](std::string_view text) {
    return std::count(text.begin(), text.end(), '%');
  };
  std::vector<std::span<const TableEntry>> blocks = FeatureTables();
  blocks.insert(blocks.begin(), {FirstBlock(), SecondBlock(), OwnBlock()});
  int lowest = 1000;
  for (const auto block : blocks) {
    for (const TableEntry& entry : block) {
      EXPECT_EQ(Messages::Text(entry.id, 2), entry.texts[2]) << "another table has its hundred";
      for (const std::string_view text : entry.texts) {
        EXPECT_FALSE(text.empty()) << entry.id;
        EXPECT_EQ(holders(text), holders(entry.texts[0])) << text;
      }
      // A factor never reaches from one block into another.
      EXPECT_GE(entry.id, lowest);
      EXPECT_LT(entry.id, lowest + 1000);
    }
    lowest = lowest == 1000 ? 10000 : 20000;
  }
}

TEST(Texts, ByIdAndFactor) {
  const struct {
    int id, factor;
    const char* text;
  } cases[] = {
      {10012, 0, "Zeitüberschreitung! Das Gerät hat nicht geantwortet."},
      {10012, 1, "Timeout! Device did not reply."},
      {1283, 1, "You tried to get an answer without sending a command before."},
      {10012, 3, ""},
      {1000, 9, ""},
      {11012, 0, ""},
      {10012, -1, ""},
      {0, 0, ""},
  };
  for (const auto& c : cases) EXPECT_EQ(Messages::Text(c.id, c.factor), c.text) << c.id;
}

TEST(Languages, StartUpChoice) {
  const struct {
    const char *shared, *program, *code;
    int factor;
    const char* locale = "fr_FR.UTF-8";
  } cases[] = {
      {"", "", "fra", 2},
      {"300", "", "deu", 0},
      {"1", "", "eng", 1},
      {"2", "", "deu", 0},
      {"fra", "", "fra", 2},
      {"ENG", "", "eng", 1},
      {"", "1", "eng", 1},
      {"0", "1", "deu", 0},
      {"xyz", "", "deu", 0},
      {"esp", "", "deu", 0},
      {"spa", "", "deu", 0},
      {"pol", "", "pol", 3},
      {"1x", "", "deu", 0},
      {"", "0", "deu", 0},
      {"", "", "deu", 0, "de_AT@euro"},
      {"", "", "deu", 0, "DE"},
      {"", "", "eng", 1, "en_GB"},
      {"", "", "eng", 1, ""},
      {"", "", "eng", 1, "C.UTF-8"},
      {"", "", "eng", 1, "den_CA"},
  };
  for (const auto& c : cases) {
    kit::World world;
    std::filesystem::create_directory(world.desktop.folder / "polski");
    world.desktop.locale = c.locale;
    if (*c.shared != 0) world.settings.WriteShared(keys::kServerMisc, "language", c.shared);
    if (*c.program != 0) world.settings.WriteProgram("ZubServer", "Misc", "Language", c.program);
    Messages messages(world.dialogs);
    CSprachen sprachen(world.settings, messages, world.desktop);
    sprachen.UserIndex_Test();
    EXPECT_EQ(sprachen.Current(), c.code) << c.shared << "/" << c.program << c.locale;
    EXPECT_EQ(messages.Factor(), c.factor) << c.shared << "/" << c.program;
  }
}

TEST(Languages, ALanguageWithoutTextsHasCaptionsAndQuestions) {
  kit::World world;
  Messages messages(world.dialogs);
  messages.SetFactor(3);
  EXPECT_EQ(messages.Caption(text::kYes), "&Yes");
  messages.Warn(Code::kTimeout, "\nx");
  EXPECT_EQ(world.dialogs.shown[0].text, "\nx");
  EXPECT_EQ(world.dialogs.shown[0].number, 10012);
  messages.Ask(text::kDeleteStatistics);
  EXPECT_EQ(world.dialogs.asked.back(), Messages::Text(text::kDeleteStatistics, 1));
}

TEST(Texts, LineEndsOfTheTableAndNoOthers) {
  kit::ScriptedDialogs dialogs;
  Messages messages(dialogs);
  messages.SetFactor(1);
  messages.WarnFilled(Error{Code::kPortInUse, "/dev/tty\\n: no such device"}, "B1:");
  messages.WarnFilled(text::kFileNotWritten, R"(C:\new\%s)");
  messages.Ask(Code::kPortInUse);
  const std::string adapter =
      "\nIf using a PC without serial ports: Please plug in your USB adapter.";
  EXPECT_TRUE(dialogs.shown[0].text.ends_with(adapter + "\n/dev/tty\\n: no such device"));
  EXPECT_TRUE(dialogs.shown[1].text.ends_with(R"(: C:\new\%s)")) << dialogs.shown[1].text;
  EXPECT_TRUE(dialogs.asked[0].ends_with(adapter));
  EXPECT_EQ(messages.Filled(text::kSendToDevice, "%s", "\\n"), "Send %s to device \\n ?");
}

TEST(Languages, TableAndFolders) {
  kit::World world;
  Messages messages(world.dialogs);
  CSprachen sprachen(world.settings, messages, world.desktop);
  EXPECT_EQ(sprachen.Count(), 10);
  sprachen.SetLanguage("rus");
  EXPECT_EQ(sprachen.Charset(), 204);
  sprachen.SetLanguage("eng");
  EXPECT_EQ(sprachen.LanguagePath(), (world.desktop.folder / "english" / "").string());
  sprachen.SaveLanguage();
  EXPECT_EQ(world.settings.ReadShared(keys::kServerMisc, "language", ""), "eng");
  std::filesystem::remove(world.desktop.folder / "english");
  EXPECT_EQ(sprachen.LanguagePath(), (world.desktop.folder / "deutsch" / "").string());
  EXPECT_EQ(sprachen.Current(), "deu");
  sprachen.Activate_Test("xyz", 1);
  ASSERT_EQ(world.dialogs.shown.size(), 1u);
  EXPECT_EQ(world.dialogs.shown[0].text, "Achtung: Nicht erlaubte Sprache angefordert: xyz");
}

TEST(SettingsPath, OneSpelling) {
  EXPECT_EQ(SettingsPath(R"(Software\\a\)", "v"), R"(Software\a\v)");
  EXPECT_EQ(SettingsPath("a", ""), "a");
  EXPECT_EQ(SubKeyOf(R"(a\B\)", R"(A\b\Name\Kind)"), "Name");
  EXPECT_EQ(SubKeyOf("a", R"(a\value)"), "");
  EXPECT_EQ(SubKeyOf("a", R"(ab\c\d)"), "");
}

TEST(Files, WhatAKilledWriteLeftGoesWithTheNext) {
  const kit::TemporaryDesktop desktop;
  const std::string file = desktop.folder / "a.rgl";
  const std::pair<const char*, bool> files[] = {{"a.rgl.4711-0.tmp", false},
                                                {"a.rgl.4711-1.tmp", true},  // still being written
                                                {"a.rgl.backup", true},
                                                {"a.rgl.4-.tmp", true},
                                                {"b.rgl.4711-0.tmp", true}};
  for (const auto& [name, stays] : files) std::ofstream(desktop.folder / name) << "x";
  const int writing = open((desktop.folder / files[1].first).c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_EQ(flock(writing, LOCK_EX), 0);
  EXPECT_EQ(ReplaceBytes(file, "new"), 0);
  for (const auto& [name, stays] : files)
    EXPECT_EQ(fs::exists(desktop.folder / name), stays) << name;
  close(writing);
  std::string bytes;
  EXPECT_EQ(ReadBytes(file, 9, bytes), 0);
  EXPECT_EQ(bytes, "new");
}

TEST(UserFiles, WhereTheConsoleWritesItsCommands) {
  kit::MemorySettings settings;
  const auto file = [&] { return ConsoleLogFile(settings, "/home/x"); };
  EXPECT_EQ(file(), "/home/x/Ostrel_Service_RegLLog.txt");
  settings.WriteProgram("Ostrel", "Dirs", "RGL_Log_Path", "/data");
  settings.WriteProgram("Ostrel", "Dirs", "RGL_Log_File", R"(\sub\a.txt)");
  EXPECT_EQ(file(), "/data/sub/a.txt");
}

TEST(UserFiles, OnlyTemporaryParameterFilesAreDeleted) {
  const kit::TemporaryDesktop desktop;
  const fs::path documents = desktop.DocumentsFolder();
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

TEST(FileChoice, RemembersTheFolder) {
  kit::World world;
  Messages messages(world.dialogs);
  world.dialogs.files = {"/data/export/a.csv"};
  const auto choose = [&] {
    return ChooseFile(world.dialogs, world.settings, messages, FileDialogKind::kOpen,
                      text::kStatistics, text::kType, "XFLog");
  };
  EXPECT_EQ(choose(), "/data/export/a.csv");
  EXPECT_EQ(choose(), std::nullopt) << "cancelled";
  EXPECT_EQ(world.dialogs.asked.back(), "Statistik|Typ|/data/export");
}

TEST(TextWidth, CountsCharacters) {
  EXPECT_EQ(CharCount("Süd"), 3u);
  EXPECT_EQ(Fitted("Süd-West", 3) + "|", "Süd|");
  EXPECT_EQ(Fitted("Süd", 5) + "|", "Süd  |");
  EXPECT_EQ(Padded("Süd-West", 3), "Süd-West");
  const std::pair<std::string, const char*> cases[] = {
      {"a\r\nb\n", "a\nb\n"}, {"\x1b[2J", "␛[2J"},      {"\x7f", "␡"}, {"a\rb", "a␍b"},
      {"\xc2\x9b", "\uFFFD"}, {std::string(1, 0), "␀"}, {"ü", "ü"},    {"\xe2\x1b", "\xe2␛"},
  };
  for (const auto& [text, visible] : cases) EXPECT_EQ(Visible(text), visible);
  EXPECT_EQ(VisibleLine("N\r\nfake"), "N␍␊fake");
}

}  // namespace
}  // namespace ostrel
