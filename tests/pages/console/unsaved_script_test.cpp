#include "pages/console/unsaved_script.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <set>

#include "base/files.h"
#include "kit/kit.h"

namespace ostrel {
namespace {

using Names = std::set<std::string>;

struct UnsavedScriptTest : testing::Test {
  const kit::TemporaryDesktop desktop;
  const std::filesystem::path folder = desktop.folder / "aside", first = folder / "Unsaved.txt";
  const ScriptOrigin origin{
      "/a b/setup.lxl",
      {.encoding = ScriptForm::Encoding::kWindows1252, .byteOrderMark = false, .lineEnd = "\n"}};

  Names There() const {
    Names names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      names.insert(entry.path().filename());
    }
    return names;
  }
};

TEST_F(UnsavedScriptTest, BelongsToALivingWindowOrIsFreeToBeTakenUp) {
  {
    UnsavedScript one(first), two(first);
    EXPECT_TRUE(one.Keep("one", origin) && two.Keep("# two\r\nü", {}) && one.Keep("one!", origin));
    EXPECT_EQ(There(), (Names{"Unsaved.txt", "Unsaved-2.txt"}));
    for (const std::string& name : There()) {
      struct stat now {};
      ASSERT_EQ(stat((folder / name).c_str(), &now), 0);
      EXPECT_EQ(now.st_mode & 07777U, 0600U) << name;
    }
    EXPECT_FALSE(UnsavedScript(first).TakeUp()) << "both windows live";
  }
  UnsavedScript one(first), two(first), three(first);
  const auto again = one.TakeUp();
  ASSERT_TRUE(again);
  EXPECT_EQ(again->text, "one!");
  EXPECT_EQ(again->origin.fileName, origin.fileName);
  EXPECT_EQ(again->origin.form.encoding, origin.form.encoding);
  EXPECT_EQ(again->origin.form.lineEnd, "\n");
  EXPECT_EQ(two.TakeUp().value_or(UnsavedScript::Contents()).text, "# two\r\nü");
  EXPECT_TRUE(three.Keep("three", {}));
  EXPECT_EQ(There().size(), 3U) << "what was taken up is not safe elsewhere yet";
  one.Drop();
  EXPECT_EQ(There(), (Names{"Unsaved-2.txt", "Unsaved-3.txt"}));
  EXPECT_TRUE(one.Keep("once more", {}));
  EXPECT_EQ(There().count("Unsaved.txt"), 1U);
}

TEST_F(UnsavedScriptTest, SurvivesWhatGoesWrong) {
  std::filesystem::create_directories(folder);
  // Left by killed programs; a file of another program, and a script as it stands.
  for (const char* name :
       {"Unsaved.txt.12-0.tmp", "Unsaved.txt.tmp", "Unsaved-2.txt", "Other.txt.tmp"}) {
    ASSERT_EQ(AppendBytes(folder / name, {}), 0);
  }
  ASSERT_EQ(AppendBytes(first, "RegUn=1\n"), 0);
  UnsavedScript script(first);
  EXPECT_EQ(script.TakeUp().value_or(UnsavedScript::Contents()).text, "RegUn=1\r\n");
  struct stat now {};
  ASSERT_EQ(stat(first.c_str(), &now), 0);
  EXPECT_EQ(now.st_mode & 07777U, 0600U);
  EXPECT_FALSE(UnsavedScript(first).TakeUp()) << "an empty one holds nothing";
  EXPECT_EQ(There(), (Names{"Unsaved.txt", "Other.txt.tmp"}));

  // A disk that is full: the text before is still there.
  ASSERT_TRUE(script.Keep("before", {}));
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{50, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_FALSE(script.Keep(std::string(100, 'x'), {}));
  setrlimit(RLIMIT_FSIZE, &before);
  std::string bytes;
  ASSERT_EQ(ReadBytes(first, 1000, bytes), 0);
  EXPECT_TRUE(bytes.ends_with("before")) << bytes;

  std::filesystem::remove_all(folder);
  EXPECT_TRUE(script.Keep("a new place", {})) << "somebody removed it";
  EXPECT_EQ(There(), (Names{"Unsaved.txt"}));
}

}  // namespace
}  // namespace ostrel
