// Sending and reading; what belongs to the files is in console_files.cpp.

#include "pages/console/console.h"

#include <utility>

#include "base/text.h"
#include "base/texts.h"
#include "base/user_files.h"
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

Console::Console(const Desk& desk)
    : desk_(desk), unsaved_(UnsavedScriptFile(desk.computer.DocumentsFolder())) {}

void Console::RGLAntwortAdd(const std::string& text) {
  if (onPane) onPane(text + std::string(kLineEnd));
  if (!monitor_) return;
  const std::string fault = log_.Append(text);
  if (!fault.empty()) desk_.texts.WarnFilled(text::kLogNotWritten, fault);
}

void Console::MonitorSet(bool on) {
  monitor_ = on;
  if (onMonitor) onMonitor(on);
}

bool Console::LineCheck(const std::string& script) const {
  const ScriptCheck check = CheckScript(WithCrLf(script));
  if (!check.Ok()) {
    desk_.texts.Warn(text::kScriptErrors, "\n" + check.List(desk_.texts, kMostRowsShown));
  }
  return check.Ok();
}

void Console::SyntaxCheck(const std::string& script) const {
  if (LineCheck(script)) desk_.texts.Show(text::kNoErrors);
}

bool Console::NotEmpty(const std::string& script, int message) const {
  const bool empty = Trim(script).empty();
  if (empty) desk_.texts.Warn(message);
  return !empty;
}

Ending Console::Send(const std::string& script, const ScriptPart& part) {
  if (running_) {
    desk_.texts.Warn(text::kExchangeUnderWay);
    return Ending::kFailed;
  }
  const Running running(running_);
  if (!NotEmpty(script, text::kNoFileOpen) || !desk_.session.ToWrite()) return Ending::kFailed;
  if (!ScriptFits(desk_.session.Device(), FileName())) {
    desk_.texts.Warn(text::kFileTypeDiffers);
    return Ending::kFailed;
  }
  if (!LineCheck(script)) return Ending::kFailed;
  const Messages& messages = desk_.texts;
  if (!desk_.dialogs.AskYesNo(messages.Filled(
          text::kSendToDevice, messages.Caption(text::kRegLCommands), DeviceName()))) {
    return Ending::kNotConfirmed;
  }
  MonitorSet(true);
  ScriptPart whole = part;
  whole.selection = WithCrLf(part.selection);
  const bool all = part.mode == ScriptPart::Mode::kAll;
  return SendConfirmed(ExtractCommands(SelectPart(WithCrLf(script), whole), all ? 0 : part.line));
}

Ending Console::SendConfirmed(const ScriptLines& lines) {
  if (lines.lines.empty()) {
    desk_.texts.Warn(text::kNothingToSend);
    return Ending::kFailed;
  }
  // Anew, since events ran while the user was asked.
  const std::optional<Writing> device = desk_.session.ToWrite();
  if (!device) return Ending::kFailed;
  if (!SendLines(*device, lines)) {
    desk_.texts.Warn(text::kSendingCancelled);
    return Ending::kFailed;
  }
  desk_.texts.Show(text::kSuccessful);
  return Ending::kDone;
}

bool Console::SendLines(const Writing& device, const ScriptLines& lines) {
  const BusyPointer busy(desk_.dialogs);
  if (!lines.longLine) return SendEach(device, device.Address() + ";", lines.lines);

  const std::optional<std::string> current = device.AskBare("dirn_");
  if (!current) return false;
  const std::string before = AddressPart(*current);
  if (before.empty()) {
    // Without an address there would be no way back.
    desk_.texts.Warn(text::kDeviceReplied, "\ndirn_\n" + *current);
    return false;
  }
  return device.Send(":") && SendEach(device, {}, lines.lines) && device.AskBare(before + ":");
}

bool Console::SendEach(const Writing& device, const std::string& prefix,
                       const std::vector<ScriptLine>& lines) {
  SentLine sent;
  sent.total = lines.size();
  for (const ScriptLine& line : lines) {
    const std::string command = prefix + line.text;
    ++sent.number;
    sent.row = line.row;
    sent.command = Masked(command);
    sent.answer.clear();
    if (onSending) onSending(sent);
    RGLAntwortAdd("[" + TimeStamp(desk_.clock.Now()) + "]: " + sent.command);
    Answer answer = device.TryBare(command);
    sent.ok = device.Passes(answer, command);
    sent.error = answer.error;
    sent.answer = MaskedAnswer(std::move(answer.text), command);
    if (onAnswered) onAnswered(sent);
    if (!sent.ok) return false;
    if (RGLCommandCursorDown) RGLCommandCursorDown();
    RGLAntwortAdd(sent.answer);
  }
  return true;
}

bool Console::SendQuietly(const Writing& device, const ScriptLines& lines) {
  return device.SendBlock(lines.Text());
}

Ending Console::ReadFromDevice(const std::function<void(const std::string& script)>& replace) {
  if (running_) {
    desk_.texts.Warn(text::kExchangeUnderWay);
    return Ending::kFailed;
  }
  const Running running(running_);
  if (!desk_.session.ToRead()) return Ending::kFailed;
  if (!desk_.dialogs.AskYesNo(desk_.texts.Filled(text::kReadScript, DeviceName()))) {
    return Ending::kNotConfirmed;
  }
  const std::optional<Reading> device = desk_.session.ToRead();
  const std::optional<std::string> script = device ? ReadScriptText(*device) : std::nullopt;
  if (!script) return Ending::kFailed;
  // The file that was open holds another script, which a save must not replace.
  origin_ = {};
  replace(*script);
  desk_.texts.Show(text::kSuccessful);
  return Ending::kDone;
}

std::optional<std::string> Console::ReadScriptText(const Reading& device) {
  const BusyPointer busy(desk_.dialogs);
  const std::string name = DeviceName();
  const std::optional<std::string> version = device.Ask("ver");
  if (!version) return std::nullopt;
  std::string script = "# Quelle: " + name + ", " + Ended(*version);
  for (const std::string_view command : kReadCommands) {
    const std::optional<std::string> answer = device.Ask(command);
    if (!answer) return std::nullopt;
    script += Ended(*answer);
  }
  return script;
}

Ending Console::SendToStations(const std::string& script, const StationsChooser& choose) {
  if (running_) {
    desk_.texts.Warn(text::kExchangeUnderWay);
    return Ending::kFailed;
  }
  const Running running(running_);
  if (!NotEmpty(script, text::kNothingToSend) || !LineCheck(script)) return Ending::kFailed;
  const ScriptLines lines = ExtractCommands(WithCrLf(script));
  if (lines.lines.empty()) {
    desk_.texts.Warn(text::kNothingToSend);
    return Ending::kFailed;
  }
  const std::vector<std::string> stations = choose(desk_.texts.Caption(text::kSelectDevices));
  if (stations.empty()) return Ending::kNotConfirmed;
  MonitorSet(true);
  std::string report;
  // While lines are sent another file may be opened.
  const Ending ending = SendToEach(stations, lines, std::string(FileName()), report);
  desk_.dialogs.Show({.number = 0, .text = report, .title = {}, .style = {}});
  return ending;
}

Ending Console::SendToEach(const std::vector<std::string>& stations, const ScriptLines& lines,
                           const std::string& fileName, std::string& report) {
  const Messages& messages = desk_.texts;
  const auto of = [&](std::string name, int what) {
    // An address alone brings the colon itself.
    if (name.ends_with(':')) name.pop_back();
    return messages.Filled(text::kDeviceColon, name) + " " + messages.Caption(what) + "\r\n";
  };
  Ending ending = Ending::kDone;
  for (const std::string& item : stations) {
    const std::string name = LeftOf(item, ";");
    const bool selected = desk_.session.DeviceSelectByAddress(AddressPart(name));
    const std::optional<Writing> device = selected ? desk_.session.ToWrite() : std::nullopt;
    if (device && !ScriptFits(desk_.session.Device(), fileName)) {
      report += of(name, text::kFileTypeDiffers);
      ending = Ending::kFailed;
      continue;
    }
    if (!device || !SendLines(*device, lines)) {
      report += of(name, text::kSendingCancelled);
      return Ending::kFailed;
    }
    report += messages.Filled(text::kDeviceFinished, device->Address()) + "\r\n";
  }
  return ending;
}

void Console::New() {
  origin_ = {};
  loaded_ = false;
}

}  // namespace ostrel
