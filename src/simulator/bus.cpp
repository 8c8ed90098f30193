#include "simulator/bus.h"

#include <cstdint>

#include "simulator/address.h"
#include "simulator/machine.h"
#include "simulator/station.h"

namespace ostrel::simulator {

namespace {

/// "AA" for the physically connected device, then "B1", "B2", ...
std::string AddressOf(std::size_t place) {
  return place == 0 ? "AA" : "B" + std::to_string(place);
}

/// Two seeds or places next to each other must not give related histories.
std::uint64_t SeedOf(std::uint32_t seed, std::size_t place) {
  return (std::uint64_t{seed} << 32) ^ (place * 0x51ed270b0a1f39c1u);
}

}  // namespace

Bus::Bus(std::uint32_t seed) {
  for (const StationData& data : BuiltInStations()) {
    const std::size_t place = stations_.size();
    stations_.emplace_back(AddressOf(place), data, SeedOf(seed, place));
  }
  current_ = &stations_.front();
}

Bus::~Bus() = default;

std::vector<Station*> Bus::Addressed(const Address& address) {
  if (address.kind == Address::Kind::kCurrent) return {current_};
  std::vector<Station*> addressed;
  for (Station& station : stations_) {
    if (address.kind == Address::Kind::kAll || station.address == address.station) {
      addressed.push_back(&station);
    }
  }
  return addressed;
}

std::string Bus::Answer(std::string_view line) {
  const Address address = ParseAddress(line);
  std::string answer;
  for (Station* station : Addressed(address)) {
    if (address.makeCurrent) current_ = station;
    const std::string own = AnswerOf(*station, address.expression);
    if (!answer.empty() && !own.empty()) answer += "\r\n";
    answer += own;
  }
  return answer;
}

}  // namespace ostrel::simulator
