#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace ostrel::simulator {

/// Bytes on their way over a serial line, which takes ten bits for each. They arrive in portions,
/// 10 ms apart where the line is fast enough. Times are in ms of any clock that does not go back.
class SerialPace {
 public:
  /// Sends bytes; only while nothing is on its way.
  void Start(std::string bytes, int baud, std::int64_t now);

  bool Busy() const { return !bytes_.empty(); }
  std::size_t Size() const { return bytes_.size(); }
  void Drop() { bytes_.clear(); }

  /// What has arrived; nothing when Wait() is above 0.
  std::string Take(std::int64_t now);
  /// Until the next portion, in ms.
  int Wait(std::int64_t now) const;

 private:
  std::int64_t ArrivalOf(std::size_t count) const;

  std::string bytes_;
  std::size_t taken_ = 0;
  std::int64_t began_ = 0, lastAt_ = 0;
  int baud_ = 0;
};

}  // namespace ostrel::simulator
