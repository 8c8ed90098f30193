#pragma once

namespace ostrel::simulator {

/// What a bus has on request only.
struct Extras {
  static constexpr int kFewestLogBlocks = 8, kMostLogBlocks = 65534;

  int logBlocks = 256;        ///< of the ring of each data log
  bool splitRecords = false;  ///< a data log's series may run on in the next block
  bool oddRecords = false;    ///< records that a reader cannot make sense of
  bool manyCards = false;     ///< more cards than there are addresses for
};

}  // namespace ostrel::simulator
