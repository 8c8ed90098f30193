#include "cli/cli.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

#include "base/csprachen.h"
#include "base/text.h"
#include "base/texts.h"
#include "cli/own_commands.h"
#include "device/session.h"
#include "link/connection_chooser.h"
#include "logs/service_log/clsLog.h"
#include "terminal/choose_connection.h"
#include "terminal/json.h"
#include "terminal/terminal_dialogs.h"
#include "wire/connections.h"
#include "wire/line_rules.h"

namespace ostrel {

#define FEATURE(name, ...) CommandList Make##name##Commands();
#include "app/features.inc"
#undef FEATURE

namespace {

constexpr std::string_view kTitle = "Service " OSTREL_VERSION;

/// What was asked for.
struct Request {
  Given given;
  std::string language;
  bool yes = false;
  Command* command = nullptr;
};

/// All commands, in the order in which the help lists them.
CommandList AllCommands(const CliPorts& ports) {
  CommandList all;
  const auto add = [&all](CommandList more) {
    all.insert(all.end(), std::make_move_iterator(more.begin()),
               std::make_move_iterator(more.end()));
  };
  add(MakeConnectionsCommands(ports.automation));
  add(MakeStationsCommands());
  add(MakeIdentifyCommands());
  add(MakeSendCommands());
#define FEATURE(name, ...) add(Make##name##Commands());
#include "app/features.inc"
#undef FEATURE
  add(MakeServerCommands(ports.server));
  add(MakeTextCommands());
  return all;
}

void DeclareOptions(CLI::App& app, Request& request) {
  app.set_version_flag("--version", "ostrel " OSTREL_VERSION);
  app.add_option("--connection", request.given.connection,
                 "Connection of the server; else the current one");
  app.add_option("--station", request.given.station, "Address of the station")
      ->default_str("AA")
      ->check(CLI::Validator(StationProblem, "ADDRESS"));
  app.add_option("--language", request.language, "Language of this run")
      ->check(CLI::IsMember({"deu", "eng", "fra"}));
  app.add_flag("--json", request.given.json, "Print JSON and nothing else on standard output");
  app.add_flag("--yes", request.yes, "Answer every question with Yes");
}

void DeclareCommand(CLI::App& app, Request& request, Command& command) {
  const std::size_t blank = command.Name().find(' ');
  const bool below = blank != std::string::npos;
  CLI::App& above = below ? *app.get_subcommand(command.Name().substr(0, blank)) : app;
  CLI::App* own = above.add_subcommand(below ? command.Name().substr(blank + 1) : command.Name(),
                                       command.Help());
  own->require_subcommand(0, 1);
  command.Declare(*own);
  // Those below are called first.
  own->callback([&request, &command] {
    if (request.command == nullptr) request.command = &command;
  });
}

void PrintError(std::ostream& out, int number, const std::string& message) {
  out << JsonObject().AddRaw("error", JsonError(number, message).Text()).Text() << '\n';
}

/// What the parser ended with: a wish for help or the version, or a wrong usage.
ExitStatus Parsed(const CLI::App& app, const CLI::ParseError& end, bool json,
                  const CliPorts& ports) {
  const bool help = end.get_name() == "CallForHelp" || end.get_name() == "CallForAllHelp";
  const bool version = end.get_name() == "CallForVersion";
  if (help || version) {
    const std::string text = help ? app.help() : end.what();
    ports.out << (json ? JsonObject().Add(help ? "help" : "version", text).Text() : text)
              << (help && !json ? "" : "\n");
    return ExitStatus::kDone;
  }
  // The parser would complain of a missing command where an unknown one stands.
  const std::vector<std::string> unknown = app.remaining();
  const std::string what = unknown.empty() ? end.what() : "unknown: " + unknown.front();
  if (json) PrintError(ports.out, text::kWrongUsage, what);
  ports.err << "ostrel: " << Visible(what) << "\nostrel --help\n";
  return ExitStatus::kWrongUsage;
}

/// What the shell gets of a command's end; how it failed is printed where nothing was.
ExitStatus Status(Ending ending, const Terminal& terminal, const TerminalDialogs& dialogs,
                  const Messages& texts, const CliPorts& ports) {
  if (ending == Ending::kNotConfirmed) texts.Warn(text::kNotConfirmed);
  if (terminal.Json() && !terminal.Printed()) {
    PrintError(ports.out, dialogs.LastMessage().number, dialogs.LastMessage().text);
  }
  // A full disk behind a redirection is no success.
  if (!ports.out.flush()) {
    texts.WarnFilled(text::kFileNotWritten, "-");
    return ExitStatus::kRefused;
  }
  if (ending == Ending::kDone) return ExitStatus::kDone;
  if (ending == Ending::kNotConfirmed) return ExitStatus::kNotConfirmed;
  return terminal.Misused() ? ExitStatus::kWrongUsage : ExitStatus::kRefused;
}

/// A service log for as long as it lives.
class LogOfRun {
 public:
  explicit LogOfRun(const CliPorts& ports) : log_(ports.clock) {
    log_.Open(ports.settings, ports.desktop.DocumentsFolder());
    Note(std::string("Start: ").append(kTitle));
  }
  ~LogOfRun() { Note(std::string("End: ").append(kTitle)); }
  LogOfRun(const LogOfRun&) = delete;
  LogOfRun& operator=(const LogOfRun&) = delete;

  void Note(const std::string& text) const { log_.SaveLog(text); }

 private:
  clsLog log_;
};

ExitStatus Execute(const Request& request, const CliPorts& ports) {
  TerminalDialogs dialogs(
      ports.in, ports.err,
      {.yes = request.yes, .interactive = ports.interactive, .echo = ports.echo});
  Messages texts(dialogs);
  dialogs.SetMessages(texts);
  FactoryWithChooser automation(ports.automation, [&](const std::string& name, const Message& why) {
    dialogs.Show(why);
    const Connections connections(ports.settings);
    return ChooseInTerminal(connections.List(), name.empty() ? connections.Current() : name, texts,
                            ports.in, ports.err);
  });
  CSprachen languages(ports.settings, texts, ports.desktop.ProgramFolder());
  languages.UserIndex_Test();
  if (!request.language.empty()) languages.SetLanguage(request.language);

  const LogOfRun log(ports);
  const Given& given = request.given;
  // A connection named on the command line is meant: no other one is offered.
  Session session(
      {.settings = ports.settings,
       .automation = automation,
       .dialogs = dialogs,
       .clock = ports.clock,
       .texts = texts,
       .programFolder = ports.desktop.ProgramFolder()},
      {.connection = given.connection, .chooser = ports.interactive && given.connection.empty()});
  session.onNote = [&log](const std::string& text) { log.Note(text); };
  const Desk desk{.session = session,
                  .texts = texts,
                  .dialogs = dialogs,
                  .settings = ports.settings,
                  .clock = ports.clock,
                  .computer = ports.desktop};
  Terminal terminal({ports.in, ports.out, ports.err, ports.width}, texts, given);
  const Ending ending = request.command->Run(desk, terminal);
  return Status(ending, terminal, dialogs, texts, ports);
}

}  // namespace

ExitStatus RunCli(const std::vector<std::string>& arguments, const CliPorts& ports) {
  Request request;
  const CommandList commands = AllCommands(ports);
  CLI::App app("Service functions of voltage-regulator relays, at the terminal.", "ostrel");
  app.require_subcommand(1);
  app.fallthrough();
  DeclareOptions(app, request);
  for (const auto& command : commands) DeclareCommand(app, request, *command);
  std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
  try {
    app.parse(std::move(reversed));
  } catch (const CLI::ParseError& end) {
    const bool json = std::find(arguments.begin(), arguments.end(), "--json") != arguments.end();
    return Parsed(app, end, json, ports);
  }
  request.given.station = StationAddress(request.given.station).value_or("");
  return Execute(request, ports);
}

}  // namespace ostrel
