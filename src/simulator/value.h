#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace ostrel::simulator {

/// What lies on a device's stack: a number or a text (a dotted version is a text).
using Value = std::variant<double, std::string>;
using Values = std::vector<Value>;

/// A line that a device cannot carry out; thrown inside the interpreter only. The message is what
/// the device answers between "<<" and ">>".
struct Fault {
  std::string message;
};

/// The whole text as a number: "12", "-40", "+.5", "1E6"; nothing else is one.
std::optional<double> ParseNumber(std::string_view text);

/// The number at the beginning of a text, 0 where there is none: "2.27b" is 2.27.
double LeadingNumber(std::string_view text);

/// As a device prints it: at most ten significant digits, no exponent, no trailing zeros, ".".
std::string FormatNumber(double number);
std::string FormatValue(const Value& value);

/// Below 0, 0 or above 0. Two numbers compare as numbers; else dotted texts field by field.
int Compare(const Value& left, const Value& right);

/// A text between double quotes as it stands in a line; quotes inside are doubled.
std::string QuoteText(std::string_view text);
/// The text that stands so in a line; nothing when it does not.
std::optional<std::string> ReadQuotedText(std::string_view quoted);

std::string LowerCase(std::string_view text);
std::string_view TrimBlanks(std::string_view text);

}  // namespace ostrel::simulator
