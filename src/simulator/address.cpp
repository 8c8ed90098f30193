#include "simulator/address.h"

#include <algorithm>

#include "simulator/value.h"

namespace ostrel::simulator {

namespace {

constexpr std::string_view kGroups = "rpsqo";

bool IsAddressCharacter(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

std::string UpperCase(std::string_view text) {
  std::string result(text);
  for (char& c : result) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return result;
}

}  // namespace

Address ParseAddress(std::string_view line) {
  Address address;
  address.expression = TrimBlanks(line);
  const auto end =
      std::find_if_not(address.expression.begin(), address.expression.end(), IsAddressCharacter);
  const std::string_view word(address.expression.begin(), end);
  std::string_view rest = address.expression.substr(word.size());
  if (!word.empty() && rest.starts_with(':')) {
    const std::size_t colons = std::min(rest.find_first_not_of(':'), rest.size());
    address.kind = Address::Kind::kStation;
    address.station = UpperCase(word);
    address.makeCurrent = colons > 1;
    address.expression = rest.substr(colons);
  } else if (LowerCase(word) == "all" && (rest.starts_with(',') || rest.starts_with(';'))) {
    address.kind = Address::Kind::kAll;
    address.expression = rest;
  } else if (LowerCase(word) == "all" && rest.starts_with(' ')) {
    // "all r,time=..." goes to a group, which does not answer.
    const std::string_view group = TrimBlanks(rest);
    const char letter = group.empty() ? '\0' : LowerCase(group.substr(0, 1)).front();
    const bool ends = group.size() > 1 && (group[1] == ',' || group[1] == ';');
    if (ends && kGroups.find(letter) != std::string_view::npos) {
      address.kind = Address::Kind::kGroup;
      address.group = letter;
      address.expression = group.substr(1);
    }
  }
  return address;
}

}  // namespace ostrel::simulator
