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

void StationList::Tell(int code) const {
  messages_.Warn(code, code == text::kDeviceReplied ? "\n" + reply_ : std::string());
}

bool StationList::Usable(int code) {
  return code == 0 || code == text::kStationsIncomplete || code == text::kDeviceReplied;
}

int StationList::Ask(const std::string& line, std::string& answer) {
  return link_.CommandExchangeCode(link_.CurrentChannel(), line, answer);
}

int StationList::Fill(const std::string& wanted) {
  const BusyPointer busy(dialogs_);
  rows_.clear();
  preselected_ = 0;
  std::string current;
  bool limited = true;
  int code = AskCurrent(current);
  if (code == 0) code = AskRights(limited);
  if (code == 0) code = AskStations(limited, current);
  preselected_ = FirstRow(rows_, 0, [](const Station& row) { return row.current; });
  preselected_ =
      FirstRow(rows_, preselected_, [&](const Station& row) { return row.address == wanted; });
  return code;
}

int StationList::AskCurrent(std::string& address) {
  std::string answer;
  const std::string line = std::string("AA:dirn_") + (link_.SecondGeneration() ? "" : "\r\n");
  const int code = Ask(line, answer);
  if (code == 0 && !IsErrorAnswer(answer)) address = AddressPart(answer);
  return code == 0 && answer.empty() ? code::kTimeout : code;
}

int StationList::AskGrant(int& level) {
  const int code = GrantGet(link_, "aa:", level);
  // What is no number is level 0.
  return code == text::kDeviceReplied ? 0 : code;
}

int StationList::AskRights(bool& limited) {
  int level = 0;
  if (const int code = AskGrant(level); code != 0) return code;
  limited = IsLimited(level);
  if (level == kFullGrant) return 0;
  if (level >= 3) {
    std::string direct;
    if (!commands_.DevQueryMsg(link_.CurrentChannel(), "aa:dirs-,!", direct)) return kEnded;
    if (ReadInteger(direct) == 1) return 0;
  }
  if (!rights_(level)) return kEnded;
  // Whoever logged in meanwhile may see more.
  const int code = AskGrant(level);
  limited = IsLimited(level);
  return code;
}

int StationList::AskStations(bool limited, const std::string& current) {
  std::string answer;
  const std::string asked = limited ? "AA:dirn_" : "all,station&#";
  if (const int code = Ask(asked + R"(,!+";", ver.+)", answer); code != 0) return code;
  if (IsErrorAnswer(answer)) {
    reply_ = answer;
    return text::kDeviceReplied;
  }
  return Take(std::move(answer), current);
}

int StationList::Take(std::string answer, const std::string& current) {
  while (!answer.empty()) {
    Station station = StationFromLine(NextLine(answer));
    // Nothing can be sent to a row without an address.
    if (station.address.empty()) continue;
    if (rows_.size() == kMost) return text::kStationsIncomplete;
    station.current = !current.empty() && station.address == current;
    rows_.push_back(std::move(station));
  }
  return 0;
}

int StationList::FillShort(bool names, const std::string& wanted) {
  const BusyPointer busy(dialogs_);
  rows_.clear();
  preselected_ = 0;
  std::string answer;
  const std::string first = "!\"AA:" + messages_.Caption(text::kDirect) + "\"";
  int code = Ask(first + (names ? ",dirn" : ",dir"), answer);
  if (code != 0) {
    link_.ServerErrorReport({kObjectErrorBase + code, {}}, false);
    return kEnded;
  }
  if (commands_.IsErrorAnswer(answer, true)) return kEnded;
  code = Take(std::move(answer), {});
  preselected_ = FirstRow(rows_, 0, [&](const Station& row) { return row.KennName() == wanted; });
  return code;
}

int StationList::ConnectionChange() {
  const int code = link_.ConnectionSwitch();
  if (code == 0) return Fill({});
  if (code == text::kNoneRestored) return code;
  const ServerError& error = link_.LastError();
  if (code != Link::kNoneChosen) {
    messages_.Warn(code, error.Code() == code ? error.Detail() : std::string());
  }
  return kUnchanged;
}

}  // namespace ostrel
