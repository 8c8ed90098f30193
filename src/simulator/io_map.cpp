#include "simulator/io_map.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "simulator/station.h"

namespace ostrel::simulator {

namespace {

using Kind = IoMaps::Kind;

constexpr int kPerAddress = 100;
constexpr int kMaxChannel[] = {8, 16, 8, 16};  // of any card, by Kind
constexpr int kSwitchMapped = 100, kLedForm = 256;
constexpr double kFirmwareSteps[] = {2.15, 2.24, 3.24};

/// Numbers by Kind; the entries by the firmware steps passed, where 0 means the internal ones.
struct ModelMaps {
  std::string_view model;
  int internal[4];
  int entries[4][4];
};
constexpr ModelMaps kModels[] = {
    {"KT-X",
     {6, 16, 9, 7},
     {{0, 32, 32, 128}, {32, 64, 128, 128}, {0, 64, 64, 128}, {0, 0, 64, 128}}},
    {"KT-XB",
     {6, 16, 11, 12},
     {{0, 32, 32, 128}, {32, 64, 128, 128}, {0, 64, 64, 128}, {0, 0, 64, 128}}},
    {"LX-X", {6, 16, 18, 8}, {{1, 1, 1, 1}, {0, 64, 128, 128}, {0, 64, 64, 64}, {0, 0, 64, 64}}},
};

/// The channels of a card by its type and subtype; the first that fits counts.
struct CardChannels {
  int type, firstSubtype, lastSubtype;
  Kind kind;
  int channels;
};
constexpr int kAnySubtype = 0xFFFF;
constexpr CardChannels kCardChannels[] = {
    {10, 0, 0, IoMaps::kRelays, 8},
    {10, 16, 16, IoMaps::kRelays, 6},
    {10, 4110, 4110, IoMaps::kRelays, 8},
    {11, 16, 19, IoMaps::kInputs, 6},
    {11, 0, kAnySubtype, IoMaps::kInputs, 16},
    {12, 0, 1, IoMaps::kAnalogue, 8},
    {12, 16, 17, IoMaps::kAnalogue, 2},
    {13, 0, 2, IoMaps::kAnalogue, 8},
    {13, 16, 18, IoMaps::kAnalogue, 2},
    {14, 0, kAnySubtype, IoMaps::kLeds, 16},
};
constexpr Card kFurtherCard = {0, 11, 3};
constexpr int kBeyondAddresses = 2;

bool IsSwitchMapped(const Card& card) {
  return card.subtype >= kSwitchMapped && card.subtype < 2 * kSwitchMapped;
}

/// Those that a map leads to.
int ChannelsOf(const Card& card, Kind kind) {
  if (IsSwitchMapped(card) || card.address > kMaxCards) return 0;
  const bool leds = (card.subtype & kLedForm) != 0;
  const int subtype = leds ? card.subtype & 0xFF : card.subtype;
  for (const CardChannels& known : kCardChannels) {
    if (known.type != card.type || subtype < known.firstSubtype || subtype > known.lastSubtype) {
      continue;
    }
    return (leds ? IoMaps::kLeds : known.kind) == kind ? known.channels : 0;
  }
  return 0;
}

void MapCards(IoMap& map, Kind kind, int internal, const std::vector<Card>& cards) {
  std::size_t next = internal;
  for (const Card& card : cards) {
    for (int channel = 1; channel <= ChannelsOf(card, kind); ++channel) {
      if (next == map.entries.size()) return;
      map.entries[next++] = card.address * kPerAddress + channel;
      map.used = static_cast<int>(next);
    }
  }
}

/// A bit for each card that has channels of this kind.
int AddressesWith(const std::vector<Card>& cards, Kind kind) {
  int mask = 0;
  for (const Card& card : cards) {
    if (ChannelsOf(card, kind) > 0) mask |= 1 << (card.address - 1);
  }
  return mask;
}

void AddFurtherCards(std::vector<Card>& cards) {
  for (int address = 1; address <= kMaxCards + kBeyondAddresses; ++address) {
    const auto place = std::find_if(cards.begin(), cards.end(),
                                    [=](const Card& card) { return card.address >= address; });
    if (place != cards.end() && place->address == address) continue;
    cards.insert(place, {address, kFurtherCard.type, kFurtherCard.subtype});
  }
}

template <Kind kind>
bool HasMap(const Station& station) {
  return station.ioMaps && station.ioMaps->maps[kind].exists;
}

bool HasCardBus(const Station& station) {
  return station.ioMaps.has_value();
}

template <Kind kind>
Values ReadUsed(Station& station, const Values&) {
  return {static_cast<double>(station.ioMaps->maps[kind].used)};
}

template <Kind kind>
void WriteUsed(Station& station, const WriteRequest& request) {
  IoMap& map = station.ioMaps->maps[kind];
  map.used = WrittenNumber(request, 0, static_cast<int>(map.entries.size()), 1);
}

/// A text, for channel 10 is "3.10" and no "3.1".
Value EntryValue(int entry) {
  if (entry == 0) return 0.0;
  const int channel = entry % kPerAddress;
  return std::to_string(entry / kPerAddress) + (channel < 10 ? ".0" : ".") +
         std::to_string(channel);
}

int PlaceIn(const std::vector<int>& entries, const Values& arguments) {
  return IntegerArgument(arguments, 0, 1, static_cast<int>(entries.size())) - 1;
}

template <Kind kind>
Values ReadMap(Station& station, const Values& arguments) {
  const std::vector<int>& entries = station.ioMaps->maps[kind].entries;
  if (!AskForAll(arguments)) return {EntryValue(entries[PlaceIn(entries, arguments)])};
  Values values;
  for (const int entry : entries) values.push_back(EntryValue(entry));
  return values;
}

int EntryArgument(const Values& values, Kind kind) {
  const auto number = ParseNumber(values.empty() ? "" : FormatValue(values.front()));
  const double entry = number.value_or(-1) * kPerAddress;
  const double whole = std::round(entry);
  constexpr double kRounding = 1e-6;
  if (!(std::abs(entry - whole) < kRounding) || whole < 0 ||
      whole >= (kMaxCards + 1) * kPerAddress) {
    throw Fault{"no such channel"};
  }
  const int result = static_cast<int>(whole);
  const int channel = result % kPerAddress;
  const bool fits = result >= kPerAddress && channel >= 1 && channel <= kMaxChannel[kind];
  if (result != 0 && !fits) throw Fault{"no such channel"};
  return result;
}

template <Kind kind>
void WriteMap(Station& station, const WriteRequest& request) {
  std::vector<int>& entries = station.ioMaps->maps[kind].entries;
  const int entry = EntryArgument(request.values, kind);
  if (request.all) {
    std::fill(entries.begin(), entries.end(), entry);
  } else {
    entries[PlaceIn(entries, request.arguments)] = entry;
  }
}

/// A number of one card by its address, 0 where there is none, or a line for each card.
Values ReadCards(const Station& station, const Values& arguments, std::string_view name,
                 int Card::*number) {
  const bool all = AskForAll(arguments);
  const int address = all ? 0 : IntegerArgument(arguments, 0, 1, kMaxCards + kBeyondAddresses);
  Values lines;
  for (const Card& card : station.ioMaps->cards) {
    if (all) {
      lines.emplace_back(std::string(name) + " " + std::to_string(card.address) + "=" +
                         std::to_string(card.*number));
    } else if (card.address == address) {
      return {static_cast<double>(card.*number)};
    }
  }
  return all ? lines : Values{0.0};
}

Values ReadCardTypes(Station& station, const Values& arguments) {
  return ReadCards(station, arguments, "DevModID", &Card::type);
}

Values ReadCardSubtypes(Station& station, const Values& arguments) {
  return ReadCards(station, arguments, "DevSubType", &Card::subtype);
}

template <int IoMaps::*mask>
Values ReadMask(Station& station, const Values&) {
  return {static_cast<double>((*station.ioMaps).*mask)};
}

template <int IoMaps::*mask>
void WriteMask(Station& station, const WriteRequest& request) {
  (*station.ioMaps).*mask = WrittenNumber(request, 0, (1 << kMaxCards) - 1, 1);
}

constexpr Variable kVariables[] = {
    {"anamapmax", HasMap<IoMaps::kAnalogue>, ReadUsed<IoMaps::kAnalogue>,
     WriteUsed<IoMaps::kAnalogue>},
    {"reginpmapmax", HasMap<IoMaps::kInputs>, ReadUsed<IoMaps::kInputs>,
     WriteUsed<IoMaps::kInputs>},
    {"regrelmapmax", HasMap<IoMaps::kRelays>, ReadUsed<IoMaps::kRelays>,
     WriteUsed<IoMaps::kRelays>},
    {"regledmapmax", HasMap<IoMaps::kLeds>, ReadUsed<IoMaps::kLeds>, WriteUsed<IoMaps::kLeds>},
    {"anamap", HasMap<IoMaps::kAnalogue>, ReadMap<IoMaps::kAnalogue>, WriteMap<IoMaps::kAnalogue>},
    {"reginpmap", HasMap<IoMaps::kInputs>, ReadMap<IoMaps::kInputs>, WriteMap<IoMaps::kInputs>},
    {"regrelmap", HasMap<IoMaps::kRelays>, ReadMap<IoMaps::kRelays>, WriteMap<IoMaps::kRelays>},
    {"regledmap", HasMap<IoMaps::kLeds>, ReadMap<IoMaps::kLeds>, WriteMap<IoMaps::kLeds>},
    {"devmodid", HasCardBus, ReadCardTypes, nullptr},
    {"devsubtype", HasCardBus, ReadCardSubtypes, nullptr},
    {"devrel2map", HasCardBus, ReadMask<&IoMaps::mappedRelays>, WriteMask<&IoMaps::mappedRelays>},
    {"devbimd", HasCardBus, ReadMask<&IoMaps::bistableInputs>, WriteMask<&IoMaps::bistableInputs>},
};

}  // namespace

std::optional<IoMaps> MakeIoMaps(std::string_view model, std::string_view firmware,
                                 std::span<const Card> cards, bool manyCards) {
  const auto* known = std::find_if(std::begin(kModels), std::end(kModels),
                                   [&](const ModelMaps& m) { return m.model == model; });
  if (known == std::end(kModels)) return std::nullopt;
  const double version = LeadingNumber(firmware);
  const auto step = std::count_if(std::begin(kFirmwareSteps), std::end(kFirmwareSteps),
                                  [&](double from) { return version >= from; });
  IoMaps result;
  result.cards.assign(cards.begin(), cards.end());
  if (manyCards) AddFurtherCards(result.cards);
  for (const Kind kind : {IoMaps::kAnalogue, IoMaps::kInputs, IoMaps::kRelays, IoMaps::kLeds}) {
    IoMap& map = result.maps[kind];
    const int internal = known->internal[kind], entries = known->entries[kind][step];
    map.exists = kind != IoMaps::kLeds || step > 0;
    map.entries.resize(entries > 0 ? entries : internal);
    MapCards(map, kind, internal, result.cards);
  }
  result.mappedRelays = AddressesWith(result.cards, IoMaps::kRelays);
  return result;
}

VariableTable IoMapVariables() {
  return kVariables;
}

}  // namespace ostrel::simulator
