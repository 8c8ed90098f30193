#include "pages/console/script.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>

#include "base/text.h"
#include "base/utf8.h"
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

/// The first character that cannot go to a device inside a line: one outside ISO 8859-1, a line
/// end, or the one that ends a reply. U+FFFD stands for bytes that are no character.
std::optional<char32_t> Unsendable(std::string_view line) {
  constexpr char32_t kNoCharacter = 0xFFFD, kEndOfReply = 26;
  while (!line.empty()) {
    const char32_t character = PopCharacter(line).value_or(kNoCharacter);
    const bool ends = character == '\r' || character == '\n' || character == kEndOfReply;
    if (ends || character > 0xFF) return character;
  }
  return std::nullopt;
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
    const LineClass kind = ClassifyLine(line);
    if (kind == LineClass::kIgnored) continue;
    if (kind == LineClass::kTooLong) check.faults.push_back({row, CharCount(line), 0});
    if (const auto character = Unsendable(line)) check.faults.push_back({row, 0, *character});
  }
  return check;
}

std::string CharacterShown(char32_t character) {
  std::array<char, 16> number{};
  std::snprintf(number.data(), number.size(), "U+%04X", static_cast<unsigned>(character));
  // What steers the direction or the lines of a text, controls, marks and what has no place here.
  const bool seen = character > 0xA0 && character < 0xD800 &&
                    (character < 0x2000 || character > 0x206F) && character != 0xAD &&
                    character != 0x61C && character != 0x180E && character != 0x3000;
  if (!seen) return number.data();
  std::string shown;
  AppendCharacter(shown, character);
  return shown + " (" + number.data() + ")";
}

std::string ScriptCheck::List(const Messages& messages, std::size_t most) const {
  std::string list;
  const std::size_t shown = std::min(most, faults.size());
  for (std::size_t n = 0; n < shown; ++n) {
    const Fault& fault = faults[n];
    list += messages.Caption(text::kRow) + RowNumber(fault.row) + ":  ";
    list += fault.length != 0
                ? messages.Caption(text::kTooLong) + "  (" + std::to_string(fault.length) + ")"
                : messages.Caption(text::kNoLineHolds) + "  " + CharacterShown(fault.character);
    list += "\r\n";
  }
  if (shown < faults.size()) {
    list += messages.Filled(text::kMoreRows, std::to_string(faults.size() - shown)) + "\r\n";
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
