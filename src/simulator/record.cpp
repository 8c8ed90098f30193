#include "simulator/record.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <time.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstring>

namespace ostrel::simulator {

namespace {

constexpr std::string_view kDigits = "0123456789abcdef";
// How a time is written; "0" stands for any digit.
constexpr std::string_view kTimeForm = "0000-00-00 00:00:00.000";
constexpr std::string_view kEscape = "\\x";

bool IsPrintable(char c) {
  return c >= ' ' && c <= '~';
}

std::string Escaped(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (!IsPrintable(c)) {
      text += kEscape;
      text += kDigits[byte / 16];
      text += kDigits[byte % 16];
    } else {
      text.append(c == '\\' ? 2 : 1, c);
    }
  }
  return text;
}

std::optional<std::string> Unescaped(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    std::size_t length = 1;
    char byte = text.front();
    if (!IsPrintable(byte)) return std::nullopt;
    if (text.starts_with("\\\\")) {
      length = 2;
    } else if (text.starts_with('\\')) {
      length = 4;
      if (text.size() < length || !text.starts_with(kEscape)) return std::nullopt;
      unsigned char value = 0;
      const auto [end, error] = std::from_chars(text.data() + 2, text.data() + length, value, 16);
      if (error != std::errc() || end != text.data() + length) return std::nullopt;
      byte = static_cast<char>(value);
    }
    bytes += byte;
    text.remove_prefix(length);
  }
  return bytes;
}

bool StartsWithTime(std::string_view text) {
  if (text.size() < kTimeForm.size()) return false;
  for (std::size_t n = 0; n < kTimeForm.size(); ++n) {
    const bool isDigit = text[n] >= '0' && text[n] <= '9';
    if (kTimeForm[n] == '0' ? !isDigit : text[n] != kTimeForm[n]) return false;
  }
  return true;
}

/// The place's time in the form of a record.
std::string Now() {
  using namespace std::chrono;
  const auto sinceEpoch = floor<milliseconds>(system_clock::now().time_since_epoch()).count();
  const time_t seconds = sinceEpoch / 1000;
  tm parts = {};
  localtime_r(&seconds, &parts);
  const auto padded = [](int number, std::size_t width) {
    const std::string digits = std::to_string(number);
    return std::string(width > digits.size() ? width - digits.size() : 0, '0') + digits;
  };
  return padded(parts.tm_year + 1900, 4) + "-" + padded(parts.tm_mon + 1, 2) + "-" +
         padded(parts.tm_mday, 2) + " " + padded(parts.tm_hour, 2) + ":" + padded(parts.tm_min, 2) +
         ":" + padded(parts.tm_sec, 2) + "." + padded(static_cast<int>(sinceEpoch % 1000), 3);
}

/// Whether the file's last byte ends no line.
bool IsTorn(int file, off_t size) {
  char last = '\n';
  return size > 0 && pread(file, &last, 1, size - 1) == 1 && last != '\n';
}

}  // namespace

std::string FormatEntry(const RecordEntry& entry, std::string_view time) {
  return std::string(time) + " " + std::to_string(entry.host) + (entry.isReply ? " < " : " > ") +
         Escaped(entry.bytes);
}

std::optional<RecordEntry> ParseEntry(std::string_view text) {
  if (!StartsWithTime(text)) return std::nullopt;
  text.remove_prefix(kTimeForm.size());
  if (!text.starts_with(' ')) return std::nullopt;
  RecordEntry entry;
  const auto [end, error] = std::from_chars(text.data() + 1, text.data() + text.size(), entry.host);
  if (error != std::errc() || entry.host < 1) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  entry.isReply = text.starts_with(" <");
  if (!entry.isReply && !text.starts_with(" >")) return std::nullopt;
  text.remove_prefix(2);
  if (!text.empty() && text.front() != ' ') return std::nullopt;
  auto bytes = Unescaped(text.substr(text.empty() ? 0 : 1));
  if (!bytes) return std::nullopt;
  entry.bytes = std::move(*bytes);
  return entry;
}

Record::~Record() {
  if (file_ >= 0) close(file_);
}

std::string Record::Open(const std::string& path) {
  constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;
  path_ = path;
  // Without O_NONBLOCK, a pipe would let us wait for its reader.
  file_ = open(path.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC | O_NONBLOCK, kOwnerOnly);
  struct stat status = {};
  if (file_ < 0 || fstat(file_, &status) != 0) return std::strerror(errno);
  if (!S_ISREG(status.st_mode)) return "not a file";
  if (fchmod(file_, kOwnerOnly) != 0) return std::strerror(errno);
  torn_ = IsTorn(file_, status.st_size);
  return {};
}

void Record::Write(int host, const std::string& line, const std::vector<Portion>& reply) {
  const std::string now = Now();
  std::string lines = FormatEntry({host, false, line}, now) + "\n";
  std::string bytes;
  for (const Portion& portion : reply) bytes += portion.bytes;
  if (!bytes.empty()) lines += FormatEntry({host, true, bytes}, now) + "\n";
  Append(std::move(lines));
}

void Record::Append(std::string lines) {
  if (torn_) lines.insert(0, 1, '\n');
  std::string_view rest = lines;
  while (!rest.empty()) {
    const ssize_t length = write(file_, rest.data(), rest.size());
    if (length < 0 && errno == EINTR) continue;
    if (length <= 0) {
      if (!failed_) {
        errors_ << "ostrel-simulator: " << path_ << ": " << std::strerror(errno) << std::endl;
      }
      failed_ = true;
      return;
    }
    torn_ = true;
    rest.remove_prefix(static_cast<std::size_t>(length));
  }
  torn_ = false;
}

}  // namespace ostrel::simulator
