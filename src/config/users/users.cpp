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

std::string Users::UserName(int user) const {
  if (user < 0 || user >= kUserCount) return std::to_string(user);
  return desk_.texts.Caption(text::kUserGuest + user);
}

std::string Users::Prompt(int user, int id) const {
  return UserName(user) + ": " + desk_.texts.Caption(id);
}

void Users::DeviceChanged() {
  state_ = {};
  administratorsPassword_.clear();
}

std::optional<std::string> Users::Reach(const Reading& station, const std::string& line,
                                        bool settingPassword) {
  Answer answer = station.Try(line);
  if (answer.Ok()) return std::move(answer.text);
  if (Concerns(station)) state_ = {};
  // Why there is no connection stands below.
  const std::string why = "\n" + desk_.texts.Shown(answer.error);
  const std::string none = "\n" + desk_.texts.Shown(text::kNoConnectionToDevice);
  if (settingPassword) {
    desk_.texts.Warn(text::kPasswordNotChanged, none + why);
  } else {
    desk_.texts.Warn(text::kNoConnectionToDevice, why);
  }
  return std::nullopt;
}

std::optional<std::string> Users::Exchange(const Reading& station, const std::string& line,
                                           const std::vector<std::string>& passwords,
                                           bool settingPassword) {
  std::optional<std::string> answer = Reach(station, line, settingPassword);
  if (!answer || (!IsErrorAnswer(*answer) && !IsRefusal(*answer))) return answer;
  desk_.texts.Warn(text::kDeviceReplied, "\n" + WithoutPasswords(*answer, passwords));
  return std::nullopt;
}

std::optional<Writing> Users::ToChange() {
  std::optional<Writing> device = desk_.session.ToWrite();
  // Which passwords there are decides what is asked, and the settings of the administrator are sent
  // along with the guest's.
  if (!device || state_.users[kAdministrator]) return device;
  const bool read = ReadUsers(*device);
  KeepGuestsOwnGrant();
  if (read) return device;
  desk_.texts.Warn(text::kTransferCancelled);
  return std::nullopt;
}

bool Users::PWReadAll() {
  state_ = {};
  const std::optional<Reading> device = desk_.session.ToRead();
  if (!device) return false;
  const BusyPointer busy(desk_.dialogs);
  if (!ReadLogin(*device) || !ReadUsers(*device)) return false;
  if (!*state_.protects) return true;
  const std::optional<bool> com4 = HasCom4(*device);
  const bool read = com4 && ReadPorts(*device, *com4);
  KeepGuestsOwnGrant();
  return read;
}

/// The guest's record tells the grant in force: another user's while one is logged in, the highest
/// one also where the port is excepted over which it was read.
void Users::KeepGuestsOwnGrant() {
  std::optional<UserRecord>& guest = state_.users[0];
  if (!guest) return;
  const auto& ports = state_.ports;
  const bool excepts = !ports || ports->com1 || ports->com2 || ports->com4.value_or(false);
  if (state_.user != 0 || (excepts && guest->grant == kHighestGrant)) guest->grant.reset();
}

bool Users::ReadLogin() {
  const std::optional<Reading> device = desk_.session.ToRead();
  return device && ReadLogin(*device);
}

bool Users::ReadLogin(const Reading& device) {
  state_.user = state_.grant = std::nullopt;
  const std::optional<std::string> answer = Exchange(device, user_lines::WhoAmI());
  if (!answer) return false;
  state_.user = UserFromAnswer(*answer);
  if (!state_.user) {
    desk_.texts.Warn(text::kDeviceReplied, "\n" + *answer);
    return false;
  }
  return GrantRead(device).has_value();
}

std::optional<int> Users::GrantRead(const Reading& station) {
  if (Concerns(station)) state_.grant.reset();
  const std::optional<std::string> answer = Exchange(station, std::string(kGrantLine));
  if (!answer) return std::nullopt;
  const std::optional<int> level = WholeNumber(TrimAnswer(*answer));
  if (!level) desk_.texts.Warn(text::kDeviceReplied, "\n" + *answer);
  if (Concerns(station)) state_.grant = level;
  return level;
}

bool Users::ReadUsers(const Reading& device) {
  const std::optional<std::string> answer = Exchange(device, user_lines::AllUsers());
  if (!answer) return false;
  const auto users = UsersFromAnswer(*answer);
  if (!users) {
    desk_.texts.Warn(text::kDeviceReplied, "\n" + *answer);
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

std::optional<bool> Users::HasCom4(const Reading& device) {
  // A device that does not know the question has none.
  const std::optional<std::string> answer = Reach(device, user_lines::FeatureNumber());
  if (!answer) return std::nullopt;
  return ReadNumber(*answer) >= kCom4Number;
}

bool Users::ReadPorts(const Reading& device, bool com4) {
  state_.ports.reset();
  const std::optional<std::string> answer = Exchange(device, user_lines::Exceptions());
  if (!answer) return false;
  const auto flags = FlagsFromAnswer(*answer);
  if (!flags || flags->size() < 2) {
    desk_.texts.Warn(text::kDeviceReplied, "\n" + *answer);
    return false;
  }
  PortExceptions ports{.com1 = (*flags)[0], .com2 = (*flags)[1], .com4 = {}};
  if (com4 && flags->size() > 2) ports.com4 = (*flags)[2];
  state_.ports = ports;
  return true;
}

bool Users::Concerns(const Reading& station) const {
  return SameText(station.Address(), desk_.session.Selected().GetKenn().value_or(""));
}

Ending Users::LogIn(int user) {
  const std::optional<Writing> device = desk_.session.ToWrite();
  if (!device) return Ending::kFailed;
  std::string password;
  const Ending asked = AskPassword({.title = UserName(user),
                                    .prompt = Prompt(user, text::kUserPassword),
                                    .value = {},
                                    .password = true},
                                   password);
  if (asked != Ending::kDone) return asked;
  return LogIn(*device, user, password) ? Ending::kDone : Ending::kFailed;
}

bool Users::LogIn(const Writing& station, int user, const std::string& password) {
  if (const int problem = PasswordProblem(password); problem != 0) {
    desk_.texts.Warn(problem);
    return false;
  }
  if (!Exchange(station, user_lines::LogIn(user, password), {password})) return false;
  if (!Concerns(station)) return true;
  state_.user = user;
  state_.grant.reset();
  administratorsPassword_ = user == kAdministrator ? password : std::string();
  return true;
}

bool Users::LogOut() {
  const std::optional<Writing> device = desk_.session.ToWrite();
  if (!device) return false;
  if (!Reach(*device, user_lines::LogOut())) return false;
  state_.user.reset();
  state_.grant.reset();
  administratorsPassword_.clear();
  return true;
}

}  // namespace ostrel
