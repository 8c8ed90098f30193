#include "simulator/programs.h"

#include <algorithm>
#include <cmath>
#include <string_view>

#include "simulator/station.h"

namespace ostrel::simulator {

namespace {

constexpr std::size_t kMaxText = 120;
constexpr double kMaxNumber = 1e6;

enum List { kHProgram, kPProgram, kQProgram, kMenuName, kMenu, kLineName, kU, kI, kFactor, kUnit };

struct ListData {
  std::string_view name;  ///< as the listing writes it
  int entries;
  bool numbers;
  std::array<std::string_view, 3> first;
};
// By List.
constexpr ListData kLists[kProgramLists] = {
    {"Hlist",
     64,
     false,
     {"RegTAPSUM-,0,<,if,!\"Schaltungen: Z\xe4hler pr\xfc"
      "fen\",eif",
      "VER?-,if,VER- QOL,134,<,if,!\"QoL alt\",eif,eif", "station#,!+\" \",ver.+"}},
    {"PList", 64, false, {"RegTAPSUM#,RegTAPSUML#"}},
    {"QList", 64, false, {"1,4,fori,RegTAPSTAT# i,ni"}},
    {"menuappn", 32, false, {"Ger\xe4t", "Schaltungen", "Stationen"}},
    {"menuapp", 32, false, {"dirn_,ver.,sysSN#", "RegTAPSUM#", "dirn"}},
    {"LName", 16, false, {"Trafo 1", "Trafo 2"}},
    {"Urat", 16, true, {"110000", "20000"}},
    {"Irat", 16, true, {"210", "1155"}},
    {"KFaktor", 16, true, {"1100", "200"}},
    {"EUnit", 16, false, {"kV", "A", "MW"}},
};

bool HasPrograms(const Station& station) {
  return station.programs.has_value();
}

std::string_view FreeEntry(const ListData& data) {
  return data.numbers ? "0" : "";
}

int PlaceIn(const ListData& data, const Values& arguments) {
  return IntegerArgument(arguments, 0, 1, data.entries) - 1;
}

template <List list>
Values ReadList(Station& station, const Values& arguments) {
  const ListData& data = kLists[list];
  const std::vector<std::string>& entries = station.programs->lists[list];
  if (!AskForAll(arguments)) {
    const std::string& entry = entries[PlaceIn(data, arguments)];
    if (data.numbers) return {ParseNumber(entry).value_or(0)};
    return {entry};
  }
  Values lines;
  int index = 0;
  for (const std::string& entry : entries) {
    ++index;
    if (entry == FreeEntry(data)) continue;
    lines.emplace_back(std::string(data.name) + " " + std::to_string(index) + "=" +
                       (data.numbers ? entry : QuoteText(entry)));
  }
  return lines;
}

std::string NumberEntry(const Values& values) {
  const auto* number = std::get_if<double>(&values.front());
  if (!number || std::abs(*number) > kMaxNumber) throw Fault{"number out of range"};
  return FormatNumber(*number);
}

std::string TextEntry(const std::string& operand) {
  const auto text = ReadQuotedText(operand);
  if (!text) throw Fault{"no text between quotes"};
  if (text->size() > kMaxText) throw Fault{"text too long"};
  const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7f'; };
  if (std::any_of(text->begin(), text->end(), isControl)) throw Fault{"character not allowed"};
  return *text;
}

template <List list>
void WriteList(Station& station, const WriteRequest& request) {
  const ListData& data = kLists[list];
  std::vector<std::string>& entries = station.programs->lists[list];
  if (request.values.size() != 1) throw Fault{"one value expected"};
  // A text as it stands in the line, where quotes inside are doubled.
  const std::string entry =
      data.numbers ? NumberEntry(request.values) : TextEntry(request.valueTexts.front());
  if (request.all) {
    std::fill(entries.begin(), entries.end(), entry);
  } else {
    entries[PlaceIn(data, request.arguments)] = entry;
  }
}

constexpr Variable kVariables[] = {
    {"hlist", HasPrograms, ReadList<kHProgram>, WriteList<kHProgram>},
    {"plist", HasPrograms, ReadList<kPProgram>, WriteList<kPProgram>},
    {"qlist", HasPrograms, ReadList<kQProgram>, WriteList<kQProgram>},
    {"menuappn", HasPrograms, ReadList<kMenuName>, WriteList<kMenuName>},
    {"menuapp", HasPrograms, ReadList<kMenu>, WriteList<kMenu>},
    {"lname", HasPrograms, ReadList<kLineName>, WriteList<kLineName>},
    {"urat", HasPrograms, ReadList<kU>, WriteList<kU>},
    {"irat", HasPrograms, ReadList<kI>, WriteList<kI>},
    {"kfaktor", HasPrograms, ReadList<kFactor>, WriteList<kFactor>},
    {"eunit", HasPrograms, ReadList<kUnit>, WriteList<kUnit>},
};

}  // namespace

Programs MakePrograms() {
  Programs programs;
  for (std::size_t n = 0; n < kProgramLists; ++n) {
    const ListData& data = kLists[n];
    std::vector<std::string>& entries = programs.lists[n];
    entries.assign(data.entries, std::string(FreeEntry(data)));
    for (std::size_t entry = 0; entry < data.first.size(); ++entry) {
      if (!data.first[entry].empty()) entries[entry] = data.first[entry];
    }
  }
  return programs;
}

VariableTable ProgramVariables() {
  return kVariables;
}

}  // namespace ostrel::simulator
