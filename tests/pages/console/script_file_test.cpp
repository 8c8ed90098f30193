#include "pages/console/script_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>

#include "base/files.h"
#include "base/texts.h"
#include "kit/kit.h"
#include "pages/console/console_log.h"
#include "pages/console/console_texts.h"

namespace ostrel {
namespace {

std::string Contents(const std::string& file) {
  std::string bytes;
  EXPECT_EQ(ReadBytes(file, 1U << 20U, bytes), 0) << file;
  return bytes;
}

TEST(ScriptFile, KeepsItsForm) {
  const struct {
    std::string bytes, text;
    const char* added;  // what is written behind it
    std::string saved;
  } cases[] = {
      {"a\r\nb", "a\r\nb", "\r\nü", "a\r\nb\r\n\xC3\xBC"},
      {"a\nb\n", "a\r\nb\r\n", "c", "a\nb\nc"},
      {"a\rb\r\r", "a\r\nb\r\n\r\n", "c\r\n", "a\rb\r\rc\r"},
      {"a\rb\nc\r\n", "a\r\nb\r\nc\r\n", "", "a\r\nb\r\nc\r\n"},
      {"\xEF\xBB\xBFü\n", "ü\r\n", "x", "\xEF\xBB\xBFü\nx"},
      {"\x80 \xFC \x81\n", "€ ü \u0081\r\n", "ß", "\x80 \xFC \x81\n\xDF"},
      {"\xFC\n", "ü\r\n", "Ω", "ü\nΩ"},  // not in Windows-1252
      {"\xC3\xFC", "Ãü", "\x08", "\xC3\xFC\x08"},
      {"\xC0\xAF\xED\xA0\x80", "À¯í\u00A0€", "", "\xC0\xAF\xED\xA0\x80"},
      {"", "", "x\r\ny", "x\r\ny"},
  };
  for (const auto& c : cases) {
    std::string text;
    ScriptForm form;
    ASSERT_TRUE(DecodeScript(c.bytes, text, form));
    EXPECT_EQ(text, c.text);
    EXPECT_EQ(EncodeScript(text + c.added, form), c.saved) << c.text;
  }
  ScriptForm form{.encoding = ScriptForm::Encoding::kWindows1252};
  EXPECT_EQ(EncodeScript("Ã¼", form), "Ã¼") << "would be read as another text";
  std::string text;
  EXPECT_FALSE(DecodeScript(std::string("a\0b", 3), text, form));
}

TEST(ScriptFile, IsReplacedWhole) {
  const kit::TemporaryDesktop desktop;
  const std::string file = desktop.folder / "s.rgl";
  const std::string link = desktop.folder / "link.rgl";
  ASSERT_EQ(AppendBytes(file, "old"), 0);
  ASSERT_EQ(chmod(file.c_str(), 0640), 0);
  std::filesystem::create_symlink("s.rgl", link);
  ScriptForm form;
  std::string text;

  EXPECT_EQ(WriteScript(link, "new", form).message, 0);
  struct stat now {};
  ASSERT_EQ(stat(file.c_str(), &now), 0);
  EXPECT_EQ(now.st_mode & 07777U, 0640U);
  EXPECT_TRUE(std::filesystem::is_symlink(link));
  EXPECT_EQ(Contents(file), "new");

  const std::string folder = desktop.folder, large = folder + "/large";
  ASSERT_EQ(AppendBytes(large, std::string(16 * 1024 * 1024 + 1, 'x')), 0);
  EXPECT_EQ(ReadScript(folder, text, form).message, text::kFileNotRead);
  EXPECT_EQ(ReadScript(folder + "/none", text, form).message, text::kFileNotRead);
  EXPECT_EQ(ReadScript(large, text, form).message, text::kFileTooLarge);
  EXPECT_EQ(ReadScript("/proc/self/cmdline", text, form).message, text::kFileNoText);
  EXPECT_EQ(WriteScript(folder + "/none/x", "x", form).message, text::kFileNotWritten);
  // A disk that is full.
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit small{50, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &small);
  EXPECT_EQ(WriteScript(file, std::string(100, 'x'), form).message, text::kFileNotWritten);
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(Contents(file), "new");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 3 + 3)
      << "something is left over";
}

TEST(ConsoleLog, IsCutByCharacters) {
  for (const std::string unit : {"x", "ü", "€", "😀"}) {
    for (const std::size_t length : {63999, 64000, 64001, 200000}) {
      const kit::TemporaryDesktop desktop;
      ConsoleLog log;
      log.SetFile(desktop.folder / "log.txt");
      std::string before;
      for (std::size_t n = 0; n < length; ++n) before += unit;
      const std::string kept = before.substr(0, (length > 64000 ? 32000 : length) * unit.size());
      ASSERT_EQ(AppendBytes(log.File(), before), 0);
      EXPECT_EQ(log.Append("é"), "");
      EXPECT_TRUE(Contents(log.File()) == kept + "é\r\n") << unit << length;
    }
  }
}

}  // namespace
}  // namespace ostrel
