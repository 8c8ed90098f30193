#include "simulator/pty.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <functional>

#include "simulator/pty_link.h"

namespace ostrel::simulator {
namespace {

namespace fs = std::filesystem;

TEST(PtyLink, ReplacesOnlyWhatLeadsNowhere) {
  const Pty other, own;
  ASSERT_EQ(other.Error() + own.Error(), "");
  const auto linkTo = [](const std::string& target) {
    return [target](const fs::path& path) { fs::create_symlink(target, path); };
  };
  const auto oldLinkToOther = [&](const fs::path& path) {
    fs::create_symlink(other.Name(), path);
    const timespec times[] = {{1'000'000, 0}, {1'000'000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, AT_SYMLINK_NOFOLLOW), 0);
  };
  struct Case {
    std::string what;
    std::function<void(const fs::path&)> make;
    bool taken;
  };
  const Case cases[] = {
      {"nothing", [](const fs::path&) {}, true},
      {"a link to nowhere", linkTo("/nowhere/at/all"), true},
      {"the link of an ended one of the same name", linkTo(own.Name()), true},
      {"the link of an ended one whose name another has", oldLinkToOther, true},
      {"the link to a living one", linkTo(other.Name()), false},
      {"a link to a file", linkTo("/proc/self/exe"), false},
      {"a file", [](const fs::path& path) { std::ofstream{path}; }, false},
      {"a folder", [](const fs::path& path) { fs::create_directory(path); }, false},
  };
  std::string folder = testing::TempDir() + "pty_link_XXXXXX";
  ASSERT_NE(mkdtemp(folder.data()), nullptr);
  const fs::path path = fs::path(folder) / "bus";
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    c.make(path);
    {
      PtyLink link(path);
      EXPECT_EQ(link.LeadTo(own.Name()).empty(), c.taken);
      EXPECT_EQ(fs::is_symlink(path) && fs::read_symlink(path) == own.Name(), c.taken);
      if (c.taken) {
        EXPECT_EQ(link.LeadTo(other.Name()), "") << "its own goes over to another";
      }
    }
    EXPECT_EQ(fs::exists(fs::symlink_status(path)), !c.taken) << "left behind";
    fs::remove(path);
  }
  fs::remove(folder);
}

TEST(Pty, IsAsAtFirstAfterTheLastHost) {
  Pty pty;
  ASSERT_EQ(pty.Error(), "");
  EXPECT_TRUE(pty.IsAlone());
  const int host = open(pty.Name().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
  ASSERT_GE(host, 0);
  ASSERT_EQ(ioctl(host, TIOCEXCL), 0);
  EXPECT_FALSE(pty.IsAlone());
  int exclusive = 0;
  ioctl(host, TIOCGEXCL, &exclusive);
  EXPECT_NE(exclusive, 0) << "its host has it for itself";
  termios settings = {};
  tcgetattr(host, &settings);
  settings.c_lflag |= ICANON | ECHO;
  tcsetattr(host, TCSANOW, &settings);
  ASSERT_EQ(write(pty.Master(), "stale\n", 6), 6);
  close(host);
  pollfd closings = {pty.Closings(), POLLIN, 0};
  EXPECT_EQ(poll(&closings, 1, 0), 1) << "noticed";
  EXPECT_TRUE(pty.IsAlone());
  pty.Reset();
  const int next = open(pty.Name().c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK);
  ASSERT_GE(next, 0);
  ioctl(next, TIOCGEXCL, &exclusive);
  EXPECT_EQ(exclusive, 0);
  tcgetattr(next, &settings);
  EXPECT_EQ(settings.c_lflag & (ICANON | ECHO), 0u);
  char bytes[16];
  EXPECT_EQ(read(next, bytes, sizeof(bytes)), -1) << "nothing left over";
  close(next);
}

}  // namespace
}  // namespace ostrel::simulator
