#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ostrel {

/// The largest script file.
inline constexpr std::size_t kMostScriptBytes = 16UL * 1024 * 1024;

/// How the bytes of a script file make up its text.
struct ScriptForm {
  enum class Encoding { kUtf8, kWindows1252 };
  Encoding encoding = Encoding::kUtf8;
  bool byteOrderMark = false;
  std::string lineEnd = "\r\n";  // the only kind in the file; CR LF where it is mixed
};

/// The text of a file's bytes in UTF-8, its lines separated by CR LF, and their form. False when
/// they are no text.
bool DecodeScript(std::string_view bytes, std::string& text, ScriptForm& form);

/// The bytes for a text. Where the form's encoding does not hold it, the form becomes UTF-8.
std::string EncodeScript(std::string_view text, ScriptForm& form);

/// What came of reading or writing: the number of a message and what fills it; 0 when all went
/// well.
struct FileOutcome {
  int message = 0;
  std::string detail;
};

/// Reads a script of at most kMostScriptBytes.
FileOutcome ReadScript(const std::string& path, std::string& text, ScriptForm& form);
/// Writes it; the file stays as it was when that fails.
FileOutcome WriteScript(const std::string& path, std::string_view text, ScriptForm& form);

}  // namespace ostrel
