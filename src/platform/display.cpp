#include "platform/display.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QByteArray>
#include <QList>
#include <QtGlobal>
#include <cstring>

namespace ostrel {

namespace {

/// True when somebody listens on a local socket; a path that begins with NUL is an abstract one.
bool Listens(const QByteArray& path) {
  sockaddr_un address{};
  if (path.size() >= qsizetype(sizeof(address.sun_path))) return false;
  address.sun_family = AF_UNIX;
  std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
  const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const auto size = offsetof(sockaddr_un, sun_path) + static_cast<std::size_t>(path.size());
  const bool connected = connect(descriptor, reinterpret_cast<const sockaddr*>(&address),
                                 static_cast<socklen_t>(size)) == 0;
  close(descriptor);
  return connected;
}

/// ":0" or ":0.0" is a display of this computer; of another one nothing is known before the try.
bool XDisplay(const QByteArray& display) {
  if (display.isEmpty()) return false;
  if (!display.startsWith(':')) return true;
  const QByteArray path = "/tmp/.X11-unix/X" + display.mid(1).split('.').first();
  return Listens(path) || Listens('\0' + path);
}

bool WaylandDisplay(const QByteArray& display) {
  if (display.isEmpty()) return false;
  return Listens(display.startsWith('/') ? display : qgetenv("XDG_RUNTIME_DIR") + '/' + display);
}

}  // namespace

bool HasDisplay() {
  return !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") ||
         WaylandDisplay(qgetenv("WAYLAND_DISPLAY")) || XDisplay(qgetenv("DISPLAY"));
}

}  // namespace ostrel
