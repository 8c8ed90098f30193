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

Answer Stations::Ask(const std::string& line) {
  return link_.CommandExchangeCode(link_.CurrentChannel(), line);
}

Error Stations::StationCurrentGet(std::string& station, std::string& typeString) {
  Answer answer = Ask("aa:dirn_");
  if (!answer.Ok()) return answer.error;
  station = std::move(answer.text);
  const std::string address = AddressPart(station);
  if (station.find(':') == std::string::npos) return {text::kDeviceReplied, station};
  if (Trim(station) == address) {
    std::string name;
    if (commands_.DevQueryChecked(link_.CurrentChannel(), address + "station#", name)) {
      station = address + name;
    }
  }
  typeString = commands_.DevVersionGet(address);
  return {};
}

bool Stations::StationsListAll(std::vector<std::string>& list) {
  std::string answer;
  const std::string line = R"(all,station&#,!+";  ", ver.+)";
  if (!commands_.DevQueryMsg(link_.CurrentChannel(), line, answer)) return false;
  while (!answer.empty()) {
    const std::string popped = NextLine(answer);
    const std::string_view station = Trim(popped);
    if (!station.empty() && station.front() != '#') list.emplace_back(station);
  }
  return true;
}

Error Stations::VersionGet(const std::string& address, std::string& typeString,
                           std::string& firmware) {
  const Answer answer = Ask(address + "ver.");
  if (!answer.Ok()) return answer.error;
  if (IsErrorAnswer(answer.text)) return {text::kDeviceReplied, answer.text};
  typeString = TypeFromVerAnswer(answer.text);
  firmware = FirmwareFromVerAnswer(answer.text);
  return {};
}

Error Stations::NameGet(const std::string& address, std::string& kennName) {
  Answer answer = Ask(address + "dirn_");
  if (!answer.Ok()) return answer.error;
  if (IsErrorAnswer(answer.text) || AddressPart(answer.text).empty()) {
    return {text::kNoDeviceAnswers, answer.text};
  }
  kennName = std::move(answer.text);
  return {};
}

Error Stations::SerialGet(const std::string& address, std::string& serial) {
  const Answer answer = Ask(address + "sysSN#");
  serial = IsErrorAnswer(answer.text) ? std::string() : TrimAnswer(answer.text);
  return answer.error;
}

}  // namespace ostrel
