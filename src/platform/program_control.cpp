#include "platform/program_control.h"

#include <QJsonArray>
#include <QJsonObject>

#include "platform/server_factory.h"

namespace ostrel {

std::optional<ServerInfo> ProgramControl::Status() {
  const std::unique_ptr<ServerProxy> server = ServerFactory::Running();
  if (!server) return std::nullopt;
  QJsonValue json;
  ServerInfo info;
  info.answers = server->Request("ServerStatus", {}, &json).Ok();
  if (!info.answers) return info;
  info.pid = json[QStringLiteral("pid")].toInt();
  info.version = json[QStringLiteral("version")].toString().toStdString();
  info.uptimeSeconds = json[QStringLiteral("uptime")].toInt();
  // This question is a client as well.
  info.clients = json[QStringLiteral("clients")].toInt() - 1;
  const QJsonArray connections = json[QStringLiteral("connections")].toArray();
  for (const QJsonValue& line : connections) {
    info.lines.push_back({line[QStringLiteral("name")].toString().toStdString(),
                          int(line[QStringLiteral("channels")].toArray().size())});
  }
  return info;
}

std::optional<bool> ProgramControl::Stop() {
  const std::unique_ptr<ServerProxy> server = ServerFactory::Running();
  if (!server) return std::nullopt;
  return server->Request("ServerStop", {}).Ok();
}

}  // namespace ostrel
