#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/dialogs.h"
#include "base/messages.h"
#include "link/link.h"

namespace ostrel {

/// Send-and-check operations. "Msg" forms show what went wrong, the others are silent; "Checked"
/// and "Msg" forms take an error answer of the device for a failure.
class Commands {
 public:
  Commands(Link& link, Dialogs& dialogs, const Messages& messages)
      : link_(link), dialogs_(dialogs), messages_(messages) {}

  /// Sends and waits; shows the message of a failure.
  bool CommandExchange(int channel, const std::string& line, std::string& answer);
  /// Turns an error that the server object (a negative number) or the system raised into a message;
  /// `quiet` swallows what does not come from the server.
  void ServerErrorReport(int number, const std::string& description, bool quiet) const;
  /// The same for an error of the link.
  void ServerErrorReport(const Error& error) const;

  /// True when the exchange succeeded; the answer is dropped. Shows the message of a failure.
  bool DevCmd(int channel, const std::string& line);
  bool DevCmdQuiet(int channel, const std::string& line);
  bool DevQuery(int channel, const std::string& line, std::string& answer);
  bool DevQueryChecked(int channel, const std::string& line, std::string& answer);
  bool DevQueryMsg(int channel, const std::string& line, std::string& answer);
  /// Over a transparent channel; the error answer is checked silently.
  bool OnlineQueryChecked(int channel, const std::string& line, std::string& answer, bool showError,
                          std::optional<int> waitMs = std::nullopt);
  /// Only waits; shows the message of a failure.
  bool AnswerWaitMsg(int channel, std::string& answer);

  /// The error answer test; shows the answer when asked to.
  bool IsErrorAnswer(const std::string& answer, bool showMessage) const;

  /// Sends a block of lines to a station; stops at the first that fails. With `switchStation` the
  /// station is made current meanwhile, so that the lines go out without an address. A station
  /// given as "B1:;" has its lines sent with that before them.
  bool DevSendLines(const std::string& station, std::string lines, const std::string& suffix,
                    bool switchStation, bool quiet);
  /// Makes a station current again.
  void StationAddressRestore(const std::string& address);
  /// The type string of a station; empty when there is none. Tries three times while an online
  /// channel is active.
  std::string DevVersionGet(const std::string& address);

 private:
  bool Ask(int channel, const std::string& line, std::string& answer, bool quiet);
  bool SendBlock(const std::string& address, std::string lines, const std::string& suffix,
                 bool quiet);

  Link& link_;
  Dialogs& dialogs_;
  const Messages& messages_;
};

}  // namespace ostrel
