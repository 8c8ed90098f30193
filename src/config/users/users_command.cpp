#include "base/texts.h"
#include "cli/commands.h"
#include "config/users/users_texts.h"
#include "device/rights.h"
#include "terminal/json.h"

namespace ostrel {

namespace {

std::string UsersJson(const Users& users) {
  std::vector<std::string> list;
  std::vector<std::string> ports;
  for (int user = 0; user < kUserCount; ++user) {
    const auto& record = users.State().users[static_cast<std::size_t>(user)];
    if (!record) continue;
    list.push_back(JsonObject()
                       .Add("user", user)
                       .Add("name", users.UserName(user))
                       .Add("passwordSet", record->passwordSet)
                       .Add("grant", record->grant)
                       .Add("timeout", record->timeout)
                       .Text());
  }
  const auto add = [&ports](int port, bool excepted) {
    ports.push_back(JsonObject().Add("port", port).Add("excepted", excepted).Text());
  };
  if (const auto& read = users.State().ports; read) {
    add(1, read->com1);
    add(2, read->com2);
    if (read->com4) add(4, *read->com4);
  }
  return JsonObject().AddRaw("users", JsonList(list)).AddRaw("ports", JsonList(ports)).Text();
}

}  // namespace

ExitStatus CliRun::Ended(Users::Outcome outcome, const char* key) {
  if (outcome == Users::Outcome::kFailed) return ExitStatus::kRefused;
  if (outcome == Users::Outcome::kCancelled) {
    service_.Texts().Warn(text::kNotConfirmed);
    return ExitStatus::kNotConfirmed;
  }
  if (json_) PrintJson(JsonObject().Add(key, true).Text());
  return ExitStatus::kDone;
}

ExitStatus CliRun::ChangeUsers(const char* key,
                               const std::function<Users::Outcome(Users&)>& operation) {
  if (!service_.DeviceSelectByAddress(station_)) return ExitStatus::kRefused;
  return Ended(operation(service_.UserManagement()), key);
}

ExitStatus CliRun::LogIn(int user) {
  if (!service_.DeviceSelectByAddress(station_)) return ExitStatus::kRefused;
  Users& users = service_.UserManagement();
  const Users::Outcome outcome = users.LogIn(user);
  if (outcome != Users::Outcome::kDone) return Ended(outcome, "loggedIn");
  if (!users.GrantRead(service_.Device().Address())) return ExitStatus::kRefused;
  return PrintLogin();
}

ExitStatus CliRun::LogOut() {
  return ChangeUsers("loggedOut", [](Users& users) {
    return users.LogOut() ? Users::Outcome::kDone : Users::Outcome::kFailed;
  });
}

ExitStatus CliRun::WhoAmI() {
  if (!service_.DeviceSelectByAddress(station_)) return ExitStatus::kRefused;
  return service_.UserManagement().ReadLogin() ? PrintLogin() : ExitStatus::kRefused;
}

ExitStatus CliRun::PrintLogin() {
  const Users& users = service_.UserManagement();
  const int user = users.State().user.value_or(0);
  const int grant = users.State().grant.value_or(0);
  if (json_) {
    PrintJson(JsonObject().Add("user", user).Add("grant", grant).Text());
  } else {
    Table({{Text(text::kUser), users.UserName(user)},
           {Text(text::kGrant), GrantText(service_.Texts(), grant)}});
  }
  return ExitStatus::kDone;
}

ExitStatus CliRun::UsersList() {
  if (!service_.DeviceSelectByAddress(station_)) return ExitStatus::kRefused;
  Users& users = service_.UserManagement();
  if (!users.PWReadAll()) return ExitStatus::kRefused;
  if (!users.State().protects.value_or(false)) service_.Texts().Show(text::kNoAdminPassword);
  if (json_) {
    PrintJson(UsersJson(users));
    return ExitStatus::kDone;
  }
  std::vector<std::vector<std::string>> rows = {
      {Text(text::kUser), Text(text::kPassword), Text(text::kTimeoutMinutes), Text(text::kGrant)}};
  for (int user = 0; user < kUserCount; ++user) {
    const auto& record = users.State().users[static_cast<std::size_t>(user)];
    if (!record) continue;
    rows.push_back({users.UserName(user), record->passwordSet ? Text(text::kIsSet) : "–",
                    std::to_string(record->timeout), GrantText(service_.Texts(), record->grant)});
  }
  Table(rows);
  PrintLogin();
  PrintPorts();
  return ExitStatus::kDone;
}

void CliRun::PrintPorts() {
  const auto& ports = service_.UserManagement().State().ports;
  if (!ports) return;
  const auto row = [this](const char* port, bool excepted) {
    return std::vector<std::string>{port,
                                    Text(excepted ? text::kPortExcepted : text::kPortProtected)};
  };
  std::vector<std::vector<std::string>> rows = {row("COM1", ports->com1), row("COM2", ports->com2)};
  if (ports->com4) rows.push_back(row("COM4", *ports->com4));
  Table(rows);
}

}  // namespace ostrel
