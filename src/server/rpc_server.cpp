#include "server/rpc_server.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <algorithm>
#include <utility>

namespace ostrel {
namespace {

constexpr int kStopMs = 3000;

}  // namespace

RpcServer::RpcServer(CommServer& comm, int idleMs) : comm_(comm) {
  running_.start();
  idle_.setSingleShot(true);
  idle_.setInterval(idleMs);
  stop_.setSingleShot(true);
  stop_.setInterval(kStopMs);
  connect(&idle_, &QTimer::timeout, this, &RpcServer::Ended);
  connect(&stop_, &QTimer::timeout, this, &RpcServer::Ended);
  connect(&server_, &QLocalServer::newConnection, this, &RpcServer::OnNewConnection);
  connect(&comm_, &CommServer::StatusChanged, this, [this](int client, const StatusNotice& notice) {
    Send(client, rpc::EncodeStatus(notice));
  });
  connect(&comm_, &CommServer::OnlineChanged, this, [this](int client, int channel, bool enabled) {
    Send(client, rpc::EncodeOnline(channel, enabled));
  });
}

RpcServer::~RpcServer() {
  comm_.disconnect(this);
  server_.close();
  for (const auto& [client, session] : sessions_) {
    session->socket->disconnect(this);
    comm_.ClientGone(client);
  }
}

SocketClaim RpcServer::Listen(const QString& path) {
  auto lock = std::make_unique<QLockFile>(LockPath(path));
  SocketClaim claim = ClaimSocket(path, *lock);
  if (claim.kind != SocketClaim::kFree) return claim;
  const mode_t before = umask(0177);
  const bool listening = server_.listen(path);
  umask(before);
  if (!listening) return {SocketClaim::kRefused, path + ": " + server_.errorString()};
  lock_ = std::move(lock);
  idle_.start();
  return {};
}

void RpcServer::OnNewConnection() {
  while (QLocalSocket* socket = server_.nextPendingConnection()) {
    if (!IsOwnUser(*socket)) continue;
    const int client = ++lastClient_;
    auto session = std::make_unique<Session>();
    session->client = client;
    session->socket = socket;
    socket->setReadBufferSize(rpc::kMaxRequest);
    Session* const self = session.get();
    connect(socket, &QLocalSocket::readyRead, this, [this, self] { OnReadable(*self); });
    // Queued: a client that is cut off while it is served goes when that is done.
    connect(
        socket, &QLocalSocket::disconnected, this, [this, client] { OnGone(client); },
        Qt::QueuedConnection);
    sessions_.emplace(client, std::move(session));
    idle_.stop();
    emit Noted(QStringLiteral("client %1 has come").arg(client));
    // What it sent already, and that it went already, is not told again.
    OnReadable(*self);
    if (socket->state() != QLocalSocket::ConnectedState) OnGone(client);
  }
}

/// The modes of socket and folder keep other users out already, root and a change of modes aside.
bool RpcServer::IsOwnUser(QLocalSocket& socket) {
  const auto user = PeerUser(socket.socketDescriptor());
  if (user == geteuid()) return true;
  const QString who = user ? QString::number(*user) : QStringLiteral("unknown");
  emit Noted(QStringLiteral("a client of another user (%1) is turned away").arg(who));
  socket.abort();
  socket.deleteLater();
  return false;
}

void RpcServer::OnGone(int client) {
  const auto found = sessions_.find(client);
  if (found == sessions_.end()) return;
  found->second->socket->disconnect(this);
  found->second->socket->deleteLater();
  sessions_.erase(found);
  emit Noted(QStringLiteral("client %1 has gone").arg(client));
  comm_.ClientGone(client);
  if (sessions_.empty()) idle_.start();
  CheckEnd();
}

void RpcServer::OnReadable(Session& session) {
  session.requests.Add(session.socket->readAll());
  while (const auto item = session.requests.Next()) {
    if (const auto* refusal = std::get_if<rpc::Refusal>(&*item)) {
      Send(session.client, rpc::EncodeRefusal(*refusal));
    } else {
      Handle(session.client, std::get<rpc::Request>(*item));
    }
  }
}

void RpcServer::Handle(int client, const rpc::Request& request) {
  if (request.method == "ServerStatus" || request.method == "ServerStop") {
    if (request.method == "ServerStop") Stop(client);
    if (!request.notification) Send(client, rpc::EncodeObject(request.id, Status()));
    return;
  }
  if (request.notification) {
    comm_.Notify(client, request.method, request.arguments);
    return;
  }
  const auto reply = [this, client, id = request.id](const AutomationResult& result) {
    Send(client, rpc::EncodeResult(id, result));
  };
  comm_.Call(client, request.method, request.arguments, reply);
}

void RpcServer::Stop(int client) {
  comm_.Terminate();
  stopClient_ = client;
  if (!stop_.isActive()) stop_.start();
  // Behind the answer to this request.
  QMetaObject::invokeMethod(this, &RpcServer::CheckEnd, Qt::QueuedConnection);
}

/// The server that was asked to stop ends when only the client is left that asked.
void RpcServer::CheckEnd() {
  if (stopClient_ == 0) return;
  const bool waiting = std::any_of(sessions_.begin(), sessions_.end(), [this](const auto& entry) {
    return entry.first != stopClient_;
  });
  if (!waiting) emit Ended();
}

void RpcServer::Send(int client, const QByteArray& message) {
  const auto found = sessions_.find(client);
  if (found == sessions_.end()) return;
  QLocalSocket& socket = *found->second->socket;
  if (socket.state() != QLocalSocket::ConnectedState) return;
  socket.write(message);
  socket.flush();
  if (socket.bytesToWrite() <= kMaxUnsent) return;
  emit Noted(QStringLiteral("client %1 does not read, it is cut off").arg(client));
  socket.abort();
}

QJsonObject RpcServer::Status() const {
  QJsonArray connections;
  for (const auto& [key, line] : comm_.Lines()) {
    if (line->channels.empty()) continue;
    QJsonArray channels;
    for (const int number : line->channels) channels.append(number);
    connections.append(QJsonObject{{"name", QString::fromStdString(line->connection.name)},
                                   {"open", line->bus->IsOpen()},
                                   {"online", line->onlineChannel != 0},
                                   {"channels", channels}});
  }
  return {{"version", OSTREL_VERSION},
          {"pid", QCoreApplication::applicationPid()},
          {"clients", static_cast<int>(sessions_.size())},
          {"uptime", running_.elapsed() / 1000},
          {"connections", connections}};
}

}  // namespace ostrel
