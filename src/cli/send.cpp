#include <algorithm>
#include <string_view>

#include "app/settings_path.h"
#include "app/text_width.h"
#include "app/texts.h"
#include "cli/commands.h"
#include "cli/json.h"
#include "link/answers.h"

namespace ostrel {

namespace {

/// Whether a line says itself for whom it is: "B1:…", "all,…" or "all r…".
bool Addressed(std::string_view line) {
  const std::string start = LowerAscii(line.substr(0, 4));
  if (start == "all," || start == "all ") return true;
  const std::size_t colon = line.find(':');
  const auto plain = [](char letter) {
    return (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'Z') ||
           (letter >= 'a' && letter <= 'z');
  };
  return colon >= 1 && colon <= 4 && std::all_of(line.begin(), line.begin() + colon, plain);
}

}  // namespace

ExitStatus CliRun::Send(const std::vector<std::string>& lines) {
  if (!service_.ConnectionOpen()) return ExitStatus::kRefused;
  std::vector<std::string> all;
  if (lines.size() == 1 && lines.front() == "-") {
    for (std::string line; std::getline(ports_.in, line);) {
      if (line.ends_with('\r')) line.pop_back();
      all.push_back(line);
    }
  } else {
    all = lines;
  }
  ExitStatus status = ExitStatus::kDone;
  std::vector<std::string> json;
  for (const std::string& line : all) {
    const ExitStatus one = SendOne(Addressed(line) ? line : station_ + line, json);
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
  JsonObject entry;
  entry.Add("line", line).Add("answer", answer).Add("ok", ok);
  if (code != 0) {
    service_.Texts().Warn(code);
    entry.AddRaw("error", JsonObject().Add("number", code).Add("message", Text(code)).Text());
  } else if (!ok) {
    service_.Texts().Warn(text::kDeviceReplied, "\n" + line + "\n" + answer);
  } else if (!json_ && !answer.empty()) {
    ports_.out << Visible(answer) << '\n';
  }
  json.push_back(entry.Text());
  return ok ? ExitStatus::kDone : ExitStatus::kRefused;
}

}  // namespace ostrel
