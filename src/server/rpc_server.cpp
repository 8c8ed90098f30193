#include "server/rpc_server.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QJsonArray>
#include <algorithm>
#include <utility>

#include "server/wipe.h"

namespace ostrel {
namespace {

constexpr int kStopMs = 3000;
// Of one client before it is the others' turn: requests, and bytes. Who brings so many bytes at
// once makes work that takes long, and rests for a while.
constexpr int kTurn = 2;
constexpr qsizetype kTurnBytes = 32 * 1024;
constexpr int kRestMs = 2;
constexpr qint64 kLarge = 64 * 1024;

}  // namespace

RpcServer::RpcServer(CommServer& comm, int idleMs) : comm_(comm) {
  running_.start();
  turn_.setSingleShot(true);
  turn_.setTimerType(Qt::PreciseTimer);
  idle_.setSingleShot(true);
  idle_.setInterval(idleMs);
  stop_.setSingleShot(true);
  stop_.setInterval(kStopMs);
  connect(&turn_, &QTimer::timeout, this, &RpcServer::OnTurn);
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
    socket->setReadBufferSize(kLarge);
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
  kept_ -= found->second->kept;
  sessions_.erase(found);
  emit Noted(QStringLiteral("client %1 has gone").arg(client));
  comm_.ClientGone(client);
  if (sessions_.empty()) idle_.start();
  CheckEnd();
}

void RpcServer::OnReadable(Session& session) {
  if (!session.more) Serve(session);
  Weigh(session);
}

void RpcServer::OnTurn() {
  qint64 next = -1;
  for (const auto& [client, session] : sessions_) {
    if (!session->more) continue;
    const qint64 left = session->pause.remainingTime();
    if (left > 0) {
      next = next < 0 ? left : std::min(next, left);
    } else {
      Serve(*session);
      Weigh(*session);
    }
  }
  if (next >= 0) StartTurn(static_cast<int>(next));
}

/// Answers a few requests. What is left waits until the events of all others had their turn.
void RpcServer::Serve(Session& session) {
  QLocalSocket& socket = *session.socket;
  session.more = false;
  qsizetype bytes = 0;
  for (int count = 0; count < kTurn && bytes < kTurnBytes;) {
    if (socket.state() != QLocalSocket::ConnectedState) return;
    const qsizetype before = session.requests.Kept();
    auto item = session.requests.Next();
    if (!item) {
      if (socket.bytesAvailable() == 0) return;
      session.requests.Add(socket.readAll());
      bytes += session.requests.Kept() - before;
      continue;
    }
    ++count;
    bytes += before - session.requests.Kept();
    if (const auto* refusal = std::get_if<rpc::Refusal>(&*item)) {
      Send(session.client, rpc::EncodeRefusal(*refusal));
    } else {
      Handle(session.client, std::get<rpc::Request>(*item));
    }
  }
  Rest(session, bytes < kTurnBytes ? 0 : kRestMs);
}

/// Serves the client again after so long.
void RpcServer::Rest(Session& session, int ms) {
  session.more = true;
  session.pause = QDeadlineTimer(ms, Qt::PreciseTimer);
  StartTurn(ms);
}

void RpcServer::StartTurn(int ms) {
  if (!turn_.isActive() || turn_.remainingTime() > ms) turn_.start(ms);
}

/// Keeps the sum of what all clients make the server keep within its limit: of those that make it
/// keep much the one that has done so for longest is cut off.
void RpcServer::Weigh(Session& session) {
  const auto weigh = [this](Session& one) {
    const QLocalSocket& socket = *one.socket;
    const qint64 kept = one.requests.Kept() + socket.bytesAvailable() + socket.bytesToWrite();
    kept_ += kept - std::exchange(one.kept, kept);
    if (kept <= kLarge) one.large = 0;
    if (kept > kLarge && one.large == 0) one.large = ++lastLarge_;
  };
  weigh(session);
  if (kept_ <= kMaxKept) return;
  Session* oldest = nullptr;
  for (const auto& [client, one] : sessions_) {
    weigh(*one);
    if (one->large != 0 && (oldest == nullptr || one->large < oldest->large)) oldest = one.get();
  }
  if (kept_ > kMaxKept && oldest != nullptr) CutOff(*oldest, "keeps too much unfinished");
}

void RpcServer::CutOff(Session& session, const char* why) {
  emit Noted(QStringLiteral("client %1 %2, it is cut off").arg(session.client).arg(why));
  session.requests = RequestReader();
  session.socket->abort();
  kept_ -= std::exchange(session.kept, 0);
  session.large = 0;
}

void RpcServer::Handle(int client, rpc::Request& request) {
  if (request.method == "ServerStatus" || request.method == "ServerStop") {
    if (request.method == "ServerStop") Stop(client);
    if (!request.notification) Send(client, rpc::EncodeObject(request.id, Status()));
    return;
  }
  if (request.notification) {
    comm_.Notify(client, request.method, request.arguments);
  } else {
    const auto reply = [this, client, id = request.id](const AutomationResult& result) {
      Send(client, rpc::EncodeResult(id, result));
    };
    comm_.Call(client, request.method, request.arguments, reply);
  }
  for (Value& argument : request.arguments) {
    if (auto* text = std::get_if<std::string>(&argument)) Wipe(*text);
  }
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
  if (socket.bytesToWrite() > kMaxUnsent) {
    CutOff(*found->second, "does not read");
  } else if (socket.bytesToWrite() > kLarge) {
    Weigh(*found->second);
  }
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
