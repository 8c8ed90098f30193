#include "server/simulator_port.h"

#include <string>

#include "simulator/steady_clock.h"

namespace ostrel {

SimulatorPort::SimulatorPort(simulator::Simulation& simulation) : line_(simulation) {
  delay_.setSingleShot(true);
  delay_.setTimerType(Qt::PreciseTimer);
  connect(&delay_, &QTimer::timeout, this, &SimulatorPort::Deliver);
}

void SimulatorPort::Open() {
  open_ = true;
  QMetaObject::invokeMethod(
      this, [this] { emit Opened(); }, Qt::QueuedConnection);
}

void SimulatorPort::Write(std::string_view bytes) {
  for (const char byte : bytes) line_.Feed(byte, simulator::SteadyMs());
  if (!delay_.isActive()) delay_.start(0);
}

void SimulatorPort::Close() {
  open_ = false;
  delay_.stop();
  line_.DropReplies();
}

void SimulatorPort::Deliver() {
  using Step = simulator::FaultyLine::Step;
  std::string due;
  Step step = line_.Next(simulator::SteadyMs());
  for (; step.kind == Step::Kind::kSend; step = line_.Next(simulator::SteadyMs())) {
    due += step.bytes;
  }
  if (step.kind == Step::Kind::kWait) delay_.start(step.wait);
  // Last, for whoever receives it may end the port.
  if (open_ && !due.empty()) emit Received(QByteArray::fromStdString(due));
}

}  // namespace ostrel
