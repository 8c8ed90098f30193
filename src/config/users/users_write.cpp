// What changes the user management of a device, and what is asked for it.

#include "base/texts.h"
#include "config/users/users.h"
#include "config/users/users_texts.h"

namespace ostrel {

Ending Users::AskPassword(const InputRequest& request, std::string& password) {
  const std::optional<std::string> typed = desk_.dialogs.AskText(request);
  if (!typed) return Ending::kNotConfirmed;
  if (const int problem = PasswordProblem(*typed); problem != 0) {
    desk_.texts.Warn(problem);
    return Ending::kFailed;
  }
  password = *typed;
  return Ending::kDone;
}

Ending Users::AskAdministrators(std::string& password) {
  return AskPassword({.title = desk_.texts.Caption(text::kMasterPassword),
                      .prompt = desk_.texts.Caption(text::kEnterAdminPassword),
                      .value = administratorsPassword_,
                      .password = true},
                     password);
}

Ending Users::AskNew(int user, std::string& password) {
  const auto ask = [&](int id, std::string& typed) {
    Ending outcome = Ending::kFailed;  // it was said what a password must not hold
    while (outcome == Ending::kFailed) {
      outcome =
          AskPassword({.title = UserName(user) + " – " + desk_.texts.Caption(text::kNewPassword),
                       .prompt = Prompt(user, id),
                       .value = {},
                       .password = true},
                      typed);
    }
    return outcome;
  };
  for (std::string again;; desk_.texts.Warn(text::kPasswordsDiffer)) {
    Ending outcome = ask(text::kNewPassword, password);
    if (outcome == Ending::kDone) outcome = ask(text::kConfirmPassword, again);
    if (outcome != Ending::kDone || again == password) return outcome;
  }
}

bool Users::ConfirmRemoval(int user) {
  if (user == kAdministrator) return desk_.texts.Ask(text::kAccessableByAnyone);
  return desk_.dialogs.AskYesNo(desk_.texts.Filled(text::kRemovePassword, UserName(user)));
}

bool Users::NeedsAdministrator() {
  if (*state_.protects) return false;
  desk_.texts.Warn(text::kNoAdminPassword);
  return true;
}

Ending Users::Send(const Writing& device, const std::string& line,
                   const std::vector<std::string>& passwords, bool settingPassword) {
  if (!Exchange(device, line, passwords, settingPassword)) return Ending::kFailed;
  desk_.texts.Show(text::kTransferFinished);
  return Ending::kDone;
}

Ending Users::SetPassword(int user) {
  const std::optional<Writing> device = ToChange();
  if (!device || (user != kAdministrator && NeedsAdministrator())) return Ending::kFailed;
  std::string current(kNoPassword);
  std::string fresh;
  Ending outcome = *state_.protects ? AskAdministrators(current) : Ending::kDone;
  if (outcome == Ending::kDone) outcome = AskNew(user, fresh);
  if (outcome != Ending::kDone) return outcome;
  const bool removed = fresh == kNoPassword;
  if (removed && !ConfirmRemoval(user)) return Ending::kNotConfirmed;

  outcome = Send(*device, user_lines::SetPassword(user, current, fresh), {current, fresh}, true);
  if (outcome != Ending::kDone) return outcome;
  if (auto& record = state_.users[static_cast<std::size_t>(user)]; record) {
    record->passwordSet = !removed;
  }
  if (user == kAdministrator) {
    administratorsPassword_ = removed ? std::string() : fresh;
    // The device decides anew who is logged in when its protection begins or ends.
    if (*state_.protects == removed) state_.user = state_.grant = std::nullopt;
    state_.protects = !removed;
  }
  return outcome;
}

Ending Users::SetUser(int user, int grant, int minutes) {
  const std::optional<Writing> device = ToChange();
  if (!device || NeedsAdministrator()) return Ending::kFailed;
  std::string password;
  Ending outcome = AskAdministrators(password);
  if (outcome != Ending::kDone) return outcome;
  const std::size_t index = static_cast<std::size_t>(user);
  UserRecord record = state_.users[index].value_or(UserRecord{});
  record.grant = grant;
  record.timeout = minutes;
  outcome =
      Send(*device, user_lines::SetUser(user, record, *state_.users[kAdministrator], password),
           {password});
  if (outcome == Ending::kDone && state_.users[index]) state_.users[index] = record;
  return outcome;
}

Ending Users::Unprotect() {
  const std::optional<Writing> device = ToChange();
  if (!device) return Ending::kFailed;
  if (!desk_.texts.Ask(text::kAccessableByAnyone)) return Ending::kNotConfirmed;
  std::string password(kNoPassword);
  Ending outcome = *state_.protects ? AskAdministrators(password) : Ending::kDone;
  if (outcome != Ending::kDone) return outcome;
  outcome = Send(*device, user_lines::Unprotect(password), {password});
  if (outcome == Ending::kDone) DeviceChanged();
  return outcome;
}

Ending Users::SetPorts(PortExceptions ports) {
  const std::optional<Writing> device = ToChange();
  if (!device || NeedsAdministrator()) return Ending::kFailed;
  if (!ports.com2 && !desk_.dialogs.AskYesNo(desk_.texts.Caption(text::kExceptForScada) + "\n" +
                                             desk_.texts.Caption(text::kSendAnyway))) {
    return Ending::kNotConfirmed;
  }
  std::string password;
  Ending outcome = AskAdministrators(password);
  if (outcome != Ending::kDone) return outcome;
  const std::optional<bool> com4 = HasCom4(*device);
  if (com4 && ports.com4 && !*com4) {
    desk_.texts.Warn(text::kFirmwareTooOld);
    return Ending::kFailed;
  }
  const bool keeps = com4 && *com4 && !ports.com4;
  if (!com4 || (keeps && !ReadPorts(*device, true))) {
    desk_.texts.Warn(text::kTransferCancelled);
    return Ending::kFailed;
  }
  if (keeps) ports.com4 = state_.ports->com4;
  outcome = Send(*device, user_lines::SetExceptions(ports, password), {password});
  if (outcome == Ending::kDone) state_.ports = ports;
  return outcome;
}

}  // namespace ostrel
