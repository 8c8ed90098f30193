#pragma once

#include <QByteArray>
#include <QHash>
#include <QJsonObject>
#include <map>
#include <string_view>

#include "wire/automation.h"
#include "wire/codes.h"

namespace ostrel {

AutomationResult ErrorFrom(const QJsonValue& error);
Value ValueFrom(const QJsonValue& json);

/// What the server told last of a channel. Both sides count the exchanges, so that a notice that
/// comes late is known by its number.
class ChannelNews {
 public:
  int status = ChannelStatus::kNothingSent;
  bool framed = true;
  bool online = false;
  bool answerHere = false;

  /// A line is on its way.
  void Sent();
  /// Nobody waits any more. What has gone wrong is told all the same.
  void GiveUp();
  void Take(const QJsonObject& notice);
  /// CStatus: a failure is raised once.
  AutomationResult Status();
  /// CReceive of an answer that is here.
  AutomationResult Receive();

 private:
  int exchange_ = 0;
  AutomationResult answer_;  // or the failure
  AutomationResult after_;   // a failure that came while the answer had not been fetched
};

/// What the server says, line by line: replies that are awaited, and news of the channels.
class ServerNews {
 public:
  /// The longest line that a server sends, in bytes: a long answer, every letter escaped.
  static constexpr qsizetype kMaxLine = 4 * 1024 * 1024;

  void Take(const QByteArray& line);

  /// The reply with this id is kept until it is taken, or no longer awaited.
  void Await(int id) { replies_.insert(id, {}); }
  bool Replied(int id) const { return !replies_.value(id).isEmpty(); }
  QJsonObject TakeReply(int id) { return replies_.take(id); }

  std::map<int, ChannelNews> channels;

 private:
  QHash<int, QJsonObject> replies_;
};

}  // namespace ostrel
