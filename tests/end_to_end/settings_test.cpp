// The settings file behaves as a registry does, and as the settings of the other tests.

#include <gtest/gtest.h>

#include <QTemporaryDir>
#include <memory>

#include "kit/kit.h"
#include "platform/registry_settings.h"

namespace ostrel {
namespace {

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
  settings.RemoveSharedKey(key + "B");
  EXPECT_EQ(settings.SharedSubKeys(keys::kConnections),
            (std::vector<std::string>{"A.1 [x]", "Werk Süd"}));
}

TEST(Settings, BehaveAsARegistry) {
  kit::MemorySettings memory;
  BehavesAsARegistry(memory, "memory");
  const QTemporaryDir folder;
  qputenv("XDG_CONFIG_HOME", folder.path().toLocal8Bit());
  auto stored = std::make_unique<RegistrySettings>();
  ASSERT_TRUE(QString::fromStdString(stored->FileName()).startsWith(folder.path()));
  BehavesAsARegistry(*stored, "file");
  // What another program wrote meanwhile is seen, and what was written is on the disk.
  RegistrySettings other;
  EXPECT_EQ(other.ReadProgram("Ostrel", "Dirs", "RegL", ""), "/a b/c");
  other.WriteShared("Software", "later", "1");
  EXPECT_EQ(stored->ReadShared("Software", "Later", "0"), "1");
}

}  // namespace
}  // namespace ostrel
