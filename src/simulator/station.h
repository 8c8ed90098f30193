#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "simulator/access.h"
#include "simulator/bootloader.h"
#include "simulator/data_log.h"
#include "simulator/device_time.h"
#include "simulator/event_log.h"
#include "simulator/extras.h"
#include "simulator/file_store.h"
#include "simulator/io_map.h"
#include "simulator/programs.h"
#include "simulator/regulator.h"
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
  AccessData access = {};
  BootloaderData bootloader = {};
  std::span<const Card> cards = {};  ///< on COM3, by address
  Extras extras = {};

  /// Whether it has this firmware or a later one. Those of regulators count as decimal numbers, so
  /// that 2.3 is later than 2.27; others field by field.
  bool HasFirmware(std::string_view first) const;
};

/// Of the device that is physically connected; all others are reached over the bus.
inline constexpr std::string_view kConnectedAddress = "AA";

/// A device on the bus with all that changes in it.
struct Station {
  /// The same seed gives the same history. Local time in seconds since 1990-01-01 00:00:00.
  Station(std::string stationAddress, const StationData& stationData, std::uint64_t seed,
          std::int64_t localSeconds);

  /// Lives until this simulated time, in milliseconds; a time that has passed changes nothing.
  void Advance(std::int64_t milliseconds);

  /// Physically, to the host.
  bool IsConnected() const { return address == kConnectedAddress; }
  bool IsSilent() const { return nowMs < boot.silentUntilMs; }
  /// Its firmware answers.
  bool IsServing() const { return !IsSilent() && !boot.inBootloader; }
  /// The device's own clock, in milliseconds since 1990-01-01 00:00:00.
  std::int64_t LocalMs() const { return time.LocalMs(nowMs); }
  /// Writes to the event log, with the time of the device's clock.
  void Note(Event event, int value) { eventLog.Add(LocalMs(), event, value); }

  std::string address;  ///< in capitals, without colon
  StationData data;
  std::int64_t nowMs = 0;  ///< simulated, since the bus began
  std::uint64_t seed = 0;
  std::int64_t startLocal = 0;  ///< local time at 0 ms, seconds since 1990-01-01 00:00:00
  DeviceTime time;
  std::optional<TapChanger> tapChanger;
  std::optional<Regulator> regulator;
  std::optional<CoilController> coil;
  EventLog eventLog;
  std::optional<DataLog> dataLog;
  std::optional<IoMaps> ioMaps;
  std::optional<Programs> programs;
  FileStore files;
  Access access;
  Boot boot;
};

/// The devices of the built-in bus in bus order; the first is the physically connected one.
std::span<const StationData> BuiltInStations();

}  // namespace ostrel::simulator
