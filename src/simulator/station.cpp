#include "simulator/station.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "simulator/value.h"

namespace ostrel::simulator {

namespace {

// The first firmware that counts more tap positions, and the first that gives its data log away.
constexpr std::string_view kWideStatisticsFirmware = "2.22", kDataLogFirmware = "2.1.11";

constexpr RegulatorModel kRegulators[] = {
    {"KT-X", true, 1, 60'000},   {"KT-XB", true, 5, 12'000},   {"LX-X", true, 1, 40'000},
    {"KT-XW", false, 1, 80'000}, {"KT-XWB", false, 5, 16'000},
};
constexpr std::string_view kCoilControllers[] = {"KT-XF", "KT-XFB"};

// Of one device, each subject throws dice of its own.
constexpr std::uint64_t kGridDice = 0x6c62272e07bb0142u, kHistoryDice = 0x2545f4914f6cdd1du,
                        kDataLogDice = 0x64617461u;

std::optional<TapChanger> MakeTapChanger(const StationData& data, std::uint64_t seed) {
  if (data.tapChanger.changesSoFar == 0) return std::nullopt;
  const bool wide = data.HasFirmware(kWideStatisticsFirmware);
  return TapChanger(data.tapChanger, wide ? -60 : -40, wide ? 59 : 39, Random(seed));
}

const RegulatorModel* FindRegulator(std::string_view name) {
  const auto* found =
      std::find_if(std::begin(kRegulators), std::end(kRegulators),
                   [&](const RegulatorModel& known) { return known.model == name; });
  return found == std::end(kRegulators) ? nullptr : found;
}

std::optional<Regulator> MakeRegulator(const StationData& data, std::uint64_t seed,
                                       std::int64_t localSeconds) {
  const RegulatorModel* model = FindRegulator(data.model);
  if (!model) return std::nullopt;
  return Regulator(*model, data.tapChanger, Grid(seed ^ kGridDice, localSeconds));
}

std::optional<CoilController> MakeCoilController(const StationData& data) {
  const bool isCoil = std::find(std::begin(kCoilControllers), std::end(kCoilControllers),
                                data.model) != std::end(kCoilControllers);
  return isCoil ? std::optional(CoilController{}) : std::nullopt;
}

}  // namespace

bool StationData::HasFirmware(std::string_view first) const {
  if (FindRegulator(model)) return LeadingNumber(firmware) >= LeadingNumber(first);
  return Compare(std::string(firmware), std::string(first)) >= 0;
}

Station::Station(std::string stationAddress, const StationData& stationData,
                 std::uint64_t stationSeed, std::int64_t localSeconds)
    : address(std::move(stationAddress)),
      data(stationData),
      seed(stationSeed),
      startLocal(localSeconds),
      time(localSeconds),
      tapChanger(MakeTapChanger(stationData, stationSeed)),
      regulator(MakeRegulator(stationData, stationSeed, localSeconds)),
      coil(MakeCoilController(stationData)),
      ioMaps(MakeIoMaps(stationData.model, stationData.firmware, stationData.cards,
                        stationData.extras.manyCards)),
      programs(regulator ? std::optional(MakePrograms()) : std::nullopt),
      access(stationData.access, IsConnected()) {
  if (regulator) {
    const auto position =
        regulator->HasTapPosition() ? std::optional(regulator->TapPosition()) : std::nullopt;
    eventLog.AddHistory(LocalMs(), data.tapChanger, position, Random(seed ^ kHistoryDice));
  }
  if (coil && data.HasFirmware(kDataLogFirmware)) {
    dataLog.emplace(time, data.extras, Random(seed ^ kDataLogDice));
  }
}

void Station::Advance(std::int64_t milliseconds) {
  const std::int64_t until = std::max(nowMs, milliseconds);
  if (regulator) regulator->Live(*this, until);
  nowMs = until;
  if (dataLog) dataLog->Advance(nowMs, time);
  access.Advance(nowMs);
}

}  // namespace ostrel::simulator
