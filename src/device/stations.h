#pragma once

#include <string>
#include <vector>

#include "base/messages.h"
#include "link/commands.h"
#include "link/link.h"

namespace ostrel {

/// One station of a connection, as the list shows it.
struct Station {
  std::string address;  // with its ":"
  std::string name;
  std::string type;     // as the device gave it, e.g. "KT-X+"
  std::string version;  // as the device gave it, e.g. "V2.27"
  bool current = false;

  /// Address and name in one, as the device gives them.
  std::string KennName() const { return address + name; }
  /// The version without a leading "V".
  std::string Firmware() const;
  /// The line of the list: padded columns, and "  (AA:)" behind the current station.
  std::string ListLine() const;
};

/// The row for one line "address name;type;version" of a station list.
Station StationFromLine(std::string line);

/// Finding out which stations a connection reaches.
class Stations {
 public:
  Stations(Link& link, Commands& commands) : link_(link), commands_(commands) {}

  /// Address and name of the physically connected station, and its type string. 1280 with the
  /// device's words for an answer without an address.
  Error StationCurrentGet(std::string& station, std::string& typeString);
  /// The lines of the answer to "all stations", without empty ones and comments ("#"). Shows the
  /// message of a failure, an error answer too.
  bool StationsListAll(std::vector<std::string>& list);
  /// Type string and firmware version text of a station. 1280 with the device's words when it
  /// refuses to tell; both are as they were then.
  Error VersionGet(const std::string& address, std::string& typeString, std::string& firmware);
  /// Address and name of the station with this address. text::kNoDeviceAnswers when none answers
  /// there, with what came instead.
  Error NameGet(const std::string& address, std::string& kennName);
  /// The serial number; empty when the device refuses to tell.
  Error SerialGet(const std::string& address, std::string& serial);

 private:
  Answer Ask(const std::string& line);

  Link& link_;
  Commands& commands_;
};

}  // namespace ostrel
