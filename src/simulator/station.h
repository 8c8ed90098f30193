#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "simulator/tap_changer.h"

namespace ostrel::simulator {

/// What a device is when it comes from the factory and has been named. Texts in ISO 8859-1.
struct StationData {
  std::string_view model;
  std::string_view firmware;
  std::string_view name;
  std::string_view serialNumber;
  int protocolNumber = 0;  ///< 0 = the firmware does not tell
  TapChangerData tapChanger = {};
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
  /// The same seed gives the same history.
  Station(std::string stationAddress, const StationData& stationData, std::uint64_t seed);

  std::string address;  ///< in capitals, without colon
  StationData data;
  std::optional<TapChanger> tapChanger;
  std::array<User, 6> users;  ///< by user number
};

/// The devices of the built-in bus in bus order; the first is the physically connected one.
std::span<const StationData> BuiltInStations();

}  // namespace ostrel::simulator
