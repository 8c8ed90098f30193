// What changes the user management of a device, and what is asked for it.

#include "base/texts.h"
#include "config/users/users.h"
#include "config/users/users_texts.h"

namespace ostrel {

Users::Outcome Users::AskPassword(const InputRequest& request, std::string& password) {
  const std::optional<std::string> typed = dialogs_.AskText(request);
  if (!typed) return Outcome::kCancelled;
  if (const int problem = PasswordProblem(*typed); problem != 0) {
    messages_.Warn(problem);
    return Outcome::kFailed;
  }
  password = *typed;
  return Outcome::kDone;
}

Users::Outcome Users::AskAdministrators(std::string& password) {
  return AskPassword({.title = messages_.Caption(text::kMasterPassword),
                      .prompt = messages_.Caption(text::kEnterAdminPassword),
                      .value = administrators_,
                      .password = true},
                     password);
}

Users::Outcome Users::AskNew(int user, std::string& password) {
  const auto ask = [&](int id, std::string& typed) {
    return AskPassword({.title = UserName(user) + " – " + messages_.Caption(text::kNewPassword),
                        .prompt = messages_.Caption(id),
                        .value = {},
                        .password = true},
                       typed);
  };
  for (std::string again;; messages_.Warn(text::kPasswordsDiffer)) {
    Outcome outcome = ask(text::kNewPassword, password);
    if (outcome == Outcome::kDone) outcome = ask(text::kConfirmPassword, again);
    if (outcome != Outcome::kDone || again == password) return outcome;
  }
}

bool Users::ConfirmRemoval(int user) {
  if (user == kAdministrator) return messages_.Ask(text::kAccessableByAnyone);
  return dialogs_.AskYesNo(messages_.Filled(text::kRemovePassword, UserName(user)));
}

bool Users::NeedsAdministrator() {
  if (*state_.protects) return false;
  messages_.Warn(text::kNoAdminPassword);
  return true;
}

Users::Outcome Users::Send(const std::string& line, const std::vector<std::string>& passwords,
                           bool settingPassword) {
  std::string answer;
  if (!Exchange(line, answer, passwords, settingPassword)) return Outcome::kFailed;
  messages_.Show(text::kTransferFinished);
  return Outcome::kDone;
}

Users::Outcome Users::SetPassword(int user) {
  const std::optional<std::string> prefix = Writing();
  if (!prefix || (user != kAdministrator && NeedsAdministrator())) return Outcome::kFailed;
  std::string current(kNoPassword);
  std::string fresh;
  Outcome outcome = *state_.protects ? AskAdministrators(current) : Outcome::kDone;
  if (outcome == Outcome::kDone) outcome = AskNew(user, fresh);
  if (outcome != Outcome::kDone) return outcome;
  const bool removed = fresh == kNoPassword;
  if (removed && !ConfirmRemoval(user)) return Outcome::kCancelled;

  outcome = Send(user_lines::SetPassword(*prefix, user, current, fresh), {current, fresh}, true);
  if (outcome != Outcome::kDone) return outcome;
  if (auto& record = state_.users[static_cast<std::size_t>(user)]; record) {
    record->passwordSet = !removed;
  }
  if (user == kAdministrator) {
    administrators_ = removed ? std::string() : fresh;
    // The device decides anew who is logged in when its protection begins or ends.
    if (*state_.protects == removed) state_.user = state_.grant = std::nullopt;
    state_.protects = !removed;
  }
  return outcome;
}

Users::Outcome Users::SetUser(int user, int grant, int minutes) {
  const std::optional<std::string> prefix = Writing();
  if (!prefix || NeedsAdministrator()) return Outcome::kFailed;
  std::string password;
  Outcome outcome = AskAdministrators(password);
  if (outcome != Outcome::kDone) return outcome;
  const std::size_t index = static_cast<std::size_t>(user);
  UserRecord record = state_.users[index].value_or(UserRecord{});
  record.grant = grant;
  record.timeout = minutes;
  outcome =
      Send(user_lines::SetUser(*prefix, user, record, *state_.users[kAdministrator], password),
           {password});
  if (outcome == Outcome::kDone && state_.users[index]) state_.users[index] = record;
  return outcome;
}

Users::Outcome Users::Unprotect() {
  const std::optional<std::string> prefix = Writing();
  if (!prefix) return Outcome::kFailed;
  if (!messages_.Ask(text::kAccessableByAnyone)) return Outcome::kCancelled;
  std::string password(kNoPassword);
  Outcome outcome = *state_.protects ? AskAdministrators(password) : Outcome::kDone;
  if (outcome != Outcome::kDone) return outcome;
  outcome = Send(user_lines::Unprotect(*prefix, password), {password});
  if (outcome == Outcome::kDone) DeviceChanged();
  return outcome;
}

Users::Outcome Users::SetPorts(PortExceptions ports) {
  const std::optional<std::string> prefix = Writing();
  if (!prefix || NeedsAdministrator()) return Outcome::kFailed;
  if (!ports.com2 && !dialogs_.AskYesNo(messages_.Caption(text::kExceptForScada) + "\n" +
                                        messages_.Caption(text::kSendAnyway))) {
    return Outcome::kCancelled;
  }
  std::string password;
  Outcome outcome = AskAdministrators(password);
  if (outcome != Outcome::kDone) return outcome;
  const std::optional<bool> com4 = HasCom4(*prefix);
  if (com4 && ports.com4 && !*com4) {
    messages_.Warn(text::kFirmwareTooOld);
    return Outcome::kFailed;
  }
  const bool keeps = com4 && *com4 && !ports.com4;
  if (!com4 || (keeps && !ReadPorts(*prefix, true))) {
    messages_.Warn(text::kTransferCancelled);
    return Outcome::kFailed;
  }
  if (keeps) ports.com4 = state_.ports->com4;
  outcome = Send(user_lines::SetExceptions(*prefix, ports, password), {password});
  if (outcome == Outcome::kDone) state_.ports = ports;
  return outcome;
}

}  // namespace ostrel
