#include "wire/connections.h"

#include "app/connection_test.h"
#include "base/number.h"
#include "base/texts.h"
#include "cli/commands.h"
#include "terminal/json.h"

namespace ostrel {

namespace {

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

}  // namespace

ExitStatus CliRun::ConnectionsList() {
  const Connections connections(ports_.settings);
  const std::optional<Connection> current = connections.Find("");
  std::vector<std::string> json;
  std::vector<std::vector<std::string>> rows = {
      {" ", Text(text::kName), Text(text::kKind), Text(text::kTarget)}};
  for (const Connection& connection : connections.List()) {
    const bool isCurrent = current && current->name == connection.name;
    rows.push_back({isCurrent ? "*" : " ", connection.name, connection.kind, connection.Target()});
    json.push_back(ToJson(connection, isCurrent));
  }
  if (json_) {
    PrintJson(JsonList(json));
  } else {
    Table(rows);
  }
  return ExitStatus::kDone;
}

ExitStatus CliRun::Faulty(const GivenConnection& given, const std::string& name, int problem) {
  if (problem == text::kConnectionTaken) return Refuse(problem, name);
  Refuse(text::kConnectionFaulty, name + " " + given.target.value_or("") + "\n" + Text(problem));
  return ExitStatus::kWrongUsage;
}

ExitStatus CliRun::ConnectionsAdd(const GivenConnection& given) {
  Connections connections(ports_.settings);
  Connection connection;
  const bool fits = Apply(given, connection);
  const int problem = fits ? connections.Problem(connection) : text::kOptionProblem;
  if (problem != 0) return Faulty(given, connection.name, problem);
  connections.Add(connection);
  return ConnectionsList();
}

ExitStatus CliRun::ConnectionsChange(const std::string& name, const GivenConnection& given) {
  Connections connections(ports_.settings);
  std::optional<Connection> connection = connections.Find(name);
  if (name.empty() || !connection) return Refuse(text::kNoSuchConnection, name);
  if (!connections.Stored(name)) return Refuse(text::kBuiltIn, name);
  const bool fits = Apply(given, *connection);
  const int problem = fits ? connections.Problem(*connection, name) : text::kOptionProblem;
  if (problem != 0) return Faulty(given, connection->name, problem);
  connections.Change(name, *connection);
  return ConnectionsList();
}

ExitStatus CliRun::ConnectionsTest(const std::string& name) {
  const ConnectionTestResult result = service_.Tester().Run(name);
  const std::string told = ConnectionTestText(result, service_.Texts());
  if (json_) {
    JsonObject object;
    object.Add("connection", result.connection).Add("ok", result.Ok());
    object.Add("step", StepName(result.step)).Add("answer", result.answer);
    if (!result.Ok()) {
      object.AddRaw("error", JsonObject()
                                 .Add("number", result.code)
                                 .Add("message", Text(result.code))
                                 .Add("description", result.description)
                                 .Add("help", ConnectionHelp(result.code, service_.Texts()))
                                 .Text());
    }
    PrintJson(object.Text());
  } else if (result.Ok()) {
    ports_.out << told << '\n';
  }
  if (result.Ok()) return ExitStatus::kDone;
  dialogs_.Show({.number = result.code, .text = told, .title = {}, .style = {}});
  return ExitStatus::kRefused;
}

ExitStatus CliRun::ConnectionsUse(const std::string& name) {
  if (!Connections(ports_.settings).Use(name)) return Refuse(text::kNoSuchConnection, name);
  return ConnectionsList();
}

ExitStatus CliRun::ConnectionsRemove(const std::string& name) {
  Connections connections(ports_.settings);
  if (name.empty() || !connections.Find(name)) return Refuse(text::kNoSuchConnection, name);
  if (!connections.Stored(name)) return Refuse(text::kBuiltIn, name);
  if (!dialogs_.AskYesNo(service_.Texts().Filled(text::kRemoveConnection, name))) {
    service_.Texts().Warn(text::kNotConfirmed);
    return ExitStatus::kNotConfirmed;
  }
  connections.Remove(name);
  return ConnectionsList();
}

}  // namespace ostrel
