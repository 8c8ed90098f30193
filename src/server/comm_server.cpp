#include "server/comm_server.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

#include "server/line_text.h"
#include "server/wipe.h"
#include "wire/codes.h"
#include "wire/def_timeout.h"
#include "wire/line_rules.h"

namespace ostrel {
namespace {

constexpr int kMaxTimeoutS = 3600;

/// Checks arguments against a pattern: "i" a number, "s" a text, after "|" they may be missing.
bool Fits(std::string_view pattern, const Values& arguments) {
  std::size_t taken = 0;
  bool optional = false;
  for (const char kind : pattern) {
    if (kind == '|') {
      optional = true;
      continue;
    }
    if (taken == arguments.size()) return optional;
    const Value& value = arguments[taken++];
    const bool fits = kind == 'i' ? std::holds_alternative<int>(value)
                                  : std::holds_alternative<std::string>(value);
    if (!fits) return false;
  }
  return taken == arguments.size();
}

AutomationResult Done(Value value = {}) {
  return {std::move(value), 0, {}};
}

std::string TooLongALine() {
  return "the line is longer than " + std::to_string(kMaxLine) + " characters";
}

AutomationResult BadArguments(std::string description) {
  return {{}, CommServer::kBadArguments, std::move(description)};
}

}  // namespace

struct CommServer::Member {
  std::string_view name;
  std::string_view pattern;  // of its arguments
  Handler handler;           // null: not a member of a channel
};

const CommServer::Member* CommServer::FindMember(std::string_view name) {
  static constexpr std::array kMembers = {
      Member{"CSend", "is", &CommServer::CSend},
      Member{"CReceive", "i", &CommServer::CReceive},
      Member{"CCancel", "i", &CommServer::CCancel},
      Member{"CStatus", "i", &CommServer::CStatus},
      Member{"COnlineEnabled", "i", &CommServer::COnlineEnabled},
      Member{"CClose", "i", &CommServer::CClose},
      Member{"CGetConnection", "i", &CommServer::CGetConnection},
      Member{"CTimeout", "i|i", &CommServer::CTimeout},
      Member{"CFrame", "i|i", &CommServer::CFrame},
      Member{"CTranslate", "i|i", &CommServer::CTranslate},
      Member{"CNotifyApp", "i|s", &CommServer::CNotifyApp},
      Member{"COpen", "s|i", nullptr},
      Member{"COpenLocked", "", nullptr},
      Member{"CTerminateApps", "", nullptr},
      Member{"CAbout", "|s", nullptr},
      Member{"SimulatorBootloader", "s", nullptr},
  };
  const auto found = std::find_if(kMembers.begin(), kMembers.end(),
                                  [name](const Member& member) { return member.name == name; });
  return found == kMembers.end() ? nullptr : &*found;
}

CommServer::CommServer(SettingsStore& settings) : settings_(settings), channels_(settings) {
  connect(&channels_, &Channels::StatusChanged, this, &CommServer::StatusChanged);
  connect(&channels_, &Channels::OnlineChanged, this, &CommServer::OnlineChanged);
}

void CommServer::Call(int client, std::string_view name, const Values& arguments,
                      const Reply& reply) {
  const Member* member = FindMember(name);
  if (member == nullptr) {
    reply({{}, kUnknownMember, "there is no member " + std::string(name)});
  } else if (!Fits(member->pattern, arguments)) {
    reply(BadArguments("the arguments do not fit " + std::string(name)));
  } else if (name == "COpen") {
    COpen(client, arguments, reply);
  } else if (name == "SimulatorBootloader") {
    reply(channels_.StartBootloader(std::get<std::string>(arguments[0])));
  } else if (name == "CAbout") {
    reply(Done());
  } else if (member->handler == nullptr) {
    reply(Done(ending_));
  } else if (const int number = std::get<int>(arguments[0]);
             Channel* channel = channels_.Find(client, number)) {
    reply((this->*member->handler)(*channel, arguments));
  } else {
    reply(ObjectError(Code::kNoChannel, "channel " + std::to_string(number) + " is not open"));
  }
}

void CommServer::Notify(int client, std::string_view name, const Values& arguments) {
  const int* number = arguments.empty() ? nullptr : std::get_if<int>(&arguments[0]);
  const int sender = name == "CSend" && number != nullptr ? *number : 0;
  Call(client, name, arguments, [this, client, sender](const AutomationResult& result) {
    Channel* channel = result.Ok() ? nullptr : channels_.Find(client, sender);
    if (channel == nullptr || result.error == kBadArguments) return;
    const int code = result.error - kObjectErrorBase;
    emit StatusChanged(client, channel->Fail(code, result.description));
  });
}

void CommServer::COpen(int client, const Values& arguments, const Reply& reply) {
  const std::string& name = std::get<std::string>(arguments[0]);
  const int kind = arguments.size() > 1 ? std::get<int>(arguments[1]) : ChannelKind::kCommand;
  if (kind != ChannelKind::kCommand && kind != ChannelKind::kOnline) {
    reply(BadArguments("a channel's kind is 2 or 3"));
  } else if (ending_) {
    reply(ObjectError(Code::kPortFailure, "the communication server is ending"));
  } else {
    const auto opened = [this, client, reply](const AutomationResult& result) {
      Channel* channel = result.Ok() ? channels_.Find(client, result.Int()) : nullptr;
      if (channel != nullptr) channel->timeoutS = ReadDefTimeout(settings_).seconds;
      reply(result);
    };
    channels_.Open(client, name, kind, opened);
  }
}

AutomationResult CommServer::CClose(Channel& channel, const Values&) {
  channels_.Close(channel.number);
  return Done();
}

AutomationResult CommServer::CGetConnection(Channel& channel, const Values&) {
  return Done(channel.line->connection.name);
}

AutomationResult CommServer::COnlineEnabled(Channel& channel, const Values&) {
  return Done(channel.line->onlineChannel != 0);
}

AutomationResult CommServer::CStatus(Channel& channel, const Values&) {
  return channel.Status();
}

AutomationResult CommServer::CSend(Channel& channel, const Values& arguments) {
  const int exchange = channel.NextExchange();
  auto bytes = ToLatin1(std::get<std::string>(arguments[1]));
  if (!bytes) return ObjectError(Code::kSendError, "the line holds a character outside ISO 8859-1");
  const Line& line = *channel.line;
  if (line.onlineChannel != 0 && line.onlineChannel != channel.number) {
    return ObjectError(Code::kOnlineActive,
                       "an online channel is open on \"" + line.connection.name + "\"");
  }
  if (channel.Transparent()) {
    line.bus->SendRaw(*bytes);
    Wipe(*bytes);
    return Done();
  }
  auto single = SingleLine(*bytes);
  Wipe(*bytes);
  if (!single) return ObjectError(Code::kSendError, "the text is more than one line");
  if (single->size() > kMaxLine) return ObjectError(Code::kSendError, TooLongALine());
  channel.Wait();
  LineOut out;
  out.client = channel.client;
  out.channel = channel.number;
  out.exchange = exchange;
  out.line.swap(*single);
  out.limit = QDeadlineTimer(channel.timeoutS * 1000, Qt::PreciseTimer);
  if (!line.bus->Send(std::move(out))) {
    channel.Clear();
    return ObjectError(Code::kSendError, "too many lines of this program wait");
  }
  return Done();
}

AutomationResult CommServer::CCancel(Channel& channel, const Values&) {
  if (channel.Transparent()) return Done(false);
  channel.GiveUp();
  return Done(channel.line->bus->TakeBack(channel.number));
}

AutomationResult CommServer::CReceive(Channel& channel, const Values&) {
  return channel.Receive();
}

AutomationResult CommServer::CTimeout(Channel& channel, const Values& arguments) {
  if (arguments.size() < 2) return Done(channel.timeoutS);
  const int seconds = std::get<int>(arguments[1]);
  if (seconds < 1 || seconds > kMaxTimeoutS) {
    return BadArguments("a time-out is 1 to " + std::to_string(kMaxTimeoutS) + " seconds");
  }
  channel.timeoutS = seconds;
  return Done();
}

AutomationResult CommServer::CFrame(Channel& channel, const Values& arguments) {
  if (arguments.size() < 2) return Done(channel.frame);
  const int frame = std::get<int>(arguments[1]);
  if (frame != FrameMode::kTransparent && frame != FrameMode::kFramed) {
    return ObjectError(Code::kFrameFailure, "a frame mode is 0 or 2");
  }
  if (frame == FrameMode::kTransparent && channel.kind != ChannelKind::kOnline) {
    return ObjectError(Code::kNeedsOnline, "only an online channel is transparent");
  }
  channels_.SetFrame(channel, frame);
  return Done();
}

AutomationResult CommServer::CTranslate(Channel& channel, const Values& arguments) {
  if (arguments.size() < 2) return Done(channel.translate);
  channel.translate = std::get<int>(arguments[1]);
  return Done();
}

AutomationResult CommServer::CNotifyApp(Channel&, const Values&) {
  return Done();
}

}  // namespace ostrel
