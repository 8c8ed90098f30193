#include "simulator/serial_pace.h"

#include <algorithm>
#include <utility>

namespace ostrel::simulator {

namespace {

constexpr std::int64_t kPortionMs = 10;
constexpr std::int64_t kBitsAndMs = 10 * 1000;  // bits of a byte, ms of a second

}  // namespace

void SerialPace::Start(std::string bytes, int baud, std::int64_t now) {
  bytes_ = std::move(bytes);
  taken_ = 0;
  began_ = lastAt_ = now;
  baud_ = baud;
}

/// When this many bytes have arrived.
std::int64_t SerialPace::ArrivalOf(std::size_t count) const {
  return began_ + (static_cast<std::int64_t>(count) * kBitsAndMs + baud_ - 1) / baud_;
}

int SerialPace::Wait(std::int64_t now) const {
  const std::int64_t portion = std::max(lastAt_ + kPortionMs, ArrivalOf(taken_ + 1));
  const std::int64_t due = std::min(portion, ArrivalOf(bytes_.size()));
  return static_cast<int>(std::max<std::int64_t>(due - now, 0));
}

std::string SerialPace::Take(std::int64_t now) {
  if (Wait(now) > 0) return {};
  const auto carried = static_cast<std::size_t>((now - began_) * baud_ / kBitsAndMs);
  const std::size_t arrived = std::min(carried, bytes_.size());
  std::string portion = bytes_.substr(taken_, arrived - taken_);
  taken_ = arrived;
  lastAt_ = now;
  if (taken_ == bytes_.size()) Drop();
  return portion;
}

}  // namespace ostrel::simulator
