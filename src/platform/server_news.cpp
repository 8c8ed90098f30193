#include "platform/server_news.h"

#include <QJsonDocument>
#include <utility>

namespace ostrel {

Value ValueFrom(const QJsonValue& json) {
  if (json.isBool()) return json.toBool();
  if (json.isDouble()) return json.toInt();
  if (json.isString()) return json.toString().toStdString();
  return {};
}

/// An error without a number would pass for none.
AutomationResult ErrorFrom(const QJsonValue& error) {
  const int code = error[QStringLiteral("code")].toInt();
  return {{},
          code != 0 ? code : kObjectErrorBase + Code::kServerGone,
          error[QStringLiteral("message")].toString().toStdString()};
}

void ChannelNews::Sent() {
  ++exchange_;
  status = ChannelStatus::kWaiting;
  answerHere = false;
  answer_ = after_ = {};
}

void ChannelNews::GiveUp() {
  if (!answer_.Ok()) return;
  status = ChannelStatus::kNothingSent;
  answerHere = false;
  answer_ = std::exchange(after_, {});
}

void ChannelNews::Take(const QJsonObject& notice) {
  if (notice[QStringLiteral("exchange")].toInt() != exchange_) return;
  const QJsonValue error = notice[QStringLiteral("error")];
  if (error.isObject() && answerHere) {
    after_ = ErrorFrom(error);  // the answer is to be had all the same
    return;
  }
  status =
      error.isObject() ? ChannelStatus::kNothingSent : notice[QStringLiteral("status")].toInt();
  if (error.isObject()) {
    answer_ = ErrorFrom(error);
  } else if (const QJsonValue answer = notice[QStringLiteral("answer")]; answer.isString()) {
    answer_ = {answer.toString().toStdString(), 0, {}};
    answerHere = status == ChannelStatus::kReady;
  }
}

AutomationResult ChannelNews::Status() {
  return answer_.Ok() ? AutomationResult{status, 0, {}} : Receive();
}

AutomationResult ChannelNews::Receive() {
  status = ChannelStatus::kNothingSent;
  answerHere = false;
  return std::exchange(answer_, std::exchange(after_, {}));
}

void ServerNews::Take(const QByteArray& line) {
  const QJsonObject message = QJsonDocument::fromJson(line).object();
  const QJsonValue method = message[QStringLiteral("method")];
  if (method.isUndefined()) {
    const auto reply = replies_.find(message[QStringLiteral("id")].toInt());
    if (reply != replies_.end()) *reply = message;
    return;
  }
  const QJsonObject notice = message[QStringLiteral("params")].toObject();
  const int number = notice[QStringLiteral("channel")].toInt();
  if (method.toString() == QLatin1String("Online")) {
    // It may come together with the reply that tells the channel's number.
    channels[number].online = notice[QStringLiteral("enabled")].toBool();
  } else if (const auto channel = channels.find(number);
             channel != channels.end() && method.toString() == QLatin1String("Status")) {
    channel->second.Take(notice);
  }
}

}  // namespace ostrel
