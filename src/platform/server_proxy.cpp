#include "platform/server_proxy.h"

#include <poll.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <algorithm>
#include <utility>

#include "platform/event_pump.h"
#include "server/json_rpc.h"
#include "server/socket_path.h"
#include "wire/line_rules.h"

namespace ostrel {

namespace {

constexpr int kConnectMs = 1000;
constexpr int kCallMs = 3000;
constexpr int kOpenMs = 10000;
// The server's answers come well within this; only after it the window gets its turn.
constexpr int kBlockMs = 50;
constexpr qsizetype kRoomForId = 32;
// A server that has been silent for so long while an answer is awaited is asked whether it lives.
constexpr int kSilentMs = 1000;

int NumberAt(const Values& arguments, std::size_t place) {
  const int* number = place < arguments.size() ? std::get_if<int>(&arguments[place]) : nullptr;
  return number != nullptr ? *number : -1;
}

}  // namespace

ServerProxy::ServerProxy(const QString& socketPath) {
  QObject::connect(&socket_, &QLocalSocket::readyRead, &socket_, [this] { Read(); });
  socket_.connectToServer(socketPath);
  socket_.waitForConnected(kConnectMs);
  // Passwords go this way; in a folder that others can write, another user's program may listen.
  if (Connected() && PeerUser(socket_.socketDescriptor()) != getuid()) socket_.abort();
}

AutomationResult ServerProxy::Call(std::string_view member, const Values& arguments) {
  auto& channels = news_.channels;
  const int number = NumberAt(arguments, 0);
  auto channel = channels.find(number);
  if (channel != channels.end() && member == "CStatus" &&
      channel->second.status == ChannelStatus::kWaiting && heard_.hasExpired(kSilentMs)) {
    const AutomationResult alive = RoundTrip("COpenLocked", {}, kCallMs);
    if (!alive.Ok()) return alive;
    // Other events may have run meanwhile.
    channel = channels.find(number);
  }
  // Above all that the line was lost before what is going to be sent.
  if (member == "CStatus" && channel != channels.end() &&
      channel->second.status == ChannelStatus::kNothingSent) {
    TakeTold();
  }
  if (channel != channels.end() && Connected()) {
    if (member == "CSend") return Send(number, arguments);
    if (member == "CStatus") return channel->second.Status();
    if (member == "COnlineEnabled") return {channel->second.online, 0, {}};
    if (member == "CReceive" && channel->second.answerHere) return channel->second.Receive();
  }
  AutomationResult result = RoundTrip(member, arguments, member == "COpen" ? kOpenMs : kCallMs);
  if (member == "COpen" && result.Ok() && result.Int() >= 0) {
    channels[result.Int()].framed = NumberAt(arguments, 1) != ChannelKind::kOnline;
  }
  if (member == "CCancel" && channels.count(number) != 0) channels[number].GiveUp();
  if (member == "CClose") channels.erase(number);
  return result;
}

/// What the server told since the last call. To ask the system first is quicker than the socket's
/// own way of finding out that there is nothing.
void ServerProxy::TakeTold() {
  pollfd told{static_cast<int>(socket_.socketDescriptor()), POLLIN, 0};
  if (poll(&told, 1, 0) > 0) socket_.waitForReadyRead(0);
}

AutomationResult ServerProxy::Send(int number, const Values& arguments) {
  TakeTold();  // of an online channel
  const QByteArray request = rpc::EncodeRequest(0, "CSend", arguments);
  // The server would refuse it unseen, and neither side's count of exchanges may run ahead.
  if (request.size() + kRoomForId > rpc::kMaxRequest) {
    return ObjectError(Code::kSendError, "the line is longer than 1 MiB");
  }
  ChannelNews& channel = news_.channels[number];
  channel.Sent();
  if (Connected() && SurelyTaken(channel, arguments)) {
    Write(request);
    heard_.start();
    return {};
  }
  AutomationResult result = RoundTrip("CSend", arguments, kCallMs);
  // Other events may have run meanwhile; the channel is looked up again.
  if (!result.Ok() && news_.channels.count(number) != 0) {
    news_.channels[number].status = ChannelStatus::kNothingSent;
  }
  return result;
}

/// One plain line on a command channel while there is no online channel.
bool ServerProxy::SurelyTaken(const ChannelNews& channel, const Values& arguments) const {
  const auto* line = arguments.size() == 2 ? std::get_if<std::string>(&arguments[1]) : nullptr;
  return line != nullptr && line->size() <= kMaxLine && channel.framed && !channel.online &&
         std::all_of(line->begin(), line->end(), [](char c) { return c >= ' ' && c <= '~'; });
}

void ServerProxy::Write(const QByteArray& request) {
  socket_.write(request);
  socket_.flush();
}

AutomationResult ServerProxy::Get(std::string_view property, const Values& arguments) {
  return RoundTrip(property, arguments, kCallMs);
}

AutomationResult ServerProxy::Put(std::string_view property, const Values& arguments,
                                  const Value& value) {
  Values all = arguments;
  all.push_back(value);
  AutomationResult result = RoundTrip(property, all, kCallMs);
  const auto channel = news_.channels.find(NumberAt(arguments, 0));
  if (property == "CFrame" && result.Ok() && channel != news_.channels.end()) {
    channel->second.framed = NumberAt(all, 1) == FrameMode::kFramed;
  }
  return result;
}

AutomationResult ServerProxy::Request(std::string_view method, const Values& arguments,
                                      QJsonValue* json) {
  AutomationResult result = RoundTrip(method, arguments, kCallMs);
  if (json != nullptr) *json = lastJson_;
  return result;
}

AutomationResult ServerProxy::RoundTrip(std::string_view method, const Values& arguments,
                                        int limitMs) {
  if (!Connected()) return ObjectError(Code::kServerGone, "not connected");
  const int id = ++lastId_;
  news_.Await(id);
  Write(rpc::EncodeRequest(id, method, arguments));
  const bool replied = WaitForReply(id, limitMs);
  const QJsonObject reply = news_.TakeReply(id);
  if (!replied) {
    return ObjectError(Code::kServerGone, Connected() ? "no answer in time" : "connection lost");
  }
  if (const QJsonValue error = reply[QStringLiteral("error")]; error.isObject()) {
    return ErrorFrom(error);
  }
  lastJson_ = reply[QStringLiteral("result")];
  return {ValueFrom(lastJson_), 0, {}};
}

bool ServerProxy::WaitForReply(int id, int limitMs) {
  QElapsedTimer passed;
  passed.start();
  while (!news_.Replied(id)) {
    if (!Connected() || passed.elapsed() > limitMs) return false;
    if (passed.elapsed() < kBlockMs) {
      socket_.waitForReadyRead(std::max<int>(1, kBlockMs - int(passed.elapsed())));
    } else {
      PumpEvents(kBlockMs);
    }
  }
  return true;
}

void ServerProxy::Read() {
  heard_.start();
  while (socket_.canReadLine()) news_.Take(socket_.readLine());
  // What never ends is no server of ours.
  if (socket_.bytesAvailable() > ServerNews::kMaxLine) socket_.abort();
}

}  // namespace ostrel
