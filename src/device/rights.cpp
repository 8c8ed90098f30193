#include "device/rights.h"

#include "app/number.h"
#include "app/texts.h"

namespace ostrel {

int GrantGet(Link& link, const std::string& prefix, int& level) {
  std::string answer;
  const std::string line = prefix + "passwort- 0,dr,!";
  const int code = link.CommandExchangeCode(link.CurrentChannel(), line, answer);
  if (code == 0) level = ReadInteger(answer);
  return code;
}

std::string GrantText(const Messages& messages, int level) {
  const bool named = level >= 0 && level <= text::kGrant5 - text::kGrant0;
  return named ? messages.Caption(text::kGrant0 + level) : std::to_string(level);
}

}  // namespace ostrel
