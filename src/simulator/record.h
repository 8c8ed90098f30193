#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "simulator/reply_form.h"

namespace ostrel::simulator {

/// A line of a record: a line of a host's, or the reply to the last one of that host.
struct RecordEntry {
  int host = 0;  ///< from 1
  bool isReply = false;
  std::string bytes;  ///< of the line without its end, or of the reply as it goes out
};

/// "2026-01-05 08:00:00.123 1 > AA:ver." ("<" for a reply), without a line end. All bytes but
/// printable ASCII are written as "\xNN", and "\" as "\\".
std::string FormatEntry(const RecordEntry& entry, std::string_view time);
/// Nothing when the text is no such thing.
std::optional<RecordEntry> ParseEntry(std::string_view text);

/// Writes down what hosts and devices say, passwords too, in a file for its user alone.
class Record {
 public:
  /// Failures to write are said there, the first one only.
  explicit Record(std::ostream& errors) : errors_(errors) {}
  ~Record();
  Record(const Record&) = delete;
  Record& operator=(const Record&) = delete;

  /// Makes the file or goes on at its end. Returns why not, or nothing.
  std::string Open(const std::string& path);
  /// A line and what goes out for it; nothing of a reply when there is none.
  void Write(int host, const std::string& line, const std::vector<Portion>& reply);

 private:
  void Append(std::string lines);

  std::ostream& errors_;
  std::string path_;
  int file_ = -1;
  bool torn_ = false;  // the file does not end with a whole line
  bool failed_ = false;
};

}  // namespace ostrel::simulator
