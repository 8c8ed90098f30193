#include "pages/console/unsaved_script.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <system_error>
#include <utility>

#include "base/files.h"

namespace ostrel {

namespace {

namespace fs = std::filesystem;

constexpr int kMostWindows = 99;
constexpr mode_t kOwnOnly = 0600;
constexpr int kOpen = O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
constexpr std::string_view kTemporary = ".tmp";

/// The first line, a comment to whoever opens the file as a script: the form of the script's own
/// file in one word, then its name.
constexpr std::string_view kHeader = "# UnsavedScript ";

std::string FormWord(const ScriptForm& form) {
  std::string word = form.encoding == ScriptForm::Encoding::kUtf8 ? "utf8" : "1252";
  if (form.byteOrderMark) word += "-bom";
  return word + (form.lineEnd == "\n" ? "-lf" : form.lineEnd == "\r" ? "-cr" : "-crlf");
}

ScriptForm FormOf(std::string_view word) {
  ScriptForm form;
  if (word.starts_with("1252")) form.encoding = ScriptForm::Encoding::kWindows1252;
  form.byteOrderMark = word.find("-bom") != std::string_view::npos;
  form.lineEnd = word.ends_with("-lf") ? "\n" : word.ends_with("-cr") ? "\r" : "\r\n";
  return form;
}

std::string Packed(std::string_view text, const ScriptOrigin& origin) {
  std::string name = origin.fileName;
  // A name of more than one line would become part of the script.
  std::erase_if(name, [](unsigned char c) { return std::iscntrl(c) != 0; });
  std::string bytes(kHeader);
  bytes.append(FormWord(origin.form)).append(" ").append(name).append("\r\n");
  return bytes.append(text);
}

/// Nothing for what is no text. A file without the first line is a script as it stands.
std::optional<UnsavedScript::Contents> Unpacked(std::string_view bytes) {
  UnsavedScript::Contents contents;
  if (!bytes.starts_with(kHeader)) {
    ScriptForm form;
    if (bytes.empty() || !DecodeScript(bytes, contents.text, form)) return std::nullopt;
    return contents;
  }
  const std::size_t end = std::min(bytes.find("\r\n"), bytes.size());
  const std::string_view header = bytes.substr(kHeader.size(), end - kHeader.size());
  const std::size_t blank = std::min(header.find(' '), header.size());
  ScriptForm form;
  if (!DecodeScript(bytes.substr(std::min(end + 2, bytes.size())), contents.text, form)) return {};
  contents.origin.form = FormOf(header.substr(0, blank));
  contents.origin.fileName = header.substr(std::min(blank + 1, header.size()));
  return contents;
}

/// Locks a file that no living program holds; -1 where there is none.
int Lock(const fs::path& path) {
  const int file = open(path.c_str(), kOpen);
  if (file < 0) return -1;
  struct stat opened {};
  struct stat now {};
  // Whoever had it may have replaced or removed it before the lock was free.
  if (flock(file, LOCK_EX | LOCK_NB) == 0 && fstat(file, &opened) == 0 &&
      stat(path.c_str(), &now) == 0 && S_ISREG(opened.st_mode) && opened.st_ino == now.st_ino &&
      opened.st_dev == now.st_dev) {
    return file;
  }
  close(file);
  return -1;
}

/// A new file, locked and for its owner alone from the first byte on; -1 where the name is taken.
int Make(const fs::path& path) {
  const int file = open(path.c_str(), kOpen | O_CREAT | O_EXCL, kOwnOnly);
  if (file < 0 || flock(file, LOCK_EX | LOCK_NB) == 0) return file;
  close(file);
  return -1;
}

}  // namespace

fs::path UnsavedScript::File(int number) const {
  if (number == 1) return first_;
  const std::string name = first_.stem().string() + "-" + std::to_string(number);
  return first_.parent_path() / (name + first_.extension().string());
}

void UnsavedScript::Sweep() const {
  const std::string begin = first_.stem().string();
  std::error_code failed;
  for (fs::directory_iterator entry(first_.parent_path(), failed), end; !failed && entry != end;
       entry.increment(failed)) {
    const std::string name = entry->path().filename().string();
    if (!name.starts_with(begin) || !name.ends_with(kTemporary)) continue;
    const int file = Lock(entry->path());
    if (file < 0) continue;  // one is just being written
    unlink(entry->path().c_str());
    close(file);
  }
}

std::optional<UnsavedScript::Contents> UnsavedScript::TakeUp() {
  Sweep();
  for (int number = 1; number <= kMostWindows; ++number) {
    const fs::path file = File(number);
    const int lock = Lock(file);
    if (lock < 0) continue;
    std::string bytes;
    const int error = ReadBytes(file.string(), kMostScriptBytes, bytes);
    if (std::optional<Contents> contents = error == 0 ? Unpacked(bytes) : std::nullopt) {
      LetGo();
      fchmod(lock, kOwnOnly);
      file_ = file;
      lock_ = lock;
      return contents;
    }
    if (error == 0 && bytes.empty()) unlink(file.c_str());
    close(lock);
  }
  return std::nullopt;
}

bool UnsavedScript::Claim() {
  std::error_code ignored;
  fs::create_directories(first_.parent_path(), ignored);
  for (int number = 1; number <= kMostWindows && lock_ < 0; ++number) {
    file_ = File(number);
    lock_ = Make(file_);
  }
  return lock_ >= 0;
}

bool UnsavedScript::Keep(std::string_view text, const ScriptOrigin& origin) {
  // One that somebody else removed is no place any more.
  struct stat held {};
  if (lock_ >= 0 && (fstat(lock_, &held) != 0 || held.st_nlink == 0)) LetGo();
  return (lock_ >= 0 || Claim()) && Replace(Packed(text, origin));
}

bool UnsavedScript::Replace(const std::string& bytes) {
  const std::string beside = file_.string() + std::string(kTemporary);
  unlink(beside.c_str());  // of a program that was killed over it
  const int file = Make(beside);
  if (file < 0) return false;
  if (AppendBytes(beside, bytes) == 0 && fsync(file) == 0 &&
      rename(beside.c_str(), file_.c_str()) == 0) {
    close(std::exchange(lock_, file));
    return true;
  }
  unlink(beside.c_str());
  close(file);
  return false;
}

void UnsavedScript::Drop() {
  if (lock_ >= 0) unlink(file_.c_str());
  LetGo();
}

void UnsavedScript::LetGo() {
  if (lock_ >= 0) close(lock_);
  lock_ = -1;
}

}  // namespace ostrel
