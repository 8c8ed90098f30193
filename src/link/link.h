#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "base/clock.h"
#include "base/error.h"
#include "base/settings_store.h"
#include "wire/automation.h"
#include "wire/codes.h"

namespace ostrel {

enum class LinkState { kNoServer = 0, kServer = 1, kChannel = 2 };

/// The program's side of the communication server: the server object, the channel on which commands
/// go out, and the exchange of one line for one answer. Waits let events run, so what a timer wants
/// to send meanwhile is refused with text::kExchangeUnderWay. A line that still waits at the server
/// when its answer is awaited no longer is taken back, and the error says so.
class Link {
 public:
  Link(AutomationFactory& factory, SettingsStore& settings, Clock& clock,
       std::filesystem::path programFolder);
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

  /// Reads "DefTimeout_s" (limited to 1..15, written back) and "Testmode". False when the time-out
  /// had to be corrected.
  bool LoadSettings();

  /// Whether the user may choose another connection when one does not open; yes at first.
  void OfferChooser(bool offer) { offerChooser_ = offer; }
  /// What the chooser tells the user of a failure; without it, the server's words.
  std::function<std::string(const Error& error)> explain;

  /// Creates the server object, in up to five attempts.
  Error CommServerCreate();
  /// Opens a channel on the connection (empty = the server's current one), through the chooser
  /// until one opens or the user cancels; then sets its frame mode unless that is negative. An
  /// error that the chooser has told is marked so.
  Error ConnectionOpen(std::string name, int frame = 2, int kind = 2);
  struct Opened {
    Error error;
    int channel = -1;
  };
  /// One attempt to open.
  Opened ChannelOpen(const std::string& name, int kind = 2);
  /// A command channel on a named connection.
  Opened ChannelReopen(const std::string& name);
  void ChannelClose(int channel);
  /// Closes the channel and opens a new one on its connection; asks before while a station still
  /// answers. Refused with 10019 while an online channel is open. Without an error the channel is a
  /// new one.
  Error ConnectionReselect(const std::function<bool()>& confirm);
  /// Lets the user choose a connection and opens the channel there instead. 10019 while an online
  /// channel is open; told where none was chosen; the failure where the previous connection was
  /// opened again; text::kNoneRestored where there is no channel any more.
  Error ConnectionSwitch();
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

  /// Sends one line after dropping an answer that nobody fetched.
  Error CommandSend(int channel, const std::string& line);
  /// Waits for the answer and fetches it.
  Answer AnswerWait(int channel);
  /// Sends and waits.
  Answer CommandExchangeCode(int channel, const std::string& line);
  /// An exchange on a transparent channel, where nothing frames the answer; text::kOnlineNecessary
  /// where there is none.
  Answer OnlineExchange(int channel, const std::string& line,
                        std::optional<int> waitMs = std::nullopt);
  /// Bytes on a transparent channel, as they stand; what came in is often nothing.
  Error BytesSend(int channel, const std::string& bytes);
  Answer BytesReceive(int channel);
  /// Lets events run for this long.
  void WaitMs(std::int64_t milliseconds);

  /// Tells the server that this program lives; calls onTerminate when it asks all programs to end.
  /// Also while an answer is awaited; left out while a call of the server has not returned.
  void KeepAliveTick(const std::string& text);
  std::function<void()> onTerminate;

  /// Makes the wait that is going on, and every later one, end with text::kExchangeGivenUp, until
  /// that is taken back.
  void GiveUp(bool givenUp = true) { givenUp_ = givenUp; }

 private:
  AutomationResult Call(std::string_view member, const Values& arguments);
  AutomationResult Get(std::string_view property);
  AutomationResult Put(std::string_view property, int value);
  AutomationResult Use(const std::function<AutomationResult(AutomationObject&)>& member);
  void Raised(const AutomationResult& result);
  bool ChooseConnection(std::string& name, const Error& why);
  std::string AskChooser(const std::string& name, int code, const std::string& reason);
  Error ChannelTake(const std::string& name);
  void DropEarlier(int channel);
  Answer Poll(int channel);
  bool TakeBack(int channel);

  AutomationFactory& factory_;
  SettingsStore& settings_;
  Clock& clock_;
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
  int goneCode_ = Code::kNoChannel;  // what a call without a server object ends with
  int calls_ = 0;                    // of the server that have not returned yet
  bool givenUp_ = false;
  bool offerChooser_ = true;
  Error lastError_;  // that a call raised
};

}  // namespace ostrel
