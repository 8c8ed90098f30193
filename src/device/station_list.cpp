#include "device/station_list.h"

#include <algorithm>
#include <utility>

#include "base/number.h"
#include "base/texts.h"
#include "wire/answers.h"

namespace ostrel {

namespace {

constexpr int kFullGrant = 5;

/// What reads over the bus is refused to these.
bool IsLimited(int level) {
  return level == 3 || level < 2;
}

/// The first row that fits; `otherwise` when none does.
template <typename Fits>
std::size_t FirstRow(const std::vector<Station>& rows, std::size_t otherwise, Fits fits) {
  const auto found = std::find_if(rows.begin(), rows.end(), fits);
  return found == rows.end() ? otherwise : static_cast<std::size_t>(found - rows.begin());
}

}  // namespace

StationList::StationList(Link& link, Commands& commands, Dialogs& dialogs, const Messages& messages,
                         RightsDisplay rights)
    : link_(link),
      commands_(commands),
      dialogs_(dialogs),
      messages_(messages),
      rights_(std::move(rights)) {}

bool StationList::Usable(const Error& error) {
  return !error || error.code == text::kStationsIncomplete || error.code == text::kDeviceReplied;
}

Answer StationList::Ask(const std::string& line) {
  return link_.CommandExchangeCode(link_.CurrentChannel(), line);
}

Error StationList::Fill(const std::string& wanted) {
  const BusyPointer busy(dialogs_);
  rows_.clear();
  preselected_ = 0;
  std::string current;
  bool limited = true;
  Error error = AskCurrent(current);
  if (!error) error = AskRights(limited);
  if (!error) error = AskStations(limited, current);
  preselected_ = FirstRow(rows_, 0, [](const Station& row) { return row.current; });
  preselected_ =
      FirstRow(rows_, preselected_, [&](const Station& row) { return row.address == wanted; });
  return error;
}

Error StationList::AskCurrent(std::string& address) {
  const Answer answer = Ask(std::string("AA:dirn_") + (link_.SecondGeneration() ? "" : "\r\n"));
  if (!answer.Ok()) return answer.error;
  if (answer.text.empty()) return {Code::kTimeout, {}};
  if (!IsErrorAnswer(answer.text)) address = AddressPart(answer.text);
  return {};
}

Error StationList::AskGrant(int& level) {
  const Answer answer = Ask(std::string("aa:").append(kGrantLine));
  // What is no number is level 0.
  if (answer.Ok()) level = ReadInteger(answer.text);
  return answer.error;
}

Error StationList::AskRights(bool& limited) {
  int level = 0;
  if (Error error = AskGrant(level)) return error;
  limited = IsLimited(level);
  if (level == kFullGrant) return {};
  if (level >= 3) {
    std::string direct;
    if (!commands_.DevQueryMsg(link_.CurrentChannel(), "aa:dirs-,!", direct)) {
      return Error::Told();
    }
    if (ReadInteger(direct) == 1) return {};
  }
  if (!rights_(level)) return Error::Told();
  // Whoever logged in meanwhile may see more.
  Error error = AskGrant(level);
  limited = IsLimited(level);
  return error;
}

Error StationList::AskStations(bool limited, const std::string& current) {
  const std::string asked = limited ? "AA:dirn_" : "all,station&#";
  Answer answer = Ask(asked + R"(,!+";", ver.+)");
  if (!answer.Ok()) return answer.error;
  if (IsErrorAnswer(answer.text)) return {text::kDeviceReplied, answer.text};
  return Take(std::move(answer.text), current);
}

Error StationList::Take(std::string answer, const std::string& current) {
  while (!answer.empty()) {
    Station station = StationFromLine(NextLine(answer));
    // Nothing can be sent to a row without an address.
    if (station.address.empty()) continue;
    if (rows_.size() == kMost) return {text::kStationsIncomplete, {}};
    station.current = !current.empty() && station.address == current;
    rows_.push_back(std::move(station));
  }
  return {};
}

Error StationList::FillShort(bool names, const std::string& wanted) {
  const BusyPointer busy(dialogs_);
  rows_.clear();
  preselected_ = 0;
  const std::string first = "!\"AA:" + messages_.Caption(text::kDirect) + "\"";
  Answer answer = Ask(first + (names ? ",dirn" : ",dir"));
  if (!answer.Ok()) {
    commands_.ServerErrorReport(answer.error);
    return Error::Told();
  }
  if (commands_.IsErrorAnswer(answer.text, true)) return Error::Told();
  Error error = Take(std::move(answer.text), {});
  preselected_ = FirstRow(rows_, 0, [&](const Station& row) { return row.KennName() == wanted; });
  return error;
}

std::optional<Error> StationList::ConnectionChange() {
  const Error error = link_.ConnectionSwitch();
  if (!error) return Fill({});
  if (error.code == text::kNoneRestored) return error;
  messages_.Warn(error);
  return std::nullopt;
}

}  // namespace ostrel
