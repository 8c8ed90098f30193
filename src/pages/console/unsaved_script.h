#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "pages/console/script_file.h"

namespace ostrel {

/// Where a script comes from: its file (empty for none), whose name says for what devices it is,
/// and the form of its bytes there.
struct ScriptOrigin {
  std::string fileName;
  ScriptForm form;
};

/// The file in which a window keeps its script while that is not saved. It is the window's as long
/// as the window lives, by a lock that ends with the program; what a program left is free to be
/// taken up by the next one. Nobody else may read it: scripts hold passwords. What fails is lost.
class UnsavedScript {
 public:
  struct Contents {
    std::string text;
    ScriptOrigin origin;
  };

  /// The first window's file; the second one's has "-2" behind its name, and so on.
  explicit UnsavedScript(std::filesystem::path first) : first_(std::move(first)) {}
  ~UnsavedScript() { LetGo(); }
  UnsavedScript(const UnsavedScript&) = delete;
  UnsavedScript& operator=(const UnsavedScript&) = delete;

  /// Takes up what a program left, nothing where nothing is. It stays in its file until Drop.
  std::optional<Contents> TakeUp();
  /// Keeps a script, in place of the one before. False when it could not be written; then the one
  /// before is still there.
  bool Keep(std::string_view text, const ScriptOrigin& origin);
  /// The script was saved or given up: the file goes.
  void Drop();

 private:
  std::filesystem::path File(int number) const;
  void Sweep() const;
  bool Claim();
  bool Replace(const std::string& bytes);
  void LetGo();

  std::filesystem::path first_, file_;
  int lock_ = -1;  // the file's descriptor, locked
};

}  // namespace ostrel
