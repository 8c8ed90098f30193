#include "cli/cli.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <utility>

#include "base/text.h"
#include "base/texts.h"
#include "cli/commands.h"
#include "link/connection_chooser.h"
#include "pages/console/script.h"
#include "terminal/json.h"
#include "terminal/terminal_dialogs.h"
#include "wire/connections.h"
#include "wire/line_rules.h"

namespace ostrel {

namespace {

/// What is given of a user or of the ports.
struct GivenUser {
  int user = 0, grant = 0, minutes = 0, com1 = 0, com2 = 0;
  std::optional<int> com4;
};

/// What was asked for; the command as something to run once everything stands.
struct Request {
  std::string connection, station = "AA", language;
  bool json = false, yes = false;
  std::function<ExitStatus(CliRun&)> command;

  std::string name, chartFile;
  GivenConnection given;
  GivenScript script;
  std::vector<std::string> lines;
  GivenUser user;
  int id = 0;
  bool csv = false;
  bool addressesOnly = false;
};

using Command = std::function<ExitStatus(CliRun&)>;

/// Names the command to run when the parser met this subcommand.
void Runs(CLI::App* subcommand, Request& request, Command command) {
  subcommand->callback([&request, command = std::move(command)] {
    if (!request.command) request.command = command;
  });
}

template <typename Choices>
std::vector<std::string> StoredNames(const Choices& choices) {
  std::vector<std::string> names;
  for (const auto& choice : choices) names.emplace_back(choice.stored);
  return names;
}

void DeclareSerialOptions(CLI::App& command, GivenConnection& given) {
  command.add_option("--baud", given.baud, "Baud rate of a serial line; 19200 at first");
  command.add_option("--parity", given.parity, "Its parity; none at first")
      ->check(CLI::IsMember(StoredNames(kParities)));
  command.add_option("--stop-bits", given.stopBits, "Its stop bits; 1 at first")
      ->check(CLI::IsMember(std::vector<std::string>(std::begin(kStopBits), std::end(kStopBits))));
}

/// The commands that bring new data.
void DeclareConnectionData(CLI::App& connections, Request& request) {
  const CLI::IsMember kinds(StoredNames(kConnectionKinds));
  GivenConnection& given = request.given;
  CLI::App* add = connections.add_subcommand("add", "Add a connection");
  add->add_option("name", given.name, "Its name")->required();
  add->add_option("kind", given.kind, "simulator, tcp or serial")->required()->check(kinds);
  add->add_option("target", given.target, "HOST:PORT or the serial device");
  DeclareSerialOptions(*add, given);
  Runs(add, request, [&given](CliRun& run) { return run.ConnectionsAdd(given); });

  CLI::App* change = connections.add_subcommand("change", "Change what is given, keep the rest");
  change->add_option("connection", request.name, "Its name until now")->required();
  change->add_option("--name", given.name, "Another name");
  change->add_option("--kind", given.kind, "simulator, tcp or serial")->check(kinds);
  change->add_option("--target", given.target, "HOST:PORT or the serial device");
  DeclareSerialOptions(*change, given);
  Runs(change, request,
       [&request](CliRun& run) { return run.ConnectionsChange(request.name, request.given); });
}

void DeclareConnections(CLI::App& app, Request& request) {
  CLI::App* connections = app.add_subcommand("connections", "The server's connections");
  connections->require_subcommand(0, 1);
  Runs(connections->add_subcommand("list", "List them; the current one is marked"), request,
       [](CliRun& run) { return run.ConnectionsList(); });

  DeclareConnectionData(*connections, request);

  CLI::App* test = connections->add_subcommand("test", "Open it and ask a device for its name");
  test->add_option("name", request.name, "Its name; else --connection, else the current one");
  Runs(test, request, [&request](CliRun& run) {
    return run.ConnectionsTest(request.name.empty() ? request.connection : request.name);
  });

  CLI::App* use = connections->add_subcommand("use", "Make a connection the current one");
  use->add_option("name", request.name, "Its name")->required();
  Runs(use, request, [&request](CliRun& run) { return run.ConnectionsUse(request.name); });

  CLI::App* remove = connections->add_subcommand("remove", "Remove a connection, after a question");
  remove->add_option("name", request.name, "Its name")->required();
  Runs(remove, request, [&request](CliRun& run) { return run.ConnectionsRemove(request.name); });

  Runs(connections, request, [](CliRun& run) { return run.ConnectionsList(); });
}

void DeclareScript(CLI::App& app, Request& request) {
  CLI::App* scripts = app.add_subcommand("script", "Scripts of device commands");
  scripts->require_subcommand(1);
  GivenScript& given = request.script;
  CLI::App* check = scripts->add_subcommand("check", "List the lines that are too long");
  check->add_option("file", given.file, "The script; \"-\" is standard input")->required();
  Runs(check, request, [&given](CliRun& run) { return run.ScriptCheck(given.file); });

  CLI::App* send =
      scripts->add_subcommand("send", "Send it up to the first failure, after a question");
  send->add_option("file", given.file, "The script; \"-\" is standard input")->required();
  CLI::Option* const parts[] = {
      send->add_option("--from", given.from, "Only this row and those behind it"),
      send->add_option("--line", given.line, "Only this row"),
      send->add_option("--lines", given.lines, "Only the rows N-M")
          ->check(CLI::Validator(RowsProblem, "N-M")),
      send->add_option("--stations", given.stations, "Addresses; the whole script to each in turn")
          ->delimiter(',')
          ->check(CLI::Validator(StationProblem, "ADDRESS"))};
  for (CLI::Option* const one : parts) {
    for (CLI::Option* const other : parts) {
      if (one != other) one->excludes(other);
    }
  }
  for (CLI::Option* const row : {parts[0], parts[1]}) row->check(CLI::Range(1, kMostScriptLines));
  send->add_option("--log", given.log, "Also write what is printed behind the end of this file");
  Runs(send, request, [&given](CliRun& run) { return run.ScriptSend(given); });

  CLI::App* read = scripts->add_subcommand("read", "Read programs and menus, after a question");
  read->add_option("-o,--output", given.output, "Write the script to this file");
  Runs(read, request, [&given](CliRun& run) { return run.ScriptRead(given.output); });
}

void DeclareStatistics(CLI::App& app, Request& request) {
  CLI::App* statistics = app.add_subcommand("statistics", "Read the tap-changer statistics");
  statistics->require_subcommand(0, 1);
  statistics->add_flag("--csv", request.csv,
                       "Print lines \"position,count\", then the lines of the two totals");
  statistics->add_option("--chart", request.chartFile, "Also write the chart as a PNG file");
  Runs(statistics->add_subcommand("clear", "Clear them on the device, after a question"), request,
       [](CliRun& run) { return run.StatisticsClear(); });
  Runs(statistics, request,
       [&request](CliRun& run) { return run.Statistics(request.csv, request.chartFile); });
}

void AddUser(CLI::App& command, GivenUser& given) {
  command.add_option("number", given.user, "0 guest, 1 administrator, 2 to 5")
      ->required()
      ->check(CLI::Range(0, kUserCount - 1));
}

void DeclareLogin(CLI::App& app, Request& request) {
  CLI::App* login = app.add_subcommand("login", "Log a user in at the station");
  AddUser(*login, request.user);
  Runs(login, request, [&request](CliRun& run) { return run.LogIn(request.user.user); });
  Runs(app.add_subcommand("logout", "Log out"), request, [](CliRun& run) { return run.LogOut(); });
  Runs(app.add_subcommand("whoami", "Say who is logged in and what he may do"), request,
       [](CliRun& run) { return run.WhoAmI(); });
}

/// The commands that change something at the station.
void DeclareUserChanges(CLI::App& users, GivenUser& given, Request& request) {
  CLI::App* password = users.add_subcommand(
      "password",
      "Set a user's password; asks for the administrator's, then twice for the new one");
  AddUser(*password, given);
  Runs(password, request, [&given](CliRun& run) {
    return run.ChangeUsers("passwordSet", [&](Users& of) { return of.SetPassword(given.user); });
  });

  CLI::App* set = users.add_subcommand("set", "Set what a user may do, and for how long");
  AddUser(*set, given);
  set->add_option("--grant", given.grant, "Grant level, 0 to 5")
      ->required()
      ->check(CLI::Range(0, kHighestGrant));
  set->add_option("--timeout", given.minutes, "Minutes until the logout, 0 = never")
      ->required()
      ->check(CLI::Range(0, kMostMinutes));
  Runs(set, request, [&given](CliRun& run) {
    return run.ChangeUsers("settingsSent", [&](Users& of) {
      return of.SetUser(given.user, given.grant, given.minutes);
    });
  });

  Runs(users.add_subcommand("unprotect", "Remove the protection, after a question"), request,
       [](CliRun& run) {
         return run.ChangeUsers("unprotected", [](Users& of) { return of.Unprotect(); });
       });

  CLI::App* ports = users.add_subcommand("ports", "Except ports from the protection");
  ports->add_option("--com1", given.com1, "1 = excepted, 0 = not")
      ->required()
      ->check(CLI::Range(0, 1));
  ports->add_option("--com2", given.com2, "The same")->required()->check(CLI::Range(0, 1));
  ports->add_option("--com4", given.com4, "The same, where there is one")->check(CLI::Range(0, 1));
  Runs(ports, request, [&given](CliRun& run) {
    PortExceptions sent{.com1 = given.com1 == 1, .com2 = given.com2 == 1, .com4 = {}};
    if (given.com4) sent.com4 = *given.com4 == 1;
    return run.ChangeUsers("exceptionsSent", [&](Users& of) { return of.SetPorts(sent); });
  });
}

void DeclareUsers(CLI::App& app, Request& request) {
  CLI::App* users = app.add_subcommand("users", "The users of the station and what they may do");
  users->require_subcommand(0, 1);
  Runs(users->add_subcommand("list", "List them"), request,
       [](CliRun& run) { return run.UsersList(); });
  DeclareUserChanges(*users, request.user, request);
  Runs(users, request, [](CliRun& run) { return run.UsersList(); });
}

void DeclareServer(CLI::App& app, Request& request) {
  CLI::App* server = app.add_subcommand("server", "The communication server");
  server->require_subcommand(1);
  Runs(server->add_subcommand("status", "Say whether it runs and whom it serves"), request,
       [](CliRun& run) { return run.ServerStatus(); });
  Runs(server->add_subcommand("stop", "Ask all programs to end, then end it"), request,
       [](CliRun& run) { return run.ServerStop(); });
}

void DeclareOptions(CLI::App& app, Request& request) {
  app.set_version_flag("--version", "ostrel " OSTREL_VERSION);
  app.add_option("--connection", request.connection,
                 "Connection of the server; else the current one");
  app.add_option("--station", request.station, "Address of the station")
      ->capture_default_str()
      ->check(CLI::Validator(StationProblem, "ADDRESS"));
  app.add_option("--language", request.language, "Language of this run")
      ->check(CLI::IsMember({"deu", "eng", "fra"}));
  app.add_flag("--json", request.json, "Print JSON and nothing else on standard output");
  app.add_flag("--yes", request.yes, "Answer every question with Yes");
}

void Declare(CLI::App& app, Request& request) {
  app.require_subcommand(1);
  app.fallthrough();
  DeclareOptions(app, request);
  DeclareConnections(app, request);
  CLI::App* stations = app.add_subcommand("stations", "List the stations on the bus");
  stations->add_flag("--short", request.addressesOnly,
                     "Only where a line without address goes, from a single exchange");
  Runs(stations, request, [&request](CliRun& run) { return run.Stations(request.addressesOnly); });
  Runs(app.add_subcommand("identify", "Say what kind of device the station is"), request,
       [](CliRun& run) { return run.Identify(); });
  CLI::App* send = app.add_subcommand("send", "Send lines and print the answers");
  send->add_option("line", request.lines,
                   "A line of the device language; \"-\" takes them from standard input. A line "
                   "with an address of its own is sent as it stands")
      ->required();
  Runs(send, request, [&request](CliRun& run) { return run.Send(request.lines); });
  DeclareScript(app, request);
  DeclareStatistics(app, request);
  DeclareLogin(app, request);
  DeclareUsers(app, request);
  DeclareServer(app, request);
  CLI::App* text = app.add_subcommand("text", "Print the message with this German id");
  text->add_option("id", request.id, "Its number")->required();
  Runs(text, request, [&request](CliRun& run) { return run.TextOf(request.id); });
  for (CLI::App* subcommand : app.get_subcommands({})) {
    subcommand->fallthrough();
    for (CLI::App* inner : subcommand->get_subcommands({})) inner->fallthrough();
  }
}

void PrintError(std::ostream& out, int number, const std::string& message) {
  const std::string error = JsonObject().Add("number", number).Add("message", message).Text();
  out << JsonObject().AddRaw("error", error).Text() << '\n';
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

ExitStatus Execute(const Request& request, const CliPorts& ports) {
  TerminalDialogs dialogs(
      ports.in, ports.err,
      {.yes = request.yes, .interactive = ports.interactive, .echo = ports.echo});
  const Messages* texts = nullptr;
  FactoryWithChooser automation(ports.automation, [&](const std::string& name, const Message& why) {
    dialogs.Show(why);
    const Connections connections(ports.settings);
    return ChooseInTerminal(connections.List(), name.empty() ? connections.Current() : name, *texts,
                            ports.in, ports.err);
  });
  // A connection named on the command line is meant: no other one is offered.
  Service service({ports.settings, automation, dialogs, ports.clock, ports.desktop},
                  {.connection = request.connection,
                   .language = request.language,
                   .chooser = ports.interactive && request.connection.empty()});
  texts = &service.Texts();
  dialogs.SetMessages(service.Texts());
  CliRun run(ports, service, dialogs, StationAddress(request.station).value_or(""), request.json);
  ExitStatus status = request.command(run);
  if (request.json && !run.Printed()) {
    PrintError(ports.out, dialogs.LastMessage().number, dialogs.LastMessage().text);
  }
  // A full disk behind a redirection is no success.
  if (!ports.out.flush()) {
    service.Texts().WarnFilled(text::kFileNotWritten, "-");
    status = ExitStatus::kRefused;
  }
  return status;
}

}  // namespace

ExitStatus RunCli(const std::vector<std::string>& arguments, const CliPorts& ports) {
  Request request;
  CLI::App app("Service functions of voltage-regulator relays, at the terminal.", "ostrel");
  Declare(app, request);
  std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
  try {
    app.parse(std::move(reversed));
  } catch (const CLI::ParseError& end) {
    const bool json = std::find(arguments.begin(), arguments.end(), "--json") != arguments.end();
    return Parsed(app, end, json, ports);
  }
  return Execute(request, ports);
}

}  // namespace ostrel
