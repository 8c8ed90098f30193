#include "pages/console/script.h"

#include <algorithm>

#include "base/text.h"
#include "pages/console/console_texts.h"

namespace ostrel {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

bool IsCommand(std::string_view line) {
  if (line.empty() || line.front() == '#') return false;
  return LowerAscii(line).find("aa::") == std::string::npos;
}

/// " 012": a blank and at least three digits.
std::string RowNumber(int row) {
  const std::string digits = std::to_string(row);
  return " " + std::string(digits.size() < 3 ? 3 - digits.size() : 0, '0') + digits;
}

}  // namespace

LineClass ClassifyLine(std::string_view line) {
  line = Trim(line);
  if (!IsCommand(line)) return LineClass::kIgnored;
  const std::size_t length = CharCount(line);
  if (length >= kTooLongLine) return LineClass::kTooLong;
  return length >= kLongLine ? LineClass::kLong : LineClass::kCommand;
}

std::string_view PopLine(std::string_view& text) {
  const std::size_t end = text.find(kLineEnd);
  std::string_view line = text;
  if (end == std::string_view::npos) {
    text = {};
    return line;
  }
  line = Trim(text.substr(0, end));
  text = Trim(text.substr(end + kLineEnd.size()));
  return line;
}

std::string ScriptLines::Text() const {
  std::string text;
  for (const ScriptLine& line : lines) text.append(line.text).append(kLineEnd);
  return text;
}

ScriptLines ExtractCommands(std::string_view text, std::size_t rowsBefore) {
  ScriptLines extracted;
  for (auto row = static_cast<int>(rowsBefore) + 1; !text.empty(); ++row) {
    const std::string_view line = Trim(PopLine(text));
    const LineClass kind = ClassifyLine(line);
    if (kind == LineClass::kIgnored) continue;
    extracted.longLine = extracted.longLine || kind == LineClass::kLong;
    extracted.lines.push_back({row, std::string(line)});
  }
  return extracted;
}

ScriptCheck CheckScript(std::string_view text) {
  ScriptCheck check;
  for (int row = 1; !text.empty(); ++row) {
    if (row > kMostScriptLines) {
      check.tooManyLines = true;
      break;
    }
    const std::string_view line = Trim(PopLine(text));
    if (ClassifyLine(line) == LineClass::kTooLong) check.tooLong.push_back({row, CharCount(line)});
  }
  return check;
}

std::string ScriptCheck::List(const Messages& messages, std::size_t most) const {
  std::string list;
  const std::size_t shown = std::min(most, tooLong.size());
  for (std::size_t n = 0; n < shown; ++n) {
    list += messages.Caption(text::kRow) + RowNumber(tooLong[n].row) + ":  ";
    list += messages.Caption(text::kTooLong) + "  (" + std::to_string(tooLong[n].length) + ")\r\n";
  }
  if (shown < tooLong.size()) {
    list += messages.Filled(text::kMoreRows, std::to_string(tooLong.size() - shown)) + "\r\n";
  }
  if (tooManyLines) list += messages.Caption(text::kTooManyLines) + "\r\n";
  return list;
}

std::string_view SelectPart(std::string_view text, const ScriptPart& part) {
  if (part.mode == ScriptPart::Mode::kAll) return text;
  if (part.mode == ScriptPart::Mode::kSelection) return part.selection;
  for (std::size_t n = 0; n < part.line && !text.empty(); ++n) PopLine(text);
  return part.mode == ScriptPart::Mode::kFromCursor ? text : PopLine(text);
}

bool ScriptFits(const clsDevice& device, std::string_view fileName) {
  constexpr std::size_t kExtension = 3;
  return device.MatchTypeCode(
      fileName.substr(fileName.size() - std::min(fileName.size(), kExtension)));
}

std::string WithCrLf(std::string_view text) {
  std::string changed;
  changed.reserve(text.size() + text.size() / 16);
  for (std::size_t n = 0; n < text.size(); ++n) {
    if (text[n] != '\r' && text[n] != '\n') {
      changed += text[n];
      continue;
    }
    changed += kLineEnd;
    if (text.substr(n, 2) == kLineEnd) ++n;
  }
  return changed;
}

}  // namespace ostrel
