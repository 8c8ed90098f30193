#include "server/simulator_port.h"

#include <string>

#include "simulator/steady_clock.h"

namespace ostrel {
namespace {

constexpr std::size_t kMaxWaiting = 1024 * 1024;  // replies that are not due yet, in bytes

}  // namespace

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
  if (unread_.size() > kMaxUnsent) {
    const auto end = [this] { emit Lost(QString::fromUtf8(kTakesNoMore)); };
    QMetaObject::invokeMethod(this, end, Qt::QueuedConnection);
    return;
  }
  unread_ += bytes;
  if (!delay_.isActive()) delay_.start(0);
}

void SimulatorPort::Close() {
  open_ = false;
  delay_.stop();
  TakeLine();  // the last words, which a real line would still carry
  line_.DropReplies();
  unread_.clear();
}

/// One line at a time, so that everything else gets its turn in between.
void SimulatorPort::TakeLine() {
  std::size_t taken = 0;
  bool complete = line_.Waiting() > kMaxWaiting;
  while (!complete && taken < unread_.size()) {
    complete = line_.Feed(unread_[taken++], simulator::SteadyMs());
  }
  unread_.erase(0, taken);
}

void SimulatorPort::Deliver() {
  using Step = simulator::FaultyLine::Step;
  TakeLine();
  std::string due;
  Step step = line_.Next(simulator::SteadyMs());
  for (; step.kind == Step::Kind::kSend; step = line_.Next(simulator::SteadyMs())) {
    due += step.bytes;
  }
  if (step.kind == Step::Kind::kWait) delay_.start(step.wait);
  if (!unread_.empty() && line_.Waiting() <= kMaxWaiting) delay_.start(0);
  // Last, for whoever receives it may end the port.
  if (open_ && !due.empty()) emit Received(QByteArray::fromStdString(due));
}

}  // namespace ostrel
