#include "simulator/value.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <system_error>

namespace ostrel::simulator {

namespace {

constexpr std::string_view kBlanks = " \t";
// The longest is the smallest double written out: a good 340 characters.
constexpr std::size_t kNumberLength = 512;

template <typename... Format>
std::string ToText(double number, Format... format) {
  char buffer[kNumberLength];
  const auto result = std::to_chars(buffer, buffer + sizeof(buffer), number, format...);
  return std::string(buffer, result.ptr);
}

int CompareNumbers(double left, double right) {
  return left < right ? -1 : left > right ? 1 : 0;
}

int CompareFields(std::string_view left, std::string_view right) {
  const auto leftNumber = ParseNumber(left.empty() ? "0" : left);
  const auto rightNumber = ParseNumber(right.empty() ? "0" : right);
  if (leftNumber && rightNumber) return CompareNumbers(*leftNumber, *rightNumber);
  return LowerCase(left).compare(LowerCase(right));
}

std::string_view TakeField(std::string_view& text) {
  const std::size_t dot = std::min(text.find('.'), text.size());
  const std::string_view field = text.substr(0, dot);
  text.remove_prefix(std::min(dot + 1, text.size()));
  return field;
}

}  // namespace

std::optional<double> ParseNumber(std::string_view text) {
  if (text.starts_with('+')) {
    text.remove_prefix(1);
    if (text.starts_with('-')) return std::nullopt;
  }
  const std::size_t start = text.starts_with('-') ? 1 : 0;
  // "inf" and "nan" are words here, not numbers.
  if (text.find_first_of("0123456789") > start + 1) return std::nullopt;
  double number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

double LeadingNumber(std::string_view text) {
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed);
  return number;
}

std::string FormatNumber(double number) {
  if (number == 0) return "0";
  // Rounding first: 0.1 + 0.2 is 0.3 to whoever reads it.
  const double rounded =
      ParseNumber(ToText(number, std::chars_format::scientific, 9)).value_or(number);
  return ToText(rounded, std::chars_format::fixed);
}

std::string FormatValue(const Value& value) {
  const auto* number = std::get_if<double>(&value);
  return number ? FormatNumber(*number) : std::get<std::string>(value);
}

int Compare(const Value& left, const Value& right) {
  const auto* leftNumber = std::get_if<double>(&left);
  const auto* rightNumber = std::get_if<double>(&right);
  if (leftNumber && rightNumber) return CompareNumbers(*leftNumber, *rightNumber);
  const std::string leftText = FormatValue(left), rightText = FormatValue(right);
  std::string_view leftRest = leftText, rightRest = rightText;
  int order = 0;
  while (order == 0 && !(leftRest.empty() && rightRest.empty())) {
    const std::string_view leftField = TakeField(leftRest);
    order = CompareFields(leftField, TakeField(rightRest));
  }
  return order;
}

std::string QuoteText(std::string_view text) {
  std::string quoted = "\"";
  for (const char c : text) {
    quoted += c;
    if (c == '"') quoted += c;
  }
  return quoted + '"';
}

std::optional<std::string> ReadQuotedText(std::string_view quoted) {
  if (quoted.size() < 2 || quoted.front() != '"' || quoted.back() != '"') return std::nullopt;
  quoted = quoted.substr(1, quoted.size() - 2);
  std::string text;
  for (std::size_t n = 0; n < quoted.size(); ++n) {
    if (quoted[n] == '"' && quoted.substr(++n, 1) != "\"") return std::nullopt;
    text += quoted[n];
  }
  return text;
}

std::string LowerCase(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return result;
}

std::string_view TrimBlanks(std::string_view text) {
  const std::size_t start = text.find_first_not_of(kBlanks);
  if (start == std::string_view::npos) return {};
  return text.substr(start, text.find_last_not_of(kBlanks) - start + 1);
}

}  // namespace ostrel::simulator
