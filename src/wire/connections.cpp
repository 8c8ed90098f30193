#include "wire/connections.h"

#include <algorithm>
#include <charconv>

#include "base/settings_path.h"
#include "base/text.h"

namespace ostrel {

namespace {

constexpr std::string_view kSimulator = "Simulator";
constexpr std::string_view kCurrent = "CurrentConnection";

int IntOr(std::string_view text, int fallback) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? number : fallback;
}

bool ValidName(std::string_view name) {
  return !name.empty() && CharCount(name) <= 64 && name.front() != ' ' && name.back() != ' ' &&
         std::none_of(name.begin(), name.end(), [](unsigned char letter) {
           return letter < 32 || letter == 127 || letter == '\\' || letter == '/';
         });
}

std::string KeyOf(std::string_view name) {
  return SettingsPath(keys::kConnections, name);
}

Connection BuiltIn() {
  Connection connection;
  connection.name = kSimulator;
  connection.kind = StoredAs(ConnectionKind::kSimulator);
  return connection;
}

/// The id of the text that says what is wrong with the data of its kind; 0 when nothing is.
int DataProblem(const Connection& connection) {
  if (connection.Simulated()) return 0;
  if (connection.Is(ConnectionKind::kTcp)) {
    if (connection.host.empty()) return text::kHostProblem;
    return connection.port >= 1 && connection.port <= 65535 ? 0 : text::kPortProblem;
  }
  if (!connection.Is(ConnectionKind::kSerial)) return text::kKindProblem;
  if (connection.device.empty()) return text::kDeviceProblem;
  if (connection.baud <= 0) return text::kBaudProblem;
  const bool framed = Chosen(kParities, connection.parity) != nullptr &&
                      std::find(std::begin(kStopBits), std::end(kStopBits), connection.stopBits) !=
                          std::end(kStopBits);
  return framed ? 0 : text::kFramingProblem;
}

Connection Load(const SettingsStore& settings, const std::string& name) {
  const std::string key = KeyOf(name);
  Connection connection;
  connection.name = name;
  connection.kind = settings.ReadShared(key, "Kind", "");
  connection.host = settings.ReadShared(key, "Host", "");
  connection.port = IntOr(settings.ReadShared(key, "Port", ""), 0);
  connection.device = settings.ReadShared(key, "Device", "");
  connection.baud = IntOr(settings.ReadShared(key, "Baud", "19200"), 0);
  connection.parity = settings.ReadShared(key, "Parity", connection.parity);
  connection.stopBits = settings.ReadShared(key, "StopBits", connection.stopBits);
  return connection;
}

}  // namespace

bool Connection::Is(ConnectionKind wanted) const {
  const Choice<ConnectionKind>* chosen = Chosen(kConnectionKinds, kind);
  return chosen != nullptr && chosen->meaning == wanted;
}

Parity Connection::ParityOfLine() const {
  const Choice<Parity>* chosen = Chosen(kParities, parity);
  return chosen == nullptr ? Parity::kNone : chosen->meaning;
}

std::string Connection::Target() const {
  if (Is(ConnectionKind::kTcp)) {
    const bool brackets = host.find(':') != std::string::npos;
    return (brackets ? "[" + host + "]" : host) + ":" + std::to_string(port);
  }
  if (Is(ConnectionKind::kSerial)) return device + ", " + std::to_string(baud) + " baud";
  return {};
}

std::vector<Connection> Connections::List() const {
  std::vector<Connection> list;
  for (const std::string& name : settings_.SharedSubKeys(keys::kConnections)) {
    list.push_back(Load(settings_, name));
  }
  const auto taken = [](const Connection& connection) {
    return SameText(connection.name, kSimulator);
  };
  if (std::none_of(list.begin(), list.end(), taken)) list.insert(list.begin(), BuiltIn());
  return list;
}

std::optional<Connection> Connections::Find(std::string_view name) const {
  const std::string wanted = name.empty() ? Current() : std::string(name);
  for (Connection& connection : List()) {
    if (SameText(connection.name, wanted)) return std::move(connection);
  }
  return std::nullopt;
}

std::string Connections::Current() const {
  return settings_.ReadShared(keys::kServerMisc, kCurrent, kSimulator);
}

bool Connections::Valid(const Connection& connection) {
  return DataProblem(connection) == 0;
}

bool Connections::Stored(std::string_view name) const {
  // The store itself knows which spellings are one name to it.
  if (!settings_.ReadShared(KeyOf(name), "Kind", "").empty()) return true;
  const std::vector<std::string> names = settings_.SharedSubKeys(keys::kConnections);
  return std::any_of(names.begin(), names.end(),
                     [name](const std::string& stored) { return SameText(stored, name); });
}

int Connections::Problem(const Connection& connection, std::string_view before) const {
  if (!ValidName(connection.name)) return text::kNameProblem;
  if (!SameText(connection.name, before) && Stored(connection.name)) return text::kConnectionTaken;
  return DataProblem(connection);
}

bool Connections::Add(const Connection& connection) {
  if (!ValidName(connection.name) || !Valid(connection)) return false;
  const std::string key = KeyOf(connection.name);
  settings_.RemoveSharedKey(key);
  settings_.WriteShared(key, "Kind", connection.kind);
  if (connection.Is(ConnectionKind::kTcp)) {
    settings_.WriteShared(key, "Host", connection.host);
    settings_.WriteShared(key, "Port", std::to_string(connection.port));
  } else if (connection.Is(ConnectionKind::kSerial)) {
    settings_.WriteShared(key, "Device", connection.device);
    settings_.WriteShared(key, "Baud", std::to_string(connection.baud));
    settings_.WriteShared(key, "Parity", connection.parity);
    settings_.WriteShared(key, "StopBits", connection.stopBits);
  }
  return true;
}

bool Connections::Change(std::string_view name, const Connection& changed) {
  if (!Stored(name) || Problem(changed, name) != 0) return false;
  const bool current = SameText(Current(), name);
  // The new one stands before the old one goes: nothing is lost between the two.
  Add(changed);
  if (!SameText(changed.name, name)) Remove(name);
  if (current) settings_.WriteShared(keys::kServerMisc, kCurrent, changed.name);
  return true;
}

bool Connections::Use(std::string_view name) {
  const std::optional<Connection> found = Find(name);
  if (name.empty() || !found) return false;
  settings_.WriteShared(keys::kServerMisc, kCurrent, found->name);
  return true;
}

bool Connections::Remove(std::string_view name) {
  for (const std::string& stored : settings_.SharedSubKeys(keys::kConnections)) {
    if (!SameText(stored, name)) continue;
    settings_.RemoveSharedKey(KeyOf(stored));
    if (SameText(Current(), name)) settings_.WriteShared(keys::kServerMisc, kCurrent, kSimulator);
    return true;
  }
  return false;
}

}  // namespace ostrel
