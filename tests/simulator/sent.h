#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "simulator/faulty_line.h"

namespace ostrel::simulator {

/// What a line sends, with the ms of its first and last byte and the most bytes at once.
struct Sent {
  std::string bytes = {};
  std::int64_t first = -1, last = 0;
  std::size_t largest = 0;
};

/// Feeds the bytes at once and takes what is sent until nothing more is to come.
inline Sent SentFor(FaultyLine& line, const std::string& bytes) {
  for (const char byte : bytes) line.Feed(byte, 0);
  Sent sent;
  while (true) {
    const FaultyLine::Step step = line.Next(sent.last);
    if (step.kind == FaultyLine::Step::Kind::kNothing) return sent;
    sent.last += step.wait;
    if (sent.first < 0 && !step.bytes.empty()) sent.first = sent.last;
    sent.bytes += step.bytes;
    sent.largest = std::max(sent.largest, step.bytes.size());
  }
}

}  // namespace ostrel::simulator
