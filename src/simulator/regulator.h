#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "simulator/event_log.h"
#include "simulator/grid.h"
#include "simulator/tap_changer.h"
#include "simulator/variables.h"

namespace ostrel::simulator {

struct Station;

/// What the models that regulate a voltage differ in.
struct RegulatorModel {
  std::string_view model;
  bool tapPosition = true;  ///< it shows and logs it, and shows the circulating current
  int range = 1;            ///< rated current in A: 1 or 5
  int currentRatio = 0;     ///< of the current transformer, in 1/100
};

/// What a user sets. Voltages in mV on the secondary side, ratios in 1/100, flags 0 or 1.
struct RegulatorSettings {
  int automatic = 1;
  int voltageRatio = 20'000;
  int currentRatio = 60'000;
  int range = 1;              ///< 1 or 5 A
  int tapIndication = 1;      ///< 0 = the position is not wired to the device
  int activeSetPoint = 1;     ///< 1..4
  int band = 100;             ///< allowed deviation from the set point, in 1/10 000 of it
  int delay = 30;             ///< s out of the band until it taps
  int overvoltage = 106'000;  ///< above it, it does not tap higher
  int undervoltage = 94'000;  ///< below it, it does not tap lower
  int inhibitHigh = 120'000;  ///< above it, it does not tap at all
  int inhibitLow = 75'000;    ///< below it, neither
  std::array<int, 4> setPoints = {100'000, 102'000, 98'000, 105'000};
};

/// What a regulator measures on the secondary side, or is told in simulation mode.
struct Measurements {
  int voltage = 0;      ///< mV
  int current = 0;      ///< mA, with a range of 5 A divided by 5
  int angle = 0;        ///< 1/1000 degree
  int circulating = 0;  ///< mA
};

/// A voltage regulator between a grid and a tap changer. It samples once a second.
class Regulator {
 public:
  Regulator(const RegulatorModel& model, const TapChangerData& tapChanger, const Grid& grid);

  /// Lives until a simulated time. Of a gap longer than a day, only the last day.
  void Live(Station& station, std::int64_t untilMs);

  bool HasTapPosition() const { return hasTapPosition_; }
  /// As the device sees it; the simulated one when it is simulated.
  int TapPosition() const { return TapIsSimulated() ? simulatedTap_ : tap_; }
  const Measurements& Inputs() const { return inputs_; }

  /// Commands of a user; each throws Fault where it is not possible now.
  void SetAutomatic(Station& station, int on);
  void SelectSetPoint(Station& station, int index);
  void Tap(Station& station, int step);
  void Simulate(Station& station, int on);
  void SimulateTap(int on);
  /// The inputs and the tap position, in simulation mode only.
  Measurements& SimulatedInputs();
  void SetSimulatedTap(int position);

  bool Simulating() const { return simulating_; }
  bool TapSimulationChosen() const { return tapSimulationChosen_; }

  RegulatorSettings settings;

 private:
  /// A limit that is watched: noted when it is passed, and when that is over.
  struct Limit {
    Event event;
    bool above;
    int RegulatorSettings::*value;
    bool passed = false;
  };
  enum { kOver, kUnder, kHighInhibit, kLowInhibit };

  bool TapIsSimulated() const { return simulating_ && tapSimulationChosen_; }
  int VoltageAt(int position, int deviation) const;
  void Step(Station& station, std::int64_t second);
  void Measure(std::int64_t second);
  void BeginTapSimulation();
  void FinishTap(Station& station);
  void WatchLimits(Station& station);
  void Regulate(Station& station);
  bool MayTap(int step) const;
  void StartTap(Station& station, int step);

  bool hasTapPosition_;
  TapChangerData tapChanger_;
  Grid grid_;
  Measurements inputs_;
  std::array<Limit, 4> limits_;
  int tap_ = 0;
  int simulatedTap_ = 0;
  bool simulating_ = false;
  bool tapSimulationChosen_ = false;
  int running_ = 0;  ///< seconds until the tap changer arrives
  int step_ = 0;     ///< where it is going: 1 or -1
  bool stepsSimulated_ = false;
  int outside_ = 0;  ///< seconds out of the band; negative below it
  std::int64_t nextSecond_ = 0;
};

/// The controller of an earth-fault coil, as far as it is like a regulator. Flags 0 or 1.
struct CoilController {
  int automatic = 1;
  int simulating = 0;
};

/// The variables of regulators and coil controllers.
VariableTable RegulatorVariables();

}  // namespace ostrel::simulator
