#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QHash>
#include <QJsonObject>
#include <QLocalSocket>
#include <map>
#include <string>

#include "wire/automation.h"
#include "wire/codes.h"

namespace ostrel {

/// The communication server as an object of this process: every member is one request on the
/// server's socket. Statuses come as notices, so that polling "CStatus" costs no round trip.
/// "CSend" awaits no acknowledgement where nothing speaks against the line; should the server
/// refuse it all the same, "CStatus" raises that. A call that gets no answer in its time, or a
/// server that is gone, is error 10041.
class ServerProxy : public AutomationObject {
 public:
  /// Connects to the server's socket; Connected tells whether one listens there.
  explicit ServerProxy(const QString& socketPath);
  bool Connected() const { return socket_.state() == QLocalSocket::ConnectedState; }

  AutomationResult Call(std::string_view member, const Values& arguments) override;
  AutomationResult Get(std::string_view property, const Values& arguments) override;
  AutomationResult Put(std::string_view property, const Values& arguments,
                       const Value& value) override;

  /// A request of the server program itself; the result as JSON, or an error.
  AutomationResult Request(std::string_view method, const Values& arguments,
                           QJsonValue* json = nullptr);

 private:
  /// What the server told last of a channel. Both sides count the exchanges, so that a notice that
  /// comes late is known by its number.
  struct ChannelState {
    int exchange = 0;
    int status = status::kNothingSent;
    bool framed = true;
    bool online = false;
    bool answerHere = false;
    AutomationResult answer;  // or the failure
    AutomationResult after;   // a failure that came while the answer had not been fetched
  };

  AutomationResult Local(std::string_view member, ChannelState& channel);
  AutomationResult Send(int channel, const Values& arguments);
  bool SurelyTaken(const ChannelState& channel, const Values& arguments) const;
  void TakeTold();
  void Write(const QByteArray& request);
  AutomationResult RoundTrip(std::string_view method, const Values& arguments, int limitMs);
  bool WaitForReply(int id, int limitMs);
  void Read();
  void Take(const QByteArray& line);
  void TakeStatus(const QJsonObject& notice);

  QLocalSocket socket_;
  QElapsedTimer heard_;  // since the server told something, or a line went to it
  int lastId_ = 0;
  QHash<int, QJsonObject> replies_;
  std::map<int, ChannelState> channels_;
  QJsonValue lastJson_;
};

}  // namespace ostrel
