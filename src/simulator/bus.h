#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/extras.h"
#include "simulator/reply_form.h"

namespace ostrel::simulator {

struct Address;
struct Station;
struct StationData;

/// On one bus.
inline constexpr std::size_t kMaxStations = 64;

/// Simulated milliseconds since the bus began; never falls.
using BusClock = std::function<std::int64_t()>;

/// What a bus begins with.
struct BusStart {
  std::uint32_t seed = 1;  ///< the same seed gives the same history
  BusClock clock = {};     ///< none: the time stands still
  /// The devices' local time, in seconds since 1990-01-01 00:00:00; that is 2026-01-05 08:00:00.
  std::int64_t localSeconds = 1136448000;
  std::size_t connected = 0;  ///< which of the stations is physically connected
  /// At most kMaxStations in bus order, whose texts outlive the bus; none: the built-in ones.
  std::span<const StationData> stations = {};
  Extras extras = {};  ///< of all stations
};

/// A bus of simulated devices. All texts are ISO 8859-1 bytes, as on the line.
class Bus {
 public:
  explicit Bus(BusStart start = {});
  explicit Bus(std::uint32_t seed) : Bus(BusStart{.seed = seed, .clock = {}}) {}
  ~Bus();
  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;

  /// Evaluates one command line (no line end) as the physically connected device and its bus
  /// neighbours do. The answer's lines are separated by CR LF; it is empty when nobody answers.
  /// However long or nasty the line, the answer comes in bounded time and size.
  std::string Answer(std::string_view line);
  /// The same in the pieces in which it comes; none when not even an echo comes.
  std::vector<Portion> AnswerInPieces(std::string_view line);
  /// Starts the bootloader of the connected device by hand.
  void StartBootloader();

 private:
  void CatchUp();
  std::string AnswerOfStations(const Address& address);
  std::vector<Station*> Addressed(const Address& address);

  BusClock clock_;
  std::vector<Station> stations_;
  Station* current_;
};

}  // namespace ostrel::simulator
