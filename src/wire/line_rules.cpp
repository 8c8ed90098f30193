#include "wire/line_rules.h"

#include <algorithm>
#include <utility>

#include "base/text.h"

namespace ostrel {

namespace {

constexpr std::string_view kMask = "***";
/// None of them can be part of a password.
constexpr std::string_view kSeparators = " \"',;:=";

bool IsAlnum(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Where the first word that a password may follow ends; npos when there is none.
std::size_t EndOfSecretWord(std::string_view line) {
  const std::string lower = LowerAscii(line);
  std::size_t end = std::string::npos;
  for (const std::string_view word : {"login", "passwort", "pwlrel"}) {
    const std::size_t at = lower.find(word);
    if (at != std::string::npos) end = std::min(end, at + word.size());
  }
  return end;
}

/// Whether the character that begins, or one that ends, at this place belongs to a word. The
/// letters of ISO 8859-1 beyond ASCII are two bytes from 0xC3 on.
bool WordAt(std::string_view text, std::size_t at) {
  const auto byte = at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
  return IsAlnum(static_cast<char>(byte)) || byte == '_' || (byte >= 0xC3 && byte < 0xE0);
}
bool WordBefore(std::string_view text, std::size_t at) {
  const bool trailing = at >= 2 && (static_cast<unsigned char>(text[at - 1]) & 0xC0U) == 0x80;
  return at > 0 && WordAt(text, at - (trailing ? 2 : 1));
}

/// Whether this part stands by itself: no word goes on beyond it, and no row of its own first or
/// last character ("<" in "<<no>>").
bool StandsAlone(std::string_view text, std::size_t at, std::size_t size) {
  const std::size_t end = at + size;
  if (WordBefore(text, at) || WordAt(text, end)) return false;
  return (at == 0 || text[at - 1] != text[at]) &&
         (end == text.size() || text[end] != text[end - 1]);
}

std::string Without(const std::string& text, const std::string& secret) {
  const std::string lower = LowerAscii(text);
  std::string rest;
  std::size_t from = 0;
  for (std::size_t at = lower.find(secret); at != std::string::npos;) {
    if (StandsAlone(lower, at, secret.size())) {
      rest.append(text, from, at - from).append(kMask);
      from = at + secret.size();
    }
    at = lower.find(secret, std::max(at + 1, from));
  }
  return rest.append(text, from);
}

}  // namespace

LineAddress AddressOf(std::string_view line) {
  const auto first = std::find_if_not(line.begin(), line.end(), IsAlnum);
  const auto length = static_cast<std::size_t>(first - line.begin());
  if (length == 0 || length == line.size()) return {};
  const std::string_view word = line.substr(0, length);
  if (SameText(word, "all") && (line[length] == ',' || line[length] == ' ')) return {true, {}};
  if (line[length] != ':') return {};
  const std::string_view rest = line.substr(length);
  if (rest.size() < 2 || rest.find_first_not_of(':') != std::string_view::npos) return {true, {}};
  std::string station(word);
  for (char& c : station) c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  return {true, station};
}

std::optional<std::string> StationAddress(std::string_view text) {
  if (text.ends_with(':')) text.remove_suffix(1);
  if (text.empty() || !std::all_of(text.begin(), text.end(), IsAlnum)) return std::nullopt;
  return std::string(text) + ':';
}

std::string StationProblem(const std::string& station) {
  return StationAddress(station) ? "" : "not the address of a station: \"" + station + "\"";
}

bool IsSecret(std::string_view line) {
  return EndOfSecretWord(line) != std::string::npos;
}

std::string Masked(std::string_view line) {
  const std::size_t end = EndOfSecretWord(line);
  if (end >= line.size()) return std::string(line);
  return std::string(line.substr(0, end)).append(" ").append(kMask);
}

std::string WithoutPasswords(std::string text, std::vector<std::string> passwords) {
  // The longest first, so that nothing is left of one that begins with another.
  std::sort(passwords.begin(), passwords.end(),
            [](const std::string& a, const std::string& b) { return a.size() > b.size(); });
  for (const std::string& password : passwords) {
    if (!password.empty() && password != "0") text = Without(text, LowerAscii(password));
  }
  return text;
}

std::string MaskedAnswer(std::string answer, std::string_view line) {
  const std::size_t end = EndOfSecretWord(line);
  if (end >= line.size()) return answer;
  std::vector<std::string> words(1);
  for (const char c : line.substr(end)) {
    if (kSeparators.find(c) == std::string_view::npos) {
      words.back() += c;
    } else {
      words.emplace_back();
    }
  }
  // Users, grants and flags.
  std::erase_if(words, [](const std::string& word) {
    return word.size() == 1 && (word[0] == '*' || (word[0] >= '0' && word[0] <= '9'));
  });
  return WithoutPasswords(std::move(answer), std::move(words));
}

}  // namespace ostrel
