#include "pages/script_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>

#include "app/files.h"
#include "app/text.h"
#include "app/texts.h"
#include "kit/kit.h"
#include "pages/console_log.h"

namespace ostrel {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kEnough = 1UL << 20U;

std::string Contents(const std::string& file) {
  std::string bytes;
  EXPECT_EQ(ReadBytes(file, kEnough, bytes), 0) << file;
  return bytes;
}

/// No file grows beyond so many bytes while it lives, as on a disk that is full.
class SmallFiles {
 public:
  explicit SmallFiles(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit small{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
  }
  ~SmallFiles() { setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_{};
};

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
  fs::create_symlink("s.rgl", link);
  ScriptForm form;
  std::string text;

  EXPECT_EQ(WriteScript(link, "new", form).message, 0);
  struct stat now {};
  ASSERT_EQ(stat(file.c_str(), &now), 0);
  EXPECT_EQ(now.st_mode & 07777U, 0640U);
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(Contents(file), "new");

  const std::string folder = desktop.folder;
  const std::string large = folder + "/large", binary = folder + "/binary";
  ASSERT_EQ(AppendBytes(large, std::string(16 * 1024 * 1024 + 1, 'x')), 0);
  ASSERT_EQ(AppendBytes(binary, std::string(3, '\0')), 0);
  EXPECT_EQ(ReadScript(folder, text, form).message, text::kFileNotRead);
  EXPECT_EQ(ReadScript(folder + "/none", text, form).message, text::kFileNotRead);
  EXPECT_EQ(ReadScript(large, text, form).message, text::kFileTooLarge);
  EXPECT_EQ(ReadScript(binary, text, form).message, text::kFileNoText);
  EXPECT_EQ(WriteScript(folder + "/none/x", "x", form).message, text::kFileNotWritten);
  EXPECT_EQ(WriteScript("/dev/full", "x", form).message, text::kFileNotWritten);
  {
    const SmallFiles limit(50);
    EXPECT_EQ(WriteScript(file, std::string(100, 'x'), form).message, text::kFileNotWritten);
  }
  EXPECT_EQ(Contents(file), "new");
  for (const auto& entry : fs::directory_iterator(folder)) {
    EXPECT_NE(entry.path().extension(), ".tmp") << entry.path();
  }
}

TEST(ConsoleLog, IsCutByCharacters) {
  const struct {
    std::size_t before, after;  // characters of the file before and after a line of one
  } cases[] = {{63999, 64002}, {64000, 64003}, {64001, 32003}, {200000, 32003}};
  for (const char* const unit : {"x", "ü", "€", "😀"}) {
    for (const auto& c : cases) {
      const kit::TemporaryDesktop desktop;
      const std::string file = desktop.folder / "log.txt";
      std::string bytes = "<";
      for (std::size_t n = 1; n < c.before; ++n) bytes += unit;
      ASSERT_EQ(AppendBytes(file, bytes), 0);
      ConsoleLog log;
      log.SetFile(file);
      EXPECT_EQ(log.Append("é"), "");
      const std::string now = Contents(file);
      EXPECT_EQ(CharCount(now), c.after) << unit << c.before;
      EXPECT_TRUE(now.ends_with(unit + std::string("é\r\n"))) << unit << c.before;
      EXPECT_EQ(now.starts_with('<'), c.before <= 64000) << unit << c.before;
      EXPECT_EQ(now.find('\xBF'), std::string::npos);
    }
  }
}

TEST(ConsoleLog, TellsOfAFaultOnce) {
  const kit::TemporaryDesktop desktop;
  ConsoleLog log;
  EXPECT_EQ(log.Append("nowhere"), "");
  log.SetFile(desktop.folder / "none" / "log.txt");
  EXPECT_NE(log.Append("1").find("none"), std::string::npos);
  EXPECT_EQ(log.Append("2"), "");
  fs::create_directory(desktop.folder / "none");
  EXPECT_EQ(log.Append("3"), "");
  EXPECT_EQ(Contents(log.File()), "3\r\n");
  fs::remove_all(desktop.folder / "none");
  EXPECT_NE(log.Append("4"), "");
}

}  // namespace
}  // namespace ostrel
