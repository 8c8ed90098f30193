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
  constexpr int kLosses[] = {Code::kPortFailure, Code::kReceiveError, Code::kNoChannel,
                             Code::kPortInUse,   Code::kServerGone,   Code::kCannotConnect};
  return std::find(std::begin(kLosses), std::end(kLosses), code) != std::end(kLosses);
}

/// The server says in front of its description that a line never went out.
Error ErrorFrom(int code, std::string_view description) {
  const bool unsent = code == Code::kTimeout && description.starts_with(kUnsentText);
  if (unsent) description.remove_prefix(std::string_view(kUnsentText).size());
  if (unsent && description.starts_with(": ")) description.remove_prefix(2);
  return {code, std::string(description), false, unsent};
}

/// The code of an object error; any other number as it is.
int CodeOf(int number) {
  const int code = number - kObjectErrorBase;
  return number < 0 && code >= 0 && code <= 0xFFFF ? code : number;
}

}  // namespace

Link::Link(AutomationFactory& factory, SettingsStore& settings, Clock& clock,
           std::filesystem::path programFolder)
    : factory_(factory),
      settings_(settings),
      clock_(clock),
      programFolder_(std::move(programFolder)) {}

Link::~Link() {
  ConnectionClose();
}

bool Link::LoadSettings() {
  const AnswerTimeout timeout = ReadDefTimeout(settings_);
  defTimeout_ = timeout.seconds;
  WriteDefTimeout(settings_, defTimeout_);
  testMode_ = settings_.ReadShared(keys::kServerMisc, "Testmode", "0") == "9";
  return !timeout.corrected;
}

Error Link::CommServerCreate() {
  std::error_code ignored;
  const bool inProcess = std::filesystem::exists(programFolder_ / "OstrelTESK.dll", ignored) &&
                         settings_.ReadShared(keys::kServerMisc, "UsePriorServer", "0") == "0";
  serverClass_ = inProcess ? kSecondGeneration : "ZubServer";
  const std::string className = serverClass_ + ".TESKComm";
  std::string reason;
  for (int attempt = 0; attempt < (inProcess ? 1 : kAttempts) && !givenUp_; ++attempt) {
    AutomationFactory::Created created = factory_.Create(className);
    server_ = std::move(created.object);
    if (server_) return {};
    reason = created.description;
  }
  return {Code::kServerNotStarted, reason + "\nClassname: " + className};
}

Error Link::ConnectionOpen(std::string name, int frame, int kind) {
  // Also finds out that the server is gone; then everything starts afresh.
  if (server_) Call("COpenLocked", {});
  if (state_ == LinkState::kNoServer) {
    if (Error error = CommServerCreate()) return error;
    state_ = LinkState::kServer;
  }
  if (state_ == LinkState::kServer) {
    Opened opened = ChannelOpen(name, kind);
    while (opened.error && ChooseConnection(name, opened.error)) opened = ChannelOpen(name, kind);
    // The chooser told, too.
    opened.error.told = opened.error && state_ == LinkState::kServer && offerChooser_;
    if (opened.error) return opened.error;
    channel_ = opened.channel;
    state_ = LinkState::kChannel;
  }
  if (frame >= 0) Put("CFrame", frame);
  return state_ == LinkState::kChannel ? Error() : lastError_;
}

bool Link::ChooseConnection(std::string& name, const Error& why) {
  // A server that is gone has no connections to choose from.
  if (!server_ || !offerChooser_ || givenUp_) return false;
  name = AskChooser(name, why.code, explain ? explain(why) : why.detail);
  return !name.empty();
}

std::string Link::AskChooser(const std::string& name, int code, const std::string& reason) {
  if (!chooser_) chooser_ = factory_.Create(serverClass_ + ".Chooser").object;
  return chooser_ ? chooser_->Call("Select", {name, code, reason}).Text() : std::string();
}

Link::Opened Link::ChannelOpen(const std::string& name, int kind) {
  const bool locked = Call("COpenLocked", {}).Bool();
  if (locked) return {{Code::kServerGone, {}}};
  if (!server_) return {lastError_};
  const AutomationResult result = Call("COpen", {name, kind});
  if (!result.Ok()) return {lastError_};
  if (result.Int() < 0) return {{-result.Int(), {}}};
  return {{}, result.Int()};
}

Link::Opened Link::ChannelReopen(const std::string& name) {
  Opened opened = ChannelOpen(name);
  if (opened.error) return opened;
  const AutomationResult framed = Use([&opened](AutomationObject& server) {
    return server.Put("CFrame", {opened.channel}, FrameMode::kFramed);
  });
  if (framed.Ok()) return opened;
  const Error error = lastError_;
  ChannelClose(opened.channel);
  return {error};
}

void Link::ChannelClose(int channel) {
  Call("CClose", {channel});
}

Error Link::ConnectionReselect(const std::function<bool()>& confirm) {
  const Answer asked = CommandExchangeCode(channel_, "AA:dirn");
  if (asked.Ok() && !IsErrorAnswer(asked.text) && !confirm()) return Error::Told();
  // A server that is gone, an exchange under way, a program that ends: nothing to open anew.
  if (givenUp_) return Error::Told();
  if (state_ != LinkState::kChannel || busy_ || calls_ > 0) {
    return asked.error ? asked.error : lastError_;
  }
  if (Call("COnlineEnabled", {channel_}).Bool()) return {Code::kOnlineActive, {}};
  const std::string name = ConnectionName();
  ChannelClose(channel_);
  if (server_) state_ = LinkState::kServer;
  return ChannelTake(name);
}

Error Link::ChannelTake(const std::string& name) {
  const Opened opened = ChannelReopen(name);
  if (opened.error) return opened.error;
  channel_ = opened.channel;
  state_ = LinkState::kChannel;
  return {};
}

Error Link::ConnectionSwitch() {
  if (busy_ || calls_ > 0) return {text::kExchangeUnderWay, {}};
  const std::string before = ConnectionName();
  if (state_ == LinkState::kChannel && Call("COnlineEnabled", {channel_}).Bool()) {
    return {Code::kOnlineActive, {}};
  }
  const std::string chosen = AskChooser(before, 0, {});
  if (givenUp_ || chosen.empty()) return Error::Told();
  if (state_ == LinkState::kChannel) ChannelClose(channel_);
  if (server_) state_ = LinkState::kServer;
  // The server may have gone by now, and the channel with it: a new one is as good.
  if (!server_ && !CommServerCreate()) state_ = LinkState::kServer;
  const Error error = ChannelTake(chosen);
  if (!error) return {};
  const bool restored = !before.empty() && !ChannelTake(before);
  return restored ? error : Error{text::kNoneRestored, {}};
}

bool Link::SecondGeneration() const {
  return serverClass_ == kSecondGeneration;
}

void Link::ConnectionClose() {
  // Nothing that runs during the call may find the object that is given up.
  const std::unique_ptr<AutomationObject> server = std::move(server_);
  const LinkState before = std::exchange(state_, LinkState::kNoServer);
  goneCode_ = Code::kNoChannel;
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
  if (lost_ == 0) lost_ = Code::kNoChannel;
}

void Link::LookForLoss() {
  if (state_ != LinkState::kChannel || busy_ || calls_ > 0) return;
  DropEarlier(channel_);
}

void Link::KeepAliveTick(const std::string& text) {
  if (calls_ > 0) return;
  if (state_ == LinkState::kServer) {
    Call("CAbout", {text});
  } else if (state_ == LinkState::kChannel) {
    const bool end = Call("CTerminateApps", {}).Bool();
    if (!end && server_) Call("CNotifyApp", {channel_, text});
    if (end && onTerminate) onTerminate();
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
  const int code = CodeOf(result.error);
  lastError_ = ErrorFrom(code, result.description);
  if (state_ == LinkState::kChannel && MeansLost(code)) {
    const bool before = std::exchange(lost_, code) != 0;
    if (!before && onLost) onLost(code);
  }
  // Nothing more can come from a channel or a server that is gone: the next open starts afresh.
  // Only the outermost call may give up the object; those inside are of timers during its wait.
  if (calls_ > 0 || (code != Code::kNoChannel && code != Code::kServerGone)) return;
  if (code == Code::kServerGone) server_.reset();
  ConnectionClose();
  goneCode_ = code;
}

}  // namespace ostrel
