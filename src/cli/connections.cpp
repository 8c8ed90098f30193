#include "link/connections.h"

#include "app/number.h"
#include "app/texts.h"
#include "cli/commands.h"
#include "cli/json.h"

namespace ostrel {

ExitStatus CliRun::ConnectionsList() {
  const Connections connections(ports_.settings);
  const std::optional<Connection> current = connections.Find("");
  std::vector<std::string> json;
  std::vector<std::vector<std::string>> rows = {
      {" ", Text(text::kName), Text(text::kKind), Text(text::kTarget)}};
  for (const Connection& connection : connections.List()) {
    const bool isCurrent = current && current->name == connection.name;
    rows.push_back({isCurrent ? "*" : " ", connection.name, connection.kind, connection.Target()});
    json.push_back(JsonObject()
                       .Add("name", connection.name)
                       .Add("kind", connection.kind)
                       .Add("target", connection.Target())
                       .Add("current", isCurrent)
                       .Text());
  }
  if (json_) {
    PrintJson(JsonList(json));
  } else {
    Table(rows);
  }
  return ExitStatus::kDone;
}

ExitStatus CliRun::ConnectionsAdd(const std::string& name, const std::string& kind,
                                  const std::string& target, int baud) {
  Connection connection;
  connection.name = name;
  connection.kind = kind;
  if (kind == "tcp") {
    const std::size_t colon = target.rfind(':');
    connection.host = target.substr(0, colon);
    const std::string port = colon == std::string::npos ? "" : target.substr(colon + 1);
    const bool digits = port.find_first_not_of("0123456789") == std::string::npos;
    connection.port = digits ? ReadInteger(port) : 0;
  } else if (kind == "serial") {
    connection.device = target;
    connection.baud = baud;
  }
  if (!Connections(ports_.settings).Add(connection)) {
    Refuse(text::kConnectionFaulty, name + " " + target);
    return ExitStatus::kWrongUsage;
  }
  return ConnectionsList();
}

ExitStatus CliRun::ConnectionsUse(const std::string& name) {
  if (!Connections(ports_.settings).Use(name)) return Refuse(text::kNoSuchConnection, name);
  return ConnectionsList();
}

ExitStatus CliRun::ConnectionsRemove(const std::string& name) {
  if (!Connections(ports_.settings).Remove(name)) return Refuse(text::kNoSuchConnection, name);
  return ConnectionsList();
}

}  // namespace ostrel
