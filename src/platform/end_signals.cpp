#include "platform/end_signals.h"

#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace ostrel {

namespace {

/// A signal handler can do no more than write a byte for the event loop to find.
volatile sig_atomic_t writingEnd = -1;

void Wake(int) {
  const int before = errno;
  const char byte = 0;
  [[maybe_unused]] const auto written = write(writingEnd, &byte, 1);
  errno = before;
}

void Handle(void (*handler)(int)) {
  struct sigaction action = {};
  action.sa_handler = handler;
  sigemptyset(&action.sa_mask);
  action.sa_flags = SA_RESTART;
  for (const int number : {SIGTERM, SIGINT, SIGHUP}) sigaction(number, &action, nullptr);
}

}  // namespace

EndSignals::EndSignals(std::function<void()> onEnd) {
  int ends[2];
  if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return;
  reading_ = ends[0];
  writingEnd = ends[1];
  notifier_ = std::make_unique<QSocketNotifier>(reading_, QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                   [this, end = std::move(onEnd)] {
                     char byte;
                     while (read(reading_, &byte, 1) > 0) continue;
                     end();
                   });
  Handle(&Wake);
}

EndSignals::~EndSignals() {
  if (reading_ < 0) return;
  Handle(SIG_DFL);
  notifier_.reset();
  close(reading_);
  close(writingEnd);
}

}  // namespace ostrel
