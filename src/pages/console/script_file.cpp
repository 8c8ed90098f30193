#include "pages/console/script_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <optional>

#include "base/files.h"
#include "base/texts.h"
#include "base/utf8.h"
#include "pages/console/console_texts.h"
#include "pages/console/script.h"

namespace ostrel {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// The characters of 0x80..0x9F in Windows-1252; where it has none, the control character.
constexpr std::array<char32_t, 32> kUpperControls = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    if (!PopCharacter(text)) return false;
  }
  return true;
}

std::string FromWindows1252(std::string_view bytes) {
  std::string text;
  for (const char byte : bytes) {
    const auto code = static_cast<std::uint8_t>(byte);
    const bool upper = code >= 0x80 && code < 0xA0;
    AppendCharacter(text, upper ? kUpperControls.at(code - 0x80U) : code);
  }
  return text;
}

/// Nothing where a character is not in Windows-1252.
std::optional<std::string> ToWindows1252(std::string_view text) {
  std::string bytes;
  while (!text.empty()) {
    const std::optional<char32_t> character = PopCharacter(text);
    if (!character) return std::nullopt;
    const auto* const upper = std::find(kUpperControls.begin(), kUpperControls.end(), *character);
    const bool same = *character < 0x80 || (*character >= 0xA0 && *character < 0x100);
    if (!same && upper == kUpperControls.end()) return std::nullopt;
    bytes += static_cast<char>(same ? *character : 0x80 + (upper - kUpperControls.begin()));
  }
  return bytes;
}

std::string LineEndOf(std::string_view text) {
  std::string found;
  for (std::size_t at = text.find_first_of("\r\n"); at != std::string_view::npos;
       at = text.find_first_of("\r\n", at)) {
    const std::string_view end = text.substr(at, text.substr(at, 2) == "\r\n" ? 2 : 1);
    if (!found.empty() && found != end) return "\r\n";
    found = end;
    at += end.size();
  }
  return found.empty() ? "\r\n" : found;
}

std::string WithLineEnd(std::string_view text, std::string_view lineEnd) {
  std::string changed = WithCrLf(text);
  if (lineEnd == "\n") std::erase(changed, '\r');
  if (lineEnd == "\r") std::erase(changed, '\n');
  return changed;
}

}  // namespace

bool DecodeScript(std::string_view bytes, std::string& text, ScriptForm& form) {
  if (bytes.find('\0') != std::string_view::npos) return false;
  form = {};
  std::string converted;
  if (!IsUtf8(bytes)) {
    form.encoding = ScriptForm::Encoding::kWindows1252;
    converted = FromWindows1252(bytes);
    bytes = converted;
  } else if (bytes.starts_with(kByteOrderMark)) {
    form.byteOrderMark = true;
    bytes.remove_prefix(kByteOrderMark.size());
  }
  form.lineEnd = LineEndOf(bytes);
  text = WithCrLf(bytes);
  return true;
}

std::string EncodeScript(std::string_view text, ScriptForm& form) {
  const std::string lines = WithLineEnd(text, form.lineEnd);
  if (form.encoding == ScriptForm::Encoding::kWindows1252) {
    const std::optional<std::string> bytes = ToWindows1252(lines);
    // Bytes that look like UTF-8 would be read as such and become another text.
    if (bytes && (*bytes == lines || !IsUtf8(*bytes))) return *bytes;
    form.encoding = ScriptForm::Encoding::kUtf8;
  }
  return (form.byteOrderMark ? std::string(kByteOrderMark) : std::string()) + lines;
}

FileOutcome ReadScript(const std::string& path, std::string& text, ScriptForm& form) {
  std::string bytes;
  const int error = ReadBytes(path, kMostScriptBytes, bytes);
  if (error == EFBIG) return {text::kFileTooLarge, path};
  if (error != 0) return {text::kFileNotRead, FileFault(path, error)};
  if (!DecodeScript(bytes, text, form)) return {text::kFileNoText, path};
  return {};
}

FileOutcome WriteScript(const std::string& path, std::string_view text, ScriptForm& form) {
  ScriptForm written = form;
  const std::string bytes = EncodeScript(text, written);
  const int error = ReplaceBytes(path, bytes);
  if (error != 0) return {text::kFileNotWritten, FileFault(path, error)};
  form = written;
  return {};
}

}  // namespace ostrel
