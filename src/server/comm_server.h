#pragma once

#include <QObject>
#include <functional>
#include <string_view>

#include "base/settings_store.h"
#include "server/channels.h"
#include "wire/automation.h"

namespace ostrel {

/// The communication server's object: its members, called by name. A channel belongs to the client
/// that opened it.
class CommServer : public QObject {
  Q_OBJECT
 public:
  using Reply = Channels::Reply;

  /// Errors of a call to a member that does not exist, or with arguments that do not fit.
  static constexpr int kUnknownMember = -32601;
  static constexpr int kBadArguments = -32602;

  explicit CommServer(SettingsStore& settings);

  /// Calls a member; a property is put with one argument more than it is read with. The reply comes
  /// exactly once: at once, or for COpen when the line is open or failed to open.
  void Call(int client, std::string_view member, const Values& arguments, const Reply& reply);
  /// Calls a member for a client that awaits no reply. What CSend would raise is then the failure
  /// of its exchange.
  void Notify(int client, std::string_view name, const Values& arguments);
  /// Gives back all that a client has open.
  void ClientGone(int client) { channels_.ClientGone(client); }
  /// Asks all client programs to end; no channel is opened any more.
  void Terminate() { ending_ = true; }

  const std::map<std::string, std::unique_ptr<Line>>& Lines() const { return channels_.Lines(); }
  /// Tells each line that goes out and each answer, passwords masked. Call before the first COpen.
  void TraceTo(BusConnection::Trace trace) { channels_.TraceTo(std::move(trace)); }

 signals:
  /// Both may be sent from inside a call of a client.
  void StatusChanged(int client, const ostrel::StatusNotice& notice);
  void OnlineChanged(int client, int channel, bool enabled);

 private:
  using Handler = AutomationResult (CommServer::*)(Channel&, const Values&);
  struct Member;
  static const Member* FindMember(std::string_view name);

  void COpen(int client, const Values& arguments, const Reply& reply);
  AutomationResult CClose(Channel& channel, const Values& arguments);
  AutomationResult CGetConnection(Channel& channel, const Values& arguments);
  AutomationResult COnlineEnabled(Channel& channel, const Values& arguments);
  AutomationResult CStatus(Channel& channel, const Values& arguments);
  AutomationResult CSend(Channel& channel, const Values& arguments);
  AutomationResult CReceive(Channel& channel, const Values& arguments);
  AutomationResult CCancel(Channel& channel, const Values& arguments);
  AutomationResult CTimeout(Channel& channel, const Values& arguments);
  AutomationResult CFrame(Channel& channel, const Values& arguments);
  AutomationResult CTranslate(Channel& channel, const Values& arguments);
  AutomationResult CNotifyApp(Channel& channel, const Values& arguments);

  SettingsStore& settings_;
  Channels channels_;
  bool ending_ = false;
};

}  // namespace ostrel
