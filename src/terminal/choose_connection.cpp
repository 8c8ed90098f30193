#include "terminal/choose_connection.h"

#include "base/number.h"
#include "base/text.h"
#include "base/texts.h"
#include "terminal/table.h"

namespace ostrel {

std::string ChooseInTerminal(const std::vector<Connection>& connections,
                             const std::string& preselected, const Messages& messages,
                             std::istream& in, std::ostream& err) {
  std::vector<std::vector<std::string>> rows = {{"", "", messages.Caption(text::kName),
                                                 messages.Caption(text::kKind),
                                                 messages.Caption(text::kTarget)}};
  for (const Connection& connection : connections) {
    const bool marked = SameText(connection.name, preselected);
    rows.push_back({marked ? "*" : " ", std::to_string(rows.size()), connection.name,
                    connection.kind, connection.Target()});
  }
  WriteTable(err, rows);
  for (std::string input;;) {
    err << messages.Caption(text::kChooseNumber) << std::flush;
    if (!std::getline(in, input)) return {};
    const std::string_view typed = Trim(input);
    if (typed.empty()) return {};
    const bool digits = typed.find_first_not_of("0123456789") == std::string_view::npos;
    const int number = digits ? ReadInteger(typed) : 0;
    if (number >= 1 && number <= std::ssize(connections)) {
      return connections[static_cast<std::size_t>(number - 1)].name;
    }
  }
}

}  // namespace ostrel
