#pragma once

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
  };

  void OnNewConnection();
  bool IsOwnUser(QLocalSocket& socket);
  void OnReadable(Session& session);
  void OnGone(int client);
  void Handle(int client, const rpc::Request& request);
  void Stop(int client);
  void CheckEnd();
  void Send(int client, const QByteArray& message);
  QJsonObject Status() const;

  CommServer& comm_;
  QLocalServer server_;
  std::unique_ptr<QLockFile> lock_;
  std::map<int, std::unique_ptr<Session>> sessions_;
  int lastClient_ = 0;
  int stopClient_ = 0;  // who asked for the end; 0: nobody
  QTimer idle_;
  QTimer stop_;
  QElapsedTimer running_;
};

}  // namespace ostrel
