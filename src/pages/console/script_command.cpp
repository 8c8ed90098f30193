#include <CLI/CLI.hpp>

#include "base/number.h"
#include "base/text.h"
#include "base/texts.h"
#include "pages/console/console.h"
#include "pages/console/console_texts.h"
#include "pages/console/script.h"
#include "pages/console/script_file.h"
#include "terminal/command.h"
#include "terminal/json.h"
#include "wire/answers.h"
#include "wire/line_rules.h"

namespace ostrel {

namespace {

constexpr std::string_view kStandard = "-";

struct Rows {
  int first = 0, last = 0;
};

/// "N-M"; nothing for rows that no script has.
std::optional<Rows> RowsOf(const std::string& text) {
  const std::size_t dash = text.find('-');
  const bool digits = text.find_first_not_of("0123456789-") == std::string::npos;
  if (!digits || dash == std::string::npos || dash != text.rfind('-')) return std::nullopt;
  const Rows rows{ReadInteger(text.substr(0, dash)), ReadInteger(text.substr(dash + 1))};
  return rows.first >= 1 && rows.first <= rows.last ? std::optional(rows) : std::nullopt;
}

/// What is wrong with rows "N-M"; empty when nothing is.
std::string RowsProblem(const std::string& rows) {
  return RowsOf(rows) ? "" : "no rows N-M: \"" + rows + "\"";
}

/// A command that has a script to work on.
class ScriptCommand : public Command {
 public:
  using Command::Command;
  void Declare(CLI::App& own) override {
    own.add_option("file", file_, "The script; \"-\" is standard input")->required();
  }

 protected:
  /// The script; nothing after a failure, which is shown.
  std::optional<std::string> Script(Console& console, Terminal& terminal) const {
    if (file_ != kStandard) return console.Open(file_);
    std::istream& in = terminal.In();
    std::string bytes(kMostScriptBytes + 1, '\0');
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(in.gcount()));
    in.clear();  // a question may follow
    std::string text;
    ScriptForm form;
    const bool tooLarge = bytes.size() > kMostScriptBytes;
    if (!tooLarge && DecodeScript(bytes, text, form)) return text;
    terminal.Refuse(tooLarge ? text::kFileTooLarge : text::kFileNoText, file_);
    return std::nullopt;
  }

 private:
  std::string file_;
};

class CheckCommand : public ScriptCommand {
 public:
  CheckCommand() : ScriptCommand("script check", "List the lines that cannot be sent") {}

  Ending Run(const Desk& desk, Terminal& terminal) override {
    Console console(desk);
    const std::optional<std::string> script = Script(console, terminal);
    if (!script) return Ending::kFailed;
    const ScriptCheck check = CheckScript(*script);
    if (terminal.Json() && !check.tooManyLines) {
      std::vector<std::string> rows;
      for (const ScriptCheck::Fault& fault : check.faults) {
        JsonObject row;
        row.Add("row", fault.row);
        if (fault.length != 0) {
          row.Add("length", static_cast<std::int64_t>(fault.length));
        } else {
          row.Add("character", CharacterShown(fault.character));
        }
        rows.push_back(row.Text());
      }
      terminal.PrintJson(JsonList(rows));
    } else if (!terminal.Json()) {
      terminal.Out() << (check.Ok() ? terminal.Text(text::kNoErrors) + "\n"
                                    : Visible(check.List(desk.texts)));
    }
    if (check.Ok()) return Ending::kDone;
    desk.texts.Warn(check.tooManyLines ? text::kTooManyLines : text::kScriptErrors);
    return Ending::kFailed;
  }
};

class SendCommand : public ScriptCommand {
 public:
  SendCommand()
      : ScriptCommand("script send", "Send it up to the first failure, after a question") {}

  void Declare(CLI::App& own) override {
    ScriptCommand::Declare(own);
    CLI::Option* const parts[] = {
        own.add_option("--from", from_, "Only this row and those behind it"),
        own.add_option("--line", line_, "Only this row"),
        own.add_option("--lines", lines_, "Only the rows N-M")
            ->check(CLI::Validator(RowsProblem, "N-M")),
        own.add_option("--stations", stations_, "Addresses; the whole script to each in turn")
            ->delimiter(',')
            ->check(CLI::Validator(StationProblem, "ADDRESS"))};
    for (CLI::Option* const one : parts) {
      for (CLI::Option* const other : parts) {
        if (one != other) one->excludes(other);
      }
    }
    for (CLI::Option* const row : {parts[0], parts[1]}) row->check(CLI::Range(1, kMostScriptLines));
    own.add_option("--log", log_, "Also write what is printed behind the end of this file");
  }

  Ending Run(const Desk& desk, Terminal& terminal) override {
    Console console(desk);
    const std::optional<std::string> script = Script(console, terminal);
    if (!script) return Ending::kFailed;
    if (stations_.empty() && !desk.session.DeviceSelectByAddress(terminal.Station())) {
      return Ending::kFailed;
    }
    std::vector<std::string> json;
    console.Log().SetFile(log_);
    console.onPane = [&](const std::string& text) {
      if (!terminal.Json()) terminal.Out() << Visible(text) << std::flush;
    };
    console.onAnswered = [&](const SentLine& line) { json.push_back(ToJson(line, desk.texts)); };
    const Ending ending = Send(console, *script, desk);
    if (terminal.Json() && !json.empty()) terminal.PrintJson(JsonList(json));
    return ending;
  }

 private:
  static std::string ToJson(const SentLine& line, const Messages& texts) {
    JsonObject entry;
    entry.Add("row", line.row).Add("line", line.command);
    entry.Add("answer", line.answer).Add("ok", line.ok);
    if (line.error) {
      entry.AddRaw("error", JsonError(line.error.code, texts.Shown(line.error)).Text());
    }
    return entry.Text();
  }

  Ending Send(Console& console, const std::string& script, const Desk& desk) const {
    if (stations_.empty()) return console.Send(script, PartOf(script));
    return console.SendToStations(script, [&](const std::string&) {
      std::vector<std::string> addresses;
      std::string names;
      for (const std::string& station : stations_) {
        addresses.push_back(StationAddress(station).value_or(""));
        names += (names.empty() ? "" : ", ") + addresses.back();
      }
      const bool yes = desk.dialogs.AskYesNo(
          desk.texts.Filled(text::kSendToDevice, desk.texts.Caption(text::kRegLCommands), names));
      return yes ? addresses : std::vector<std::string>();
    });
  }

  ScriptPart PartOf(const std::string& script) const {
    using Mode = ScriptPart::Mode;
    const std::optional<Rows> rows = RowsOf(lines_);
    const int first = rows ? rows->first : line_.value_or(from_.value_or(1));
    ScriptPart part{.mode = line_   ? Mode::kCursorLine
                            : from_ ? Mode::kFromCursor
                                    : Mode::kAll,
                    .line = static_cast<std::size_t>(first) - 1,
                    .selection = {}};
    if (!rows) return part;
    part.mode = Mode::kFromCursor;
    std::string_view rest = SelectPart(script, part);
    part.mode = Mode::kSelection;
    for (int row = rows->first; row <= rows->last && !rest.empty(); ++row) {
      part.selection.append(PopLine(rest)).append("\r\n");
    }
    return part;
  }

  std::optional<int> from_, line_;     // rows, counted from 1
  std::string lines_;                  // "N-M"
  std::vector<std::string> stations_;  // addresses
  std::string log_;
};

class ReadCommand : public Command {
 public:
  ReadCommand() : Command("script read", "Read programs and menus, after a question") {}

  void Declare(CLI::App& own) override {
    own.add_option("-o,--output", output_, "Write the script to this file");
  }

  Ending Run(const Desk& desk, Terminal& terminal) override {
    if (!desk.session.DeviceSelectByAddress(terminal.Station())) return Ending::kFailed;
    std::string script;
    const Ending ending =
        Console(desk).ReadFromDevice([&](const std::string& text) { script = text; });
    if (ending != Ending::kDone) return ending;
    if (!output_.empty() && output_ != kStandard) {
      ScriptForm form;
      const FileOutcome outcome = WriteScript(output_, script, form);
      if (outcome.message != 0) return terminal.Refuse(outcome.message, outcome.detail);
      if (terminal.Json()) terminal.PrintJson(JsonObject().Add("file", output_).Text());
    } else if (terminal.Json()) {
      terminal.PrintJson(JsonObject().Add("script", script).Text());
    } else {
      terminal.Out() << Visible(script);
    }
    return Ending::kDone;
  }

 private:
  std::string output_;
};

}  // namespace

CommandList MakeConsoleCommands() {
  return ListOf(std::make_unique<CommandGroup>("script", "Scripts of device commands"),
                std::make_unique<CheckCommand>(), std::make_unique<SendCommand>(),
                std::make_unique<ReadCommand>());
}

}  // namespace ostrel
