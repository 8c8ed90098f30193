#include "pages/console/console_log.h"

#include <cerrno>
#include <filesystem>
#include <limits>
#include <system_error>
#include <utility>

#include "base/files.h"
#include "base/text.h"

namespace ostrel {

namespace {

/// The end of a text, so many characters long.
std::string_view LastCharacters(std::string_view text, std::size_t count) {
  std::size_t start = text.size();
  while (count > 0 && start > 0) {
    --start;
    if (CharCount(text.substr(start, 1)) > 0) --count;
  }
  return text.substr(start);
}

}  // namespace

void ConsoleLog::SetFile(std::string file) {
  file_ = std::move(file);
  failing_ = false;
}

int ConsoleLog::Cut() const {
  std::error_code unknown;
  // A file without so many bytes has not so many characters; most are done with here.
  const std::uintmax_t size = std::filesystem::file_size(file_, unknown);
  if (unknown || size <= kMost) return 0;
  std::string text;
  const int error = ReadBytes(file_, std::numeric_limits<std::size_t>::max(), text);
  if (error != 0 || CharCount(text) <= kMost) return error;
  return ReplaceBytes(file_, LastCharacters(text, kKept));
}

std::string ConsoleLog::Append(std::string_view text) {
  if (file_.empty()) return {};
  int error = Cut();
  const int appending = AppendBytes(file_, std::string(text) + "\r\n");
  if (error == 0) error = appending;
  const bool told = std::exchange(failing_, error != 0);
  return error != 0 && !told ? FileFault(file_, error) : std::string();
}

}  // namespace ostrel
