// Feeds what a device answers about its users and its tap statistics; "~" stands for CR LF.

#include <algorithm>
#include <string>
#include <string_view>

#include "config/users/user_lines.h"
#include "logs/tap_statistics/tap_counters.h"
#include "require.h"

namespace ostrel {
namespace {

std::string LinesOf(std::string_view input) {
  std::string lines;
  for (const char c : input) {
    if (c == '~') lines += '\r';
    lines += c == '~' ? '\n' : c;
  }
  return lines;
}

/// What is read is what the device said: printed as it prints, it reads the same.
void CheckUsers(const std::string& answer) {
  const auto users = UsersFromAnswer(answer);
  if (!users) return;
  std::string again;
  for (const UserRecord& user : *users) {
    OSTREL_REQUIRE(user.grant);
    for (const int value : {user.passwordSet ? 1 : 0, *user.grant, user.timeout}) {
      again += std::to_string(value) + "\r\n";
    }
  }
  const auto reread = UsersFromAnswer(again);
  OSTREL_REQUIRE(reread);
  for (std::size_t user = 0; user < users->size(); ++user) {
    OSTREL_REQUIRE((*reread)[user].passwordSet == (*users)[user].passwordSet);
    OSTREL_REQUIRE((*reread)[user].grant == (*users)[user].grant);
    OSTREL_REQUIRE((*reread)[user].timeout == (*users)[user].timeout);
  }
  // An error in the place of any value is no record.
  OSTREL_REQUIRE(!UsersFromAnswer("<<no>>" + again.substr(again.find("\r\n"))));
}

void CheckFlags(const std::string& answer) {
  const auto equals = std::count(answer.begin(), answer.end(), '=');
  const auto flags = FlagsFromAnswer(answer);
  if (flags) OSTREL_REQUIRE(flags->size() == static_cast<std::size_t>(equals));
  OSTREL_REQUIRE(!FlagsFromAnswer(answer + "=<<no>>"));
  const auto user = UserFromAnswer(answer);
  OSTREL_REQUIRE(!user || *user >= 0);
}

void CheckCounters(const std::string& answer) {
  std::string fault;
  const auto counters = CountersFromAnswer(answer, fault);
  OSTREL_REQUIRE(std::all_of(counters.begin(), counters.end(), [](int n) { return n >= 0; }));
  OSTREL_REQUIRE(fault.empty() || answer.find(fault) != std::string::npos);
  const std::size_t lines = answer.empty() ? 0 : 1 + answer.size() / 2;
  OSTREL_REQUIRE(counters.size() <= lines);
  OSTREL_REQUIRE(!CounterFromAnswer("<<" + answer + ">>"));
}

}  // namespace
}  // namespace ostrel

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string answer = ostrel::LinesOf({reinterpret_cast<const char*>(data), size});
  ostrel::CheckUsers(answer);
  ostrel::CheckFlags(answer);
  ostrel::CheckCounters(answer);
  return 0;
}
