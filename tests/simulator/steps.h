#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "simulator/bus.h"
#include "simulator/faulty_line.h"

namespace ostrel::simulator {

inline constexpr std::int64_t kMinute = 60'000, kDay = 86'400'000;
inline const std::string kSilence = "(silence)", kEnd = "\r\n<\x1a";

struct Step {
  std::string line, answer;
  std::int64_t passed = 0;  // ms before the line
};

/// Sends the lines to one bus, in this order.
inline void ExpectAnswers(const std::vector<Step>& steps, std::size_t connected = 0) {
  std::int64_t now = 0;
  Bus bus({.clock = [&now] { return now; }, .connected = connected});
  for (const Step& step : steps) {
    now += step.passed;
    const auto pieces = bus.AnswerInPieces(step.line);
    std::string answer = pieces.empty() ? kSilence : "";
    for (const Portion& piece : pieces) answer += piece.bytes;
    EXPECT_EQ(answer, step.answer) << "line: " << step.line;
  }
}

inline std::string Times(int count, const std::string& text) {
  return count > 0 ? text + Times(count - 1, text) : "";
}

/// Of an answer.
inline std::vector<std::string> Lines(std::string answer) {
  std::vector<std::string> lines;
  for (answer += "\r\n"; answer.size() > 2; answer.erase(0, answer.find('\n') + 1)) {
    lines.push_back(answer.substr(0, answer.find('\r')));
  }
  return lines;
}

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
