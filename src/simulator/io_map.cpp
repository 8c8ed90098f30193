#include "simulator/io_map.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "simulator/station.h"

namespace ostrel::simulator {

namespace {

using Kind = IoMaps::Kind;

constexpr int kPerAddress = 100;
constexpr int kMaxChannel[] = {8, 16, 16, 16};  // of any card, by Kind
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

/// The channels of a card by its type and, for those with LEDs, its form.
struct CardChannels {
  int type;
  Kind kind;
  int channels;
};
constexpr CardChannels kCardChannels[] = {
    {10, IoMaps::kInputs, 16},  {11, IoMaps::kRelays, 8}, {12, IoMaps::kAnalogue, 4},
    {13, IoMaps::kAnalogue, 4}, {14, IoMaps::kInputs, 8}, {27, IoMaps::kRelays, 4},
};

bool IsSwitchMapped(const Card& card) {
  return card.subtype >= kSwitchMapped && card.subtype < 2 * kSwitchMapped;
}

int ChannelsOf(const Card& card, Kind kind) {
  if (IsSwitchMapped(card)) return 0;
  if ((card.subtype & kLedForm) != 0) return kind == IoMaps::kLeds ? kMaxChannel[kind] : 0;
  for (const CardChannels& known : kCardChannels) {
    if (known.type == card.type && known.kind == kind) return known.channels;
  }
  return 0;
}

void MapCards(IoMap& map, Kind kind, int internal, const std::vector<Card>& cards) {
  std::size_t next = internal;
  int address = 0;
  for (const Card& card : cards) {
    ++address;
    for (int channel = 1; channel <= ChannelsOf(card, kind); ++channel) {
      if (next < map.entries.size()) map.entries[next++] = address * kPerAddress + channel;
    }
  }
}

/// A bit for each card that has channels of this kind.
int AddressesWith(const std::vector<Card>& cards, Kind kind) {
  int mask = 0;
  for (std::size_t n = 0; n < cards.size(); ++n) {
    if (ChannelsOf(cards[n], kind) > 0) mask |= 1 << n;
  }
  return mask;
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
  const std::vector<Card>& cards = station.ioMaps->cards;
  if (!AskForAll(arguments)) {
    const std::size_t place = IntegerArgument(arguments, 0, 1, kMaxCards) - 1;
    return {place < cards.size() ? static_cast<double>(cards[place].*number) : 0.0};
  }
  Values lines;
  for (const Card& card : cards) {
    lines.emplace_back(std::string(name) + " " + std::to_string(lines.size() + 1) + "=" +
                       std::to_string(card.*number));
  }
  return lines;
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
                                 std::span<const Card> cards) {
  const auto* known = std::find_if(std::begin(kModels), std::end(kModels),
                                   [&](const ModelMaps& m) { return m.model == model; });
  if (known == std::end(kModels)) return std::nullopt;
  const double version = ParseNumber(firmware).value_or(0);
  const auto step = std::count_if(std::begin(kFirmwareSteps), std::end(kFirmwareSteps),
                                  [&](double from) { return version >= from; });
  IoMaps result;
  result.cards.assign(cards.begin(), cards.end());
  for (const Kind kind : {IoMaps::kAnalogue, IoMaps::kInputs, IoMaps::kRelays, IoMaps::kLeds}) {
    IoMap& map = result.maps[kind];
    const int internal = known->internal[kind], entries = known->entries[kind][step];
    map.exists = kind != IoMaps::kLeds || step > 0;
    map.entries.resize(entries > 0 ? entries : internal);
    MapCards(map, kind, internal, result.cards);
    const int all = static_cast<int>(map.entries.size());
    map.used = cards.empty() ? std::min(internal, all) : all;
  }
  result.mappedRelays = AddressesWith(result.cards, IoMaps::kRelays);
  return result;
}

VariableTable IoMapVariables() {
  return kVariables;
}

}  // namespace ostrel::simulator
