#include "logs/service_log/clsLog.h"

#include <array>
#include <cstdio>
#include <fstream>
#include <string>

namespace ostrel {

namespace {

/// The part behind the comma is the seconds again: files of all versions compare equal.
std::string Stamp(const LocalTime& now) {
  std::array<char, 64> text;
  std::snprintf(text.data(), text.size(), "[%04d-%02d-%02d  %02d:%02d:%02d,%02d%02d]  ", now.year,
                now.month, now.day, now.hour, now.minute, now.second, now.second, now.second);
  return text.data();
}

}  // namespace

void clsLog::SaveLog(std::string_view text) const {
  if (!active_) return;
  std::ofstream file(fileName_, std::ios::binary | std::ios::app);
  file << Stamp(clock_.Now()).append(text) + "\r\n";
}

}  // namespace ostrel
