#include "server/serial_device.h"

// The kernel's termios has the speed as a number; the C library's cannot be included as well.
#include <asm/termbits.h>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

#include "wire/codes.h"

namespace ostrel {
namespace {

namespace fs = std::filesystem;

std::string UserName(uid_t id) {
  const passwd* entry = ::getpwuid(id);
  return entry == nullptr ? std::to_string(id) : entry->pw_name;
}

bool InGroup(gid_t id) {
  std::vector<gid_t> groups(static_cast<std::size_t>(std::max(0, ::getgroups(0, nullptr))));
  const int count = ::getgroups(static_cast<int>(groups.size()), groups.data());
  groups.resize(static_cast<std::size_t>(std::max(0, count)));
  return ::getegid() == id || std::find(groups.begin(), groups.end(), id) != groups.end();
}

DeviceAccess AccessOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return {};
  const group* entry = ::getgrgid(status.st_gid);
  constexpr mode_t kReadWrite = S_IRGRP | S_IWGRP;
  // The group of root is nobody's to join.
  const bool open = (status.st_mode & kReadWrite) == kReadWrite && status.st_gid != 0;
  return {UserName(status.st_uid), entry == nullptr ? std::string() : entry->gr_name,
          open && entry != nullptr && !InGroup(status.st_gid)};
}

tcflag_t ParityBits(const Connection& connection) {
  switch (connection.ParityOfLine()) {
    case Parity::kEven:
      return PARENB;
    case Parity::kOdd:
      return PARENB | PARODD;
    case Parity::kMark:
      return PARENB | PARODD | CMSPAR;
    case Parity::kSpace:
      return PARENB | CMSPAR;
    case Parity::kNone:
      break;
  }
  return 0;
}

}  // namespace

std::string RealPath(const std::string& path, int& error) {
  std::error_code failure;
  const fs::path real = fs::canonical(path, failure);
  error = failure.value();
  return failure ? std::string() : real.string();
}

std::string AdapterOf(const std::string& realPath, const std::string& folder) {
  std::string found;
  std::error_code failure;
  for (fs::directory_iterator entry(folder, failure), end; !failure && entry != end;
       entry.increment(failure)) {
    int error = 0;
    const std::string name = entry->path().filename().string();
    // Of several links the first by name, whatever the order in the folder.
    if (RealPath(entry->path().string(), error) == realPath && (found.empty() || name < found)) {
      found = name;
    }
  }
  return found;
}

int ClaimDevice(const std::string& path, SerialFault& fault) {
  const int descriptor = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) {
    fault = OpenFault(path, errno);
    return -1;
  }
  // The terminal's own exclusive mode does not keep root out.
  if (::flock(descriptor, LOCK_EX | LOCK_NB) == 0) return descriptor;
  fault = OpenFault(path, errno == EWOULDBLOCK ? EBUSY : errno);
  ::close(descriptor);
  return -1;
}

SerialFault OpenFault(const std::string& path, int error) {
  switch (error) {
    case ENOENT:
    case ENODEV:
    case ENXIO:
    case ENOTDIR:
      return {Code::kPortInUse, path + ": there is no such device"};
    case EBUSY:
      return {Code::kPortInUse, path + ": another program has it"};
    case EACCES:
    case EPERM:
      return {Code::kPortFailure, NoPermission(path, AccessOf(path), UserName(::geteuid()))};
    default:
      return {Code::kPortFailure, path + ": " + std::generic_category().message(error)};
  }
}

std::string NoPermission(const std::string& path, const DeviceAccess& access,
                         const std::string& user) {
  const std::string text = path + ": no permission";
  if (access.groupMayUse) {
    return text + "; mend it with: sudo usermod -aG " + access.group + " " + user +
           ", then log in again";
  }
  return access.owner.empty() ? text : text + "; it belongs to the user " + access.owner;
}

std::optional<std::string> WrongSetting(int descriptor, const Connection& connection) {
  termios2 set{};
  if (::ioctl(descriptor, TCGETS2, &set) != 0) {
    return "its settings cannot be read: " + std::generic_category().message(errno);
  }
  // Receivers bear two or three per cent between both ends.
  if (std::abs(static_cast<double>(set.c_ospeed) - connection.baud) > 0.02 * connection.baud) {
    return std::to_string(connection.baud) + " baud are not possible";
  }
  if ((set.c_cflag & (PARENB | PARODD | CMSPAR)) != ParityBits(connection)) {
    return "parity " + connection.parity + " is not possible";
  }
  if ((set.c_cflag & CSIZE) != CS8) return "eight data bits are not possible";
  if (((set.c_cflag & CSTOPB) != 0) != (connection.stopBits != "1")) {
    return connection.stopBits + " stop bits are not possible";
  }
  return std::nullopt;
}

}  // namespace ostrel
