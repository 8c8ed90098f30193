#include "simulator/pty.h"

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <sys/inotify.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace ostrel::simulator {

namespace {

void Close(int& descriptor) {
  if (descriptor >= 0) close(descriptor);
  descriptor = -1;
}

}  // namespace

Pty::Pty() {
  Open();
  if (slave_ < 0) {
    error_ = std::strerror(errno);
    return;
  }
  Reset();
  closings_ = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  if (closings_ >= 0) inotify_add_watch(closings_, name_.c_str(), IN_CLOSE);
}

Pty::~Pty() {
  Close(closings_);
  Close(slave_);
  Close(master_);
}

void Pty::Open() {
  master_ = open("/dev/ptmx", O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  char name[64];
  if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0) return;
  if (const int failure = ptsname_r(master_, name, sizeof(name)); failure != 0) {
    errno = failure;
    return;
  }
  name_ = name;
  OpenSlave();
}

void Pty::OpenSlave() {
  // Not by its name, so that no permission that somebody takes away is in the way.
  slave_ = ioctl(master_, TIOCGPTPEER, O_RDWR | O_NOCTTY | O_CLOEXEC);
}

bool Pty::IsAlone() {
  // A host that has taken the slave for itself would keep us out as well.
  int exclusive = 0;
  ioctl(slave_, TIOCGEXCL, &exclusive);
  ioctl(slave_, TIOCNXCL);
  Close(slave_);
  // Forgets our own closing. A host's that comes later is noticed anew.
  char events[4096];
  while (read(closings_, events, sizeof(events)) > 0) continue;
  pollfd master = {master_, 0, 0};
  const bool alone = poll(&master, 1, 0) == 1 && (master.revents & POLLHUP) != 0;
  OpenSlave();
  if (!alone && exclusive != 0) ioctl(slave_, TIOCEXCL);
  return alone;
}

void Pty::Reset() {
  termios settings = {};
  if (tcgetattr(slave_, &settings) != 0) return;
  cfmakeraw(&settings);
  settings.c_cflag |= CREAD | CLOCAL;
  tcsetattr(slave_, TCSANOW, &settings);
  tcflush(slave_, TCIFLUSH);
}

}  // namespace ostrel::simulator
