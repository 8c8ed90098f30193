#pragma once

#include <span>
#include <string_view>

namespace ostrel::simulator {

class Machine;
struct Item;

/// Carries out one item.
using Run = void (*)(Machine&, const Item&);

/// What a line wants of a device, each with the one before it.
enum class Right { kNone, kRead, kWrite };

/// An operator or a listing command.
struct Word {
  std::string_view name;
  Run run;
  /// Words that span others: a mark for the block that begins here ('i' if, 'e' else, 'l' loop),
  /// and the marks of those that may end here.
  char opens = 0;
  std::string_view closes = {};
  bool takesArguments = false;
  Right right = Right::kRead;  ///< without which it is refused
};

using WordTable = std::span<const Word>;

/// Nothing when no word has this (lower-case) name.
const Word* FindWord(std::string_view name);

[[noreturn]] void ThrowUnknown(std::string_view name);

/// The items that are no words of their own but forms of writing.
void RunPush(Machine& machine, const Item& item);          ///< 12
void RunPrintText(Machine& machine, const Item& item);     ///< "text", !"text"
void RunPrintTop(Machine& machine, const Item& item);      ///< !
void RunReadAndPrint(Machine& machine, const Item& item);  ///< x#
void RunReadAndPush(Machine& machine, const Item& item);   ///< x-
void RunExists(Machine& machine, const Item& item);        ///< x?-
void RunWrite(Machine& machine, const Item& item);         ///< x=1
void RunUnknown(Machine& machine, const Item& item);

}  // namespace ostrel::simulator
