#include "terminal/terminal.h"

#include <utility>

#include "terminal/json.h"
#include "terminal/table.h"

namespace ostrel {

Terminal::Terminal(const Streams& streams, const Messages& texts, Given given)
    : streams_(streams), texts_(texts), given_(std::move(given)) {}

void Terminal::PrintJson(std::string_view json) {
  streams_.out << json << '\n';
  printed_ = true;
}

void Terminal::PrintTable(const std::vector<std::vector<std::string>>& rows) {
  WriteTable(streams_.out, rows);
}

void Terminal::PrintList(const std::vector<std::vector<std::string>>& rows,
                         const std::vector<std::string>& json) {
  if (given_.json) {
    PrintJson(JsonList(json));
  } else {
    PrintTable(rows);
  }
}

void Terminal::PrintDone(std::string_view key) {
  if (given_.json) PrintJson(JsonObject().Add(key, true).Text());
}

Ending Terminal::Refuse(int id, std::string_view value) {
  texts_.WarnFilled(id, value);
  return Ending::kFailed;
}

Ending Terminal::RefuseUsage(int id, std::string_view value) {
  misused_ = true;
  return Refuse(id, value);
}

}  // namespace ostrel
