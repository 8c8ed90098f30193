#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

#include "simulator/bus.h"
#include "simulator/device_line.h"
#include "simulator/fault.h"
#include "simulator/record.h"
#include "simulator/replay.h"
#include "simulator/serial_pace.h"

namespace ostrel::simulator {

/// What came in from all hosts.
struct Count {
  std::uint64_t lines = 0;
  std::uint64_t bytes = 0;
  std::uint64_t faults = 0;  ///< lines that the fault hit

  /// "received N lines, M bytes, K faults"
  std::string Text() const;
};

/// What all hosts share.
struct Simulation {
  Bus bus;
  LineFault fault = {};
  Count count = {};
  int baud = 0;              ///< of the line on which replies go out; 0 = as fast as it can be
  Replay* replay = nullptr;  ///< answers instead of the bus, if there
  Record* record = nullptr;  ///< writes down all lines and replies, if there
  int hosts = 0;             ///< how many have sent something so far
};

/// The devices' end of one host's line with its fault, and the replies on their way. Times are in
/// ms of any clock that does not go back.
class FaultyLine {
 public:
  /// The simulation outlives the line.
  explicit FaultyLine(Simulation& simulation)
      : simulation_(simulation), line_(simulation.bus, simulation.replay) {}

  /// Takes a byte; true when it completed a line, whose reply then waits to be sent.
  bool Feed(char byte, std::int64_t now);

  /// What is to be done next. What kSend and kDropLink name has left the line.
  struct Step {
    enum class Kind { kNothing, kWait, kSend, kDropLink };
    Kind kind = Kind::kNothing;
    std::string bytes = {};  ///< of kSend
    int wait = 0;            ///< ms, of kWait
  };
  /// Replies go out in the order of their lines, each at its own time or after the one before.
  Step Next(std::int64_t now);

  /// About the memory that replies on their way take, in bytes.
  std::size_t Waiting() const { return waiting_ + pace_.Size(); }
  void DropReplies();

 private:
  struct Queued {
    Portion portion;
    std::int64_t due = 0;
  };

  Step NextWhole(std::int64_t now);
  void Enqueue(Portion portion, std::int64_t due);
  Portion TakeFirst(std::int64_t now);

  Simulation& simulation_;
  DeviceLine line_;
  std::deque<Queued> queue_;
  SerialPace pace_;
  std::size_t waiting_ = 0;
  int host_ = 0;  // number, once it has sent something
  std::int64_t lastSent_ = 0;
};

}  // namespace ostrel::simulator
