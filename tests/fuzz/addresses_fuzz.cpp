// Feeds what is read out of lines: addresses and passwords. In the input '|' stands between a line
// and the answer to it.

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "base/text.h"
#include "require.h"
#include "wire/answers.h"
#include "wire/line_rules.h"

namespace ostrel {
namespace {

void Addresses(const std::string& text) {
  const LineAddress address = AddressOf(text);
  if (!address.makesCurrent.empty()) {
    OSTREL_REQUIRE(address.addressed);
    OSTREL_REQUIRE(AddressOf(address.makesCurrent + "::").makesCurrent == address.makesCurrent);
  }
  OSTREL_REQUIRE(AddressOf("B1:" + text).addressed);

  const std::optional<std::string> station = StationAddress(text);
  OSTREL_REQUIRE(StationProblem(text).empty() == station.has_value());
  if (station) {
    OSTREL_REQUIRE(AddressPart(*station) == *station && StationAddress(*station) == station);
    OSTREL_REQUIRE(AddressOf(*station + "ver.").addressed);
  }
  const std::string part = AddressPart(text);
  OSTREL_REQUIRE(part.empty() || part == "---" || part.find(':') == part.size() - 1);
  OSTREL_REQUIRE(AddressPart(part) == part);
}

/// Whether a word of the text, between blanks, is this password.
bool HoldsWord(std::string_view text, const std::string& password) {
  const std::string lower = LowerAscii(text) + " ";
  const std::string wanted = " " + LowerAscii(password) + " ";
  return (" " + lower).find(wanted) != std::string::npos;
}

void Masks(const std::string& line, const std::string& answer) {
  const std::string masked = Masked(line), shown = MaskedAnswer(answer, line);
  OSTREL_REQUIRE(Masked(masked) == masked && IsSecret(masked) == IsSecret(line));
  if (!IsSecret(line)) OSTREL_REQUIRE(masked == line && shown == answer);
  OSTREL_REQUIRE(masked == line || (masked.ends_with(" ***") &&
                                    line.starts_with(masked.substr(0, masked.size() - 4))));

  const std::string password(line, 0, line.find_first_of(" *"));
  const std::string without = WithoutPasswords(answer, {password});
  const bool none = password.empty() || password == "0";
  OSTREL_REQUIRE(none ? without == answer : !HoldsWord(without, password));
  const bool inside = LowerAscii(answer).find(LowerAscii(password)) != std::string::npos;
  OSTREL_REQUIRE(inside || without == answer);
  // In the midst of a word it is none.
  const std::string embedded = "a" + password + "z";
  OSTREL_REQUIRE(WithoutPasswords(embedded, {password}) == embedded);
}

}  // namespace
}  // namespace ostrel

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  const std::size_t cut = std::min(input.find('|'), size);
  ostrel::Addresses(input);
  ostrel::Masks(input.substr(0, cut), input.substr(std::min(cut + 1, size)));
  return 0;
}
