#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "app/messages.h"
#include "app/settings_store.h"
#include "app/texts.h"
#include "link/automation.h"
#include "link/clock.h"
#include "link/codes.h"

namespace ostrel {

enum class LinkState { kNoServer = 0, kServer = 1, kChannel = 2 };

/// An error that a call of the server raised.
struct ServerError {
  int number = 0;  // as raised; 0 = none
  std::string description;
  /// The message number: the code of an object error, any other number as it is.
  int Code() const;
  /// The description as a line of its own below the message; empty when there is none.
  std::string Detail() const;
};

/// The program's side of the communication server: the server object, the channel on which commands
/// go out, and the exchange of one line for one answer. Waits let events run, so what a timer wants
/// to send meanwhile is refused with text::kExchangeUnderWay.
class Link {
 public:
  Link(AutomationFactory& factory, SettingsStore& settings, Clock& clock, Dialogs& dialogs,
       const Messages& messages, std::filesystem::path programFolder);
  ~Link();
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  LinkState ConnState() const { return state_; }
  int CurrentChannel() const { return channel_; }
  /// The answer time-out in whole seconds.
  int DefTimeout() const { return defTimeout_; }
  bool TestMode() const { return testMode_; }
  /// True while an answer is awaited.
  bool Busy() const { return busy_; }

  /// True from an error after which another device may answer on the line, until Identified.
  bool Lost() const { return lost_ != 0; }
  /// Takes the line for lost: it was opened anew on purpose.
  void Doubt();
  /// It is known again what answers on the line.
  void Identified() { lost_ = 0; }
  /// Finds out whether the line was lost since the last exchange.
  void LookForLoss();
  /// Called when an error loses the link; no call of the server may be made then.
  std::function<void(int code)> onLost;
  /// Whether a lost link refuses to send, with the error that lost it; without it, it sends.
  std::function<bool()> holdsWhenLost;

  /// Reads "DefTimeout_s" (corrected to 1..15 with messages, written back) and "Testmode".
  void LoadSettings();

  /// Whether the user may choose another connection when one does not open; yes at first.
  void OfferChooser(bool offer) { offerChooser_ = offer; }

  /// Creates the server object; a failure shows message 10065.
  bool CommServerCreate();
  /// Opens a channel on the connection (empty = the server's current one), through the chooser
  /// until one opens or the user cancels; then sets its frame mode unless that is negative.
  LinkState ConnectionOpen(std::string name, int frame = 2, int kind = 2);
  /// One attempt to open; the channel, or -1. LastError tells why.
  int ChannelOpen(const std::string& name, int kind = 2);
  /// A command channel on a named connection: its number, or minus the code of the error.
  int ChannelReopen(const std::string& name);
  /// Closes the channel and opens a new one on its connection; asks before while a station still
  /// answers. Refused with 10019 while an online channel is open. False when the channel is not a
  /// new one; why is shown.
  bool ConnectionReselect();
  /// What ConnectionSwitch gives when the user chose no connection.
  static constexpr int kNoneChosen = -1;
  /// Lets the user choose a connection and opens the channel there instead. 0 when it is open;
  /// 10019 while an online channel is; the code of the failure when the previous connection was
  /// opened again, which LastError describes; text::kNoneRestored when there is no channel any
  /// more.
  int ConnectionSwitch();
  /// Closes the channel and gives up the server object.
  void ConnectionClose();
  /// The name of the connection on which the channel runs; empty when there is none.
  std::string ConnectionName();

  /// Sets the time-out of link and channel, in seconds; returns the channel's earlier one.
  int ChannelTimeoutSet(int seconds);
  void FrameSave();
  void FrameRestore();

  /// Whether the server runs inside this program; it wants no line end behind a line.
  bool SecondGeneration() const;

  /// Sends one line after dropping an answer that nobody fetched. 0 or a code.
  int CommandSend(int channel, const std::string& line);
  /// Waits for the answer and fetches it. 0 or a code; then a line that has not gone out never
  /// does.
  int AnswerWait(int channel, std::string& answer);
  /// Sends and waits; shows the message of a failure.
  bool CommandExchange(int channel, const std::string& line, std::string& answer);
  /// Sends and waits, silently; 0 or a code.
  int CommandExchangeCode(int channel, const std::string& line, std::string& answer);
  /// An exchange on a transparent channel, where nothing frames the answer.
  bool OnlineExchange(int channel, const std::string& line, std::string& answer, bool showError,
                      std::optional<int> waitMs = std::nullopt);
  /// Lets events run for this long.
  void WaitMs(std::int64_t milliseconds);

  /// Tells the server that this program lives; calls onTerminate when it asks all programs to end.
  void KeepAliveTick(const std::string& text);
  std::function<void()> onTerminate;

  /// Turns a raised error into a message; `quiet` swallows what does not come from the server.
  void ServerErrorReport(const ServerError& error, bool quiet) const;

  /// The error that the last failed operation met.
  const ServerError& LastError() const { return lastError_; }
  /// What belongs below the message of this code: that the line never went out.
  std::string UnsentDetail(int code) const;
  /// Makes the wait that is going on, and every later one, end with text::kExchangeGivenUp, until
  /// that is taken back.
  void GiveUp(bool givenUp = true) { givenUp_ = givenUp; }

 private:
  AutomationResult Call(std::string_view member, const Values& arguments);
  AutomationResult Get(std::string_view property);
  AutomationResult Put(std::string_view property, int value);
  AutomationResult Use(const std::function<AutomationResult(AutomationObject&)>& member);
  void Raised(const AutomationResult& result);
  bool ChooseConnection(std::string& name);
  std::string AskChooser(const std::string& name, int code, const std::string& reason);
  bool ChannelTake(const std::string& name);
  void DropEarlier(int channel);
  int Poll(int channel, std::string& answer);
  int TimedOut(int channel);
  bool Cancel(int channel);

  AutomationFactory& factory_;
  SettingsStore& settings_;
  Clock& clock_;
  Dialogs& dialogs_;
  const Messages& messages_;
  std::filesystem::path programFolder_;

  std::unique_ptr<AutomationObject> server_;
  std::unique_ptr<AutomationObject> chooser_;
  std::string serverClass_;
  LinkState state_ = LinkState::kNoServer;
  int channel_ = 0;
  int defTimeout_ = 10;
  int savedFrame_ = 0;
  int savedTranslate_ = 0;
  bool testMode_ = false;
  bool busy_ = false;
  int lost_ = 0;                     // the error that lost the line; 0 = none
  int goneCode_ = code::kNoChannel;  // what a call without a server object ends with
  int calls_ = 0;                    // of the server that have not returned yet
  bool givenUp_ = false;
  bool offerChooser_ = true;
  ServerError lastError_;
};

}  // namespace ostrel
