#include <CLI/CLI.hpp>

#include "base/texts.h"
#include "config/users/users.h"
#include "config/users/users_texts.h"
#include "device/rights.h"
#include "terminal/command.h"
#include "terminal/json.h"

namespace ostrel {

namespace {

std::string UsersJson(const Users& users) {
  std::vector<std::string> list;
  std::vector<std::string> ports;
  for (int user = 0; user < kUserCount; ++user) {
    const auto& record = users.State().users[static_cast<std::size_t>(user)];
    if (!record) continue;
    const std::string grant = record->grant ? std::to_string(*record->grant) : "null";
    list.push_back(JsonObject()
                       .Add("user", user)
                       .Add("name", users.UserName(user))
                       .Add("passwordSet", record->passwordSet)
                       .AddRaw("grant", grant)
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

/// Prints who is logged in, as it was last read.
Ending PrintLogin(const Users& users, const Desk& desk, Terminal& terminal) {
  const int user = users.State().user.value_or(0);
  const int grant = users.State().grant.value_or(0);
  if (terminal.Json()) {
    terminal.PrintJson(JsonObject().Add("user", user).Add("grant", grant).Text());
  } else {
    terminal.PrintTable({{terminal.Text(text::kUser), users.UserName(user)},
                         {terminal.Text(text::kGrant), GrantText(desk.texts, grant)}});
  }
  return Ending::kDone;
}

void PrintUsers(const Users& users, const Desk& desk, Terminal& terminal) {
  std::vector<std::vector<std::string>> rows = {
      {terminal.Text(text::kUser), terminal.Text(text::kPassword),
       terminal.Text(text::kTimeoutMinutes), terminal.Text(text::kGrant)}};
  for (int user = 0; user < kUserCount; ++user) {
    const auto& record = users.State().users[static_cast<std::size_t>(user)];
    if (!record) continue;
    rows.push_back({users.UserName(user), record->passwordSet ? terminal.Text(text::kIsSet) : "–",
                    std::to_string(record->timeout),
                    record->grant ? GrantText(desk.texts, *record->grant) : "–"});
  }
  terminal.PrintTable(rows);
}

void PrintPorts(const Users& users, Terminal& terminal) {
  const auto& ports = users.State().ports;
  if (!ports) return;
  const auto row = [&](const char* port, bool excepted) {
    const int id = excepted ? text::kPortExcepted : text::kPortProtected;
    return std::vector<std::string>{port, terminal.Text(id)};
  };
  std::vector<std::vector<std::string>> rows = {row("COM1", ports->com1), row("COM2", ports->com2)};
  if (ports->com4) rows.push_back(row("COM4", *ports->com4));
  terminal.PrintTable(rows);
}

/// A command for the users of the station, perhaps for one of them.
class UsersCommand : public Command {
 public:
  using Command::Command;

  Ending Run(const Desk& desk, Terminal& terminal) override {
    if (!desk.session.DeviceSelectByAddress(terminal.Station())) return Ending::kFailed;
    Users users(desk);
    return Run(users, desk, terminal);
  }

 protected:
  virtual Ending Run(Users& users, const Desk& desk, Terminal& terminal) = 0;

  void DeclareUser(CLI::App& own) {
    own.add_option("number", user_, "0 guest, 1 administrator, 2 to 5")
        ->required()
        ->check(CLI::Range(0, kUserCount - 1));
  }

  int user_ = 0;
};

/// One that changes something, and says with --json what.
class ChangingCommand : public UsersCommand {
 public:
  ChangingCommand(std::string name, std::string help, const char* done)
      : UsersCommand(std::move(name), std::move(help)), done_(done) {}

 protected:
  virtual Ending Change(Users& users) = 0;

 private:
  Ending Run(Users& users, const Desk&, Terminal& terminal) final {
    const Ending ending = Change(users);
    if (ending == Ending::kDone) terminal.PrintDone(done_);
    return ending;
  }

  const char* done_;
};

class LoginCommand : public UsersCommand {
 public:
  LoginCommand() : UsersCommand("login", "Log a user in at the station") {}
  void Declare(CLI::App& own) override { DeclareUser(own); }

 private:
  Ending Run(Users& users, const Desk& desk, Terminal& terminal) override {
    if (const Ending ending = users.LogIn(user_); ending != Ending::kDone) return ending;
    const std::optional<Reading> device = desk.session.ToRead();
    if (!device || !users.GrantRead(*device)) return Ending::kFailed;
    return PrintLogin(users, desk, terminal);
  }
};

class LogoutCommand : public ChangingCommand {
 public:
  LogoutCommand() : ChangingCommand("logout", "Log out", "loggedOut") {}

 private:
  Ending Change(Users& users) override { return users.LogOut() ? Ending::kDone : Ending::kFailed; }
};

class WhoAmICommand : public UsersCommand {
 public:
  WhoAmICommand() : UsersCommand("whoami", "Say who is logged in and what he may do") {}

 private:
  Ending Run(Users& users, const Desk& desk, Terminal& terminal) override {
    return users.ReadLogin() ? PrintLogin(users, desk, terminal) : Ending::kFailed;
  }
};

class ListCommand : public UsersCommand {
 public:
  using UsersCommand::UsersCommand;

 private:
  Ending Run(Users& users, const Desk& desk, Terminal& terminal) override {
    if (!users.PWReadAll()) return Ending::kFailed;
    if (!users.State().protects.value_or(false)) desk.texts.Show(text::kNoAdminPassword);
    if (terminal.Json()) {
      terminal.PrintJson(UsersJson(users));
      return Ending::kDone;
    }
    PrintUsers(users, desk, terminal);
    PrintLogin(users, desk, terminal);
    PrintPorts(users, terminal);
    return Ending::kDone;
  }
};

class PasswordCommand : public ChangingCommand {
 public:
  PasswordCommand()
      : ChangingCommand(
            "users password",
            "Set a user's password; asks for the administrator's, then twice for the new one",
            "passwordSet") {}
  void Declare(CLI::App& own) override { DeclareUser(own); }

 private:
  Ending Change(Users& users) override { return users.SetPassword(user_); }
};

class SetCommand : public ChangingCommand {
 public:
  SetCommand()
      : ChangingCommand("users set", "Set what a user may do, and for how long", "settingsSent") {}

  void Declare(CLI::App& own) override {
    DeclareUser(own);
    own.add_option("--grant", grant_, "Grant level, 0 to 5")
        ->required()
        ->check(CLI::Range(0, kHighestGrant));
    own.add_option("--timeout", minutes_, "Minutes until the logout, 0 = never")
        ->required()
        ->check(CLI::Range(0, kMostMinutes));
  }

 private:
  Ending Change(Users& users) override { return users.SetUser(user_, grant_, minutes_); }

  int grant_ = 0, minutes_ = 0;
};

class UnprotectCommand : public ChangingCommand {
 public:
  UnprotectCommand()
      : ChangingCommand("users unprotect", "Remove the protection, after a question",
                        "unprotected") {}

 private:
  Ending Change(Users& users) override { return users.Unprotect(); }
};

class PortsCommand : public ChangingCommand {
 public:
  PortsCommand()
      : ChangingCommand("users ports", "Except ports from the protection", "exceptionsSent") {}

  void Declare(CLI::App& own) override {
    const CLI::Range flag(0, 1);
    own.add_option("--com1", com1_, "1 = excepted, 0 = not")->required()->check(flag);
    own.add_option("--com2", com2_, "The same")->required()->check(flag);
    own.add_option("--com4", com4_, "The same, where there is one")->check(flag);
  }

 private:
  Ending Change(Users& users) override {
    PortExceptions ports{.com1 = com1_ == 1, .com2 = com2_ == 1, .com4 = {}};
    if (com4_) ports.com4 = *com4_ == 1;
    return users.SetPorts(ports);
  }

  int com1_ = 0, com2_ = 0;
  std::optional<int> com4_;
};

}  // namespace

CommandList MakeUsersCommands() {
  return ListOf(
      std::make_unique<LoginCommand>(), std::make_unique<LogoutCommand>(),
      std::make_unique<WhoAmICommand>(),
      std::make_unique<ListCommand>("users", "The users of the station and what they may do"),
      std::make_unique<ListCommand>("users list", "List them"), std::make_unique<PasswordCommand>(),
      std::make_unique<SetCommand>(), std::make_unique<UnprotectCommand>(),
      std::make_unique<PortsCommand>());
}

}  // namespace ostrel
