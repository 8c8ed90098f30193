#include "base/number.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace ostrel {

namespace {

/// Takes the number off the start of a text; nothing when there is none.
std::optional<double> PopNumber(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  const bool negative = text.starts_with('-');
  if (negative || text.starts_with('+')) text.remove_prefix(1);
  // std::from_chars would also take a second sign, "inf" and "nan".
  const bool number = !text.empty() && (text[0] == '.' || (text[0] >= '0' && text[0] <= '9'));
  if (!number) return std::nullopt;
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc()) return std::nullopt;
  text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
  return negative ? -value : value;
}

}  // namespace

double ReadNumber(std::string_view text) {
  return PopNumber(text).value_or(0);
}

std::int32_t ReadInteger(std::string_view text) {
  using Limits = std::numeric_limits<std::int32_t>;
  const double bounded =
      std::clamp(std::round(ReadNumber(text)), double(Limits::min()), double(Limits::max()));
  return static_cast<std::int32_t>(bounded);
}

std::optional<std::int32_t> WholeNumber(std::string_view text) {
  using Limits = std::numeric_limits<std::int32_t>;
  const std::optional<double> value = PopNumber(text);
  const bool whole = value && *value == std::round(*value) && *value >= Limits::min() &&
                     *value <= Limits::max() && text.find_first_not_of(' ') == text.npos;
  return whole ? std::optional(static_cast<std::int32_t>(*value)) : std::nullopt;
}

}  // namespace ostrel
