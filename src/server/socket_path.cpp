#include "server/socket_path.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QStandardPaths>
#include <cerrno>

namespace ostrel {
namespace {

constexpr int kProbeMs = 1000;

SocketClaim Refused(const QString& path, const QString& reason) {
  return {SocketClaim::kRefused, path + QStringLiteral(": ") + reason};
}

bool SomebodyListens(const QString& path) {
  QLocalSocket probe;
  probe.connectToServer(path);
  return probe.waitForConnected(kProbeMs);
}

}  // namespace

QString SocketPath() {
  QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
  if (runtime.isEmpty()) {
    runtime = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  }
  return runtime + QStringLiteral("/ostrel/server.sock");
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
  struct stat info {};
  if (lstat(name.constData(), &info) != 0) return false;
  if (!S_ISDIR(info.st_mode) || info.st_uid != getuid()) return false;
  return (info.st_mode & 0777) == 0700 || chmod(name.constData(), 0700) == 0;
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
