#pragma once

#include <cstddef>
#include <istream>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "base/error.h"
#include "base/messages.h"

namespace ostrel {

/// What is given before and behind the name of every command.
struct Given {
  std::string connection = {};  // empty = the server's current one
  std::string station = "AA:";  // with its ":"
  bool json = false;            // JSON and nothing else on the output
};

/// Where a command reads and prints. Messages and questions go through the dialogs.
class Terminal {
 public:
  struct Streams {
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    std::size_t width = 80;  // in characters
  };
  Terminal(const Streams& streams, const Messages& texts, Given given);

  std::istream& In() { return streams_.in; }
  std::ostream& Out() { return streams_.out; }
  std::ostream& Err() { return streams_.err; }
  std::size_t Width() const { return streams_.width; }
  bool Json() const { return given_.json; }
  /// The address of the station that is meant, with its ":".
  const std::string& Station() const { return given_.station; }
  /// The connection that was named; empty = the server's current one.
  const std::string& Connection() const { return given_.connection; }
  /// A heading or a line of a result.
  std::string Text(int id) const { return texts_.Caption(id); }

  /// Prints a result in JSON. A run that prints none has its failure printed so.
  void PrintJson(std::string_view json);
  /// Prints columns under their headings, each as wide as its widest cell.
  void PrintTable(const std::vector<std::vector<std::string>>& rows);
  /// Prints a list: columns under their headings, or with --json these values.
  void PrintList(const std::vector<std::vector<std::string>>& rows,
                 const std::vector<std::string>& json);
  /// Says with --json what was done; without it there is nothing to say.
  void PrintDone(std::string_view key);
  /// Shows a message of the program with its first "%s" filled, as what the command failed with.
  Ending Refuse(int id, std::string_view value);
  /// The same where the command was not used as it has to be.
  Ending RefuseUsage(int id, std::string_view value);

  bool Printed() const { return printed_; }
  bool Misused() const { return misused_; }

 private:
  Streams streams_;
  const Messages& texts_;
  Given given_;
  bool printed_ = false;
  bool misused_ = false;
};

}  // namespace ostrel
