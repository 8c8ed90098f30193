#pragma once

#include <QTimer>

#include "base/clock.h"

namespace ostrel {

/// The time of this computer and the events of this process.
class EventClock : public Clock {
 public:
  EventClock();
  LocalTime Now() const override;
  std::int64_t TickMs() const override;
  void ProcessEvents() override;

 private:
  QTimer limit_;  // ends a wait in which nothing arrives
};

}  // namespace ostrel
