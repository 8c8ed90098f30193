#include "base/texts.h"
#include "cli/commands.h"
#include "terminal/json.h"
#include "wire/codes.h"

namespace ostrel {

ExitStatus CliRun::ServerStatus() {
  const std::optional<ServerInfo> info = ports_.server.Status();
  if (info && !info->answers) {
    service_.Texts().Warn(code::kServerGone);
    return ExitStatus::kRefused;
  }
  if (json_) {
    JsonObject object;
    object.Add("running", info.has_value());
    if (info) {
      std::vector<std::string> lines;
      for (const ServerInfo::Line& line : info->lines) {
        lines.push_back(
            JsonObject().Add("name", line.connection).Add("channels", line.channels).Text());
      }
      object.Add("pid", info->pid)
          .Add("version", info->version)
          .Add("uptime", info->uptimeSeconds)
          .Add("clients", info->clients)
          .AddRaw("connections", JsonList(lines));
    }
    PrintJson(object.Text());
    return ExitStatus::kDone;
  }
  if (!info) {
    ports_.out << Text(text::kServerNotRunning) << '\n';
    return ExitStatus::kDone;
  }
  ports_.out << Text(text::kServerRunning) << '\n';
  std::vector<std::vector<std::string>> rows = {
      {Text(text::kVersion), info->version},
      {Text(text::kProcess), std::to_string(info->pid)},
      {Text(text::kUptime), std::to_string(info->uptimeSeconds) + " s"},
      {Text(text::kPrograms), std::to_string(info->clients)}};
  for (const ServerInfo::Line& line : info->lines) {
    rows.push_back({Text(text::kChannels), line.connection + ": " + std::to_string(line.channels)});
  }
  Table(rows);
  return ExitStatus::kDone;
}

ExitStatus CliRun::ServerStop() {
  const std::optional<bool> stopped = ports_.server.Stop();
  if (stopped && !*stopped) {
    service_.Texts().Warn(code::kServerGone);
    return ExitStatus::kRefused;
  }
  if (json_) {
    PrintJson(JsonObject().Add("stopped", stopped.has_value()).Text());
  } else {
    ports_.out << Text(stopped ? text::kServerStopped : text::kServerNotRunning) << '\n';
  }
  return ExitStatus::kDone;
}

}  // namespace ostrel
