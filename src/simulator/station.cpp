#include "simulator/station.h"

#include <algorithm>
#include <utility>

#include "simulator/value.h"

namespace ostrel::simulator {

namespace {

// Firmware from 2.22 on counts more tap positions.
constexpr std::string_view kWideStatisticsFirmware = "2.22";

// Firmware from 2.1.11 on gives its data log away.
constexpr std::string_view kDataLogFirmware = "2.1.11";

constexpr Card kCardsOfNord[] = {{10, 0},  {10, 16}, {10, 4110}, {11, 2},  {11, 3}, {11, 4},
                                 {11, 16}, {11, 17}, {12, 0},    {12, 16}, {13, 0}, {11, 258}};
constexpr Card kCardsOfSued[] = {{10, 103}, {11, 5},  {11, 18}, {11, 19}, {12, 1},
                                 {12, 17},  {13, 16}, {13, 17}, {13, 18}};
constexpr Card kCardsOfAue[] = {{13, 1}, {13, 2}, {14, 0}, {27, 0}};

constexpr StationData kBuiltIn[] = {
    {"KT-X",
     "2.27",
     "Umspannwerk Nord T1",
     "SIM0412345-B",
     134,
     'r',
     {-9, 9, 1, 41'200},
     kCardsOfNord},
    {"KT-XB", "2.10", "Umspannwerk Nord T2", "SIM0398120-A", 0, 'r', {1, 19, 10, 52'300}},
    {"KT-XB",
     "3.26",
     "Schalthaus S\xfc"
     "d T1",
     "SIM0731566-C",
     141,
     'r',
     {-13, 13, -2, 310'000},
     kCardsOfSued},
    {"LX-X", "2.21", "Kraftwerk Aue", "SIM0287003-A", 0, 's', {-8, 8, 0, 12'800}, kCardsOfAue},
    {"KT-XF", "2.4.04", "Abzweig 20 kV West", "SIM0550917-B", 0, 'p', {}},
    {"KT-XFB", "2.1.10", "Abzweig 20 kV Ost", "SIM0560233-A", 0, 'p', {}},
    {"KT-XW", "2.30", "Windpark H\xf6henweg", "SIM0802441-D", 136, 'r', {-16, 16, 3, 28'500}},
    {"QM-X", "1.9", "Netzqualit\xe4t Nord", "SIM0190478-A", 0, 'q', {}},
    {"JS-X", "1.4.40", "E-Spule Nord", "SIM0333702-A", 0, 'o', {}},
    {"NV-X", "1.5", "Niederspannung Markt", "SIM0905518-B", 0, 'o', {}},
};

std::optional<DataLog> MakeDataLog(const StationData& data, std::int64_t localSeconds,
                                   std::uint64_t seed) {
  const bool coilController = data.model == "KT-XF" || data.model == "KT-XFB";
  if (!coilController || Compare(std::string(data.firmware), std::string(kDataLogFirmware)) < 0) {
    return std::nullopt;
  }
  // Apart from the generators of the station's other parts.
  return DataLog(localSeconds * 1000, Random(seed ^ 0x64617461));
}

std::optional<TapChanger> MakeTapChanger(const StationData& data, std::uint64_t seed) {
  if (data.tapChanger.changesSoFar == 0) return std::nullopt;
  const bool wide = Compare(std::string(data.firmware), std::string(kWideStatisticsFirmware)) >= 0;
  return TapChanger(data.tapChanger, wide ? -60 : -40, wide ? 59 : 39, Random(seed));
}

}  // namespace

Station::Station(std::string stationAddress, const StationData& stationData, std::uint64_t seed,
                 std::int64_t localSeconds)
    : address(std::move(stationAddress)),
      data(stationData),
      startLocal(localSeconds),
      tapChanger(MakeTapChanger(stationData, seed)),
      ioMaps(MakeIoMaps(stationData.model, stationData.firmware, stationData.cards)),
      programs(MakePrograms(stationData.model)),
      dataLog(MakeDataLog(stationData, localSeconds, seed)) {}

void Station::Advance(std::int64_t milliseconds) {
  nowMs = std::max(nowMs, milliseconds);
  if (dataLog) dataLog->Advance(startLocal * 1000 + nowMs);
}

std::span<const StationData> BuiltInStations() {
  return kBuiltIn;
}

}  // namespace ostrel::simulator
