#include "logs/service_log/clsLog.h"

#include <fstream>
#include <string>

namespace ostrel {

namespace {

/// The part behind the comma is the seconds again: files of all versions compare equal.
std::string Stamp(const LocalTime& now) {
  const std::string stamp = TimeStamp(now);
  const std::string seconds = stamp.substr(stamp.size() - 2);
  return "[" + stamp + "," + seconds + seconds + "]  ";
}

}  // namespace

void clsLog::SaveLog(std::string_view text) const {
  if (!active_) return;
  std::ofstream file(fileName_, std::ios::binary | std::ios::app);
  file << Stamp(clock_.Now()).append(text) + "\r\n";
}

}  // namespace ostrel
