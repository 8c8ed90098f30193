#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "base/messages.h"
#include "device/clsDevice.h"

namespace ostrel {

/// Lengths of command lines in characters: from kLongLine on there is no room for an address before
/// them, from kTooLongLine on they cannot be sent.
inline constexpr std::size_t kLongLine = 126;
inline constexpr std::size_t kTooLongLine = 130;
/// The most lines that a script may have.
inline constexpr int kMostScriptLines = 32767;

/// What a line of a script is; comments, empty lines and lines with "aa::" are ignored.
enum class LineClass { kIgnored, kCommand, kLong, kTooLong };
LineClass ClassifyLine(std::string_view line);

/// Pops a line as NextLine does, without copying what follows it.
std::string_view PopLine(std::string_view& text);

/// A command line and the number of its row in the script, counted from 1.
struct ScriptLine {
  int row = 0;
  std::string text;
};

struct ScriptLines {
  std::vector<ScriptLine> lines;
  bool longLine = false;  // one of them leaves no room for an address
  /// The lines, each with CR LF behind it.
  std::string Text() const;
};

/// The command lines of a text that follows `rowsBefore` rows of its script.
ScriptLines ExtractCommands(std::string_view text, std::size_t rowsBefore = 0);

/// What speaks against sending a script.
struct ScriptCheck {
  struct Fault {
    int row = 0;             // counted from 1
    std::size_t length = 0;  // in characters, of a line that is too long; else 0
    char32_t character = 0;  // else the first one that no line can hold
  };
  std::vector<Fault> faults;  // by rows
  bool tooManyLines = false;  // the rows beyond kMostScriptLines were not looked at

  bool Ok() const { return faults.empty() && !tooManyLines; }
  /// A line for each entry, at most so many; the last one then says how many there are more.
  std::string List(const Messages& messages, std::size_t most = std::string::npos) const;
};
ScriptCheck CheckScript(std::string_view text);
/// A character as a list shows it: "€ (U+20AC)", and its number alone where nothing is to be seen.
std::string CharacterShown(char32_t character);

/// What of a script is to be sent.
struct ScriptPart {
  enum class Mode { kAll, kFromCursor, kCursorLine, kSelection };
  Mode mode = Mode::kAll;
  std::size_t line = 0;   // of the cursor, or the first of the selection; counted from 0
  std::string selection;  // the selected text
};
/// The lines of this part. Beyond the end of the text there are none.
std::string_view SelectPart(std::string_view text, const ScriptPart& part);

/// Whether a script with this file name is one for the device. A script without a name is.
bool ScriptFits(const clsDevice& device, std::string_view fileName);

/// The text with every line end, CR or LF alone as well, as CR LF.
std::string WithCrLf(std::string_view text);

}  // namespace ostrel
