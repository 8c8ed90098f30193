#include "simulator/bootloader.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "simulator/station.h"
#include "simulator/value.h"

namespace ostrel::simulator {

namespace {

constexpr double kRestart = 0, kIntoBootloader = 0.9, kMasterReset = 590;
constexpr std::int64_t kRestartMs = 3'000, kMasterResetMs = 30'000;

using Pieces = std::vector<Portion>;

/// The devices that go into their bootloader when told to, with their first firmware that does.
struct Entering {
  std::string_view model, firmware;
};
constexpr Entering kEntering[] = {
    {"KT-X", "0"},   {"KT-XB", "0"},      {"LX-X", "0"},      {"KT-XW", "0"},
    {"KT-XWB", "0"}, {"KT-XF", "2.4.04"}, {"JS-X", "1.4.40"},
};

bool EntersBootloader(const Station& station) {
  const auto entering = std::find_if(std::begin(kEntering), std::end(kEntering),
                                     [&](const auto& e) { return e.model == station.data.model; });
  return station.IsConnected() && entering != std::end(kEntering) &&
         station.data.HasFirmware(entering->firmware);
}

/// What a device has in its RAM: not what it is, nor the time, nor the world around it.
void CopyMemory(const Station& from, Station& to) {
  to.access = from.access;
  to.time.zone = from.time.zone;
  to.tapChanger = from.tapChanger;
  to.eventLog = from.eventLog;
  to.coil = from.coil;
  to.ioMaps = from.ioMaps;
  to.programs = from.programs;
  to.files = from.files;
  // The regulator itself stands in the world: its tap changer does not leap.
  if (to.regulator) to.regulator->settings = from.regulator->settings;
}

void ResetToFactory(Station& station) {
  StationData data = station.data;
  data.access.users = AccessData{}.users;
  Station fresh(station.address, data, station.seed, station.startLocal);
  if (fresh.tapChanger) fresh.tapChanger->ClearStatistics();
  fresh.eventLog.Clear();
  CopyMemory(fresh, station);
  if (station.dataLog) station.dataLog->Clear();
}

void Restart(Station& station, std::int64_t milliseconds) {
  if (station.dataLog) station.dataLog->NotePowerDown(station.LocalMs());
  station.access.LogOut();
  if (station.regulator) station.regulator->Simulate(station, 0);
  if (station.coil) station.coil->simulating = 0;
  station.boot.inBootloader = false;
  station.boot.silentUntilMs = station.nowMs + milliseconds;
}

Pieces MasterReset(Station& station) {
  Restart(station, kMasterResetMs);
  ResetToFactory(station);
  return {{}};
}

void WriteReset(Station& station, const WriteRequest& request) {
  const bool plain = !request.all && request.arguments.empty() && request.values.size() == 1;
  const Value kind = plain ? request.values.front() : Value(-1.0);
  if (kind == Value(kMasterReset)) {
    MasterReset(station);
  } else if (kind == Value(kRestart)) {
    Restart(station, kRestartMs);
  } else if (kind == Value(kIntoBootloader) && EntersBootloader(station)) {
    StartBootloader(station);
  } else {
    throw Fault{"index out of range"};
  }
}

Pieces Version(Station& station) {
  const StationData& data = station.data;
  return {{std::string(data.model) + " Urlader V" + std::string(data.bootloader.version)}};
}

Pieces Backup(Station& station) {
  if (!station.data.bootloader.secondFlash) return {{"Error: no flash"}};
  Station copy = station;
  copy.boot = {};
  station.boot.backup = std::make_shared<const Station>(std::move(copy));
  return {{"Saving ", 200}, {"....", 1500}, {"o.", 800}, {"k.", 200}};
}

Pieces BackupTime(Station& station) {
  if (!station.data.bootloader.secondFlash) return {{"No 2nd flash"}};
  const auto& backup = station.boot.backup;
  return {{backup ? DateText(backup->LocalMs()) + " " + TimeText(backup->LocalMs()) : "---"}};
}

Pieces Restore(Station& station) {
  if (!station.data.bootloader.secondFlash) return {{"Error: no flash"}};
  if (!station.boot.backup) return {{"Error: no backup"}};
  CopyMemory(*station.boot.backup, station);
  return {{"o.k."}};
}

Pieces Reset(Station& station) {
  Restart(station, 0);
  return {{}};
}

struct Command {
  std::string_view name;  ///< in lower case
  Pieces (*run)(Station&);
};
constexpr Command kCommands[] = {
    {"ver", Version},        {"rambackup", Backup}, {"rambackuptime", BackupTime},
    {"ramrestore", Restore}, {"reset", Reset},      {"sysreset=590", MasterReset},
};

constexpr Variable kVariables[] = {{"sysreset", Always, nullptr, WriteReset}};

}  // namespace

void StartBootloader(Station& station) {
  Restart(station, 0);
  station.boot.inBootloader = true;
}

std::vector<Portion> BootloaderAnswer(Station& station, std::string_view line) {
  const std::string name = LowerCase(TrimBlanks(line));
  if (name.empty()) return {{}};
  for (const Command& command : kCommands) {
    if (command.name == name) return command.run(station);
  }
  return {{"Error: unknown command"}};
}

VariableTable ResetVariables() {
  return kVariables;
}

}  // namespace ostrel::simulator
