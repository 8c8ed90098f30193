#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

#include "simulator/bus.h"

namespace ostrel::simulator {

inline constexpr std::int64_t kMinute = 60'000;
inline const std::string kSilence = "(silence)";

struct Step {
  std::int64_t passed;  // ms before the line
  std::string line, answer;
};

/// Sends the lines to one bus.
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

}  // namespace ostrel::simulator
