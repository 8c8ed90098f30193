#include "link/connections.h"

#include <algorithm>
#include <charconv>

#include "app/settings_path.h"
#include "app/text.h"

namespace ostrel {

namespace {

constexpr std::string_view kSimulator = "Simulator";
constexpr std::string_view kCurrent = "CurrentConnection";

bool Same(std::string_view left, std::string_view right) {
  return LowerAscii(left) == LowerAscii(right);
}

int IntOr(std::string_view text, int fallback) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size() ? number : fallback;
}

bool ValidName(std::string_view name) {
  return !name.empty() && name.size() <= 64 && name.front() != ' ' && name.back() != ' ' &&
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
  connection.kind = "simulator";
  return connection;
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
  connection.parity = settings.ReadShared(key, "Parity", "none");
  connection.stopBits = settings.ReadShared(key, "StopBits", "1");
  return connection;
}

}  // namespace

std::string Connection::Target() const {
  if (kind == "tcp") return host + ":" + std::to_string(port);
  if (kind == "serial") return device + ", " + std::to_string(baud) + " baud";
  return {};
}

std::vector<Connection> Connections::List() const {
  std::vector<Connection> list;
  for (const std::string& name : settings_.SharedSubKeys(keys::kConnections)) {
    list.push_back(Load(settings_, name));
  }
  const auto taken = [](const Connection& connection) { return Same(connection.name, kSimulator); };
  if (std::none_of(list.begin(), list.end(), taken)) list.insert(list.begin(), BuiltIn());
  return list;
}

std::optional<Connection> Connections::Find(std::string_view name) const {
  const std::string wanted = name.empty() ? Current() : std::string(name);
  for (Connection& connection : List()) {
    if (Same(connection.name, wanted)) return std::move(connection);
  }
  return std::nullopt;
}

std::string Connections::Current() const {
  return settings_.ReadShared(keys::kServerMisc, kCurrent, kSimulator);
}

bool Connections::Valid(const Connection& connection) {
  if (connection.kind == "simulator") return true;
  if (connection.kind == "tcp") {
    return !connection.host.empty() && connection.port >= 1 && connection.port <= 65535;
  }
  const auto oneOf = [](std::string_view value, std::initializer_list<std::string_view> known) {
    return std::find(known.begin(), known.end(), value) != known.end();
  };
  return connection.kind == "serial" && !connection.device.empty() && connection.baud > 0 &&
         oneOf(connection.parity, {"none", "even", "odd", "mark", "space"}) &&
         oneOf(connection.stopBits, {"1", "1.5", "2"});
}

bool Connections::Add(const Connection& connection) {
  if (!ValidName(connection.name) || !Valid(connection)) return false;
  const std::string key = KeyOf(connection.name);
  settings_.RemoveSharedKey(key);
  settings_.WriteShared(key, "Kind", connection.kind);
  if (connection.kind == "tcp") {
    settings_.WriteShared(key, "Host", connection.host);
    settings_.WriteShared(key, "Port", std::to_string(connection.port));
  } else if (connection.kind == "serial") {
    settings_.WriteShared(key, "Device", connection.device);
    settings_.WriteShared(key, "Baud", std::to_string(connection.baud));
    settings_.WriteShared(key, "Parity", connection.parity);
    settings_.WriteShared(key, "StopBits", connection.stopBits);
  }
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
    if (!Same(stored, name)) continue;
    settings_.RemoveSharedKey(KeyOf(stored));
    if (Same(Current(), name)) settings_.WriteShared(keys::kServerMisc, kCurrent, kSimulator);
    return true;
  }
  return false;
}

}  // namespace ostrel
