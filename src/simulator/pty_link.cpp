#include "simulator/pty_link.h"

#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace ostrel::simulator {

namespace {

/// Nothing when the path is no link.
std::string TargetOf(const std::string& path) {
  char target[PATH_MAX];
  const ssize_t length = readlink(path.c_str(), target, sizeof(target));
  return length > 0 ? std::string(target, static_cast<std::size_t>(length)) : std::string();
}

/// Whether the link was made for a terminal that has ended, and whose name another one has now:
/// that one is younger than the link. Some file systems know times to the second only.
bool LeadsToYoungerTerminal(const std::string& path, const std::string& target) {
  struct stat link, terminal;
  return target.starts_with("/dev/pts/") && lstat(path.c_str(), &link) == 0 &&
         stat(target.c_str(), &terminal) == 0 && link.st_mtim.tv_sec + 1 < terminal.st_ctim.tv_sec;
}

}  // namespace

PtyLink::~PtyLink() {
  if (!terminal_.empty() && TargetOf(path_) == terminal_) unlink(path_.c_str());
}

bool PtyLink::MayReplace(const std::string& terminal) const {
  const std::string target = TargetOf(path_);
  if (target.empty()) return false;
  // What has the name of a new terminal was made for an older one.
  if (target == terminal || target == terminal_) return true;
  struct stat any;
  if (stat(path_.c_str(), &any) != 0) return errno == ENOENT;
  return LeadsToYoungerTerminal(path_, target);
}

std::string PtyLink::LeadTo(const std::string& terminal) {
  if (MayReplace(terminal)) unlink(path_.c_str());
  if (symlink(terminal.c_str(), path_.c_str()) != 0) {
    return errno == EEXIST ? "something else stands there" : std::strerror(errno);
  }
  terminal_ = terminal;
  return {};
}

}  // namespace ostrel::simulator
