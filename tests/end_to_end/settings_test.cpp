// The settings file behaves as a registry does, and as the settings of the other tests.

#include <gtest/gtest.h>

#include <QSettings>
#include <QTemporaryDir>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <set>
#include <thread>

#include "base/files.h"
#include "base/texts.h"
#include "kit/kit.h"
#include "platform/registry_settings.h"

namespace ostrel {
namespace {

namespace fs = std::filesystem;

void BehavesAsARegistry(SettingsStore& settings, const char* name) {
  SCOPED_TRACE(name);
  EXPECT_EQ(settings.ReadShared(keys::kServerMisc, "Testmode", "0"), "0");
  settings.WriteShared(R"(Software\vantrel\Ostrel\Service)", "Value", "a, b; \"c\" ü = %41 \\");
  EXPECT_EQ(settings.ReadShared(R"(software\VANTREL\ostrel\service\)", "vALUE", ""),
            "a, b; \"c\" ü = %41 \\");
  settings.WriteShared(R"(SOFTWARE\vantrel\Ostrel\Service\)", "value", "2");
  EXPECT_EQ(settings.ReadShared(R"(Software\vantrel\Ostrel\Service)", "Value", ""), "2");
  settings.WriteShared(R"(Software\k)", "empty", "");
  EXPECT_EQ(settings.ReadShared(R"(Software\k)", "empty", "x"), "") << "stored, though empty";

  settings.WriteProgram("Ostrel", "Dirs", "RegL", "/a b/c");
  EXPECT_EQ(settings.ReadProgram("ostrel", "dirs", "regl", ""), "/a b/c");
  EXPECT_EQ(settings.ReadProgram("ZubServer", "Dirs", "RegL", "none"), "none");

  const std::string key(keys::kConnections);
  for (const char* connection : {"Werk Süd", "b", "A.1 [x]"}) {
    settings.WriteShared(key + connection, "Kind", "tcp");
    settings.WriteShared(key + connection, "Port", "1");
  }
  EXPECT_EQ(settings.SharedSubKeys(keys::kConnections),
            (std::vector<std::string>{"A.1 [x]", "b", "Werk Süd"}));
  EXPECT_FALSE(settings.Store({{key + "B", "", std::nullopt}}));
  EXPECT_EQ(settings.SharedSubKeys(keys::kConnections),
            (std::vector<std::string>{"A.1 [x]", "Werk Süd"}));
}

/// A settings file in a folder of its own.
class Settings : public testing::Test {
 protected:
  Settings() { qputenv("XDG_CONFIG_HOME", folder_.path().toLocal8Bit()); }

  std::string Bytes(const std::string& file) const {
    std::string bytes;
    EXPECT_EQ(ReadBytes(file, 1UL << 20, bytes), 0) << file;
    return bytes;
  }
  void Write(const std::string& bytes) const {
    fs::create_directories(fs::path(File()).parent_path());
    ASSERT_EQ(ReplaceBytes(File(), bytes), 0);
  }
  static std::string File() { return RegistrySettings().FileName(); }

  QTemporaryDir folder_;
};

TEST_F(Settings, BehaveAsARegistry) {
  kit::MemorySettings memory;
  BehavesAsARegistry(memory, "memory");
  RegistrySettings stored;
  ASSERT_TRUE(stored.FileName().starts_with(folder_.path().toStdString()));
  BehavesAsARegistry(stored, "file");
  EXPECT_TRUE(stored.FindShared(keys::kConnections, R"(WERK SÜD\Kind)"));
  // What another program wrote meanwhile is seen, and what was written is on the disk.
  RegistrySettings other;
  EXPECT_EQ(other.ReadProgram("Ostrel", "Dirs", "RegL", ""), "/a b/c");
  other.WriteShared("Software", "later", "1");
  EXPECT_EQ(stored.ReadShared("Software", "Later", "0"), "1");
}

TEST_F(Settings, TheFileIsTheOneOfEarlierVersions) {
  const QString values[] = {"",
                            "plain",
                            "a, b; \"c\" = %41 \\",
                            "@x",
                            "@@x",
                            " blank ",
                            "ü€😀",
                            "\x01"
                            "2g",
                            "a\nb\tc\r",
                            "a;b",
                            "#",
                            "C:\\new\\x41"};
  const QString names[] = {"Werk", "Werk Süd %", "€😀[x]=;", "a.b-c_d"};
  const auto key = [](const QString& name) { return (R"(Software\k\)" + name).toStdString(); };
  for (const QString& name : names) {
    for (const QString& value : values) {
      fs::remove(File());
      QSettings(QString::fromStdString(File()), QSettings::IniFormat)
          .setValue("Software/k/" + name + "/v", value);
      RegistrySettings settings;
      EXPECT_EQ(settings.ReadShared(key(name), "v", "none"), value.toStdString());
      fs::remove(File());
      EXPECT_FALSE(settings.WriteShared(key(name), "v", value.toStdString()));
      EXPECT_EQ(settings.ReadShared(key(name), "v", "none"), value.toStdString());
      const QSettings before(QString::fromStdString(File()), QSettings::IniFormat);
      EXPECT_EQ(before.value("Software/k/" + name + "/v").toString(), value) << Bytes(File());
    }
  }
}

TEST_F(Settings, WhatSomebodyTypedIsRead) {
  const std::pair<const char*, const char*> cases[] = {
      {"[Software]\r\nK\\v = 1 \r\n", "1"},
      {"\xEF\xBB\xBF[software]\nk\\V=\"1\"", "1"},
      {"# k\\v=0\n;[x]\n[Software\nx\n=\nk\\v=S\xFC"
       "d",
       "Süd"},
      {"[Software]\nk\\v=\\", ""},
      {"[Software]\nk\\v=a, b%", "a, b%"},
      {"[Software]\nk%5Cv=\\xg", "xg"},
      {"[Software]\nk\\v%=1\nk\\v=%U", "%U"},
  };
  for (const auto& [text, value] : cases) {
    Write(text);
    EXPECT_EQ(RegistrySettings().ReadShared(R"(Software\k)", "v", "none"), value) << text;
  }
}

TEST_F(Settings, WhatIsNoTextIsPutAsideOnceAndTold) {
  RegistrySettings settings;
  std::vector<std::string> aside;
  settings.onPutAside = [&](const std::string& file) { aside.push_back(file); };
  const std::string spoiled[] = {std::string(9, 0),
                                 "\x7f"
                                 "ELF",
                                 std::string((1UL << 20) + 1, 'x')};
  for (const std::string& bytes : spoiled) {
    Write(bytes);
    EXPECT_FALSE(settings.FindShared("k", "v"));
    for (const char* value : {"1", "2"}) EXPECT_FALSE(settings.WriteShared("k", "v", value));
    EXPECT_EQ(settings.ReadShared("k", "v", ""), "2");
    EXPECT_TRUE(fs::file_size(aside.back()) == bytes.size() && aside.back() != File());
  }
  EXPECT_EQ(std::set(aside.begin(), aside.end()).size(), std::size(spoiled)) << "one for each";
}

TEST_F(Settings, WhatIsAsItWasIsNotWritten) {
  RegistrySettings settings;
  ASSERT_FALSE(settings.WriteShared("k", "v", "1"));
  // Not even the lock of a writer is in its way.
  const FolderLock writing(fs::path(File()).parent_path().string());
  const std::string unlike = Bytes(File()) + "\n";
  std::ofstream(File(), std::ios::app) << "\n";
  EXPECT_FALSE(settings.Store({{"K", "V", "1"}, {"x", "", {}}}));
  EXPECT_EQ(Bytes(File()), unlike);
}

TEST_F(Settings, WhatIsNotStoredIsTold) {
  RegistrySettings settings;
  const fs::path file = File();
  const std::function<void()> faults[] = {
      [&] { std::ofstream(file.parent_path()) << "no folder"; },
      [&] { fs::create_directories(file); },
      [&] { fs::create_directory(file.parent_path()), fs::create_symlink("/dev/null", file); },
  };
  for (const auto& fault : faults) {
    fault();
    const Error error = settings.WriteShared("k", "v", "1");
    EXPECT_EQ(error.code, text::kSettingsNotStored);
    EXPECT_TRUE(error.detail.starts_with(file.parent_path().string())) << error.detail;
    EXPECT_FALSE(settings.FindShared("k", "v"));
    fs::remove_all(file.parent_path());
  }
}

TEST_F(Settings, NobodyLosesWhatAnotherWrites) {
  constexpr int kWriters = 6, kValues = 8;
  std::vector<std::thread> writers;
  for (int writer = 0; writer < kWriters; ++writer) {
    writers.emplace_back([writer] {
      for (int n = 0; n < kValues; ++n) {
        EXPECT_FALSE(RegistrySettings().WriteShared("k" + std::to_string(writer),
                                                    "v" + std::to_string(n), "1"));
      }
    });
  }
  for (std::thread& writer : writers) writer.join();
  const std::string text = Bytes(File());
  EXPECT_EQ(std::count(text.begin(), text.end(), '='), kWriters * kValues) << text;
  for (const auto& entry : fs::directory_iterator(fs::path(File()).parent_path())) {
    EXPECT_EQ(entry.path().string(), File()) << "left beside";
  }
}

}  // namespace
}  // namespace ostrel
