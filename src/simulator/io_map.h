#pragma once

#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "simulator/variables.h"

namespace ostrel::simulator {

/// An extension card on a device's COM3.
struct Card {
  int address;  ///< as set with its switches, from 1
  int type;
  int subtype;  ///< 100 to 199: mapped by its own switches; bit 256: the form with LEDs
};

/// The highest address that a map can name.
inline constexpr int kMaxCards = 16;

/// What the entries of one map stand for. An entry says which channel of which card serves it.
struct IoMap {
  bool exists = false;
  int used = 0;              ///< internal channels and those of cards; 0 = there are no cards
  std::vector<int> entries;  ///< address * 100 + channel, 0 = not mapped
};

/// The maps from a regulator's inputs and outputs to channels of its cards.
struct IoMaps {
  enum Kind { kAnalogue, kInputs, kRelays, kLeds };

  std::array<IoMap, 4> maps;  ///< by Kind
  std::vector<Card> cards;
  /// A bit for each address from 1 on: relays that follow the map, inputs that are bistable.
  int mappedRelays = 0, bistableInputs = 0;
};

/// Maps in which the cards' channels follow the internal ones; nothing for models without maps.
/// With many cards, there is one at each free address and at two beyond the highest.
std::optional<IoMaps> MakeIoMaps(std::string_view model, std::string_view firmware,
                                 std::span<const Card> cards, bool manyCards);

/// The maps and the cards.
VariableTable IoMapVariables();

}  // namespace ostrel::simulator
