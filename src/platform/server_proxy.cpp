#include "platform/server_proxy.h"

#include <poll.h>
#include <unistd.h>

#include <QElapsedTimer>
#include <QJsonDocument>
#include <algorithm>
#include <utility>

#include "platform/event_pump.h"
#include "server/json_rpc.h"
#include "server/socket_path.h"

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

Value FromJson(const QJsonValue& json) {
  if (json.isBool()) return json.toBool();
  if (json.isDouble()) return json.toInt();
  if (json.isString()) return json.toString().toStdString();
  return {};
}

AutomationResult FromError(const QJsonValue& error) {
  return {{},
          error[QStringLiteral("code")].toInt(),
          error[QStringLiteral("message")].toString().toStdString()};
}

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
  const int number = NumberAt(arguments, 0);
  auto channel = channels_.find(number);
  if (channel != channels_.end() && member == "CStatus" &&
      channel->second.status == status::kWaiting && heard_.hasExpired(kSilentMs)) {
    const AutomationResult alive = RoundTrip("COpenLocked", {}, kCallMs);
    if (!alive.Ok()) return alive;
    // Other events may have run meanwhile.
    channel = channels_.find(number);
  }
  // Above all that the line was lost before what is going to be sent.
  if (member == "CStatus" && channel != channels_.end() &&
      channel->second.status == status::kNothingSent) {
    TakeTold();
  }
  if (channel != channels_.end() && Connected()) {
    if (member == "CSend") return Send(number, arguments);
    if (member == "CStatus" || member == "COnlineEnabled" ||
        (member == "CReceive" && channel->second.answerHere)) {
      return Local(member, channel->second);
    }
  }
  AutomationResult result = RoundTrip(member, arguments, member == "COpen" ? kOpenMs : kCallMs);
  if (member == "COpen" && result.Ok() && result.Int() >= 0) {
    channels_[result.Int()].framed = NumberAt(arguments, 1) != kind::kOnline;
  }
  if (member == "CClose") channels_.erase(number);
  return result;
}

AutomationResult ServerProxy::Local(std::string_view member, ChannelState& channel) {
  if (member == "COnlineEnabled") return {channel.online, 0, {}};
  if (member == "CStatus" && channel.answer.Ok()) return {channel.status, 0, {}};
  // The answer, or the failure: either is given once.
  channel.status = status::kNothingSent;
  channel.answerHere = false;
  return std::exchange(channel.answer, std::exchange(channel.after, {}));
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
    return ObjectError(code::kSendError, "the line is longer than 1 MiB");
  }
  ChannelState& channel = channels_[number];
  ++channel.exchange;
  channel.status = status::kWaiting;
  channel.answerHere = false;
  channel.answer = {};
  channel.after = {};
  if (Connected() && SurelyTaken(channel, arguments)) {
    Write(request);
    heard_.start();
    return {};
  }
  AutomationResult result = RoundTrip("CSend", arguments, kCallMs);
  // Other events may have run meanwhile; the channel is looked up again.
  if (!result.Ok() && channels_.count(number) != 0) channels_[number].status = status::kNothingSent;
  return result;
}

/// One plain line on a command channel while there is no online channel.
bool ServerProxy::SurelyTaken(const ChannelState& channel, const Values& arguments) const {
  const auto* line = arguments.size() == 2 ? std::get_if<std::string>(&arguments[1]) : nullptr;
  return line != nullptr && channel.framed && !channel.online &&
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
  const auto channel = channels_.find(NumberAt(arguments, 0));
  if (property == "CFrame" && result.Ok() && channel != channels_.end()) {
    channel->second.framed = NumberAt(all, 1) == frame::kFramed;
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
  if (!Connected()) return ObjectError(code::kServerGone, "not connected");
  const int id = ++lastId_;
  Write(rpc::EncodeRequest(id, method, arguments));
  if (!WaitForReply(id, limitMs)) {
    return ObjectError(code::kServerGone, Connected() ? "no answer in time" : "connection lost");
  }
  const QJsonObject reply = replies_.take(id);
  if (const QJsonValue error = reply[QStringLiteral("error")]; error.isObject()) {
    return FromError(error);
  }
  lastJson_ = reply[QStringLiteral("result")];
  return {FromJson(lastJson_), 0, {}};
}

bool ServerProxy::WaitForReply(int id, int limitMs) {
  QElapsedTimer passed;
  passed.start();
  while (!replies_.contains(id)) {
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
  while (socket_.canReadLine()) Take(socket_.readLine());
}

void ServerProxy::Take(const QByteArray& line) {
  const QJsonObject message = QJsonDocument::fromJson(line).object();
  const QJsonValue method = message[QStringLiteral("method")];
  if (method.isUndefined()) {
    const int id = message[QStringLiteral("id")].toInt();
    if (id > 0) replies_.insert(id, message);
    return;
  }
  const QJsonObject notice = message[QStringLiteral("params")].toObject();
  if (method.toString() == QLatin1String("Status")) {
    TakeStatus(notice);
  } else if (method.toString() == QLatin1String("Online")) {
    // It may come together with the reply that tells the channel's number.
    channels_[notice[QStringLiteral("channel")].toInt()].online =
        notice[QStringLiteral("enabled")].toBool();
  }
}

void ServerProxy::TakeStatus(const QJsonObject& notice) {
  const auto found = channels_.find(notice[QStringLiteral("channel")].toInt());
  if (found == channels_.end()) return;
  ChannelState& channel = found->second;
  if (notice[QStringLiteral("exchange")].toInt() != channel.exchange) return;
  const QJsonValue error = notice[QStringLiteral("error")];
  if (error.isObject() && channel.answerHere) {
    channel.after = FromError(error);  // the answer is to be had all the same
    return;
  }
  channel.status = notice[QStringLiteral("status")].toInt();
  if (error.isObject()) {
    channel.answer = FromError(error);
  } else if (const QJsonValue answer = notice[QStringLiteral("answer")]; answer.isString()) {
    channel.answer = {answer.toString().toStdString(), 0, {}};
    channel.answerHere = channel.status == status::kReady;
  }
}

}  // namespace ostrel
