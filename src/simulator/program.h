#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/value.h"
#include "simulator/words.h"

namespace ostrel::simulator {

/// The longest command line that a device takes, in characters.
inline constexpr std::size_t kMaxLine = 4096;

/// An argument or a value as it stands in the line.
struct Operand {
  enum class Kind { kLiteral, kLoopIndex, kTopOfStack };
  Kind kind = Kind::kLiteral;
  Value literal;
  std::string text;  ///< as it stands in the line
};

/// One step of a command line.
struct Item {
  Run run = nullptr;
  std::string name;                ///< of the word or variable, in lower case; for faults as well
  Value literal;                   ///< what is pushed, or the text to print
  std::vector<Operand> arguments;  ///< between the name and "="
  std::vector<Operand> values;     ///< behind "="
  bool joined = false;             ///< prints behind the line before instead of on a new one
  bool all = false;                ///< a write to all elements
  const Word* word = nullptr;      ///< set for words
  std::size_t jump = 0;            ///< of words that open or close a block: where it goes on
  std::size_t steps = 1;           ///< that it counts as; a long one takes longer
};

using Program = std::vector<Item>;

/// Takes an expression (a line without its address) apart and joins the ends of its blocks.
/// Throws Fault. Names of words and variables are looked up only when they are run, for the branch
/// that is not taken may name what a device lacks.
Program ParseProgram(std::string_view expression);

}  // namespace ostrel::simulator
