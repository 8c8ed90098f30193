#include "platform/event_clock.h"

#include <QCoreApplication>
#include <QDateTime>
#include <chrono>

namespace ostrel {

EventClock::EventClock() {
  limit_.setTimerType(Qt::PreciseTimer);
  limit_.setSingleShot(true);
  limit_.setInterval(2);
}

LocalTime EventClock::Now() const {
  const QDateTime now = QDateTime::currentDateTime();
  return {.year = now.date().year(),
          .month = now.date().month(),
          .day = now.date().day(),
          .hour = now.time().hour(),
          .minute = now.time().minute(),
          .second = now.time().second()};
}

std::int64_t EventClock::TickMs() const {
  using namespace std::chrono;
  return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

void EventClock::ProcessEvents() {
  // One that still runs ends this wait even sooner; to start it on each pass would cost time.
  if (!limit_.isActive()) limit_.start();
  QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

}  // namespace ostrel
