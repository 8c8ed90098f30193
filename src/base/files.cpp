#include "base/files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

namespace ostrel {

namespace {

constexpr mode_t kPermissions = 07777;
constexpr mode_t kNewFile = 0666;

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

/// A new file beside another one, under a name that is not taken.
int OpenBeside(const std::string& target, std::string& name) {
  constexpr int kAttempts = 100;
  int file = -1;
  for (int n = 0; n < kAttempts; ++n) {
    name = target + "." + std::to_string(getpid()) + "-" + std::to_string(n) + ".tmp";
    file = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFile);
    if (file >= 0 || errno != EEXIST) break;
  }
  return file;
}

int WriteBeside(const std::string& target, std::string_view bytes, const struct stat* before) {
  std::string name;
  Descriptor file(OpenBeside(target, name));
  if (!file.Open()) return errno;
  int error = WriteAll(file.Number(), bytes);
  if (error == 0 && before != nullptr &&
      fchmod(file.Number(), before->st_mode & kPermissions) != 0) {
    error = errno;
  }
  if (error == 0 && fsync(file.Number()) != 0) error = errno;
  const int closing = file.Close();
  if (error == 0) error = closing;
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

std::string FileFault(const std::string& path, int error) {
  return path + ": " + std::generic_category().message(error);
}

}  // namespace ostrel
