#pragma once

#include <functional>
#include <istream>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "cli/cli.h"
#include "terminal/terminal_dialogs.h"
#include "wire/connections.h"

namespace ostrel {

/// Prints columns under their headings, each as wide as its widest cell.
void PrintTable(std::ostream& out, const std::vector<std::vector<std::string>>& rows);

/// The connection list by numbers, where somebody can be asked for one: the name of the chosen
/// connection, empty when the input is empty or ends. Anything but a number of the list is asked
/// again.
std::string ChooseInTerminal(const std::vector<Connection>& connections,
                             const std::string& preselected, const Messages& messages,
                             std::istream& in, std::ostream& err);

/// What is given of a connection.
struct GivenConnection {
  std::optional<std::string> name, kind, target, parity, stopBits;
  std::optional<int> baud;
};

/// What is given of a script, and of the part of it that is sent.
struct GivenScript {
  std::string file;                   // "-" = standard input
  std::optional<int> from, line;      // rows, counted from 1
  std::string lines;                  // "N-M"
  std::vector<std::string> stations;  // addresses
  std::string log, output;            // files
};

/// What is wrong with rows "N-M"; empty when nothing is.
std::string RowsProblem(const std::string& rows);

/// One run of the command line: what was asked, and where results go.
class CliRun {
 public:
  CliRun(const CliPorts& ports, Service& service, TerminalDialogs& dialogs, std::string station,
         bool json)
      : ports_(ports),
        service_(service),
        dialogs_(dialogs),
        station_(std::move(station)),
        json_(json) {}

  // A command a file, of the same name.
  ExitStatus ConnectionsList();
  ExitStatus ConnectionsAdd(const GivenConnection& given);
  ExitStatus ConnectionsChange(const std::string& name, const GivenConnection& given);
  ExitStatus ConnectionsTest(const std::string& name);
  ExitStatus ConnectionsUse(const std::string& name);
  ExitStatus ConnectionsRemove(const std::string& name);
  ExitStatus Stations(bool addressesOnly);
  ExitStatus Identify();
  ExitStatus Send(const std::vector<std::string>& lines);
  ExitStatus ScriptCheck(const std::string& file);
  ExitStatus ScriptSend(const GivenScript& given);
  ExitStatus ScriptRead(const std::string& output);
  ExitStatus Statistics(bool csv, const std::string& chartFile);
  ExitStatus StatisticsClear();
  ExitStatus ServerStatus();
  ExitStatus ServerStop();
  ExitStatus TextOf(int id);
  // users.cpp
  ExitStatus LogIn(int user);
  ExitStatus LogOut();
  ExitStatus WhoAmI();
  ExitStatus UsersList();
  /// Changes something; with --json `key` is what was done.
  ExitStatus ChangeUsers(const char* key, const std::function<Users::Outcome(Users&)>& operation);

  /// Whether a result was printed as JSON; else the failure is what there is to print.
  bool Printed() const { return printed_; }

 private:
  /// A message of the program with its first "%s" filled.
  ExitStatus Refuse(int id, const std::string& value);
  /// A heading or a line of a result.
  std::string Text(int id) const { return service_.Texts().Caption(id); }
  void PrintJson(const std::string& json);
  void Table(const std::vector<std::vector<std::string>>& rows) { PrintTable(ports_.out, rows); }
  /// Says what is wrong with given data.
  ExitStatus Faulty(const GivenConnection& given, const std::string& name, int problem);
  void PrintAddresses(const std::vector<Station>& stations);
  void PrintStations(const std::vector<Station>& stations);
  ExitStatus Ended(Users::Outcome outcome, const char* key);
  /// Who is logged in, as it was last read.
  ExitStatus PrintLogin();
  void PrintPorts();
  std::optional<std::string> ScriptText(const std::string& file);
  Console::Ending SendScript(const std::string& script, const GivenScript& given);
  ExitStatus SendOne(const std::string& line, std::vector<std::string>& json);

  const CliPorts& ports_;
  Service& service_;
  TerminalDialogs& dialogs_;
  std::string station_;  // with its ":"
  bool json_;
  bool printed_ = false;
};

}  // namespace ostrel
