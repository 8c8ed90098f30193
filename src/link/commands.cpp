#include "link/commands.h"

#include <utility>

#include "app/text.h"
#include "app/texts.h"
#include "link/answers.h"
#include "link/line_rules.h"

namespace ostrel {

namespace {

constexpr int kAttempts = 3;
constexpr int kOnlinePauseMs = 250;

}  // namespace

bool Commands::DevCmd(int channel, const std::string& line) {
  std::string dropped;
  return link_.CommandExchange(channel, line, dropped);
}

bool Commands::DevCmdQuiet(int channel, const std::string& line) {
  std::string dropped;
  return DevQuery(channel, line, dropped);
}

bool Commands::DevQuery(int channel, const std::string& line, std::string& answer) {
  return link_.CommandExchangeCode(channel, line, answer) == 0;
}

bool Commands::DevQueryChecked(int channel, const std::string& line, std::string& answer) {
  return DevQuery(channel, line, answer) && !ostrel::IsErrorAnswer(answer);
}

bool Commands::DevQueryMsg(int channel, const std::string& line, std::string& answer) {
  if (!link_.CommandExchange(channel, line, answer)) return false;
  if (!ostrel::IsErrorAnswer(answer)) return true;
  messages_.Warn(text::kDeviceReplied, "\n" + Masked(line) + "\n" + MaskedAnswer(answer, line));
  return false;
}

bool Commands::OnlineQueryChecked(int channel, const std::string& line, std::string& answer,
                                  bool showError, std::optional<int> waitMs) {
  return link_.OnlineExchange(channel, line, answer, showError, waitMs) &&
         !ostrel::IsErrorAnswer(answer);
}

bool Commands::AnswerWaitMsg(int channel, std::string& answer) {
  const int code = link_.AnswerWait(channel, answer);
  if (code >= 1) messages_.Warn(code, link_.UnsentDetail(code));
  return code == 0;
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
    const int code = link_.CommandSend(channel, address + "ver.");
    if (code == code::kOnlineActive) {
      link_.WaitMs(kOnlinePauseMs);
      continue;
    }
    std::string answer;
    if (code != 0 || !AnswerWaitMsg(channel, answer)) return {};
    return ostrel::IsErrorAnswer(answer) ? std::string() : TypeFromVerAnswer(answer);
  }
  return {};
}

}  // namespace ostrel
