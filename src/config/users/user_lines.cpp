#include "config/users/user_lines.h"

#include "base/number.h"
#include "base/text.h"
#include "base/utf8.h"
#include "config/users/users_texts.h"
#include "wire/answers.h"

namespace ostrel {

namespace {

std::string Flag(bool excepted) {
  return excepted ? "1" : "0";
}

std::string SettingsItem(int user, const UserRecord& record, const std::string& password) {
  return "passwort* " + std::to_string(user) + " " + password + "=" +
         std::to_string(record.timeout) + " " + std::to_string(record.grant.value_or(0));
}

/// ASCII without control characters and blank, and the printable rest of ISO 8859-1 as UTF-8.
bool CanStandInALine(std::string_view text) {
  while (!text.empty()) {
    const char32_t character = PopCharacter(text).value_or(0);
    // U+0080..U+009F are control characters, U+00A0 is a blank.
    const bool above = character > 0xA0 && character <= 0xFF;
    if (!above && (character <= ' ' || character >= 0x7F)) return false;
  }
  return true;
}

}  // namespace

namespace user_lines {

std::string WhoAmI() {
  return "whoami";
}

std::string AllUsers() {
  return ";fori 0..5,i,passwort- .,!,!,!,ni";
}

std::string LogIn(int user, const std::string& password) {
  return std::string("login ") + std::to_string(user) + " " + password;
}

std::string LogOut() {
  return "logout";
}

std::string SetPassword(int user, const std::string& current, const std::string& fresh) {
  return std::string("passwort ") + std::to_string(user) + " " + current + "=" + fresh + " " +
         fresh;
}

std::string SetUser(int user, const UserRecord& record, const UserRecord& administrator,
                    const std::string& password) {
  std::string line;
  if (user == 0) line += SettingsItem(kAdministrator, administrator, password) + ",";
  return line + SettingsItem(user, record, password);
}

std::string Unprotect(const std::string& password) {
  return std::string("passwort 1 ") + password + "=0 0";
}

std::string FeatureNumber() {
  return ",VER?-,^,if,VER- QOL,else,0,eif,!";
}

std::string Exceptions() {
  return "pwlrelease# *";
}

std::string SetExceptions(const PortExceptions& ports, const std::string& password) {
  std::string line = ",PWLrel 1 " + password + "=" + Flag(ports.com1) + ",PWLrel 2 " + password +
                     "=" + Flag(ports.com2);
  if (ports.com4) line += ",PWLrel 4 " + password + "=" + Flag(*ports.com4);
  return line;
}

}  // namespace user_lines

std::optional<int> UserFromAnswer(const std::string& answer) {
  const std::string number = ValueAfter(LowerAscii(answer), "user");
  if (number.empty() || number.front() < '0' || number.front() > '9') return std::nullopt;
  return ReadInteger(number);
}

std::optional<std::array<UserRecord, kUserCount>> UsersFromAnswer(std::string answer) {
  answer = TrimAnswer(answer);
  std::array<UserRecord, kUserCount> users;
  for (UserRecord& user : users) {
    const auto set = WholeNumber(NextLine(answer));
    const auto grant = WholeNumber(NextLine(answer));
    const auto minutes = WholeNumber(NextLine(answer));
    // What was not understood must not come back to the device as a number of ours.
    if (!set || !grant || !minutes) return std::nullopt;
    user = {.passwordSet = *set != 0, .grant = *grant, .timeout = *minutes};
  }
  return answer.empty() ? std::optional(users) : std::nullopt;
}

std::optional<std::vector<bool>> FlagsFromAnswer(std::string_view answer) {
  std::vector<bool> flags;
  for (std::size_t at = answer.find('='); at != std::string_view::npos; at = answer.find('=')) {
    answer.remove_prefix(at + 1);
    const std::string_view value = Trim(answer);
    const auto flag = WholeNumber(value.substr(0, value.find_first_of("\r\n,; ")));
    if (flag != 0 && flag != 1) return std::nullopt;
    flags.push_back(flag == 1);
  }
  return flags;
}

int PasswordProblem(std::string_view password) {
  const bool fits = !password.empty() && CanStandInALine(password) &&
                    password.find_first_of("\"',;:=") == std::string_view::npos;
  return fits ? 0 : text::kPasswordProblem;
}

}  // namespace ostrel
