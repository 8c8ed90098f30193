// The lines by which a device's users are shown and changed.

#include "simulator/access.h"
#include "simulator/machine.h"
#include "simulator/station.h"
#include "simulator/value.h"

namespace ostrel::simulator {

namespace {

constexpr int kMaxMinutes = 65535;
// Devices from this feature number on have an interface 4; none has an interface 3.
constexpr int kPort4Number = 130;

/// A password as it stands in the line, with its leading zeros, in quotes or without.
std::string PasswordOf(const std::string& text) {
  return ReadQuotedText(text).value_or(text);
}

std::string PasswordAt(const std::vector<std::string>& texts, std::size_t place) {
  if (place >= texts.size()) throw Fault{"password missing"};
  return PasswordOf(texts[place]);
}

void RunLogIn(Machine& machine, const Item& item) {
  const int user = IntegerArgument(machine.Evaluate(item.arguments), 0, 1, Access::kLastUser);
  if (item.arguments.size() < 2) throw Fault{"password missing"};
  machine.Device().access.LogIn(user, PasswordOf(item.arguments[1].text));
}

void RunLogOut(Machine& machine, const Item&) {
  machine.Device().access.LogOut();
}

void RunWhoAmI(Machine& machine, const Item& item) {
  const int user = machine.Device().access.CurrentUser();
  machine.PrintResult("user " + std::to_string(user), item.joined);
}

constexpr Word kWords[] = {
    {"login", RunLogIn, 0, {}, true, Right::kNone},
    {"logout", RunLogOut, 0, {}, false, Right::kNone},
    {"whoami", RunWhoAmI, 0, {}, false, Right::kNone},
};

/// Whether a password is set, the grant level, and the minutes until logout. User 0 is whoever is
/// here now, so his grant is the one in force: "passwort- 0,dr,!" prints it.
Values ReadUser(Station& station, const Values& arguments) {
  const int user = IntegerArgument(arguments, 0, 0, Access::kLastUser);
  const Access& access = station.access;
  return {access.HasPassword(user) ? 1.0 : 0.0, static_cast<double>(access.GrantOf(user)),
          static_cast<double>(access.MinutesOf(user))};
}

/// "passwort 2 OLD=NEW NEW", "passwort* 2 ADMINISTRATOR'S=MINUTES GRANT".
void WriteUser(Station& station, const WriteRequest& request) {
  const std::string known = PasswordAt(request.argumentTexts, 1);
  if (request.all) {
    const int user = IntegerArgument(request.arguments, 0, 0, Access::kLastUser);
    const int minutes = IntegerArgument(request.values, 0, 0, kMaxMinutes);
    const int grant = IntegerArgument(request.values, 1, 0, Access::kHighestGrant);
    station.access.SetUser(user, known, minutes, grant);
    return;
  }
  const int user = IntegerArgument(request.arguments, 0, 1, Access::kLastUser);
  const std::string fresh = PasswordAt(request.valueTexts, 0);
  if (fresh != PasswordAt(request.valueTexts, 1)) throw Fault{"passwords differ"};
  station.access.SetPassword(user, known, fresh);
}

bool HasPort(const Station& station, int port) {
  return port <= 2 || (port == 4 && station.data.protocolNumber >= kPort4Number);
}

int PortArgument(const Station& station, const Values& arguments) {
  const int port = IntegerArgument(arguments, 0, 1, Access::kLastPort);
  if (!HasPort(station, port)) throw Fault{"index out of range"};
  return port;
}

/// "PWLrelease# 1", or all of them with "*" as the lines that would write them.
Values ReadExceptions(Station& station, const Values& arguments) {
  const auto digit = [&](int port) { return station.access.IsExcepted(port) ? 1.0 : 0.0; };
  if (!AskForAll(arguments)) return {digit(PortArgument(station, arguments))};
  Values lines;
  for (int port = 1; port <= Access::kLastPort; ++port) {
    if (!HasPort(station, port)) continue;
    lines.emplace_back("PWLrel " + std::to_string(port) + "=" + FormatNumber(digit(port)));
  }
  return lines;
}

/// "PWLrel 1 ADMINISTRATOR'S=1"
void WriteException(Station& station, const WriteRequest& request) {
  const int port = PortArgument(station, request.arguments);
  const bool excepted = IntegerArgument(request.values, 0, 0, 1) == 1;
  station.access.SetExcepted(port, PasswordAt(request.argumentTexts, 1), excepted);
}

/// Whether a line to all stations may do all.
Values ReadDirectAll(Station& station, const Values&) {
  return {station.access.Grant() == Access::kHighestGrant ? 1.0 : 0.0};
}

constexpr Variable kVariables[] = {
    {"passwort", Always, ReadUser, WriteUser},
    {"pwlrel", Always, ReadExceptions, WriteException},
    {"pwlrelease", Always, ReadExceptions, WriteException},
    {"dirs", Always, ReadDirectAll, nullptr},
};

}  // namespace

WordTable AccessWords() {
  return kWords;
}

VariableTable AccessVariables() {
  return kVariables;
}

}  // namespace ostrel::simulator
