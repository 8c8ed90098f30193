#include <utility>

#include "app/text.h"
#include "app/texts.h"
#include "cli/commands.h"
#include "cli/json.h"
#include "link/answers.h"
#include "link/line_rules.h"

namespace ostrel {

ExitStatus CliRun::Send(const std::vector<std::string>& lines) {
  if (!service_.ConnectionOpen()) return ExitStatus::kRefused;
  const bool fromInput = lines.size() == 1 && lines.front() == "-";
  auto given = lines.begin();
  // Each line is sent as it comes: whoever writes them may wait for the answers.
  const auto next = [&](std::string& line) {
    if (!fromInput) {
      if (given == lines.end()) return false;
      line = *given++;
    } else {
      if (!std::getline(ports_.in, line)) return false;
      if (line.ends_with('\r')) line.pop_back();
    }
    return true;
  };
  ExitStatus status = ExitStatus::kDone;
  std::vector<std::string> json;
  for (std::string line; next(line);) {
    const ExitStatus one = SendOne(AddressOf(line).addressed ? line : station_ + line, json);
    if (one != ExitStatus::kDone) status = one;
    // A link that failed fails for the rest as well.
    if (service_.ServerLink().ConnState() != LinkState::kChannel) break;
  }
  if (json_) PrintJson(JsonList(json));
  return status;
}

ExitStatus CliRun::SendOne(const std::string& line, std::vector<std::string>& json) {
  Link& link = service_.ServerLink();
  std::string answer;
  const int code = link.CommandExchangeCode(link.CurrentChannel(), line, answer);
  const bool ok = code == 0 && !IsErrorAnswer(answer);
  answer = MaskedAnswer(std::move(answer), line);
  JsonObject entry;
  entry.Add("line", Masked(line)).Add("answer", answer).Add("ok", ok);
  if (code != 0) {
    const std::string detail = link.UnsentDetail(code);
    service_.Texts().Warn(code, detail);
    const std::string message = service_.Texts().Text(code) + detail;
    entry.AddRaw("error", JsonObject().Add("number", code).Add("message", message).Text());
  } else if (!ok) {
    service_.Texts().Warn(text::kDeviceReplied, "\n" + Masked(line) + "\n" + answer);
  } else if (!json_ && !answer.empty()) {
    ports_.out << Visible(answer) << '\n' << std::flush;
  }
  json.push_back(entry.Text());
  return ok ? ExitStatus::kDone : ExitStatus::kRefused;
}

}  // namespace ostrel
