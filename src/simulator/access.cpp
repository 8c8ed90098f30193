#include "simulator/access.h"

#include <algorithm>
#include <iterator>

#include "simulator/station.h"
#include "simulator/value.h"

namespace ostrel::simulator {

namespace {

constexpr std::int64_t kMinuteMs = 60'000;
constexpr int kMaxWrongPasswords = 3;
constexpr std::int64_t kBlockedMs = kMinuteMs;
constexpr std::size_t kMaxPassword = 15;
// The interface whose exception frees the lines that come to the device itself.
constexpr int kLocalPort = 1;

/// What a grant level allows.
struct Grants {
  Right local, bus;
};
constexpr Grants kGrants[] = {
    {Right::kNone, Right::kNone},   //
    {Right::kRead, Right::kNone},   //
    {Right::kRead, Right::kRead},   //
    {Right::kWrite, Right::kNone},  //
    {Right::kWrite, Right::kRead},  //
    {Right::kWrite, Right::kWrite},
};
static_assert(std::size(kGrants) == Access::kHighestGrant + 1);

/// What everybody may read: who is there, and what he may do.
constexpr std::string_view kIdentification[] = {"station", "station&", "syssn",
                                                "ver",     "dirs",     "dd"};

bool IsIdentification(const Item& item) {
  if (item.name == "passwort") return item.arguments.size() == 1 && item.arguments[0].text == "0";
  return std::find(std::begin(kIdentification), std::end(kIdentification), item.name) !=
         std::end(kIdentification);
}

Right RightOf(const Item& item) {
  if (item.word) return item.word->right;
  if (item.run == RunWrite) return Right::kWrite;
  const bool reads = item.run == RunReadAndPrint || item.run == RunReadAndPush;
  return reads && !IsIdentification(item) ? Right::kRead : Right::kNone;
}

}  // namespace

Access::Access(const AccessData& data, bool local) : refusal_(data.refusal), local_(local) {
  std::transform(data.users.begin(), data.users.end(), users_.begin(), [](const UserData& user) {
    return User{std::string(user.password), user.grant, user.timeoutMinutes};
  });
}

void Access::Advance(std::int64_t milliseconds) {
  nowMs_ = std::max(nowMs_, milliseconds);
  const int minutes = users_[current_].timeoutMinutes;
  if (minutes > 0 && nowMs_ - lastLineMs_ >= minutes * kMinuteMs) LogOut();
}

int Access::Grant() const {
  const bool isFree = !HasPassword(kAdministrator) || (local_ && excepted_[kLocalPort]);
  return isFree ? kHighestGrant : users_[current_].grant;
}

bool Access::Allows(Right right) const {
  const Grants& grants = kGrants[Grant()];
  return right <= (local_ ? grants.local : grants.bus);
}

void Access::LogIn(int user, std::string_view password) {
  CheckPassword(HasPassword(user) && users_[user].password == password);
  current_ = user;
}

void Access::SetPassword(int user, std::string_view old, std::string_view fresh) {
  const bool protects = HasPassword(kAdministrator);
  if (user != kAdministrator && !protects) throw Fault{"no administrator"};
  if (fresh.empty() || fresh.size() > kMaxPassword) throw Fault{"length of password"};
  CheckPassword(old == users_[user].password ||
                (protects && old == users_[kAdministrator].password));
  users_[user].password = fresh;
  // Whoever begins the protection knows its password, and has the other users to set up.
  if (HasPassword(kAdministrator) != protects) current_ = protects ? 0 : kAdministrator;
}

void Access::SetUser(int user, std::string_view administrators, int minutes, int grant) {
  CheckAdministrator(administrators);
  users_[user].timeoutMinutes = minutes;
  users_[user].grant = grant;
}

void Access::SetExcepted(int port, std::string_view administrators, bool excepted) {
  CheckAdministrator(administrators);
  excepted_[port] = excepted;
}

/// Who guesses has to pause, whatever he guesses with.
void Access::CheckPassword(bool right) {
  if (nowMs_ < blockedUntilMs_) throw Fault{"login blocked"};
  if (right) {
    wrongPasswords_ = 0;
    return;
  }
  if (++wrongPasswords_ == kMaxWrongPasswords) {
    wrongPasswords_ = 0;
    blockedUntilMs_ = nowMs_ + kBlockedMs;
  }
  throw Fault{"wrong password"};
}

void Access::CheckAdministrator(std::string_view password) {
  CheckPassword(password == users_[kAdministrator].password);
}

Right NeededRight(const Program& program) {
  Right needed = Right::kNone;
  for (const Item& item : program) needed = std::max(needed, RightOf(item));
  return needed;
}

}  // namespace ostrel::simulator
