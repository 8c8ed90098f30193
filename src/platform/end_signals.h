#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace ostrel {

/// Calls a function from the event loop when the process is asked to end (SIGTERM, SIGINT, SIGHUP).
/// One object a process, from its start to its end.
class EndSignals {
 public:
  explicit EndSignals(std::function<void()> onEnd);
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

 private:
  int reading_ = -1;
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace ostrel
