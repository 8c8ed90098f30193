#pragma once

#include <QObject>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "server/bus_connection.h"
#include "server/channel.h"
#include "server/port_maker.h"
#include "wire/automation.h"
#include "wire/connections.h"

namespace ostrel {

/// A connection that is or was in use, and the channels on it.
struct Line {
  Connection connection;
  std::unique_ptr<BusConnection> bus;
  std::vector<int> channels;
  int onlineChannel = 0;  // the channel of kind 3; 0: none is open
  /// Who opens it, until the connected station is current.
  std::function<void(const AutomationResult&)> onlineReply;
};

/// All open channels and the connections they run on. A connection's line is opened with its first
/// channel and closed after its last one.
class Channels : public QObject {
  Q_OBJECT
 public:
  using Reply = std::function<void(const AutomationResult&)>;

  explicit Channels(SettingsStore& settings) : settings_(settings) {}
  ~Channels() override;

  /// Opens a channel of kind 2 or 3; an empty name means the current connection. The reply, the
  /// channel's number or an error, comes when the line is open or failed to open.
  void Open(int client, const std::string& name, int kind, const Reply& reply);
  void Close(int number);
  /// Closes the client's channels; what it wanted to open is forgotten without a reply.
  void ClientGone(int client);

  /// The channel with this number, when it belongs to this client; null otherwise.
  Channel* Find(int client, int number);
  /// Frame mode 0 or 2; what was under way on the channel is forgotten.
  void SetFrame(Channel& channel, int frame);
  /// Starts the bootloader of a simulated connection's device, as by hand.
  AutomationResult StartBootloader(const std::string& name);

  const std::map<std::string, std::unique_ptr<Line>>& Lines() const { return lines_; }
  void TraceTo(BusConnection::Trace trace) { trace_ = std::move(trace); }

 signals:
  void StatusChanged(int client, const ostrel::StatusNotice& notice);
  void OnlineChanged(int client, int channel, bool enabled);

 private:
  struct Opening {
    int client;
    int kind;
    Line* line;
    Reply reply;
  };

  Line* LineFor(const Connection& connection);
  void MakeBus(Line& line);
  AutomationResult Refusal(const Line& line, int client, int kind) const;
  void FinishOpenings(Line& line, int code, const std::string& reason);
  void Add(const Opening& opening);
  void FinishOnline(Line& line, const AutomationResult& result);
  int FreeNumber();
  void ReleaseIfUnused(Line& line);
  void TellOnline(const Line& line);
  void TellLost(const Line& line, int code, const std::string& reason);

  void OnAnswered(int number, int exchange, const std::string& answer);
  void OnFailed(int number, int exchange, int code, const std::string& reason);
  void OnRaw(int number, const std::string& bytes);
  void OnRawFailed(Line& line, int code, const std::string& reason);

  SettingsStore& settings_;
  PortMaker portMaker_;
  BusConnection::Trace trace_;
  std::map<std::string, std::unique_ptr<Line>> lines_;  // by name in lower case
  std::map<int, Channel> channels_;
  std::vector<Opening> openings_;
  int lastNumber_ = 0;
};

}  // namespace ostrel
