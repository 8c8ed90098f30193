#include "simulator/event_log.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "simulator/device_time.h"
#include "simulator/machine.h"
#include "simulator/station.h"

namespace ostrel::simulator {

namespace {

// The first firmware with a log, and the first ones that are asked for it in other ways.
constexpr std::string_view kFirstFirmware = "1.985";
constexpr std::string_view kOffsetFirmware = "2.11";
constexpr std::string_view kFileFirmware = "2.27";
constexpr std::string_view kLineFormat = "%.3w;%n";
constexpr int kNewestFileIndex = 65535;
constexpr int kMaxCount = 1000;

constexpr int kHistoryChanges = 120;
constexpr std::int64_t kTapMs = 6000;

/// What else happens in a station, the older part of a pair last; what lasts no time has none.
struct Incident {
  Event event;
  int then, before;
  std::int64_t lastsMs;
  bool ofTaps = false;
  std::string_view more = {};
};
constexpr Incident kIncidents[] = {
    {Event::kUndervoltage, 0, 1, 41'300},
    {Event::kOvervoltage, 0, 1, 18'450},
    {Event::kInhibitLow, 0, 1, 9'070},
    {Event::kAutomatic, 1, 0, 1'260'500},
    {Event::kSetPoint, 1, 2, 28'800'000},
    {Event::kRemote, 1, 0, 600'250},
    {Event::kSimulation, 0, 1, 432'100},
    {Event::kPanelLogin, 0, 1, 300'000, false, ";5"},
    {Event::kOvercurrent, 0, 1, 3'900},
    {Event::kInhibitHigh, 0, 1, 2'700},
    {Event::kFastUp, 0, 1, 12'000, true},
    {Event::kFastDown, 0, 1, 12'400, true},
    {Event::kTapError, 0, 1, 95'020, true, ";6;MOT"},
    {Event::kTapChangerError, 0, 1, 61'300, true},
    {Event::kStatus, 0, 1, 60'700},
    {Event::kUnnamed, 0, 0, 0},
    {Event::kGridBreakdown, 0, 1, 5'100},
    {Event::kHunting, 0, 1, 900'400},
    {Event::kBusError, 0, 1, 15'600, false, ";2;COM2"},
    {Event::kRecordsCleared, 0, 0, 0},
    {Event::kLaterFirmware, 0, 1, 2'000},
    {Event::kBeyondTable, 7, 7, 0, false, ";1"},
};
// So that each comes at least once in a history.
constexpr int kIncidentEvery = 4;
static_assert(kHistoryChanges / kIncidentEvery >= std::ssize(kIncidents));

bool HasEventLog(const Station& station) {
  return station.regulator && station.data.HasFirmware(kFirstFirmware);
}

/// "20260105;08:00:00;.5;23;1"
std::string Line(const LogEntry& entry) {
  const LocalMoment at = SplitLocal(entry.localMs);
  std::string fraction = Padded(at.millisecond, 3);
  while (fraction.size() > 1 && fraction.back() == '0') fraction.pop_back();
  return Padded(at.year, 4) + Padded(at.month, 2) + Padded(at.day, 2) + ";" + Padded(at.hour, 2) +
         ":" + Padded(at.minute, 2) + ":" + Padded(at.second, 2) + ";." + fraction + ";" +
         std::to_string(static_cast<int>(entry.event)) + ";" + std::to_string(entry.value) +
         std::string(entry.more);
}

/// The offset counts from the newest entry, which is 0.
void PrintEntries(Machine& machine, const Item& item, int offset, int count) {
  const auto& entries = machine.Device().eventLog.Entries();
  const std::size_t first = std::min<std::size_t>(offset, entries.size());
  const std::size_t last = std::min<std::size_t>(first + count, entries.size());
  for (std::size_t n = first; n < last; ++n) {
    machine.PrintResult(Line(entries[n]), n == first && item.joined);
  }
}

/// "FL@ LOGI#WI 65535 16": back from an index, the newest entry having the highest.
void RunReadFile(Machine& machine, const Item& item) {
  const Station& station = machine.Device();
  if (!HasEventLog(station) || !station.data.HasFirmware(kFileFirmware)) ThrowUnknown(item.name);
  const Values arguments = machine.Evaluate(item.arguments);
  if (arguments.size() != 3 || arguments.front() != Value("logi#wi")) {
    throw Fault{"index out of range"};
  }
  const int index = IntegerArgument(arguments, 1, 0, kNewestFileIndex);
  PrintEntries(machine, item, kNewestFileIndex - index,
               IntegerArgument(arguments, 2, 1, kMaxCount));
}

/// The two whole numbers of "1..16", of which the second is not smaller.
std::pair<int, int> RangeArgument(const Values& arguments, std::size_t place) {
  const auto* text =
      place < arguments.size() ? std::get_if<std::string>(&arguments[place]) : nullptr;
  const std::size_t dots = text ? text->find("..") : std::string::npos;
  if (dots == std::string::npos) throw Fault{"index out of range"};
  const auto bound = [](std::string_view part, int lowest, int highest) {
    const auto number = ParseNumber(part);
    return IntegerArgument(number ? Values{*number} : Values{}, 0, lowest, highest);
  };
  const std::string_view range = *text;
  const int first = bound(range.substr(0, dots), 1, kNewestFileIndex);
  return {first, bound(range.substr(dots + 2), first, first + kMaxCount - 1)};
}

/// 'eventlog/^^%. "%.3w;%n" 1..16 32': lines of a range, behind an offset where the firmware knows
/// one.
void RunReadLines(Machine& machine, const Item& item) {
  const Station& station = machine.Device();
  const bool known = HasEventLog(station) && !station.data.HasFirmware(kFileFirmware);
  if (!known) ThrowUnknown("eventlog");
  const bool hasOffset = station.data.HasFirmware(kOffsetFirmware);
  const Values arguments = machine.Evaluate(item.arguments);
  if (arguments.size() != (hasOffset ? 3u : 2u)) throw Fault{"index out of range"};
  if (arguments.front() != Value(std::string(kLineFormat))) throw Fault{"format not known"};
  const auto [first, last] = RangeArgument(arguments, 1);
  const int offset = hasOffset ? IntegerArgument(arguments, 2, 0, kNewestFileIndex) : 0;
  PrintEntries(machine, item, offset + first - 1, last - first + 1);
}

void Clear(Station& station, const WriteRequest& request) {
  WrittenNumber(request, 0, 0, 1);
  station.eventLog.Clear();
  station.Note(Event::kLogCleared, 0);
}

constexpr Word kWords[] = {
    {"fl@", RunReadFile, 0, {}, true},
    {"eventlog/^^%.", RunReadLines, 0, {}, true},
};

constexpr Variable kVariables[] = {
    {"eventlog", HasEventLog, nullptr, Clear},
};

}  // namespace

void EventLog::Add(std::int64_t localMs, Event event, int value) {
  entries_.push_front({localMs, event, value, {}});
  if (entries_.size() > kMaxEntries) entries_.pop_back();
}

void EventLog::AddHistory(std::int64_t localMs, const TapChangerData& changer,
                          std::optional<int> position, Random random) {
  // Back from now, so that the tap changes end at the position where it is.
  std::int64_t at = localMs;
  const auto before = [&](std::int64_t gapMs, Event event, int value, std::string_view more = {}) {
    at -= gapMs;
    entries_.push_back({at, event, value, more});
  };
  std::size_t next = random.Below(static_cast<int>(std::size(kIncidents)));
  for (int n = 0; n < kHistoryChanges; ++n) {
    const std::int64_t pause = 60'000 + random.Below(6'000'000);
    const Incident& incident = kIncidents[next];
    if (n % kIncidentEvery == 0) next = (next + 1) % std::size(kIncidents);
    if (n % kIncidentEvery == 0 && (position || !incident.ofTaps)) {
      before(pause, incident.event, incident.then, incident.more);
      const std::int64_t lasted = incident.lastsMs + random.Below(900);
      if (incident.lastsMs > 0) before(lasted, incident.event, incident.before, incident.more);
    }
    if (!position) continue;
    const int away = *position - changer.normal;
    bool up = random.Below(10) < 5 + std::clamp(away * 2, -4, 4);
    if (*position == changer.highest || *position == changer.lowest) {
      up = *position != changer.lowest;
    }
    before(pause, Event::kTapPosition, *position);
    before(kTapMs + random.Below(900), up ? Event::kUp : Event::kDown, 1);
    *position += up ? -1 : 1;
  }
}

WordTable EventLogWords() {
  return kWords;
}

VariableTable EventLogVariables() {
  return kVariables;
}

}  // namespace ostrel::simulator
