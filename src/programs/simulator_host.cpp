#include "programs/simulator_host.h"

#include "simulator/steady_clock.h"

namespace ostrel::simulator {

namespace {

// Enough to keep the host busy; the other replies wait in the line.
constexpr std::size_t kMaxUnsent = 64 * 1024;
// A host that does not fetch its replies gets no further ones.
constexpr std::size_t kMaxWaiting = 1024 * 1024 - kMaxUnsent;

}  // namespace

SimulatorHost::SimulatorHost(Simulation& simulation, QObject* parent)
    : QObject(parent), simulation_(simulation) {
  delay_.setSingleShot(true);
  delay_.setTimerType(Qt::PreciseTimer);
  connect(&delay_, &QTimer::timeout, this, &SimulatorHost::Serve);
  Renew();
}

void SimulatorHost::Renew() {
  line_.emplace(simulation_);
  leaving_ = 0;
  delay_.stop();
}

void SimulatorHost::Serve() {
  if (turnQueued_) return;
  Send();
  char byte = 0;
  while (line_->Waiting() < kMaxWaiting && Read(byte)) {
    const bool complete = line_->Feed(byte, SteadyMs());
    if (leaving_ > 0) CountLeaving();
    if (!complete) continue;
    Send();
    turnQueued_ = true;
    QTimer::singleShot(0, this, [this] {
      turnQueued_ = false;
      Serve();
    });
    return;
  }
}

void SimulatorHost::Send() {
  while (Unsent() < kMaxUnsent) {
    const FaultyLine::Step step = line_->Next(SteadyMs());
    switch (step.kind) {
      case FaultyLine::Step::Kind::kNothing:
        return;
      case FaultyLine::Step::Kind::kWait:
        delay_.start(step.wait);
        return;
      case FaultyLine::Step::Kind::kSend:
        Write(step.bytes);
        break;
      case FaultyLine::Step::Kind::kDropLink:
        Renew();
        DropLink();
        return;
    }
  }
}

void SimulatorHost::Leave(std::size_t unread) {
  line_->DropReplies();
  leaving_ = unread;
  if (unread > 0) {
    Serve();
  } else {
    Renew();
    Left();
  }
}

void SimulatorHost::CountLeaving() {
  line_->DropReplies();
  if (--leaving_ > 0) return;
  Renew();
  Left();
}

}  // namespace ostrel::simulator
