#include "simulator/tap_changer.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "simulator/station.h"

namespace ostrel::simulator {

namespace {

constexpr int kThousand = 1000;
// In thousandths: how much likelier each position off the normal one makes the step back.
constexpr int kPullBack = 40;
// In thousandths: changes with the transformer switched off.
constexpr int kWithoutLoad = 15;

bool HasTapChanger(const Station& station) {
  return station.tapChanger.has_value();
}

/// The counters are unsigned, but a device prints them signed.
double AsPrinted(std::uint16_t counter) {
  return static_cast<std::int16_t>(counter);
}

/// "RegTAPSTAT# position" or "RegTAPSTAT# count position".
Values ReadCounters(Station& station, const Values& arguments) {
  const TapChanger& changer = *station.tapChanger;
  const int position =
      IntegerArgument(arguments, arguments.size() > 1 ? 1 : 0, changer.First(), changer.Last());
  const int count =
      arguments.size() > 1 ? IntegerArgument(arguments, 0, 1, changer.Last() - position + 1) : 1;
  Values values;
  for (int n = 0; n < count; ++n) values.emplace_back(AsPrinted(changer.CounterAt(position + n)));
  return values;
}

Values ReadTotal(Station& station, const Values&) {
  return {static_cast<double>(station.tapChanger->Total())};
}

Values ReadTotalUnderLoad(Station& station, const Values&) {
  return {static_cast<double>(station.tapChanger->TotalUnderLoad())};
}

void ClearCounters(Station& station, const WriteRequest& request) {
  if (!request.all) throw Fault{"all (*) is missing"};
  WrittenNumber(request.values, 0, 0, 1);
  station.tapChanger->ClearStatistics();
  station.Note(Event::kStatisticsCleared, 0);
}

constexpr Variable kVariables[] = {
    {"regtapstat", HasTapChanger, ReadCounters, nullptr},
    {"regtapsum", HasTapChanger, ReadTotal, nullptr},
    {"regtapsuml", HasTapChanger, ReadTotalUnderLoad, nullptr},
    {"regtapstatcl", HasTapChanger, nullptr, ClearCounters},
};

}  // namespace

TapChanger::TapChanger(const TapChangerData& data, int first, int last, Random random)
    : first_(first), counters_(last - first + 1) {
  // A walk that is pulled back to the normal position gives the bell shape that grids give.
  const int changes = data.changesSoFar + random.Below(data.changesSoFar / 10 + 1);
  int position = data.normal;
  for (int n = 0; n < changes; ++n) {
    const int upward = kThousand / 2 - kPullBack * (position - data.normal);
    int step = random.Below(kThousand) < upward ? 1 : -1;
    if (position + step > data.highest || position + step < data.lowest) step = -step;
    position += step;
    Count(position, random.Below(kThousand) >= kWithoutLoad);
  }
}

void TapChanger::Count(int position, bool underLoad) {
  std::uint16_t& counter = counters_[position - first_];
  if (counter == std::numeric_limits<std::uint16_t>::max()) return;
  ++counter;
  ++total_;
  if (underLoad) ++totalUnderLoad_;
}

void TapChanger::ClearStatistics() {
  std::fill(counters_.begin(), counters_.end(), std::uint16_t{0});
  total_ = totalUnderLoad_ = 0;
}

VariableTable TapVariables() {
  return kVariables;
}

}  // namespace ostrel::simulator
