#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace ostrel {

/// The number at the start of a text: leading blanks are skipped; sign, decimal point and exponent
/// are taken; reading stops at the first other character. 0 when there is no number or when it is
/// beyond the range of a double. No locale takes part.
double ReadNumber(std::string_view text);

/// The same, rounded to a 32-bit integer; what is beyond its range becomes the nearer bound.
std::int32_t ReadInteger(std::string_view text);

/// The whole number that a text is, blanks around it aside; nothing for any other text, and for a
/// number beyond 32 bits.
std::optional<std::int32_t> WholeNumber(std::string_view text);

}  // namespace ostrel
