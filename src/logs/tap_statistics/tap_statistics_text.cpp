#include "logs/tap_statistics/tap_statistics_text.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "base/text.h"
#include "base/texts.h"
#include "logs/tap_statistics/tap_statistics_texts.h"

namespace ostrel {

namespace {

std::string RightAligned(const std::string& text, std::size_t width) {
  const std::size_t count = CharCount(text);
  return count < width ? std::string(width - count, ' ') + text : text;
}

/// A total as a table shows it; `none` stands for one that was never read.
std::string Total(const std::optional<std::int32_t>& total, const char* none = "–") {
  return total ? std::to_string(*total) : none;
}

/// A bar of `length` eighths of a character.
std::string Bar(std::size_t eighths) {
  constexpr std::array<std::string_view, 8> kParts = {"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
  std::string bar;
  for (std::size_t full = 0; full < eighths / 8; ++full) bar += "█";
  return bar.append(kParts[eighths % 8]);
}

}  // namespace

BarChartData TapChart(const TapCounters& data, const Messages& messages) {
  return {.first = data.first,
          .counts = data.counters,
          .positionLabel = messages.Caption(text::kTapPosition),
          .countLabel = messages.Caption(text::kCounter)};
}

std::string TapTable(const TapCounters& data, const Messages& messages) {
  std::string table =
      messages.Caption(text::kTapPosition) + "\t" + messages.Caption(text::kCounter);
  for (std::size_t n = 0; n < data.counters.size(); ++n) {
    table += "\r\n" + std::to_string(data.first + static_cast<int>(n)) + "\t" +
             std::to_string(data.counters[n]);
  }
  table += "\r\n" + messages.Caption(text::kTapsTotal) + "\t" + Total(data.total);
  table += "\r\n" + messages.Caption(text::kTapsUnderLoad) + "\t" + Total(data.underLoad);
  return table + "\r\n";
}

std::string TapCsv(const TapCounters& data) {
  std::string csv = "position,count\n";
  for (std::size_t n = 0; n < data.counters.size(); ++n) {
    csv += std::to_string(data.first + static_cast<int>(n)) + "," +
           std::to_string(data.counters[n]) + "\n";
  }
  return csv + "total," + Total(data.total, "") + "\nunderLoad," + Total(data.underLoad, "") + "\n";
}

std::string TapTextChart(const TapCounters& data, const Messages& messages, std::size_t width) {
  const auto used = [](std::int32_t counter) { return counter != 0; };
  const auto begin = std::find_if(data.counters.begin(), data.counters.end(), used);
  const auto end = std::find_if(data.counters.rbegin(), data.counters.rend(), used).base();

  const std::string position = messages.Caption(text::kTapPosition);
  const std::string count = messages.Caption(text::kCounter);
  const std::size_t positionWidth = std::max<std::size_t>(CharCount(position), 3);
  const std::size_t countWidth = std::max<std::size_t>(CharCount(count), 5);
  const std::size_t taken = positionWidth + countWidth + 4;
  const std::size_t room = width > taken + 10 ? width - taken : 10;

  std::string chart =
      RightAligned(position, positionWidth) + "  " + RightAligned(count, countWidth) + "\n";
  const std::int32_t most = begin < end ? *std::max_element(begin, end) : 1;
  for (auto counter = begin; counter < end; ++counter) {
    const int at = data.first + static_cast<int>(counter - data.counters.begin());
    const std::size_t eighths =
        static_cast<std::size_t>(*counter) * room * 8 / static_cast<std::size_t>(most);
    const std::string bar = Bar(eighths);
    chart += RightAligned(std::to_string(at), positionWidth) + "  " +
             RightAligned(std::to_string(*counter), countWidth) + (bar.empty() ? "" : "  ") + bar +
             "\n";
  }
  chart += "\n" + messages.Caption(text::kTapsTotal) + ": " + Total(data.total) + "\n";
  return chart + messages.Caption(text::kTapsUnderLoad) + ": " + Total(data.underLoad) + "\n";
}

}  // namespace ostrel
