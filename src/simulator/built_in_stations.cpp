#include "simulator/station.h"

namespace ostrel::simulator {

namespace {

constexpr std::string_view kGermanRefusal = "Zugriff verweigert";

/// Guests read; the administrator and a user have passwords.
constexpr AccessData kProtected = {
    .users = {{{kNoPassword, 2, 0}, {"4711", 5, 0}, {"1234", 4, 15}, {}, {}, {}}}};

// Nord's are in a row; Sued has two that their own switches map; Aue has gaps between its cards,
// and one of a type that only later devices know.
constexpr Card kCardsOfNord[] = {{1, 10, 0}, {2, 10, 16},  {3, 10, 4110}, {4, 11, 2},
                                 {5, 11, 3}, {6, 11, 4},   {7, 11, 16},   {8, 11, 17},
                                 {9, 12, 0}, {10, 12, 16}, {11, 13, 0},   {12, 11, 258}};
constexpr Card kCardsOfSued[] = {{1, 10, 100}, {2, 11, 5},  {3, 11, 18}, {4, 11, 19},
                                 {5, 12, 1},   {6, 12, 17}, {7, 13, 16}, {8, 13, 17},
                                 {9, 13, 18},  {10, 13, 1}, {11, 13, 2}, {12, 11, 113}};
constexpr Card kCardsOfAue[] = {{1, 11, 3}, {2, 10, 16}, {5, 14, 0}, {9, 27, 0}, {16, 31, 2}};

constexpr StationData kBuiltIn[] = {
    {.model = "KT-X",
     .firmware = "2.27",
     .name = "Umspannwerk Nord T1",
     .serialNumber = "SIM0412345-B",
     .protocolNumber = 134,
     .group = 'r',
     .tapChanger = {-9, 9, 1, 41'200},
     .cards = kCardsOfNord},
    {.model = "KT-XB",
     .firmware = "2.10",
     .name = "Umspannwerk Nord T2",
     .serialNumber = "SIM0398120-A",
     .group = 'r',
     .tapChanger = {1, 19, 10, 52'300},
     .access = {.refusal = kGermanRefusal},
     .bootloader = {.version = "2.05"}},
    {.model = "KT-XB",
     .firmware = "3.26",
     .name = "Schalthaus S\xfc"
             "d T1",
     .serialNumber = "SIM0731566-C",
     .protocolNumber = 141,
     .group = 'r',
     .tapChanger = {-13, 13, -2, 310'000},
     .access = kProtected,
     .cards = kCardsOfSued},
    {.model = "LX-X",
     .firmware = "2.21",
     .name = "Kraftwerk Aue",
     .serialNumber = "SIM0287003-A",
     .group = 's',
     .tapChanger = {-8, 8, 0, 12'800},
     .bootloader = {.secondFlash = false},
     .cards = kCardsOfAue},
    {.model = "KT-XF",
     .firmware = "2.4.04",
     .name = "Abzweig 20 kV West",
     .serialNumber = "SIM0550917-B",
     .group = 'p'},
    {.model = "KT-XFB",
     .firmware = "2.1.10",
     .name = "Abzweig 20 kV Ost",
     .serialNumber = "SIM0560233-A",
     .group = 'p',
     .access = {.refusal = kGermanRefusal}},
    {.model = "KT-XW",
     .firmware = "2.30",
     .name = "Windpark H\xf6henweg",
     .serialNumber = "SIM0802441-D",
     .protocolNumber = 136,
     .group = 'r',
     .tapChanger = {-16, 16, 3, 28'500}},
    {.model = "QM-X",
     .firmware = "1.9",
     .name = "Netzqualit\xe4t Nord",
     .serialNumber = "SIM0190478-A",
     .group = 'q'},
    {.model = "JS-X", .firmware = "1.4.40", .name = "E-Spule Nord", .serialNumber = "SIM0333702-A"},
    {.model = "NV-X",
     .firmware = "1.5",
     .name = "Niederspannung Markt",
     .serialNumber = "SIM0905518-B"},
};

}  // namespace

std::span<const StationData> BuiltInStations() {
  return kBuiltIn;
}

}  // namespace ostrel::simulator
