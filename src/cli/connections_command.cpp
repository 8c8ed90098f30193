#include <CLI/CLI.hpp>
#include <optional>

#include "base/number.h"
#include "base/texts.h"
#include "cli/own_commands.h"
#include "link/connection_test.h"
#include "terminal/json.h"
#include "wire/connections.h"

namespace ostrel {

namespace {

template <typename Choices>
std::vector<std::string> StoredNames(const Choices& choices) {
  std::vector<std::string> names;
  for (const auto& choice : choices) names.emplace_back(choice.stored);
  return names;
}

/// What is given of a connection.
struct GivenConnection {
  std::optional<std::string> name, kind, target, parity, stopBits;
  std::optional<int> baud;

  CLI::Option* DeclareKind(CLI::App& own, const char* option) {
    return own.add_option(option, kind, "simulator, tcp or serial")
        ->check(CLI::IsMember(StoredNames(kConnectionKinds)));
  }
  void DeclareTarget(CLI::App& own, const char* option) {
    own.add_option(option, target, "HOST:PORT or the serial device");
  }
  void DeclareSerial(CLI::App& own) {
    own.add_option("--baud", baud, "Baud rate of a serial line; 19200 at first");
    own.add_option("--parity", parity, "Its parity; none at first")
        ->check(CLI::IsMember(StoredNames(kParities)));
    own.add_option("--stop-bits", stopBits, "Its stop bits; 1 at first")
        ->check(
            CLI::IsMember(std::vector<std::string>(std::begin(kStopBits), std::end(kStopBits))));
  }
};

/// "HOST:PORT"; the port is 0 where there is none.
void ApplyHostAndPort(const std::string& target, Connection& connection) {
  const std::size_t colon = target.rfind(':');
  connection.host = target.substr(0, colon);
  // "[::1]:4001": the brackets only part the address from the port.
  if (connection.host.starts_with('[') && connection.host.ends_with(']')) {
    connection.host = connection.host.substr(1, connection.host.size() - 2);
  }
  const std::string port = colon == std::string::npos ? "" : target.substr(colon + 1);
  const bool digits = port.find_first_not_of("0123456789") == std::string::npos;
  connection.port = digits ? ReadInteger(port) : 0;
}

/// Brings in what is given. False where the kind has no use for it.
bool Apply(const GivenConnection& given, Connection& connection) {
  if (given.name) connection.name = *given.name;
  if (given.kind) connection.kind = *given.kind;
  const bool serial = connection.Is(ConnectionKind::kSerial);
  if (!serial && (given.baud || given.parity || given.stopBits)) return false;
  if (given.baud) connection.baud = *given.baud;
  if (given.parity) connection.parity = *given.parity;
  if (given.stopBits) connection.stopBits = *given.stopBits;
  if (!given.target) return true;
  if (connection.Is(ConnectionKind::kTcp)) ApplyHostAndPort(*given.target, connection);
  if (serial) connection.device = *given.target;
  return !connection.Simulated() || given.target->empty();
}

const char* StepName(TestStep step) {
  switch (step) {
    case TestStep::kServer:
      return "server";
    case TestStep::kOpen:
      return "open";
    case TestStep::kAnswer:
      return "answer";
    case TestStep::kDone:
      break;
  }
  return "done";
}

std::string ToJson(const Connection& connection, bool current) {
  JsonObject object;
  object.Add("name", connection.name)
      .Add("kind", connection.kind)
      .Add("target", connection.Target())
      .Add("current", current);
  if (connection.Is(ConnectionKind::kTcp)) {
    object.Add("host", connection.host).Add("port", connection.port);
  }
  if (connection.Is(ConnectionKind::kSerial)) {
    object.Add("device", connection.device)
        .Add("baud", connection.baud)
        .Add("parity", connection.parity)
        .Add("stopBits", connection.stopBits);
  }
  return object.Text();
}

Ending PrintConnections(const Desk& desk, Terminal& terminal) {
  const Connections connections(desk.settings);
  const std::optional<Connection> current = connections.Find("");
  std::vector<std::string> json;
  std::vector<std::vector<std::string>> rows = {
      {" ", terminal.Text(text::kName), terminal.Text(text::kKind), terminal.Text(text::kTarget)}};
  for (const Connection& connection : connections.List()) {
    const bool isCurrent = current && current->name == connection.name;
    rows.push_back({isCurrent ? "*" : " ", connection.name, connection.kind, connection.Target()});
    json.push_back(ToJson(connection, isCurrent));
  }
  terminal.PrintList(rows, json);
  return Ending::kDone;
}

/// Says what is wrong with given data.
Ending Faulty(Terminal& terminal, const GivenConnection& given, const std::string& name,
              int problem) {
  if (problem == text::kConnectionTaken) return terminal.Refuse(problem, name);
  return terminal.RefuseUsage(text::kConnectionFaulty, name + " " + given.target.value_or("") +
                                                           "\n" + terminal.Text(problem));
}

class ListCommand : public Command {
 public:
  using Command::Command;
  Ending Run(const Desk& desk, Terminal& terminal) override {
    return PrintConnections(desk, terminal);
  }
};

class AddCommand : public Command {
 public:
  AddCommand() : Command("connections add", "Add a connection") {}

  void Declare(CLI::App& own) override {
    own.add_option("name", given_.name, "Its name")->required();
    given_.DeclareKind(own, "kind")->required();
    given_.DeclareTarget(own, "target");
    given_.DeclareSerial(own);
  }

  Ending Run(const Desk& desk, Terminal& terminal) override {
    Connections connections(desk.settings);
    Connection connection;
    const bool fits = Apply(given_, connection);
    const int problem = fits ? connections.Problem(connection) : text::kOptionProblem;
    if (problem != 0) return Faulty(terminal, given_, connection.name, problem);
    connections.Add(connection);
    return PrintConnections(desk, terminal);
  }

 private:
  GivenConnection given_;
};

/// A command for one of the connections that there are.
class NamedCommand : public Command {
 public:
  using Command::Command;
  void Declare(CLI::App& own) override { own.add_option("name", name_, "Its name")->required(); }

 protected:
  /// The connection, where it can be changed; what speaks against that is shown.
  std::optional<Connection> Stored(const Connections& connections, Terminal& terminal) const {
    std::optional<Connection> connection = connections.Find(name_);
    if (name_.empty() || !connection) {
      terminal.Refuse(text::kNoSuchConnection, name_);
      return std::nullopt;
    }
    if (connections.Stored(name_)) return connection;
    terminal.Refuse(text::kBuiltIn, name_);
    return std::nullopt;
  }

  std::string name_;
};

class ChangeCommand : public NamedCommand {
 public:
  ChangeCommand() : NamedCommand("connections change", "Change what is given, keep the rest") {}

  void Declare(CLI::App& own) override {
    own.add_option("connection", name_, "Its name until now")->required();
    own.add_option("--name", given_.name, "Another name");
    given_.DeclareKind(own, "--kind");
    given_.DeclareTarget(own, "--target");
    given_.DeclareSerial(own);
  }

  Ending Run(const Desk& desk, Terminal& terminal) override {
    Connections connections(desk.settings);
    std::optional<Connection> connection = Stored(connections, terminal);
    if (!connection) return Ending::kFailed;
    const bool fits = Apply(given_, *connection);
    const int problem = fits ? connections.Problem(*connection, name_) : text::kOptionProblem;
    if (problem != 0) return Faulty(terminal, given_, connection->name, problem);
    connections.Change(name_, *connection);
    return PrintConnections(desk, terminal);
  }

 private:
  GivenConnection given_;
};

class TestCommand : public Command {
 public:
  explicit TestCommand(AutomationFactory& automation)
      : Command("connections test", "Open it and ask a device for its name"),
        automation_(automation) {}

  void Declare(CLI::App& own) override {
    own.add_option("name", name_, "Its name; else --connection, else the current one");
  }

  Ending Run(const Desk& desk, Terminal& terminal) override {
    ConnectionTest test(automation_, desk.settings, desk.clock, desk.computer.ProgramFolder());
    const ConnectionTestResult result = test.Run(name_.empty() ? terminal.Connection() : name_);
    const std::string told = ConnectionTestText(result, desk.texts);
    if (terminal.Json()) {
      terminal.PrintJson(ToJson(result, desk.texts));
    } else if (result.Ok()) {
      terminal.Out() << told << '\n';
    }
    if (result.Ok()) return Ending::kDone;
    desk.dialogs.Show({.number = result.error.code, .text = told, .title = {}, .style = {}});
    return Ending::kFailed;
  }

 private:
  static std::string ToJson(const ConnectionTestResult& result, const Messages& texts) {
    JsonObject object;
    object.Add("connection", result.connection).Add("ok", result.Ok());
    object.Add("step", StepName(result.step)).Add("answer", result.answer);
    const int code = result.error.code;
    if (!result.Ok()) {
      object.AddRaw("error", JsonError(code, texts.Caption(code))
                                 .Add("description", result.error.detail)
                                 .Add("help", ConnectionHelp(code, texts))
                                 .Text());
    }
    return object.Text();
  }

  AutomationFactory& automation_;
  std::string name_;
};

class UseCommand : public NamedCommand {
 public:
  UseCommand() : NamedCommand("connections use", "Make a connection the current one") {}

  Ending Run(const Desk& desk, Terminal& terminal) override {
    if (!Connections(desk.settings).Use(name_)) {
      return terminal.Refuse(text::kNoSuchConnection, name_);
    }
    return PrintConnections(desk, terminal);
  }
};

class RemoveCommand : public NamedCommand {
 public:
  RemoveCommand() : NamedCommand("connections remove", "Remove a connection, after a question") {}

  Ending Run(const Desk& desk, Terminal& terminal) override {
    Connections connections(desk.settings);
    if (!Stored(connections, terminal)) return Ending::kFailed;
    if (!desk.dialogs.AskYesNo(desk.texts.Filled(text::kRemoveConnection, name_))) {
      return Ending::kNotConfirmed;
    }
    connections.Remove(name_);
    return PrintConnections(desk, terminal);
  }
};

}  // namespace

CommandList MakeConnectionsCommands(AutomationFactory& automation) {
  return ListOf(
      std::make_unique<ListCommand>("connections", "The server's connections"),
      std::make_unique<ListCommand>("connections list", "List them; the current one is marked"),
      std::make_unique<AddCommand>(), std::make_unique<ChangeCommand>(),
      std::make_unique<TestCommand>(automation), std::make_unique<UseCommand>(),
      std::make_unique<RemoveCommand>());
}

}  // namespace ostrel
