#pragma once

#include <QByteArray>
#include <QElapsedTimer>
#include <QJsonValue>
#include <QLocalSocket>

#include "platform/server_news.h"
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
  AutomationResult Send(int channel, const Values& arguments);
  bool SurelyTaken(const ChannelNews& channel, const Values& arguments) const;
  void TakeTold();
  void Write(const QByteArray& request);
  AutomationResult RoundTrip(std::string_view method, const Values& arguments, int limitMs);
  bool WaitForReply(int id, int limitMs);
  void Read();

  QLocalSocket socket_;
  QElapsedTimer heard_;  // since the server told something, or a line went to it
  int lastId_ = 0;
  ServerNews news_;
  QJsonValue lastJson_;
};

}  // namespace ostrel
