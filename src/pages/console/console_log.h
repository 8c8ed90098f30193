#pragma once

#include <string>
#include <string_view>

namespace ostrel {

/// The console log: a text file of what the answer pane showed. It is cut when it has grown long.
class ConsoleLog {
 public:
  static constexpr std::size_t kMost = 64000;  // characters
  static constexpr std::size_t kKept = 32000;

  const std::string& File() const { return file_; }
  /// An empty name: nothing is written.
  void SetFile(std::string file);

  /// Cuts the file where it is too long, then writes the text and CR LF behind it. Returns what
  /// went wrong, in the system's words; empty when nothing did, or when it has been told already.
  std::string Append(std::string_view text);

 private:
  int Cut() const;

  std::string file_;
  bool failing_ = false;
};

}  // namespace ostrel
