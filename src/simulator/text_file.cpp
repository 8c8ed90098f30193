#include "simulator/text_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace ostrel::simulator {

std::string ReadTextFile(const std::string& path, std::size_t limit, std::string& text) {
  constexpr std::size_t kPortion = 64 * 1024;
  text.clear();
  const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (file < 0) return std::strerror(errno);
  std::string failure;
  ssize_t length = 1;
  while (length > 0 && failure.empty()) {
    const std::size_t before = text.size();
    text.resize(before + kPortion);
    length = read(file, text.data() + before, kPortion);
    if (length < 0) failure = std::strerror(errno);
    text.resize(before + static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    if (text.size() > limit) failure = "longer than " + std::to_string(limit) + " bytes";
  }
  close(file);
  return failure;
}

}  // namespace ostrel::simulator
