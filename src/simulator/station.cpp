#include "simulator/station.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "simulator/value.h"

namespace ostrel::simulator {

namespace {

// Firmware from 2.22 on counts more tap positions.
constexpr std::string_view kWideStatisticsFirmware = "2.22";

constexpr std::string_view kGermanRefusal = "Zugriff verweigert";

/// Guests read; the administrator and a user have passwords.
constexpr AccessData kProtected = {
    .users = {{{kNoPassword, 2, 0}, {"4711", 5, 0}, {"1234", 4, 15}, {}, {}, {}}}};

constexpr StationData kBuiltIn[] = {
    {"KT-X", "2.27", "Umspannwerk Nord T1", "SIM0412345-B", 134, 'r', {-9, 9, 1, 41'200}},
    {"KT-XB",
     "2.10",
     "Umspannwerk Nord T2",
     "SIM0398120-A",
     0,
     'r',
     {1, 19, 10, 52'300},
     {kGermanRefusal},
     {"2.05"}},
    {"KT-XB",
     "3.26",
     "Schalthaus S\xfc"
     "d T1",
     "SIM0731566-C",
     141,
     'r',
     {-13, 13, -2, 310'000},
     kProtected},
    {"LX-X",
     "2.21",
     "Kraftwerk Aue",
     "SIM0287003-A",
     0,
     's',
     {-8, 8, 0, 12'800},
     {},
     {"2.14", false}},
    {"KT-XF", "2.4.04", "Abzweig 20 kV West", "SIM0550917-B", 0, 'p', {}},
    {"KT-XFB", "2.1.10", "Abzweig 20 kV Ost", "SIM0560233-A", 0, 'p', {}, {kGermanRefusal}},
    {"KT-XW", "2.30", "Windpark H\xf6henweg", "SIM0802441-D", 136, 'r', {-16, 16, 3, 28'500}},
    {"QM-X", "1.9", "Netzqualit\xe4t Nord", "SIM0190478-A", 0, 'q', {}},
    {"JS-X", "1.4.40", "E-Spule Nord", "SIM0333702-A", 0, 'o', {}},
    {"NV-X", "1.5", "Niederspannung Markt", "SIM0905518-B", 0, 'o', {}},
};

constexpr RegulatorModel kRegulators[] = {
    {"KT-X", true, 1, 60'000},   {"KT-XB", true, 5, 12'000},   {"LX-X", true, 1, 40'000},
    {"KT-XW", false, 1, 80'000}, {"KT-XWB", false, 5, 16'000},
};
constexpr std::string_view kCoilControllers[] = {"KT-XF", "KT-XFB"};

// Of one device, each subject throws dice of its own.
constexpr std::uint64_t kGridDice = 0x6c62272e07bb0142u, kHistoryDice = 0x2545f4914f6cdd1du;

std::optional<Regulator> MakeRegulator(const StationData& data, std::uint64_t seed,
                                       std::int64_t localSeconds) {
  for (const RegulatorModel& model : kRegulators) {
    if (model.model != data.model) continue;
    return Regulator(model, data.tapChanger, Grid(seed ^ kGridDice, localSeconds));
  }
  return std::nullopt;
}

std::optional<CoilController> MakeCoilController(const StationData& data) {
  const bool isCoil = std::find(std::begin(kCoilControllers), std::end(kCoilControllers),
                                data.model) != std::end(kCoilControllers);
  return isCoil ? std::optional(CoilController{}) : std::nullopt;
}

std::optional<TapChanger> MakeTapChanger(const StationData& data, std::uint64_t seed) {
  if (data.tapChanger.changesSoFar == 0) return std::nullopt;
  const bool wide = Compare(std::string(data.firmware), std::string(kWideStatisticsFirmware)) >= 0;
  return TapChanger(data.tapChanger, wide ? -60 : -40, wide ? 59 : 39, Random(seed));
}

}  // namespace

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
      access(stationData.access, IsConnected()) {
  if (!regulator) return;
  const int position = regulator->TapPosition();
  eventLog.AddHistory(LocalMs(), data.tapChanger, position, Random(seed ^ kHistoryDice));
}

void Station::Advance(std::int64_t milliseconds) {
  const std::int64_t until = std::max(nowMs, milliseconds);
  if (regulator) regulator->Live(*this, until);
  nowMs = until;
  access.Advance(nowMs);
}

std::span<const StationData> BuiltInStations() {
  return kBuiltIn;
}

}  // namespace ostrel::simulator
