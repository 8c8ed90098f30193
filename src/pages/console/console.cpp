// Sending and reading; what belongs to the files is in console_files.cpp.

#include "pages/console/console.h"

#include <utility>

#include "base/text.h"
#include "base/texts.h"
#include "pages/console/console_texts.h"
#include "wire/answers.h"
#include "wire/line_rules.h"

namespace ostrel {

namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::size_t kMostRowsShown = 25;

constexpr std::string_view kReadCommands[] = {"Hlist*",    "PList*",  "QList*", "menuappn *",
                                              "menuapp *", "LName *", "Urat *", "Irat *",
                                              "KFaktor *", "EUnit *"};

/// Says that something runs while it lives.
class Running {
 public:
  explicit Running(bool& flag) : flag_(flag) { flag_ = true; }
  ~Running() { flag_ = false; }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

 private:
  bool& flag_;
};

std::string Ended(std::string answer) {
  return answer.ends_with(kLineEnd) ? answer : answer.append(kLineEnd);
}

}  // namespace

void Console::RGLAntwortAdd(const std::string& text) {
  if (onPane) onPane(text + std::string(kLineEnd));
  if (!monitor_) return;
  const std::string fault = log_.Append(text);
  if (!fault.empty()) ports_.messages.WarnFilled(text::kLogNotWritten, fault);
}

void Console::MonitorSet(bool on) {
  monitor_ = on;
  if (onMonitor) onMonitor(on);
}

bool Console::LineCheck(const std::string& script) const {
  const ScriptCheck check = CheckScript(WithCrLf(script));
  if (!check.Ok()) {
    ports_.messages.Warn(text::kScriptErrors, "\n" + check.List(ports_.messages, kMostRowsShown));
  }
  return check.Ok();
}

void Console::SyntaxCheck(const std::string& script) const {
  if (LineCheck(script)) ports_.messages.Show(text::kNoErrors);
}

bool Console::NotEmpty(const std::string& script, int message) const {
  const bool empty = Trim(script).empty();
  if (empty) ports_.messages.Warn(message);
  return !empty;
}

bool Console::Ask(const std::string& line, std::string& answer) {
  answer.clear();
  return ports_.commands.DevQueryMsg(ports_.link.CurrentChannel(), line, answer);
}

Console::Ending Console::Send(const std::string& script, const ScriptPart& part) {
  if (running_) {
    ports_.messages.Warn(text::kExchangeUnderWay);
    return Ending::kFailed;
  }
  const Running running(running_);
  if (!NotEmpty(script, text::kNoFileOpen) || !ports_.ready() || !Prefix()) return Ending::kFailed;
  if (!ScriptFits(ports_.device, fileName_)) {
    ports_.messages.Warn(text::kFileTypeDiffers);
    return Ending::kFailed;
  }
  if (!LineCheck(script)) return Ending::kFailed;
  const Messages& messages = ports_.messages;
  if (!ports_.dialogs.AskYesNo(messages.Filled(
          text::kSendToDevice, messages.Caption(text::kRegLCommands), DeviceName()))) {
    return Ending::kNotConfirmed;
  }
  MonitorSet(true);
  ScriptPart whole = part;
  whole.selection = WithCrLf(part.selection);
  const bool all = part.mode == ScriptPart::Mode::kAll;
  return SendConfirmed(ExtractCommands(SelectPart(WithCrLf(script), whole), all ? 0 : part.line));
}

Console::Ending Console::SendConfirmed(const ScriptLines& lines) {
  if (lines.lines.empty()) {
    ports_.messages.Warn(text::kNothingToSend);
    return Ending::kFailed;
  }
  const std::optional<std::string> prefix = Prefix();
  if (!prefix) return Ending::kFailed;
  if (!SendLines(*prefix, lines)) {
    ports_.messages.Warn(text::kSendingCancelled);
    return Ending::kFailed;
  }
  ports_.messages.Show(text::kSuccessful);
  return Ending::kDone;
}

bool Console::SendLines(const std::string& prefix, const ScriptLines& lines) {
  const BusyPointer busy(ports_.dialogs);
  if (!lines.longLine) return SendEach(prefix + ";", lines.lines);

  std::string answer;
  if (!Ask("dirn_", answer)) return false;
  const std::string before = AddressPart(answer);
  if (before.empty()) {
    // Without an address there would be no way back.
    ports_.messages.Warn(text::kDeviceReplied, "\ndirn_\n" + answer);
    return false;
  }
  return Ask(prefix + ":", answer) && SendEach({}, lines.lines) && Ask(before + ":", answer);
}

bool Console::SendEach(const std::string& prefix, const std::vector<ScriptLine>& lines) {
  SentLine sent;
  sent.total = lines.size();
  for (const ScriptLine& line : lines) {
    const std::string command = prefix + line.text;
    ++sent.number;
    sent.row = line.row;
    sent.command = Masked(command);
    sent.answer.clear();
    if (onSending) onSending(sent);
    RGLAntwortAdd("[" + TimeStamp(ports_.clock.Now()) + "]: " + sent.command);
    sent.ok = Ask(command, sent.answer);
    sent.answer = MaskedAnswer(std::move(sent.answer), command);
    if (onAnswered) onAnswered(sent);
    if (!sent.ok) return false;
    if (RGLCommandCursorDown) RGLCommandCursorDown();
    RGLAntwortAdd(sent.answer);
  }
  return true;
}

bool Console::SendQuietly(const std::string& prefix, const ScriptLines& lines) {
  return ports_.commands.DevSendLines(prefix + ";", lines.Text(), {}, false, true);
}

Console::Ending Console::ReadFromDevice(
    const std::function<void(const std::string& script)>& replace) {
  if (running_) {
    ports_.messages.Warn(text::kExchangeUnderWay);
    return Ending::kFailed;
  }
  const Running running(running_);
  if (!ports_.ready()) return Ending::kFailed;
  if (!ports_.dialogs.AskYesNo(ports_.messages.Filled(text::kReadScript, DeviceName()))) {
    return Ending::kNotConfirmed;
  }
  const std::optional<std::string> script = ReadScriptText();
  if (!script) return Ending::kFailed;
  // The file that was open holds another script, which a save must not replace.
  fileName_.clear();
  form_ = {};
  replace(*script);
  ports_.messages.Show(text::kSuccessful);
  return Ending::kDone;
}

std::optional<std::string> Console::ReadScriptText() {
  const BusyPointer busy(ports_.dialogs);
  const std::string name = DeviceName();
  const std::string prefix = AddressPart(name);
  std::string answer;
  if (!Ask(prefix + "ver", answer)) return std::nullopt;
  std::string script = "# Quelle: " + name + ", " + Ended(answer);
  for (const std::string_view command : kReadCommands) {
    if (!Ask(prefix + std::string(command), answer)) return std::nullopt;
    script += Ended(answer);
  }
  return script;
}

Console::Ending Console::SendToStations(const std::string& script, const StationsChooser& choose) {
  if (running_) {
    ports_.messages.Warn(text::kExchangeUnderWay);
    return Ending::kFailed;
  }
  const Running running(running_);
  if (!NotEmpty(script, text::kNothingToSend) || !LineCheck(script)) return Ending::kFailed;
  const ScriptLines lines = ExtractCommands(WithCrLf(script));
  if (lines.lines.empty()) {
    ports_.messages.Warn(text::kNothingToSend);
    return Ending::kFailed;
  }
  const std::vector<std::string> stations = choose(ports_.messages.Caption(text::kSelectDevices));
  if (stations.empty()) return Ending::kNotConfirmed;
  MonitorSet(true);
  std::string report;
  // While lines are sent another file may be opened.
  const Ending ending = SendToEach(stations, lines, std::string(fileName_), report);
  ports_.dialogs.Show({.number = 0, .text = report, .title = {}, .style = {}});
  return ending;
}

Console::Ending Console::SendToEach(const std::vector<std::string>& stations,
                                    const ScriptLines& lines, const std::string& fileName,
                                    std::string& report) {
  const Messages& messages = ports_.messages;
  const auto of = [&](std::string name, int what) {
    // An address alone brings the colon itself.
    if (name.ends_with(':')) name.pop_back();
    return messages.Filled(text::kDeviceColon, name) + " " + messages.Caption(what) + "\r\n";
  };
  Ending ending = Ending::kDone;
  for (const std::string& item : stations) {
    const std::string name = LeftOf(item, ";");
    const std::optional<std::string> prefix =
        ports_.makeCurrent(AddressPart(name)) ? Prefix() : std::nullopt;
    if (prefix && !ScriptFits(ports_.device, fileName)) {
      report += of(name, text::kFileTypeDiffers);
      ending = Ending::kFailed;
      continue;
    }
    if (!prefix || !SendLines(*prefix, lines)) {
      report += of(name, text::kSendingCancelled);
      return Ending::kFailed;
    }
    report += messages.Filled(text::kDeviceFinished, *prefix) + "\r\n";
  }
  return ending;
}

void Console::New() {
  fileName_.clear();
  form_ = {};
  loaded_ = false;
}

}  // namespace ostrel
