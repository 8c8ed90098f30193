#pragma once

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QJsonObject>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QTimer>
#include <map>
#include <memory>

#include "server/comm_server.h"
#include "server/json_rpc.h"
#include "server/request_reader.h"
#include "server/socket_path.h"

namespace ostrel {

/// Offers the communication server's object to client programs of the same user on a local socket.
class RpcServer : public QObject {
  Q_OBJECT
 public:
  /// The most that may wait to be read by a client, in bytes.
  static constexpr qint64 kMaxUnsent = 4 * 1024 * 1024;
  /// The most that is kept for all clients together, read and unsent, in bytes.
  static constexpr qint64 kMaxKept = 24 * 1024 * 1024;

  /// Ends `idleMs` after the last client has gone, also when none ever comes.
  RpcServer(CommServer& comm, int idleMs);
  ~RpcServer() override;

  /// Starts to listen, so that only this user can connect.
  SocketClaim Listen(const QString& path);

 signals:
  /// There is nothing more to do.
  void Ended();
  /// What happens, for the log.
  void Noted(const QString& text);

 private:
  struct Session {
    int client = 0;
    QLocalSocket* socket = nullptr;
    RequestReader requests;
    bool more = false;     // something is left for its next turn
    QDeadlineTimer pause;  // until then others have theirs
    qint64 kept = 0;       // of it, in bytes, when that was looked at last
    quint64 large = 0;     // which of those that keep much it was; 0: it does not
  };

  void OnNewConnection();
  bool IsOwnUser(QLocalSocket& socket);
  void OnReadable(Session& session);
  void OnTurn();
  void Serve(Session& session);
  void Rest(Session& session, int ms);
  void StartTurn(int ms);
  void Weigh(Session& session);
  void CutOff(Session& session, const char* why);
  void OnGone(int client);
  void Handle(int client, rpc::Request& request);
  void Stop(int client);
  void CheckEnd();
  void Send(int client, const QByteArray& message);
  QJsonObject Status() const;

  CommServer& comm_;
  QLocalServer server_;
  std::unique_ptr<QLockFile> lock_;
  std::map<int, std::unique_ptr<Session>> sessions_;
  int lastClient_ = 0;
  quint64 lastLarge_ = 0;
  qint64 kept_ = 0;     // of all sessions
  int stopClient_ = 0;  // who asked for the end; 0: nobody
  QTimer turn_;
  QTimer idle_;
  QTimer stop_;
  QElapsedTimer running_;
};

}  // namespace ostrel
