#include "base/files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <ctime>
#include <filesystem>
#include <system_error>

namespace ostrel {

namespace {

constexpr mode_t kPermissions = 07777;
constexpr mode_t kNewFile = 0666;
constexpr mode_t kPrivateFile = 0600;

/// Closes what was opened.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { Close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Number() const { return number_; }
  bool Open() const { return number_ >= 0; }
  int Close() {
    const int closing = number_;
    number_ = -1;
    return closing < 0 || close(closing) == 0 ? 0 : errno;
  }

 private:
  int number_;
};

int WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

int WriteOpened(Descriptor& file, std::string_view bytes) {
  const int error = WriteAll(file.Number(), bytes);
  return error != 0 ? error : file.Close();
}

/// The file to which links lead; the path itself where they turn in circles.
std::string BehindLinks(const std::string& path) {
  constexpr int kMostLinks = 40;
  std::filesystem::path target = path;
  std::error_code error;
  for (int n = 0; n < kMostLinks && std::filesystem::is_symlink(target, error); ++n) {
    const std::filesystem::path next = std::filesystem::read_symlink(target, error);
    if (error) break;
    target = target.parent_path() / next;
  }
  return target.string();
}

/// What a write of this file begins beside it is called "NAME.<process>-<n>.tmp".
bool BegunFor(std::string_view file, std::string_view name) {
  constexpr std::string_view kEnd = ".tmp";
  if (!name.starts_with(file) || !name.ends_with(kEnd)) return false;
  name.remove_prefix(file.size());
  name.remove_suffix(std::min(name.size(), kEnd.size()));
  const std::size_t dash = name.find('-');
  if (!name.starts_with('.') || dash == std::string_view::npos) return false;
  const auto number = [](std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
  };
  return number(name.substr(1, dash - 1)) && number(name.substr(dash + 1));
}

/// Removes what killed writes left beside a file. One that is under way holds the lock of its own.
void SweepBeside(const std::filesystem::path& target) {
  const std::filesystem::path folder =
      target.has_parent_path() ? target.parent_path() : std::filesystem::path(".");
  const std::string file = target.filename().string();
  std::error_code failed;
  for (std::filesystem::directory_iterator entry(folder, failed), end; !failed && entry != end;
       entry.increment(failed)) {
    if (!BegunFor(file, entry->path().filename().string())) continue;
    const Descriptor stray(
        open(entry->path().c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (stray.Open() && flock(stray.Number(), LOCK_EX | LOCK_NB) == 0) {
      unlink(entry->path().c_str());
    }
  }
}

/// A new file beside another one, locked, under a name that is not taken.
int OpenBeside(const std::string& target, mode_t permissions, std::string& name) {
  constexpr int kAttempts = 100;
  errno = EEXIST;
  for (int n = 0; n < kAttempts; ++n) {
    name = target + "." + std::to_string(getpid()) + "-" + std::to_string(n) + ".tmp";
    const int file = open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, permissions);
    if (file < 0 && errno != EEXIST) return file;
    if (file < 0) continue;
    // Where a file system knows no locks, nothing is swept either.
    flock(file, LOCK_EX);
    struct stat made {};
    if (fstat(file, &made) == 0 && made.st_nlink > 0) return file;
    close(file);  // swept before it was locked
    errno = EEXIST;
  }
  return -1;
}

int WriteBeside(const std::string& target, std::string_view bytes, const struct stat* before) {
  SweepBeside(target);
  std::string name;
  // What was private is so from the first byte.
  Descriptor file(OpenBeside(target, before == nullptr ? kNewFile : kPrivateFile, name));
  if (!file.Open()) return errno;
  int error = WriteAll(file.Number(), bytes);
  if (error == 0 && before != nullptr &&
      fchmod(file.Number(), before->st_mode & kPermissions) != 0) {
    error = errno;
  }
  if (error == 0 && fsync(file.Number()) != 0) error = errno;
  if (error == 0 && rename(name.c_str(), target.c_str()) != 0) error = errno;
  if (error != 0) unlink(name.c_str());
  return error;
}

}  // namespace

int ReadBytes(const std::string& path, std::size_t limit, std::string& bytes) {
  constexpr std::size_t kPortion = 64UL * 1024;
  bytes.clear();
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.Open()) return errno;
  for (;;) {
    const std::size_t before = bytes.size();
    bytes.resize(before + kPortion);
    const ssize_t length = read(file.Number(), bytes.data() + before, kPortion);
    bytes.resize(before + static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    if (length < 0 && errno == EINTR) continue;
    if (length < 0) return errno;
    if (length == 0) return 0;
    if (bytes.size() > limit) return EFBIG;
  }
}

int ReplaceBytes(const std::string& path, std::string_view bytes) {
  const std::string target = BehindLinks(path);
  struct stat before {};
  if (stat(target.c_str(), &before) != 0) return WriteBeside(target, bytes, nullptr);
  // To take the place of a file needs no right to write it.
  if (access(target.c_str(), W_OK) != 0) return errno;
  if (S_ISREG(before.st_mode)) return WriteBeside(target, bytes, &before);
  Descriptor device(open(target.c_str(), O_WRONLY | O_CLOEXEC));
  return device.Open() ? WriteOpened(device, bytes) : errno;
}

int AppendBytes(const std::string& path, std::string_view bytes) {
  Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, kNewFile));
  return file.Open() ? WriteOpened(file, bytes) : errno;
}

FolderLock::FolderLock(const std::string& folder)
    : descriptor_(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
  constexpr int kAttempts = 2500;
  constexpr timespec kPause = {0, 2'000'000};
  // A file system that knows no locks has nobody wait; one who is stopped with the lock, not long.
  for (int n = 0; n < kAttempts; ++n) {
    if (descriptor_ < 0 || flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return;
    if (errno != EWOULDBLOCK && errno != EINTR) return;
    nanosleep(&kPause, nullptr);
  }
}

FolderLock::~FolderLock() {
  if (descriptor_ >= 0) close(descriptor_);
}

std::string FileFault(const std::string& path, int error) {
  return path + ": " + std::generic_category().message(error);
}

}  // namespace ostrel
