#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "simulator/data_log_records.h"
#include "simulator/random.h"
#include "simulator/variables.h"

namespace ostrel::simulator {

class DeviceTime;

/// The data log of an earth-fault-coil controller: records in a ring of numbered blocks. A long
/// series may run on in the next block; another record that does not fit begins one, so that the
/// oldest block of a ring that has gone round can be read. The records' local times only rise: when
/// the device's clock is put back, they go on from the last one until it has caught up.
class DataLog {
 public:
  static constexpr int kMaxBlocks = 256;
  static constexpr std::size_t kBlockSize = 256;  ///< bytes

  /// With a history up to simulated time 0.
  DataLog(const DeviceTime& clock, Random random);

  /// Goes on writing until this simulated time, in milliseconds.
  void Advance(std::int64_t milliseconds, const DeviceTime& clock);
  /// The clock has been set. Local times in milliseconds since 1990-01-01.
  void NoteClockSet(std::int64_t localMs, std::int64_t beforeMs);
  void Clear();

  /// The numbers of the oldest and the newest block; both 0 when there is none.
  int First() const { return first_; }
  int Last() const;
  std::size_t Size() const;  ///< of all blocks, in bytes
  std::string Header() const;
  /// Nothing where there is no such block.
  const LogBytes* BlockAt(int number) const;

 private:
  struct Block {
    LogBytes bytes;
    bool continues = false;  ///< begins with the rest of a record
  };

  void ShuffleTokens();
  void WriteNext(const DeviceTime& clock);
  std::int64_t Stamp(std::int64_t localMs);
  void Append(const LogBytes& record, bool mayRunOn);
  void BeginBlock(bool continues);

  Random random_;
  std::deque<Block> blocks_;
  int first_ = 0;
  std::vector<LogToken> tokens_;  ///< what happens, in this order over and over
  std::size_t nextToken_ = 0;
  LogToken open_ = 0;  ///< has come and will go
  int series_ = 0;
  std::int64_t nextMs_;      ///< simulated
  std::int64_t newest_ = 0;  ///< local time of the newest record
};

/// The log's blocks and their number.
VariableTable DataLogVariables();

}  // namespace ostrel::simulator
