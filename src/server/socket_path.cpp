#include "server/socket_path.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <cerrno>

namespace ostrel {
namespace {

constexpr int kProbeMs = 1000;

SocketClaim Refused(const QString& path, const QString& reason) {
  return {SocketClaim::kRefused, path + QStringLiteral(": ") + reason};
}

/// The permissions of a folder of this user's; none where it is no such.
std::optional<mode_t> OwnFolder(const QString& folder) {
  struct stat info {};
  const bool known = lstat(QFile::encodeName(folder).constData(), &info) == 0;
  if (!known || !S_ISDIR(info.st_mode) || info.st_uid != getuid()) return std::nullopt;
  return info.st_mode & 0777;
}

/// The folder of the user's session; without one, where nobody else can have made it.
QString RuntimeFolder() {
  const QString session = qEnvironmentVariable("XDG_RUNTIME_DIR");
  if (!session.isEmpty()) return session + QStringLiteral("/ostrel");
  const QString user = QString::number(getuid());
  const QString usual = QStringLiteral("/run/user/") + user;
  if (OwnFolder(usual)) return usual + QStringLiteral("/ostrel");
  return QDir::tempPath() + QStringLiteral("/ostrel-") + user;
}

bool SomebodyListens(const QString& path) {
  QLocalSocket probe;
  probe.connectToServer(path);
  return probe.waitForConnected(kProbeMs);
}

}  // namespace

QString SocketPath() {
  return RuntimeFolder() + QStringLiteral("/server.sock");
}

QString LockPath(const QString& socketPath) {
  return socketPath + QStringLiteral(".lock");
}

std::optional<uid_t> PeerUser(qintptr descriptor) {
  ucred peer{};
  socklen_t size = sizeof(peer);
  const int socket = static_cast<int>(descriptor);
  if (getsockopt(socket, SOL_SOCKET, SO_PEERCRED, &peer, &size) != 0) return std::nullopt;
  return peer.uid;
}

bool MakePrivateFolder(const QString& folder) {
  const QByteArray name = QFile::encodeName(folder);
  QDir().mkpath(QFileInfo(folder).path());
  if (mkdir(name.constData(), 0700) != 0 && errno != EEXIST) return false;
  const std::optional<mode_t> permissions = OwnFolder(folder);
  return permissions && (*permissions == 0700 || chmod(name.constData(), 0700) == 0);
}

SocketClaim ClaimSocket(const QString& path, QLockFile& lock) {
  const QString folder = QFileInfo(path).path();
  if (!MakePrivateFolder(folder)) return Refused(folder, QStringLiteral("no private folder"));
  lock.setStaleLockTime(0);  // however long a server runs, its lock is good
  if (!lock.tryLock()) {
    if (lock.error() == QLockFile::LockFailedError) return {SocketClaim::kAlreadyRunning, {}};
    return Refused(lock.fileName(), QStringLiteral("cannot be written"));
  }
  struct stat info {};
  if (lstat(QFile::encodeName(path).constData(), &info) != 0) return {};
  if (!S_ISSOCK(info.st_mode)) return Refused(path, QStringLiteral("exists and is no socket"));
  if (SomebodyListens(path)) return Refused(path, QStringLiteral("another program listens there"));
  if (!QFile::remove(path)) return Refused(path, QStringLiteral("cannot be removed"));
  return {};
}

}  // namespace ostrel
