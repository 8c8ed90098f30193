#include "link/link.h"

#include <algorithm>
#include <utility>

#include "base/texts.h"
#include "wire/answers.h"
#include "wire/def_timeout.h"

namespace ostrel {

namespace {

constexpr int kAttempts = 5;
constexpr std::string_view kSecondGeneration = "OstrelTESK";

/// Whether the line may have another device at its end after this error. A time-out is none: a
/// device that is slow is still the same.
bool MeansLost(int code) {
  constexpr int kLosses[] = {code::kPortFailure, code::kReceiveError, code::kNoChannel,
                             code::kPortInUse,   code::kServerGone,   code::kCannotConnect};
  return std::find(std::begin(kLosses), std::end(kLosses), code) != std::end(kLosses);
}

}  // namespace

int ServerError::Code() const {
  const int code = number - kObjectErrorBase;
  return number < 0 && code >= 0 && code <= 0xFFFF ? code : number;
}

std::string ServerError::Detail() const {
  return description.empty() ? std::string() : "\n" + description;
}

Link::Link(AutomationFactory& factory, SettingsStore& settings, Clock& clock, Dialogs& dialogs,
           const Messages& messages, std::filesystem::path programFolder)
    : factory_(factory),
      settings_(settings),
      clock_(clock),
      dialogs_(dialogs),
      messages_(messages),
      programFolder_(std::move(programFolder)) {}

Link::~Link() {
  ConnectionClose();
}

void Link::LoadSettings() {
  const AnswerTimeout timeout = ReadDefTimeout(settings_);
  defTimeout_ = timeout.seconds;
  const std::string text = std::to_string(defTimeout_);
  if (timeout.corrected) {
    messages_.Warn(text::kOutOfRange, "\n" + messages_.Filled(text::kUsedInstead, text));
  }
  settings_.WriteShared(keys::kServerMisc, "DefTimeout_s", text);
  settings_.WriteProgram("ZubServer", "Misc", "DefTimeout_s", text);
  testMode_ = settings_.ReadShared(keys::kServerMisc, "Testmode", "0") == "9";
}

bool Link::CommServerCreate() {
  std::error_code ignored;
  const bool inProcess = std::filesystem::exists(programFolder_ / "OstrelTESK.dll", ignored) &&
                         settings_.ReadShared(keys::kServerMisc, "UsePriorServer", "0") == "0";
  serverClass_ = inProcess ? kSecondGeneration : "ZubServer";
  const std::string className = serverClass_ + ".TESKComm";
  std::string reason;
  for (int attempt = 0; attempt < (inProcess ? 1 : kAttempts) && !givenUp_; ++attempt) {
    AutomationFactory::Created created = factory_.Create(className);
    server_ = std::move(created.object);
    if (server_) return true;
    reason = created.description;
  }
  lastError_ = {kObjectErrorBase + code::kServerNotStarted, reason};
  messages_.Warn(code::kServerNotStarted, "\n" + reason + "\nClassname: " + className);
  return false;
}

LinkState Link::ConnectionOpen(std::string name, int frame, int kind) {
  // Also finds out that the server is gone; then everything starts afresh.
  if (server_) Call("COpenLocked", {});
  if (state_ == LinkState::kNoServer && CommServerCreate()) state_ = LinkState::kServer;
  if (state_ == LinkState::kServer) {
    int opened = ChannelOpen(name, kind);
    while (opened < 0 && ChooseConnection(name)) opened = ChannelOpen(name, kind);
    if (opened >= 0) {
      channel_ = opened;
      state_ = LinkState::kChannel;
    }
  }
  if (state_ == LinkState::kChannel && frame >= 0) Put("CFrame", frame);
  return state_;
}

bool Link::ChooseConnection(std::string& name) {
  // A server that is gone has no connections to choose from.
  if (!server_ || !offerChooser_ || givenUp_) return false;
  const int code = lastError_.Code();
  name = AskChooser(name, code, messages_.Shown(code) + lastError_.Detail());
  return !name.empty();
}

std::string Link::AskChooser(const std::string& name, int code, const std::string& reason) {
  if (!chooser_) chooser_ = factory_.Create(serverClass_ + ".Chooser").object;
  return chooser_ ? chooser_->Call("Select", {name, code, reason}).Text() : std::string();
}

int Link::ChannelOpen(const std::string& name, int kind) {
  const bool locked = Call("COpenLocked", {}).Bool();
  if (locked) lastError_ = {kObjectErrorBase + code::kServerGone, {}};
  if (locked || !server_) return -1;
  const AutomationResult result = Call("COpen", {name, kind});
  if (!result.Ok()) return -1;
  if (result.Int() < 0) lastError_ = {kObjectErrorBase - result.Int(), {}};
  return std::max(result.Int(), -1);
}

int Link::ChannelReopen(const std::string& name) {
  const int opened = ChannelOpen(name);
  if (opened < 0) return -std::max(lastError_.Code(), 1);
  const AutomationResult framed = Use([opened](AutomationObject& server) {
    return server.Put("CFrame", {opened}, frame::kFramed);
  });
  if (framed.Ok()) return opened;
  const int code = lastError_.Code();
  Call("CClose", {opened});
  return -code;
}

bool Link::ConnectionReselect() {
  std::string answer;
  const int asked = CommandExchangeCode(channel_, "AA:dirn", answer);
  const bool answers = asked == 0 && !IsErrorAnswer(answer);
  if (answers && !messages_.Ask(text::kReselectAnswering)) return false;
  // A server that is gone, an exchange under way, a program that ends: nothing to open anew.
  if (state_ != LinkState::kChannel || busy_ || calls_ > 0 || givenUp_) {
    if (!givenUp_) messages_.Warn(asked != 0 ? asked : lastError_.Code());
    return false;
  }
  if (Call("COnlineEnabled", {channel_}).Bool()) {
    messages_.Warn(code::kOnlineActive);
    return false;
  }
  const std::string name = ConnectionName();
  Call("CClose", {channel_});
  if (server_) state_ = LinkState::kServer;
  const bool taken = ChannelTake(name);
  if (!taken) messages_.Warn(lastError_.Code(), lastError_.Detail());
  return taken;
}

bool Link::ChannelTake(const std::string& name) {
  const int opened = ChannelReopen(name);
  if (opened < 0) return false;
  channel_ = opened;
  state_ = LinkState::kChannel;
  return true;
}

int Link::ConnectionSwitch() {
  if (busy_ || calls_ > 0) return text::kExchangeUnderWay;
  const std::string before = ConnectionName();
  if (state_ == LinkState::kChannel && Call("COnlineEnabled", {channel_}).Bool()) {
    return code::kOnlineActive;
  }
  const std::string chosen = AskChooser(before, 0, {});
  if (givenUp_ || chosen.empty()) return kNoneChosen;
  if (state_ == LinkState::kChannel) Call("CClose", {channel_});
  if (server_) state_ = LinkState::kServer;
  // The server may have gone by now, and the channel with it: a new one is as good.
  if (!server_ && CommServerCreate()) state_ = LinkState::kServer;
  if (ChannelTake(chosen)) return 0;
  const ServerError error = lastError_;
  const bool restored = !before.empty() && ChannelTake(before);
  lastError_ = error;
  return restored ? error.Code() : text::kNoneRestored;
}

bool Link::SecondGeneration() const {
  return serverClass_ == kSecondGeneration;
}

void Link::ConnectionClose() {
  // Nothing that runs during the call may find the object that is given up.
  const std::unique_ptr<AutomationObject> server = std::move(server_);
  const LinkState before = std::exchange(state_, LinkState::kNoServer);
  goneCode_ = code::kNoChannel;
  if (before == LinkState::kChannel && server) server->Call("CClose", {channel_});
}

std::string Link::ConnectionName() {
  return state_ == LinkState::kChannel ? Call("CGetConnection", {channel_}).Text() : std::string();
}

int Link::ChannelTimeoutSet(int seconds) {
  const int earlier = std::exchange(defTimeout_, seconds);
  if (state_ != LinkState::kChannel) return earlier;
  const AutomationResult old = Get("CTimeout");
  Put("CTimeout", seconds);
  return old.Ok() ? old.Int() : earlier;
}

void Link::FrameSave() {
  savedFrame_ = Get("CFrame").Int();
  savedTranslate_ = Get("CTranslate").Int();
}

void Link::FrameRestore() {
  Put("CFrame", savedFrame_);
  Put("CTranslate", savedTranslate_);
}

void Link::Doubt() {
  if (lost_ == 0) lost_ = code::kNoChannel;
}

void Link::LookForLoss() {
  if (state_ != LinkState::kChannel || busy_ || calls_ > 0) return;
  DropEarlier(channel_);
}

void Link::KeepAliveTick(const std::string& text) {
  if (busy_ || calls_ > 0) return;
  if (state_ == LinkState::kServer) {
    Call("CAbout", {text});
  } else if (state_ == LinkState::kChannel) {
    const bool end = Call("CTerminateApps", {}).Bool();
    if (!end && server_) Call("CNotifyApp", {channel_, text});
    if (end && onTerminate) onTerminate();
  }
}

void Link::ServerErrorReport(const ServerError& error, bool quiet) const {
  const int code = error.Code();
  if (error.number < 0) {
    Message message{.number = code,
                    .text = {},
                    .title = messages_.Text(text::kError),
                    .style = MessageStyle::kExclamation};
    const std::string text = messages_.Shown(code);
    message.text = code >= 10011 && code <= 10038
                       ? text
                       : messages_.Text(text::kError) + " " + std::to_string(code) + ": " +
                             (error.description.empty() ? text : error.description);
    dialogs_.Show(message);
  } else if (error.number > 0 && !quiet) {
    messages_.Warn(text::kRuntimeError,
                   "\nNr. " + std::to_string(error.number) + " = " + error.description);
  }
}

AutomationResult Link::Call(std::string_view member, const Values& arguments) {
  return Use([&](AutomationObject& server) { return server.Call(member, arguments); });
}

AutomationResult Link::Get(std::string_view property) {
  return Use([&](AutomationObject& server) { return server.Get(property, {channel_}); });
}

AutomationResult Link::Put(std::string_view property, int value) {
  return Use([&](AutomationObject& server) { return server.Put(property, {channel_}, value); });
}

AutomationResult Link::Use(const std::function<AutomationResult(AutomationObject&)>& member) {
  AutomationResult result =
      givenUp_ ? AutomationResult{{}, text::kExchangeGivenUp, {}} : ObjectError(goneCode_, {});
  if (server_ && !givenUp_) {
    ++calls_;
    result = member(*server_);
    --calls_;
  }
  if (!result.Ok()) Raised(result);
  return result;
}

void Link::Raised(const AutomationResult& result) {
  lastError_ = {result.error, result.description};
  const int code = lastError_.Code();
  if (state_ == LinkState::kChannel && MeansLost(code)) {
    const bool before = std::exchange(lost_, code) != 0;
    if (!before && onLost) onLost(code);
  }
  // Nothing more can come from a channel or a server that is gone: the next open starts afresh.
  // Only the outermost call may give up the object; those inside are of timers during its wait.
  if (calls_ > 0 || (code != code::kNoChannel && code != code::kServerGone)) return;
  if (code == code::kServerGone) server_.reset();
  ConnectionClose();
  goneCode_ = code;
}

}  // namespace ostrel
