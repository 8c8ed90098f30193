#include <CLI/CLI.hpp>
#include <utility>

#include "base/text.h"
#include "cli/own_commands.h"
#include "terminal/json.h"
#include "wire/answers.h"
#include "wire/line_rules.h"

namespace ostrel {

namespace {

class SendCommand : public Command {
 public:
  SendCommand() : Command("send", "Send lines and print the answers") {}

  void Declare(CLI::App& own) override {
    own.add_option("line", lines_,
                   "A line of the device language; \"-\" takes them from standard input. A line "
                   "with an address of its own is sent as it stands")
        ->required();
  }

  Ending Run(const Desk& desk, Terminal& terminal) override {
    const std::optional<Writing> station = desk.session.ToStation(terminal.Station());
    if (!station) return Ending::kFailed;
    bool ok = true;
    for (std::string line; Next(terminal.In(), line);) {
      ok = SendOne(desk, terminal, *station, line) && ok;
      // A link that failed fails for the rest as well.
      if (desk.session.ConnState() != LinkState::kChannel) break;
    }
    if (terminal.Json()) terminal.PrintJson(JsonList(json_));
    return ok ? Ending::kDone : Ending::kFailed;
  }

 private:
  /// The next line to send. From standard input each comes when the one before it is done: whoever
  /// writes them may wait for the answers.
  bool Next(std::istream& in, std::string& line) {
    if (lines_.size() != 1 || lines_.front() != "-") {
      if (next_ == lines_.size()) return false;
      line = lines_[next_++];
      return true;
    }
    if (!std::getline(in, line)) return false;
    if (line.ends_with('\r')) line.pop_back();
    return true;
  }

  bool SendOne(const Desk& desk, Terminal& terminal, const Writing& station,
               const std::string& given) {
    const std::string line = AddressOf(given).addressed ? given : station.Address() + given;
    const Answer answer = station.TryBare(line);
    const bool ok = station.Passes(answer, line);
    const std::string text = MaskedAnswer(answer.text, line);
    JsonObject entry;
    entry.Add("line", Masked(line)).Add("answer", text).Add("ok", ok);
    if (!answer.Ok()) {
      entry.AddRaw("error", JsonError(answer.error.code, desk.texts.Shown(answer.error)).Text());
    }
    json_.push_back(entry.Text());
    if (ok && !terminal.Json() && !text.empty()) {
      terminal.Out() << Visible(text) << '\n' << std::flush;
    }
    return ok;
  }

  std::vector<std::string> lines_;
  std::size_t next_ = 0;
  std::vector<std::string> json_;
};

}  // namespace

CommandList MakeSendCommands() {
  return ListOf(std::make_unique<SendCommand>());
}

}  // namespace ostrel
