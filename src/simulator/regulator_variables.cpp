#include <cmath>

#include "simulator/regulator.h"
#include "simulator/station.h"

namespace ostrel::simulator {

namespace {

constexpr std::string_view kSimulationFirmware = "2.0";
// What "merkmal# simmode" answers: inputs and tap position can be simulated.
constexpr double kSimulationMode = 2;
constexpr int kLowestSetPoint = 60'000, kHighestSetPoint = 140'000;
constexpr int kLargestRatio = 1'000'000;
constexpr int kLargestVoltage = 200'000;
constexpr int kLargestCurrent = 10'000;
constexpr int kLargestAngle = 180'000;
constexpr int kMilli = 1000;

bool HasRegulator(const Station& station) {
  return station.regulator.has_value();
}

bool HasTapPosition(const Station& station) {
  return station.regulator && station.regulator->HasTapPosition();
}

bool HasCoil(const Station& station) {
  return station.coil.has_value();
}

bool HasSimulation(const Station& station) {
  return HasRegulator(station) || HasCoil(station);
}

bool HasSimulationMode(const Station& station) {
  return HasRegulator(station) && station.data.HasFirmware(kSimulationFirmware);
}

/// A scaled number, rounded to as many steps as a device shows.
Value Shown(int number, int scale, int shownSteps) {
  return std::round(static_cast<double>(number) * shownSteps / scale) / shownSteps;
}

template <int RegulatorSettings::*member, int scale = 1>
Values ReadSetting(Station& station, const Values&) {
  return {Shown(station.regulator->settings.*member, scale, scale)};
}

template <int RegulatorSettings::*member, int lowest, int highest, int scale = 1>
void WriteSetting(Station& station, const WriteRequest& request) {
  station.regulator->settings.*member = WrittenNumber(request, lowest, highest, scale);
}

void WriteRange(Station& station, const WriteRequest& request) {
  const int range = WrittenNumber(request, 1, 5, 1);
  if (range != 1 && range != 5) throw Fault{"value out of range"};
  station.regulator->settings.range = range;
}

void WriteAutomatic(Station& station, const WriteRequest& request) {
  station.regulator->SetAutomatic(station, WrittenNumber(request, 0, 1, 1));
}

void WriteActiveSetPoint(Station& station, const WriteRequest& request) {
  station.regulator->SelectSetPoint(station, WrittenNumber(request, 1, 4, 1));
}

Values ReadSetPoint(Station& station, const Values& arguments) {
  const auto& setPoints = station.regulator->settings.setPoints;
  if (!AskForAll(arguments)) {
    return {Shown(setPoints[IntegerArgument(arguments, 0, 1, 4) - 1], kMilli, 100)};
  }
  Values values;
  for (const int setPoint : setPoints) values.push_back(Shown(setPoint, kMilli, 100));
  return values;
}

void WriteSetPoint(Station& station, const WriteRequest& request) {
  auto& setPoints = station.regulator->settings.setPoints;
  const int index = request.all ? 1 : IntegerArgument(request.arguments, 0, 1, 4);
  const int written = WrittenNumber(request.values, kLowestSetPoint, kHighestSetPoint, kMilli);
  setPoints[index - 1] = written;
  if (request.all) setPoints.fill(written);
}

template <int Measurements::*member, int scale, int shownSteps>
Values ReadInput(Station& station, const Values&) {
  return {Shown(station.regulator->Inputs().*member, scale, shownSteps)};
}

template <int Measurements::*member, int lowest, int highest, int scale>
void WriteInput(Station& station, const WriteRequest& request) {
  int& input = station.regulator->SimulatedInputs().*member;
  input = WrittenNumber(request, lowest, highest, scale);
}

/// What is read and written is to be multiplied by the range.
void WriteCurrent(Station& station, const WriteRequest& request) {
  int& current = station.regulator->SimulatedInputs().current;
  current = WrittenNumber(request, 0, kLargestCurrent / station.regulator->settings.range, kMilli);
}

Values ReadTapPosition(Station& station, const Values&) {
  const Regulator& regulator = *station.regulator;
  const bool shown = regulator.settings.tapIndication != 0;
  return {shown ? static_cast<double>(regulator.TapPosition()) : 0.0};
}

void WriteTapPosition(Station& station, const WriteRequest& request) {
  station.regulator->SetSimulatedTap(WrittenNumber(request, -60, 60, 1));
}

template <int step>
void WriteTap(Station& station, const WriteRequest& request) {
  WrittenNumber(request, 1, 1, 1);
  station.regulator->Tap(station, step);
}

Values ReadSimulation(Station& station, const Values&) {
  const bool on = station.coil ? station.coil->simulating != 0 : station.regulator->Simulating();
  return {on ? 1.0 : 0.0};
}

void WriteSimulation(Station& station, const WriteRequest& request) {
  const int on = WrittenNumber(request, 0, 1, 1);
  if (station.coil) {
    station.coil->simulating = on;
  } else {
    station.regulator->Simulate(station, on);
  }
}

Values ReadTapSimulation(Station& station, const Values&) {
  return {station.regulator->TapSimulationChosen() ? 1.0 : 0.0};
}

void WriteTapSimulation(Station& station, const WriteRequest& request) {
  station.regulator->SimulateTap(WrittenNumber(request, 0, 1, 1));
}

Values ReadCoilAutomatic(Station& station, const Values&) {
  return {static_cast<double>(station.coil->automatic)};
}

void WriteCoilAutomatic(Station& station, const WriteRequest& request) {
  station.coil->automatic = WrittenNumber(request, 0, 1, 1);
}

Values ReadFeature(Station&, const Values& arguments) {
  if (arguments != Values{std::string("simmode")}) throw Fault{"index out of range"};
  return {kSimulationMode};
}

using Set = RegulatorSettings;
using In = Measurements;

constexpr Variable kVariables[] = {
    {"regauto", HasRegulator, ReadSetting<&Set::automatic>, WriteAutomatic},
    {"regsw", HasRegulator, ReadSetPoint, WriteSetPoint},
    {"regswi", HasRegulator, ReadSetting<&Set::activeSetPoint>, WriteActiveSetPoint},
    {"regknu", HasRegulator, ReadSetting<&Set::voltageRatio, 100>,
     WriteSetting<&Set::voltageRatio, 1, kLargestRatio, 100>},
    {"regkni", HasRegulator, ReadSetting<&Set::currentRatio, 100>,
     WriteSetting<&Set::currentRatio, 1, kLargestRatio, 100>},
    {"regibereich", HasRegulator, ReadSetting<&Set::range>, WriteRange},
    {"regband", HasRegulator, ReadSetting<&Set::band, 100>,
     WriteSetting<&Set::band, 10, 1000, 100>},
    {"regdelay", HasRegulator, ReadSetting<&Set::delay>, WriteSetting<&Set::delay, 1, 600>},
    {"reguhigh", HasRegulator, ReadSetting<&Set::overvoltage, kMilli>,
     WriteSetting<&Set::overvoltage, 0, kLargestVoltage, kMilli>},
    {"regulow", HasRegulator, ReadSetting<&Set::undervoltage, kMilli>,
     WriteSetting<&Set::undervoltage, 0, kLargestVoltage, kMilli>},
    {"reginhhigh", HasRegulator, ReadSetting<&Set::inhibitHigh, kMilli>,
     WriteSetting<&Set::inhibitHigh, 0, kLargestVoltage, kMilli>},
    {"reginhlow", HasRegulator, ReadSetting<&Set::inhibitLow, kMilli>,
     WriteSetting<&Set::inhibitLow, 0, kLargestVoltage, kMilli>},
    {"regtapup", HasRegulator, nullptr, WriteTap<1>},
    {"regtapdown", HasRegulator, nullptr, WriteTap<-1>},
    {"regun", HasRegulator, ReadInput<&In::voltage, kMilli, 100>,
     WriteInput<&In::voltage, 0, kLargestVoltage, kMilli>},
    {"regin", HasRegulator, ReadInput<&In::current, kMilli, 1000>, WriteCurrent},
    {"regphi", HasRegulator, ReadInput<&In::angle, kMilli, 1000>,
     WriteInput<&In::angle, -kLargestAngle, kLargestAngle, kMilli>},
    {"regikr", HasTapPosition, ReadInput<&In::circulating, kMilli, 1000>, nullptr},
    {"regstufe", HasTapPosition, ReadTapPosition, WriteTapPosition},
    {"regstuftyp", HasTapPosition, ReadSetting<&Set::tapIndication>,
     WriteSetting<&Set::tapIndication, 0, 3>},
    {"regsimul", HasSimulation, ReadSimulation, WriteSimulation},
    {"regsimuls", HasRegulator, ReadTapSimulation, WriteTapSimulation},
    {"merkmal", HasSimulationMode, ReadFeature, nullptr},
    {"espauto", HasCoil, ReadCoilAutomatic, WriteCoilAutomatic},
};

}  // namespace

VariableTable RegulatorVariables() {
  return kVariables;
}

}  // namespace ostrel::simulator
