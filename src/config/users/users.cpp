#include "config/users/users.h"

#include <utility>

#include "base/number.h"
#include "base/text.h"
#include "base/texts.h"
#include "device/rights.h"
#include "wire/answers.h"
#include "wire/line_rules.h"

namespace ostrel {

namespace {

constexpr int kCom4Number = 130;

}  // namespace

Users::Users(Link& link, Commands& commands, const Selection& selection, Dialogs& dialogs,
             const Messages& messages)
    : link_(link),
      commands_(commands),
      selection_(selection),
      dialogs_(dialogs),
      messages_(messages) {}

std::string Users::UserName(int user) const {
  if (user < 0 || user >= kUserCount) return std::to_string(user);
  return messages_.Caption(text::kUserGuest + user);
}

void Users::DeviceChanged() {
  state_ = {};
  administrators_.clear();
}

bool Users::Exchange(const std::string& line, std::string& answer,
                     const std::vector<std::string>& passwords, bool settingPassword) {
  const int code = link_.CommandExchangeCode(link_.CurrentChannel(), line, answer);
  if (code != 0) {
    // Why there is no connection stands below.
    const std::string why = "\n" + messages_.Shown(code);
    const std::string none = "\n" + messages_.Shown(text::kNoConnectionToDevice);
    if (settingPassword) {
      messages_.Warn(text::kPasswordNotChanged, none + why);
    } else {
      messages_.Warn(text::kNoConnectionToDevice, why);
    }
    return false;
  }
  if (!IsErrorAnswer(answer) && !IsRefusal(answer)) return true;
  messages_.Warn(text::kDeviceReplied, "\n" + WithoutPasswords(answer, passwords));
  return false;
}

std::optional<std::string> Users::Reading() const {
  const std::optional<std::string> prefix = selection_.GetKenn();
  if (!prefix) messages_.Warn(text::kNoDeviceSelected);
  return prefix;
}

std::optional<std::string> Users::Writing() {
  if (!Reading()) return std::nullopt;
  const std::optional<std::string> prefix = selection_.GetKennSel();
  if (!prefix) return std::nullopt;
  // Which passwords there are decides what is asked, and the settings of the administrator are sent
  // along with the guest's.
  if (state_.users[kAdministrator]) return prefix;
  if (ReadUsers(*prefix)) return prefix;
  messages_.Warn(text::kTransferCancelled);
  return std::nullopt;
}

bool Users::PWReadAll() {
  const std::optional<std::string> prefix = Reading();
  if (!prefix) return false;
  const BusyPointer busy(dialogs_);
  if (!ReadLogin() || !ReadUsers(*prefix)) return false;
  if (!*state_.protects) return true;
  const std::optional<bool> com4 = HasCom4(*prefix);
  return com4 && ReadPorts(*prefix, *com4);
}

bool Users::ReadLogin() {
  const std::optional<std::string> prefix = Reading();
  std::string answer;
  if (!prefix || !Exchange(user_lines::WhoAmI(*prefix), answer)) return false;
  state_.user = UserFromAnswer(answer);
  if (!state_.user) {
    messages_.Warn(text::kDeviceReplied, "\n" + answer);
    return false;
  }
  return GrantRead(*prefix).has_value();
}

std::optional<int> Users::GrantRead(const std::string& prefix) {
  std::string answer;
  if (!Exchange(GrantLine(prefix), answer)) return std::nullopt;
  const int level = ReadInteger(answer);
  if (Concerns(prefix)) state_.grant = level;
  return level;
}

bool Users::ReadUsers(const std::string& prefix) {
  std::string answer;
  if (!Exchange(user_lines::AllUsers(prefix), answer)) return false;
  const auto users = UsersFromAnswer(answer);
  if (!users) {
    messages_.Warn(text::kDeviceReplied, "\n" + answer);
    return false;
  }
  const UserRecord& administrator = (*users)[kAdministrator];
  state_.protects = administrator.passwordSet;
  state_.ports.reset();
  for (std::size_t user = 0; user < users->size(); ++user) {
    state_.users[user].reset();
    if (administrator.passwordSet) state_.users[user] = (*users)[user];
  }
  state_.users[kAdministrator] = administrator;
  return true;
}

std::optional<bool> Users::HasCom4(const std::string& prefix) {
  std::string answer;
  if (!commands_.DevQueryMsg(link_.CurrentChannel(), user_lines::FeatureNumber(prefix), answer)) {
    return std::nullopt;
  }
  return ReadNumber(answer) >= kCom4Number;
}

bool Users::ReadPorts(const std::string& prefix, bool com4) {
  std::string answer;
  if (!Exchange(user_lines::Exceptions(prefix), answer)) return false;
  const std::vector<bool> flags = FlagsFromAnswer(answer);
  if (flags.size() < 2) {
    messages_.Warn(text::kDeviceReplied, "\n" + answer);
    return false;
  }
  PortExceptions ports{.com1 = flags[0], .com2 = flags[1], .com4 = {}};
  if (com4) ports.com4 = flags.size() > 2 && flags[2];
  state_.ports = ports;
  return true;
}

bool Users::Concerns(const std::string& prefix) const {
  return SameText(prefix, selection_.GetKenn().value_or(""));
}

Users::Outcome Users::LogIn(int user) {
  const std::optional<std::string> prefix = Reading();
  if (!prefix) return Outcome::kFailed;
  std::string password;
  const Outcome asked = AskPassword({.title = UserName(user),
                                     .prompt = messages_.Caption(text::kUserPassword),
                                     .value = {},
                                     .password = true},
                                    password);
  if (asked != Outcome::kDone) return asked;
  return LogIn(*prefix, user, password) ? Outcome::kDone : Outcome::kFailed;
}

bool Users::LogIn(const std::string& prefix, int user, const std::string& password) {
  if (const int problem = PasswordProblem(password); problem != 0) {
    messages_.Warn(problem);
    return false;
  }
  std::string answer;
  if (!Exchange(user_lines::LogIn(prefix, user, password), answer, {password})) return false;
  if (!Concerns(prefix)) return true;
  state_.user = user;
  state_.grant.reset();
  administrators_ = user == kAdministrator ? password : std::string();
  return true;
}

bool Users::LogOut() {
  const std::optional<std::string> prefix = Reading() ? selection_.GetKennSel() : std::nullopt;
  if (!prefix || !commands_.DevCmd(link_.CurrentChannel(), user_lines::LogOut(*prefix))) {
    return false;
  }
  state_.user.reset();
  state_.grant.reset();
  administrators_.clear();
  return true;
}

}  // namespace ostrel
