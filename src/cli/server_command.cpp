#include "base/texts.h"
#include "cli/own_commands.h"
#include "terminal/json.h"
#include "wire/codes.h"

namespace ostrel {

namespace {

std::string ToJson(const std::optional<ServerInfo>& info) {
  JsonObject object;
  object.Add("running", info.has_value());
  if (!info) return object.Text();
  std::vector<std::string> lines;
  for (const ServerInfo::Line& line : info->lines) {
    lines.push_back(
        JsonObject().Add("name", line.connection).Add("channels", line.channels).Text());
  }
  return object.Add("pid", info->pid)
      .Add("version", info->version)
      .Add("uptime", info->uptimeSeconds)
      .Add("clients", info->clients)
      .AddRaw("connections", JsonList(lines))
      .Text();
}

class StatusCommand : public Command {
 public:
  explicit StatusCommand(ServerControl& server)
      : Command("server status", "Say whether it runs and whom it serves"), server_(server) {}

  Ending Run(const Desk& desk, Terminal& terminal) override {
    const std::optional<ServerInfo> info = server_.Status();
    if (info && !info->answers) {
      desk.texts.Warn(Code::kServerGone);
      return Ending::kFailed;
    }
    if (terminal.Json()) {
      terminal.PrintJson(ToJson(info));
    } else {
      terminal.Out() << terminal.Text(info ? text::kServerRunning : text::kServerNotRunning)
                     << '\n';
      if (info) Print(*info, terminal);
    }
    return Ending::kDone;
  }

 private:
  static void Print(const ServerInfo& info, Terminal& terminal) {
    std::vector<std::vector<std::string>> rows = {
        {terminal.Text(text::kVersion), info.version},
        {terminal.Text(text::kProcess), std::to_string(info.pid)},
        {terminal.Text(text::kUptime), std::to_string(info.uptimeSeconds) + " s"},
        {terminal.Text(text::kPrograms), std::to_string(info.clients)}};
    for (const ServerInfo::Line& line : info.lines) {
      rows.push_back(
          {terminal.Text(text::kChannels), line.connection + ": " + std::to_string(line.channels)});
    }
    terminal.PrintTable(rows);
  }

  ServerControl& server_;
};

class StopCommand : public Command {
 public:
  explicit StopCommand(ServerControl& server)
      : Command("server stop", "Ask all programs to end, then end it"), server_(server) {}

  Ending Run(const Desk& desk, Terminal& terminal) override {
    const std::optional<bool> stopped = server_.Stop();
    if (stopped && !*stopped) {
      desk.texts.Warn(Code::kServerGone);
      return Ending::kFailed;
    }
    if (terminal.Json()) {
      terminal.PrintJson(JsonObject().Add("stopped", stopped.has_value()).Text());
    } else {
      terminal.Out() << terminal.Text(stopped ? text::kServerStopped : text::kServerNotRunning)
                     << '\n';
    }
    return Ending::kDone;
  }

 private:
  ServerControl& server_;
};

}  // namespace

CommandList MakeServerCommands(ServerControl& server) {
  return ListOf(std::make_unique<CommandGroup>("server", "The communication server"),
                std::make_unique<StatusCommand>(server), std::make_unique<StopCommand>(server));
}

}  // namespace ostrel
