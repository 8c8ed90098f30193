#pragma once

#include <filesystem>

namespace ostrel {

/// The computer around the program.
class Desktop {
 public:
  virtual ~Desktop() = default;
  /// The folder in which the program stands.
  virtual std::filesystem::path ProgramFolder() const = 0;
};

}  // namespace ostrel
