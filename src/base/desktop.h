#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace ostrel {

/// The computer around the program.
class Desktop {
 public:
  virtual ~Desktop() = default;
  /// The folder in which the program stands.
  virtual std::filesystem::path ProgramFolder() const = 0;
  /// The user's documents, as his desktop has them; the folder need not exist.
  virtual std::filesystem::path DocumentsFolder() const = 0;
  /// The user's profile: his home folder.
  virtual std::filesystem::path ProfileFolder() const = 0;
  /// The locale of the user's messages, e.g. "de_DE.UTF-8"; empty where none is set.
  virtual std::string Locale() const = 0;
  /// Brings the top-level window with this title to the front; false when there is none.
  virtual bool RaiseWindow(const std::string& title) = 0;
  /// Starts a program that outlives this one; false when it does not start.
  virtual bool StartProgram(const std::filesystem::path& program,
                            const std::vector<std::string>& arguments) = 0;
};

}  // namespace ostrel
