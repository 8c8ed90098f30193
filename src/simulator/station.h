#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "simulator/data_log.h"
#include "simulator/event_log.h"
#include "simulator/file_store.h"
#include "simulator/io_map.h"
#include "simulator/programs.h"
#include "simulator/tap_changer.h"

namespace ostrel::simulator {

/// What a device is when it comes from the factory and has been named. Texts in ISO 8859-1.
struct StationData {
  std::string_view model;
  std::string_view firmware;
  std::string_view name;
  std::string_view serialNumber;
  int protocolNumber = 0;  ///< 0 = the firmware does not tell
  char group = 'o';        ///< the group address it listens to: r, p, s, q or o
  TapChangerData tapChanger = {};
  std::span<const Card> cards = {};  ///< on COM3, by address from 1 on; at most kMaxCards
};

/// The password that stands for none.
inline constexpr std::string_view kNoPassword = "0";

/// One of the users that a device knows. Without passwords everybody may do everything.
struct User {
  std::string password{kNoPassword};
  int grant = 5;
  int timeoutMinutes = 0;
};

/// A device on the bus with all that changes in it.
struct Station {
  /// The same seed gives the same history. Local time in seconds since 1990-01-01 00:00:00.
  Station(std::string stationAddress, const StationData& stationData, std::uint64_t seed,
          std::int64_t localSeconds);

  /// Lives until this simulated time, in milliseconds; a time that has passed changes nothing.
  void Advance(std::int64_t milliseconds);

  std::string address;  ///< in capitals, without colon
  StationData data;
  std::int64_t nowMs = 0;       ///< simulated, since the bus began
  std::int64_t startLocal = 0;  ///< local time at 0 ms, seconds since 1990-01-01 00:00:00
  std::optional<TapChanger> tapChanger;
  EventLog eventLog;
  std::optional<IoMaps> ioMaps;
  std::optional<Programs> programs;
  FileStore files;
  std::optional<DataLog> dataLog;
  std::array<User, 6> users;  ///< by user number
};

/// The devices of the built-in bus in bus order; the first is the physically connected one.
std::span<const StationData> BuiltInStations();

}  // namespace ostrel::simulator
