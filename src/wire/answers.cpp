#include "wire/answers.h"

#include <algorithm>
#include <utility>

#include "base/text.h"

namespace ostrel {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

std::string Pop(std::string& text, std::string_view separator) {
  const std::size_t end = text.find(separator);
  if (end == std::string::npos) return std::exchange(text, {});
  std::string part(Trim(std::string_view(text).substr(0, end)));
  text = std::string(Trim(std::string_view(text).substr(end + separator.size())));
  return part;
}

/// Whether a line says that access is refused, and nothing else.
bool OnlyRefuses(std::string_view line) {
  constexpr std::string_view kAround = " \t\r\n.!";
  const std::size_t first = line.find_first_not_of(kAround);
  if (first == std::string_view::npos) return false;
  line = line.substr(first, line.find_last_not_of(kAround) - first + 1);
  const std::string words = LowerAscii(line);
  return words == "access denied" || words == "zugriff verweigert" || words == "verweigert";
}

/// One station of several, or one line of a loop, may have answered all the same.
bool IsWhollyRefused(std::string_view answer) {
  bool refused = false;
  while (!answer.empty()) {
    const std::size_t end = std::min(answer.find('\n'), answer.size() - 1) + 1;
    const std::string_view line = answer.substr(0, end);
    answer.remove_prefix(end);
    if (line.find_first_not_of(" \t\r\n") == std::string_view::npos) continue;
    if (!OnlyRefuses(line)) return false;
    refused = true;
  }
  return refused;
}

}  // namespace

std::string AddressPart(std::string_view text) {
  text = Trim(text);
  if (text == "---") return "---";
  const std::size_t colon = text.find(':');
  return colon == std::string_view::npos ? std::string() : std::string(text.substr(0, colon + 1));
}

std::string NextLine(std::string& text) {
  return Pop(text, kLineEnd);
}

std::string NextToken(std::string& text, char separator) {
  return Pop(text, std::string_view(&separator, 1));
}

std::string LeftOf(std::string_view text, std::string_view separator, Blanks blanks) {
  const std::size_t end = text.find(separator);
  if (end == std::string_view::npos) return std::string(text);
  text = text.substr(0, end);
  return std::string(blanks == Blanks::kKeep ? text : Trim(text));
}

std::string ValueAfter(std::string_view text, std::string_view key) {
  const std::size_t start = text.find(key);
  if (start == std::string_view::npos) return {};
  return std::string(Trim(text.substr(start + key.size())));
}

std::size_t LastPos(std::string_view text, std::string_view find) {
  const std::size_t position = text.rfind(find);
  return find.empty() || position == std::string_view::npos ? 0 : position + 1;
}

std::string TrimAnswer(std::string_view text) {
  text = Trim(text);
  while (text.starts_with(kLineEnd)) text = Trim(text.substr(kLineEnd.size()));
  while (text.ends_with(kLineEnd)) text = Trim(text.substr(0, text.size() - kLineEnd.size()));
  return std::string(text);
}

bool IsErrorAnswer(std::string_view answer) {
  const bool marked = answer.size() >= 4 && answer.starts_with("<<") && answer.ends_with(">>");
  return marked || IsWhollyRefused(answer);
}

bool IsRefusal(std::string_view answer) {
  const std::string lower = LowerAscii(answer);
  return lower.find("verweigert") != std::string::npos ||
         lower.find("access denied") != std::string::npos;
}

std::string TypeFromVerAnswer(std::string_view answer) {
  std::string type(Trim(LeftOf(answer, ";")));
  if (type.find('+') != std::string::npos) type.pop_back();
  for (char& letter : type) {
    if (letter >= 'a' && letter <= 'z') letter = static_cast<char>(letter - 'a' + 'A');
  }
  return type;
}

std::string FirmwareFromVerAnswer(std::string_view answer) {
  std::string version = LeftOf(ValueAfter(answer, ";"), ";");
  if (version.starts_with('v') || version.starts_with('V')) version.erase(0, 1);
  return version;
}

}  // namespace ostrel
