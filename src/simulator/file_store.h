#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

#include "simulator/variables.h"
#include "simulator/words.h"

namespace ostrel::simulator {

/// The files that a host has put into a device, by name in lower case. All operations throw Fault.
class FileStore {
 public:
  static constexpr std::size_t kMaxFiles = 16;
  static constexpr std::size_t kMaxBytes = 64 * 1024;  ///< of one file

  /// Begins an empty file, also in place of one that is there.
  void Create(const std::string& name);
  void Append(const std::string& name, std::string_view bytes);
  void Delete(const std::string& name);
  /// Nothing when there is no such file.
  const std::string* Find(const std::string& name) const;

 private:
  std::map<std::string, std::string> files_;
};

VariableTable FileVariables();
WordTable FileWords();

}  // namespace ostrel::simulator
