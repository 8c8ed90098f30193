#include "link/commands.h"

#include <utility>

#include "base/text.h"
#include "base/texts.h"
#include "wire/answers.h"
#include "wire/line_rules.h"

namespace ostrel {

namespace {

constexpr int kAttempts = 3;
constexpr int kOnlinePauseMs = 250;

}  // namespace

bool Commands::CommandExchange(int channel, const std::string& line, std::string& answer) {
  Answer got = link_.CommandExchangeCode(channel, line);
  if (!got.Ok()) messages_.Warn(got.error);
  if (got.Ok()) answer = std::move(got.text);
  return got.Ok();
}

void Commands::ServerErrorReport(int number, const std::string& description, bool quiet) const {
  if (number < 0) {
    ServerErrorReport({number - kObjectErrorBase, description});
  } else if (number > 0 && !quiet) {
    messages_.Warn(text::kRuntimeError, "\nNr. " + std::to_string(number) + " = " + description);
  }
}

void Commands::ServerErrorReport(const Error& error) const {
  const bool known = error.code >= 10011 && error.code <= 10038;
  const std::string why = error.detail.empty() ? messages_.Shown(error.code) : error.detail;
  dialogs_.Show(
      {.number = error.code,
       .text = known ? messages_.Shown(error)
                     : messages_.Text(text::kError) + " " + std::to_string(error.code) + ": " + why,
       .title = messages_.Text(text::kError),
       .style = MessageStyle::kExclamation});
}

bool Commands::DevCmd(int channel, const std::string& line) {
  std::string dropped;
  return CommandExchange(channel, line, dropped);
}

bool Commands::DevCmdQuiet(int channel, const std::string& line) {
  std::string dropped;
  return DevQuery(channel, line, dropped);
}

bool Commands::DevQuery(int channel, const std::string& line, std::string& answer) {
  Answer got = link_.CommandExchangeCode(channel, line);
  if (got.Ok()) answer = std::move(got.text);
  return got.Ok();
}

bool Commands::DevQueryChecked(int channel, const std::string& line, std::string& answer) {
  return DevQuery(channel, line, answer) && !ostrel::IsErrorAnswer(answer);
}

bool Commands::DevQueryMsg(int channel, const std::string& line, std::string& answer) {
  if (!CommandExchange(channel, line, answer)) return false;
  if (!ostrel::IsErrorAnswer(answer)) return true;
  messages_.Warn(text::kDeviceReplied, "\n" + Masked(line) + "\n" + MaskedAnswer(answer, line));
  return false;
}

bool Commands::OnlineQueryChecked(int channel, const std::string& line, std::string& answer,
                                  bool showError, std::optional<int> waitMs) {
  Answer got = link_.OnlineExchange(channel, line, waitMs);
  if (showError && got.error.code == text::kOnlineNecessary) messages_.Warn(got.error);
  if (got.Ok()) answer = std::move(got.text);
  return got.Ok() && !ostrel::IsErrorAnswer(answer);
}

bool Commands::AnswerWaitMsg(int channel, std::string& answer) {
  Answer got = link_.AnswerWait(channel);
  if (!got.Ok()) messages_.Warn(got.error);
  if (got.Ok()) answer = std::move(got.text);
  return got.Ok();
}

bool Commands::IsErrorAnswer(const std::string& answer, bool showMessage) const {
  const bool error = ostrel::IsErrorAnswer(answer);
  if (error && showMessage) messages_.Warn(text::kDeviceReplied, "\n" + answer);
  return error;
}

bool Commands::Ask(int channel, const std::string& line, std::string& answer, bool quiet) {
  return quiet ? DevQueryChecked(channel, line, answer) : DevQueryMsg(channel, line, answer);
}

bool Commands::DevSendLines(const std::string& station, std::string lines,
                            const std::string& suffix, bool switchStation, bool quiet) {
  if (lines.empty()) return false;
  const BusyPointer busy(dialogs_);
  const int channel = link_.CurrentChannel();
  const std::string address = AddressPart(station);
  if (!switchStation) {
    const std::string prefix = station == address + ";" ? station : address;
    return SendBlock(prefix, std::move(lines), suffix, quiet);
  }

  std::string previous;
  if (!Ask(channel, "dirn_", previous, quiet)) return false;
  previous = AddressPart(previous);
  const auto send = [&](const std::string& line) {
    return quiet ? DevCmdQuiet(channel, line) : DevCmd(channel, line);
  };
  // Devices take one or two colons more than the address has.
  return send(address + "::") && SendBlock({}, std::move(lines), suffix, quiet) &&
         send(previous + ":");
}

bool Commands::SendBlock(const std::string& address, std::string lines, const std::string& suffix,
                         bool quiet) {
  std::string answer;
  while (!lines.empty()) {
    const std::string popped = NextLine(lines);
    const std::string line(Trim(popped));
    if (ostrel::IsErrorAnswer(line)) continue;
    if (!Ask(link_.CurrentChannel(), address + line + suffix, answer, quiet)) return false;
  }
  return true;
}

void Commands::StationAddressRestore(const std::string& address) {
  const int channel = link_.CurrentChannel();
  std::string current;
  if (DevQueryChecked(channel, "dirn_", current)) DevCmdQuiet(channel, address + ":");
}

std::string Commands::DevVersionGet(const std::string& address) {
  const int channel = link_.CurrentChannel();
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    const Error error = link_.CommandSend(channel, address + "ver.");
    if (error.code == Code::kOnlineActive) {
      link_.WaitMs(kOnlinePauseMs);
      continue;
    }
    std::string answer;
    if (error || !AnswerWaitMsg(channel, answer)) return {};
    return ostrel::IsErrorAnswer(answer) ? std::string() : TypeFromVerAnswer(answer);
  }
  return {};
}

}  // namespace ostrel
