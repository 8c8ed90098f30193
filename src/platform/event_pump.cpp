#include "platform/event_pump.h"

#include <QCoreApplication>
#include <QTimer>

namespace ostrel {

void PumpEvents(int atMostMs) {
  QTimer limit;
  limit.start(atMostMs);
  QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                  QEventLoop::WaitForMoreEvents);
}

}  // namespace ostrel
