#include "simulator/bus.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "simulator/address.h"
#include "simulator/machine.h"
#include "simulator/station.h"

namespace ostrel::simulator {

namespace {

/// That of the physically connected device, then "B1" to "B9", "C1" ...
std::string AddressOf(std::size_t place) {
  constexpr std::size_t kDigits = 9;
  if (place == 0) return std::string(kConnectedAddress);
  const std::size_t letter = (place - 1) / kDigits, digit = (place - 1) % kDigits;
  return {static_cast<char>('B' + letter), static_cast<char>('1' + digit)};
}

/// Two seeds or places next to each other must not give related histories.
std::uint64_t SeedOf(std::uint32_t seed, std::size_t place) {
  return (std::uint64_t{seed} << 32) ^ (place * 0x51ed270b0a1f39c1u);
}

}  // namespace

Bus::Bus(BusStart start) : clock_(std::move(start.clock)) {
  const auto stations = start.stations.empty() ? BuiltInStations() : start.stations;
  std::vector<StationData> order(stations.begin(), stations.end());
  const auto connected = order.begin() + static_cast<std::ptrdiff_t>(start.connected);
  std::rotate(order.begin(), connected, connected + 1);
  for (StationData& data : order) {
    data.extras = start.extras;
    const std::size_t place = stations_.size();
    stations_.emplace_back(AddressOf(place), data, SeedOf(start.seed, place), start.localSeconds);
  }
  current_ = &stations_.front();
}

Bus::~Bus() = default;

void Bus::CatchUp() {
  if (!clock_) return;
  const std::int64_t now = clock_();
  for (Station& station : stations_) station.Advance(now);
}

std::vector<Station*> Bus::Addressed(const Address& address) {
  if (address.kind == Address::Kind::kCurrent) return {current_};
  std::vector<Station*> addressed;
  for (Station& station : stations_) {
    const bool inGroup =
        address.kind == Address::Kind::kGroup && station.data.group == address.group;
    if (address.kind == Address::Kind::kAll || inGroup || station.address == address.station) {
      addressed.push_back(&station);
    }
  }
  return addressed;
}

std::string Bus::Answer(std::string_view line) {
  std::string answer;
  for (const Portion& piece : AnswerInPieces(line)) answer += piece.bytes;
  return answer;
}

std::vector<Portion> Bus::AnswerInPieces(std::string_view line) {
  CatchUp();
  Station& connected = stations_.front();
  if (connected.IsSilent()) return {};
  const Address address = ParseAddress(line);
  if (!connected.boot.inBootloader) return {{AnswerOfStations(address)}};
  const bool own = address.kind == Address::Kind::kCurrent || address.station == connected.address;
  // A host relies on it: after the restart its lines without address are for the connected one.
  if (own && address.makeCurrent) current_ = &connected;
  return BootloaderAnswer(connected, own ? address.expression : line);
}

void Bus::StartBootloader() {
  CatchUp();
  simulator::StartBootloader(stations_.front());
}

std::string Bus::AnswerOfStations(const Address& address) {
  std::string answer;
  for (Station* station : Addressed(address)) {
    if (station->IsSilent()) continue;
    if (address.makeCurrent) current_ = station;
    const std::string own = AnswerOf(*station, address.expression);
    if (address.kind == Address::Kind::kGroup) continue;  // a group does not answer
    if (!answer.empty() && !own.empty()) answer += "\r\n";
    answer += own;
  }
  return answer;
}

}  // namespace ostrel::simulator
