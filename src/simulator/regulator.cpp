#include "simulator/regulator.h"

#include <algorithm>
#include <cstdlib>

#include "simulator/station.h"

namespace ostrel::simulator {

namespace {

constexpr std::int64_t kLongestGapSeconds = 86'400;
constexpr std::int64_t kNominalVoltage = 100'000;  // mV
// What one tap position changes the voltage by, in 1/100 000.
constexpr std::int64_t kTapStep = 1250;
constexpr std::int64_t kWhole = 100'000;
constexpr int kTapSeconds = 6;
// How far a voltage must come back before a limit counts as kept, in mV.
constexpr int kHysteresis = 500;
// In thousandths of the rated current: with less, a tap change counts as one without load.
constexpr int kUnderLoad = 50;

}  // namespace

Regulator::Regulator(const RegulatorModel& model, const TapChangerData& tapChanger,
                     const Grid& grid)
    : hasTapPosition_(model.tapPosition),
      tapChanger_(tapChanger),
      grid_(grid),
      limits_{Limit{Event::kOvervoltage, true, &RegulatorSettings::overvoltage},
              Limit{Event::kUndervoltage, false, &RegulatorSettings::undervoltage},
              Limit{Event::kInhibitHigh, true, &RegulatorSettings::inhibitHigh},
              Limit{Event::kInhibitLow, false, &RegulatorSettings::inhibitLow}} {
  settings.range = model.range;
  settings.currentRatio = model.currentRatio;
  // It has been regulating before: it begins where the voltage is nearest to the set point.
  const int deviation = grid_.At(0).deviation;
  const auto distance = [&](int position) {
    return std::abs(VoltageAt(position, deviation) - settings.setPoints[0]);
  };
  tap_ = tapChanger_.lowest;
  for (int position = tap_ + 1; position <= tapChanger_.highest; ++position) {
    if (distance(position) < distance(tap_)) tap_ = position;
  }
  Measure(0);
}

void Regulator::Live(Station& station, std::int64_t untilMs) {
  nextSecond_ = std::max(nextSecond_, untilMs / 1000 - kLongestGapSeconds);
  for (;; ++nextSecond_) {
    const std::int64_t at = nextSecond_ * 1000 + grid_.SampleMs(nextSecond_);
    if (at > untilMs) return;
    station.nowMs = at;
    Step(station, nextSecond_);
  }
}

void Regulator::SetAutomatic(Station& station, int on) {
  if (on != settings.automatic) station.Note(Event::kAutomatic, on);
  settings.automatic = on;
  outside_ = 0;
}

void Regulator::SelectSetPoint(Station& station, int index) {
  if (index != settings.activeSetPoint) station.Note(Event::kSetPoint, index);
  settings.activeSetPoint = index;
}

void Regulator::Tap(Station& station, int step) {
  if (settings.automatic != 0) throw Fault{"not in manual mode"};
  if (running_ > 0) throw Fault{"tap changer is running"};
  if (!MayTap(step)) throw Fault{"end position"};
  StartTap(station, step);
}

void Regulator::Simulate(Station& station, int on) {
  if (on == 0) SimulateTap(0);
  if ((on != 0) == simulating_) return;
  station.Note(Event::kSimulation, on);
  simulating_ = on != 0;
  BeginTapSimulation();
  outside_ = 0;
}

void Regulator::SimulateTap(int on) {
  if ((on != 0) == tapSimulationChosen_) return;
  tapSimulationChosen_ = on != 0;
  BeginTapSimulation();
}

/// Also where one ends: a simulated tap changer that is running never arrives.
void Regulator::BeginTapSimulation() {
  simulatedTap_ = tap_;
  if (stepsSimulated_) running_ = 0;
}

Measurements& Regulator::SimulatedInputs() {
  if (!simulating_) throw Fault{"not in simulation mode"};
  return inputs_;
}

void Regulator::SetSimulatedTap(int position) {
  if (!TapIsSimulated()) throw Fault{"not in simulation mode"};
  if (position < tapChanger_.lowest || position > tapChanger_.highest) {
    throw Fault{"value out of range"};
  }
  simulatedTap_ = position;
}

int Regulator::VoltageAt(int position, int deviation) const {
  const std::int64_t fromTap = kWhole + kTapStep * (position - tapChanger_.normal);
  return static_cast<int>(kNominalVoltage * (kWhole + deviation) / kWhole * fromTap / kWhole);
}

void Regulator::Step(Station& station, std::int64_t second) {
  if (running_ > 0 && --running_ == 0) FinishTap(station);
  if (!simulating_) Measure(second);
  WatchLimits(station);
  if (settings.automatic != 0) Regulate(station);
}

void Regulator::Measure(std::int64_t second) {
  const GridState state = grid_.At(second);
  inputs_.voltage = VoltageAt(tap_, state.deviation);
  inputs_.current = state.load;
  inputs_.angle = (state.angle + 5) / 10 * 100;  // as finely as it measures
  inputs_.circulating = state.circulating * settings.range;
}

void Regulator::FinishTap(Station& station) {
  if (stepsSimulated_) {
    simulatedTap_ = std::clamp(simulatedTap_ + step_, tapChanger_.lowest, tapChanger_.highest);
  } else {
    tap_ += step_;
    const bool underLoad = inputs_.current >= kUnderLoad;
    if (station.tapChanger) station.tapChanger->Count(tap_, underLoad);
  }
  if (hasTapPosition_) {
    station.Note(Event::kTapPosition, stepsSimulated_ ? simulatedTap_ : tap_);
  }
}

void Regulator::WatchLimits(Station& station) {
  for (Limit& limit : limits_) {
    const int above = inputs_.voltage - settings.*limit.value;
    const int beyond = limit.above ? above : -above;
    const bool passed = limit.passed ? beyond > -kHysteresis : beyond > 0;
    if (passed != limit.passed) station.Note(limit.event, passed ? 1 : 0);
    limit.passed = passed;
  }
}

void Regulator::Regulate(Station& station) {
  const std::int64_t setPoint = settings.setPoints[settings.activeSetPoint - 1];
  const std::int64_t deviation = inputs_.voltage - setPoint;
  const std::int64_t band = setPoint * settings.band / 10'000;
  const bool inhibited = limits_[kHighInhibit].passed || limits_[kLowInhibit].passed;
  if (running_ > 0 || inhibited || std::abs(deviation) <= band) {
    outside_ = 0;
    return;
  }
  const int side = deviation > 0 ? 1 : -1;
  outside_ = outside_ * side > 0 ? outside_ + side : side;
  const bool blocked = limits_[side > 0 ? kUnder : kOver].passed;
  if (std::abs(outside_) <= settings.delay || blocked || !MayTap(-side)) return;
  StartTap(station, -side);
  outside_ = 0;
}

bool Regulator::MayTap(int step) const {
  const int position = TapPosition() + step;
  return position >= tapChanger_.lowest && position <= tapChanger_.highest;
}

void Regulator::StartTap(Station& station, int step) {
  if (hasTapPosition_) station.Note(step > 0 ? Event::kUp : Event::kDown, 1);
  step_ = step;
  stepsSimulated_ = TapIsSimulated();
  running_ = kTapSeconds;
}

}  // namespace ostrel::simulator
