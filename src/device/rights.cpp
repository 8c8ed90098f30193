#include "device/rights.h"

#include "base/number.h"
#include "base/texts.h"
#include "wire/answers.h"

namespace ostrel {

namespace {

constexpr int kHighestLevel = text::kGrant5 - text::kGrant0;

}  // namespace

std::string GrantLine(const std::string& prefix) {
  return prefix + "passwort- 0,dr,!";
}

int GrantGet(Link& link, const std::string& prefix, int& level) {
  std::string answer;
  const int code = link.CommandExchangeCode(link.CurrentChannel(), GrantLine(prefix), answer);
  if (code != 0) return code;
  level = ReadInteger(answer);
  return IsErrorAnswer(answer) ? text::kDeviceReplied : 0;
}

std::string GrantText(const Messages& messages, int level) {
  if (level < 0 || level > kHighestLevel) return std::to_string(level);
  return messages.Caption(text::kGrant0 + level);
}

}  // namespace ostrel
