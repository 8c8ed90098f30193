#include "cli/commands.h"
#include "cli/json.h"

namespace ostrel {

ExitStatus CliRun::TextOf(int id) {
  if (json_) {
    PrintJson(JsonObject().Add("id", id).Add("text", Text(id)).Text());
  } else {
    ports_.out << Text(id) << '\n';
  }
  return ExitStatus::kDone;
}

}  // namespace ostrel
