#pragma once

#include <string>
#include <utility>

namespace ostrel {

/// What went wrong, or that nothing did: the number of its message, and what the one who met it
/// adds in its own words.
struct Error {
  int code = 0;         // 0 = nothing went wrong, unless it was told
  std::string detail;   // empty where there is nothing to add
  bool told = false;    // the user knows, or wished it so: nothing is left to show
  bool unsent = false;  // the line never went out

  explicit operator bool() const { return code != 0 || told; }
  static Error Told() { return {0, {}, true, false}; }
};

/// What came of asking something: an answer, or why there is none.
struct Answer {
  Error error;
  std::string text;

  bool Ok() const { return !error; }
};

/// How an operation ended. The terminal makes its exit status of it.
enum class Ending { kDone, kNotConfirmed, kFailed };

}  // namespace ostrel
