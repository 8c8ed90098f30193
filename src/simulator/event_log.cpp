#include "simulator/event_log.h"

namespace ostrel::simulator {

void EventLog::Add(std::int64_t localMs, Event event, int value) {
  entries_.push_front({localMs, event, value});
  if (entries_.size() > kMaxEntries) entries_.pop_back();
}

WordTable EventLogWords() {
  return {};
}

}  // namespace ostrel::simulator
