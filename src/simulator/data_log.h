#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "simulator/data_log_records.h"
#include "simulator/extras.h"
#include "simulator/random.h"
#include "simulator/variables.h"

namespace ostrel::simulator {

class DeviceTime;

/// The data log of an earth-fault-coil controller: records in a ring of numbered blocks. A block is
/// given away once it is closed: when the next record does not fit, and sometimes sooner. It begins
/// with a record; only with Extras::splitRecords it may begin with the rest of a series, but never
/// block 0, nor the oldest of a ring that has gone round.
class DataLog {
 public:
  static constexpr std::size_t kBlockSize = 256;  ///< bytes

  /// With a history up to simulated time 0.
  DataLog(const DeviceTime& clock, const Extras& extras, Random random);

  /// Goes on writing until this simulated time, in milliseconds.
  void Advance(std::int64_t milliseconds, const DeviceTime& clock);
  /// The clock has been set, the device restarts: both close the block. Local times in milliseconds
  /// since 1990-01-01.
  void NoteClockSet(std::int64_t localMs, std::int64_t beforeMs);
  void NotePowerDown(std::int64_t localMs);
  void Clear();

  int Capacity() const { return extras_.logBlocks; }  ///< blocks
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

  std::int64_t Long(std::int64_t milliseconds) const;
  void ShuffleTokens();
  LogToken NextToken();
  void WriteNext(const DeviceTime& clock);
  void WriteAlone(const LogBytes& record);
  void Append(const LogBytes& record, bool mayRunOn);
  void CloseBlock();
  void DropOldest();

  Extras extras_;
  Random random_;
  std::deque<Block> blocks_;  ///< closed
  Block open_;
  int first_ = 0;
  std::vector<LogToken> tokens_;  ///< what happens, in this order over and over
  std::size_t nextToken_ = 0;
  LogToken lasting_ = 0;  ///< has come and will go
  int series_ = 0;
  int rush_ = 0;         ///< records still to come at once, each in a block of its own
  std::int64_t nextMs_;  ///< simulated
};

/// The log's blocks and their number.
VariableTable DataLogVariables();

}  // namespace ostrel::simulator
