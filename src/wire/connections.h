#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/settings_store.h"
#include "base/texts.h"

namespace ostrel {

enum class ConnectionKind { kSimulator, kTcp, kSerial };
enum class Parity { kNone, kEven, kOdd, kMark, kSpace };

/// One of the values that a connection can have: as it is stored, what it means, its caption's id.
template <typename Meaning>
struct Choice {
  const char* stored;
  Meaning meaning;
  int caption;
};

inline constexpr Choice<ConnectionKind> kConnectionKinds[] = {
    {"simulator", ConnectionKind::kSimulator, text::kKindSimulator},
    {"tcp", ConnectionKind::kTcp, text::kKindTcp},
    {"serial", ConnectionKind::kSerial, text::kKindSerial},
};
inline constexpr Choice<Parity> kParities[] = {
    {"none", Parity::kNone, text::kParityNone},    {"even", Parity::kEven, text::kParityEven},
    {"odd", Parity::kOdd, text::kParityOdd},       {"mark", Parity::kMark, text::kParityMark},
    {"space", Parity::kSpace, text::kParitySpace},
};
inline constexpr const char* kStopBits[] = {"1", "1.5", "2"};

/// The choice that is stored so; nullptr where there is none.
template <typename Meaning, std::size_t size>
const Choice<Meaning>* Chosen(const Choice<Meaning> (&choices)[size], std::string_view stored) {
  for (const Choice<Meaning>& choice : choices) {
    if (choice.stored == stored) return &choice;
  }
  return nullptr;
}

constexpr const char* StoredAs(ConnectionKind kind) {
  for (const Choice<ConnectionKind>& choice : kConnectionKinds) {
    if (choice.meaning == kind) return choice.stored;
  }
  return "";
}

/// One way to devices, as the communication server knows it.
struct Connection {
  std::string name;
  std::string kind;    // of kConnectionKinds; what the settings hold may be another
  std::string host;    // tcp
  int port = 0;        // tcp, 1..65535
  std::string device;  // serial, e.g. "/dev/ttyUSB0"
  int baud = 19200;
  std::string parity = "none";  // of kParities
  std::string stopBits = "1";   // of kStopBits

  /// Where it leads: "192.0.2.7:4001", "/dev/ttyUSB0, 19200 baud", empty for the simulator.
  std::string Target() const;
  bool Is(ConnectionKind wanted) const;
  /// None where the stored one is not known.
  Parity ParityOfLine() const;
  bool Simulated() const { return Is(ConnectionKind::kSimulator); }
};

/// The server's connection list. It lives in the settings, so every program sees the same.
/// "Simulator" is always there, also in an empty store, unless another kind took the name.
class Connections {
 public:
  explicit Connections(SettingsStore& settings) : settings_(settings) {}

  std::vector<Connection> List() const;
  /// The connection with this name (case is ignored); an empty name means the current one.
  std::optional<Connection> Find(std::string_view name) const;
  /// The name of the current connection, "Simulator" where none is set.
  std::string Current() const;

  /// True when one with this name is in the store; the built-in "Simulator" is in none.
  bool Stored(std::string_view name) const;
  /// What speaks against storing it, as the id of a text (whose "%s" is the name); 0 when nothing
  /// does. `before` is the name of the connection that it replaces, empty for a new one.
  int Problem(const Connection& connection, std::string_view before = {}) const;

  /// Adds or replaces. False when the name is empty or holds a backslash, slash or control
  /// character, or when the data of its kind are faulty.
  bool Add(const Connection& connection);
  /// Gives a stored connection other data and perhaps another name; a current one stays current.
  /// False when there is none with this name in the store, or when there is a Problem.
  bool Change(std::string_view name, const Connection& changed);
  /// Makes a connection the current one. False when there is none with this name.
  bool Use(std::string_view name);
  /// False when there is none with this name in the store. The current one falls back to
  /// "Simulator" when it is removed.
  bool Remove(std::string_view name);

  /// True when the data suffice to open it: a known kind, host and port in range, a device.
  static bool Valid(const Connection& connection);

 private:
  SettingsStore& settings_;
};

}  // namespace ostrel
