#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/reply_form.h"

namespace ostrel::simulator {

/// Replies from a record instead of from devices.
class Replay {
 public:
  /// Reads a record of at most 64 MiB. Returns why not, or nothing.
  std::string Load(const std::string& path);
  /// The same of a record's text. What stands behind the last line end is ignored.
  void Read(std::string_view text);
  /// Says how many lines of the record were of no use; empty when all were.
  std::string Complaint() const;

  /// What goes out for a line (no line end): what was recorded for it, one reply after the other,
  /// and then the last one for ever; empty when nothing came.
  std::vector<Portion> ReplyTo(const std::string& line);

 private:
  struct Replies {
    std::vector<std::string> all;  ///< at least one; an empty one is a silent device
    std::size_t next = 0;
  };

  std::map<std::string, Replies, std::less<>> replies_;
  std::size_t faulty_ = 0;
  std::size_t firstFaulty_ = 0;  // line number
};

}  // namespace ostrel::simulator
