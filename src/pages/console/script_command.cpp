#include "pages/console/script.h"

#include "base/number.h"
#include "base/text.h"
#include "base/texts.h"
#include "cli/commands.h"
#include "pages/console/console_texts.h"
#include "pages/console/script_file.h"
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

ScriptPart PartOf(const GivenScript& given, const std::string& script) {
  using Mode = ScriptPart::Mode;
  const std::optional<Rows> rows = RowsOf(given.lines);
  const int first = rows ? rows->first : given.line.value_or(given.from.value_or(1));
  ScriptPart part{.mode = given.line   ? Mode::kCursorLine
                          : given.from ? Mode::kFromCursor
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

}  // namespace

std::string RowsProblem(const std::string& rows) {
  return RowsOf(rows) ? "" : "no rows N-M: \"" + rows + "\"";
}

std::optional<std::string> CliRun::ScriptText(const std::string& file) {
  if (file != kStandard) return service_.CommandConsole().Open(file);
  std::string bytes(kMostScriptBytes + 1, '\0');
  ports_.in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(ports_.in.gcount()));
  ports_.in.clear();  // a question may follow
  std::string text;
  ScriptForm form;
  const bool tooLarge = bytes.size() > kMostScriptBytes;
  if (!tooLarge && DecodeScript(bytes, text, form)) return text;
  service_.Texts().WarnFilled(tooLarge ? text::kFileTooLarge : text::kFileNoText, file);
  return std::nullopt;
}

ExitStatus CliRun::ScriptCheck(const std::string& file) {
  const std::optional<std::string> script = ScriptText(file);
  if (!script) return ExitStatus::kRefused;
  const ostrel::ScriptCheck check = CheckScript(*script);
  if (json_ && !check.tooManyLines) {
    std::vector<std::string> rows;
    for (const auto& line : check.tooLong) {
      const auto length = static_cast<std::int64_t>(line.length);
      rows.push_back(JsonObject().Add("row", line.row).Add("length", length).Text());
    }
    PrintJson(JsonList(rows));
  } else if (!json_) {
    ports_.out << (check.Ok() ? Text(text::kNoErrors) + "\n"
                              : Visible(check.List(service_.Texts())));
  }
  if (check.Ok()) return ExitStatus::kDone;
  service_.Texts().Warn(check.tooManyLines ? text::kTooManyLines : text::kScriptErrors);
  return ExitStatus::kRefused;
}

Console::Ending CliRun::SendScript(const std::string& script, const GivenScript& given) {
  Console& console = service_.CommandConsole();
  if (given.stations.empty()) return console.Send(script, PartOf(given, script));
  return console.SendToStations(script, [&](const std::string&) {
    std::vector<std::string> addresses;
    std::string names;
    for (const std::string& station : given.stations) {
      addresses.push_back(StationAddress(station).value_or(""));
      names += (names.empty() ? "" : ", ") + addresses.back();
    }
    const Messages& messages = service_.Texts();
    const bool yes = dialogs_.AskYesNo(
        messages.Filled(text::kSendToDevice, messages.Caption(text::kRegLCommands), names));
    return yes ? addresses : std::vector<std::string>();
  });
}

ExitStatus CliRun::ScriptSend(const GivenScript& given) {
  Console& console = service_.CommandConsole();
  const std::optional<std::string> script = ScriptText(given.file);
  if (!script) return ExitStatus::kRefused;
  if (given.stations.empty() && !service_.DeviceSelectByAddress(station_)) {
    return ExitStatus::kRefused;
  }
  std::vector<std::string> json;
  console.Log().SetFile(given.log);
  console.onPane = [&](const std::string& text) {
    if (!json_) ports_.out << Visible(text) << std::flush;
  };
  console.onAnswered = [&](const SentLine& line) {
    JsonObject entry;
    entry.Add("row", line.row).Add("line", line.command);
    entry.Add("answer", line.answer).Add("ok", line.ok);
    if (!line.ok && !IsErrorAnswer(line.answer)) {
      const Message& why = dialogs_.LastMessage();
      entry.AddRaw("error", JsonObject().Add("number", why.number).Add("message", why.text).Text());
    }
    json.push_back(entry.Text());
  };
  const Console::Ending ending = SendScript(*script, given);
  console.onPane = {};
  console.onAnswered = {};
  if (ending == Console::Ending::kNotConfirmed) {
    service_.Texts().Warn(text::kNotConfirmed);
    return ExitStatus::kNotConfirmed;
  }
  if (json_ && !json.empty()) PrintJson(JsonList(json));
  return ending == Console::Ending::kDone ? ExitStatus::kDone : ExitStatus::kRefused;
}

ExitStatus CliRun::ScriptRead(const std::string& output) {
  if (!service_.DeviceSelectByAddress(station_)) return ExitStatus::kRefused;
  std::string script;
  const Console::Ending ending =
      service_.CommandConsole().ReadFromDevice([&](const std::string& text) { script = text; });
  if (ending == Console::Ending::kNotConfirmed) {
    service_.Texts().Warn(text::kNotConfirmed);
    return ExitStatus::kNotConfirmed;
  }
  if (ending != Console::Ending::kDone) return ExitStatus::kRefused;
  if (!output.empty() && output != kStandard) {
    ScriptForm form;
    const FileOutcome outcome = WriteScript(output, script, form);
    if (outcome.message != 0) return Refuse(outcome.message, outcome.detail);
    if (json_) PrintJson(JsonObject().Add("file", output).Text());
  } else if (json_) {
    PrintJson(JsonObject().Add("script", script).Text());
  } else {
    ports_.out << Visible(script);
  }
  return ExitStatus::kDone;
}

}  // namespace ostrel
