#include "server/simulator_port.h"

#include <string>

namespace ostrel {

void SimulatorPort::Open() {
  open_ = true;
  QMetaObject::invokeMethod(
      this, [this] { emit Opened(); }, Qt::QueuedConnection);
}

void SimulatorPort::Write(std::string_view bytes) {
  const std::string reply = line_.Feed(bytes);
  if (reply.empty()) return;
  const QByteArray copy(reply.data(), static_cast<qsizetype>(reply.size()));
  const auto deliver = [this, copy] {
    if (open_) emit Received(copy);
  };
  QMetaObject::invokeMethod(this, deliver, Qt::QueuedConnection);
}

}  // namespace ostrel
