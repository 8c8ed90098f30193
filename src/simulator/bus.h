#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ostrel::simulator {

struct Address;
struct Station;

/// A bus of simulated devices. All texts are ISO 8859-1 bytes, as on the line.
class Bus {
 public:
  /// The built-in stations; the same seed gives the same history.
  explicit Bus(std::uint32_t seed = 1);
  ~Bus();
  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;

  /// Evaluates one command line (no line end) as the physically connected device and its bus
  /// neighbours do. The answer's lines are separated by CR LF; it is empty when nobody answers.
  /// However long or nasty the line, the answer comes in bounded time and size.
  std::string Answer(std::string_view line);

 private:
  std::vector<Station*> Addressed(const Address& address);

  std::vector<Station> stations_;
  Station* current_;
};

}  // namespace ostrel::simulator
