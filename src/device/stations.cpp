#include "device/stations.h"

#include "base/text.h"
#include "base/texts.h"
#include "wire/answers.h"

namespace ostrel {

std::string Station::Firmware() const {
  return FirmwareFromVerAnswer(";" + version);
}

std::string Station::ListLine() const {
  return Fitted(KennName(), 12) + Fitted("(" + type + ")", 11) + version +
         (current ? "  (AA:)" : "");
}

Station StationFromLine(std::string line) {
  Station station;
  const std::string first = NextToken(line, ';');
  station.address = AddressPart(first);
  station.name = ValueAfter(first, ":");
  station.type = NextToken(line, ';');
  station.version = NextToken(line, ';');
  return station;
}

int Stations::Ask(const std::string& line, std::string& answer) {
  return link_.CommandExchangeCode(link_.CurrentChannel(), line, answer);
}

int Stations::StationCurrentGet(std::string& station, std::string& typeString) {
  if (const int code = Ask("aa:dirn_", station); code != 0) return code;
  const std::string address = AddressPart(station);
  if (station.find(':') == std::string::npos) return text::kDeviceReplied;
  if (Trim(station) == address) {
    std::string name;
    if (commands_.DevQueryChecked(link_.CurrentChannel(), address + "station#", name)) {
      station = address + name;
    }
  }
  typeString = commands_.DevVersionGet(address);
  return 0;
}

bool Stations::StationsListAll(std::vector<std::string>& list) {
  std::string answer;
  const std::string line = R"(all,station&#,!+";  ", ver.+)";
  if (!link_.CommandExchange(link_.CurrentChannel(), line, answer)) return false;
  while (!answer.empty()) {
    const std::string popped = NextLine(answer);
    const std::string_view station = Trim(popped);
    if (!station.empty() && station.front() != '#') list.emplace_back(station);
  }
  return true;
}

int Stations::VersionGet(const std::string& address, std::string& typeString,
                         std::string& firmware) {
  std::string answer;
  const int code = Ask(address + "ver.", answer);
  if (code != 0 || IsErrorAnswer(answer)) return code;
  typeString = TypeFromVerAnswer(answer);
  firmware = FirmwareFromVerAnswer(answer);
  return 0;
}

int Stations::NameGet(const std::string& address, std::string& kennName) {
  const int code = Ask(address + "dirn_", kennName);
  const bool named = !IsErrorAnswer(kennName) && !AddressPart(kennName).empty();
  return code != 0 || named ? code : text::kNoDeviceAnswers;
}

}  // namespace ostrel
