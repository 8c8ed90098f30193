#include "cli/commands.h"
#include "terminal/json.h"

namespace ostrel {

ExitStatus CliRun::TextOf(int id) {
  if (json_) {
    PrintJson(JsonObject().Add("id", id).Add("text", service_.Texts().Text(id)).Text());
  } else {
    ports_.out << service_.Texts().Text(id) << '\n';
  }
  return ExitStatus::kDone;
}

}  // namespace ostrel
