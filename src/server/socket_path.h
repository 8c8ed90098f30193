#pragma once

#include <sys/types.h>

#include <QLockFile>
#include <QString>
#include <optional>

namespace ostrel {

/// Where the user's communication server listens: "ostrel/server.sock" in $XDG_RUNTIME_DIR, else in
/// /run/user/<uid> where that is the user's, else "ostrel-<uid>/server.sock" in the temporary
/// folder.
QString SocketPath();

/// Makes a folder that belongs to the user and that nobody else can enter; false when it cannot be
/// had.
bool MakePrivateFolder(const QString& folder);

/// The outcome of claiming a place to listen at.
struct SocketClaim {
  enum Kind { kFree, kAlreadyRunning, kRefused };
  Kind kind = kFree;
  QString reason;  // when refused
};

/// Makes the folder, private to the user, and takes the lock beside the socket, so that one server
/// runs at a time. A socket that nobody listens at is removed; an ordinary file and a socket that
/// somebody listens at stay.
SocketClaim ClaimSocket(const QString& path, QLockFile& lock);

/// Who connected to this end of a local socket, also when that program has gone already; none when
/// the system does not tell.
std::optional<uid_t> PeerUser(qintptr descriptor);

/// The lock that belongs to a socket.
QString LockPath(const QString& socketPath);

}  // namespace ostrel
