#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "device/desk.h"
#include "pages/console/console_log.h"
#include "pages/console/script.h"
#include "pages/console/unsaved_script.h"

namespace ostrel {

/// A command line of a script on its way.
struct SentLine {
  std::size_t number = 0, total = 0;  // of the lines that are sent, counted from 1
  int row = 0;                        // in the script, counted from 1
  std::string command;                // as it is shown: passwords masked
  std::string answer;                 // empty until it is there
  bool ok = false;                    // there is an answer, and none that is an error
  Error error = {};                   // why there is none
};

/// The command console: scripts of device commands, checked, sent and read. Scripts are texts whose
/// lines CR LF separates. While lines are sent events run; what would send more then is refused.
class Console {
 public:
  explicit Console(const Desk& desk);

  /// Where the answer pane's text goes; it comes with its CR LF.
  std::function<void(const std::string& text)> onPane;
  /// The monitor switch was set.
  std::function<void(bool on)> onMonitor;
  /// Before a line is sent, and when its exchange is over.
  std::function<void(const SentLine&line)> onSending, onAnswered;
  /// A line was answered, so that the next one's turn comes.
  std::function<void()> RGLCommandCursorDown;

  /// Adds a text to the answer pane, and to the console log while the monitor switch is on.
  void RGLAntwortAdd(const std::string& text);
  void MonitorSet(bool on);
  bool Monitor() const { return monitor_; }
  ConsoleLog& Log() { return log_; }

  /// False when the script has errors; they are shown.
  bool LineCheck(const std::string& script) const;
  /// The same, and says so when there are none.
  void SyntaxCheck(const std::string& script) const;

  /// Asks, then sends a part of the script to the selected device. What went wrong is shown.
  Ending Send(const std::string& script, const ScriptPart& part);
  /// Asks, then reads programs and menus of the selected device; `replace` gets the new script.
  Ending ReadFromDevice(const std::function<void(const std::string& script)>& replace);
  /// Lets stations be chosen from a list under the title; none when the user cancels. A station is
  /// its name and, behind a ";", what else the list shows.
  using StationsChooser = std::function<std::vector<std::string>(const std::string& title)>;
  /// Sends the script to several stations in turn and shows a report.
  Ending SendToStations(const std::string& script, const StationsChooser& choose);
  /// Hands command lines to the device without messages, pane or log; stops at the first failure.
  bool SendQuietly(const Writing& device, const ScriptLines& lines);

  /// The script's file; empty until one was loaded or saved.
  const std::string& FileName() const { return origin_.fileName; }
  /// The same with its form. Whoever brings another text back brings back where it came from.
  const ScriptOrigin& Origin() const { return origin_; }
  void SetOrigin(const ScriptOrigin& origin) { origin_ = origin; }
  bool ScriptLoaded() const { return loaded_; }
  /// Reads a script from a named file. What went wrong is shown.
  std::optional<std::string> Open(const std::string& fileName);
  /// The same from a file that the user chooses.
  std::optional<std::string> Load();
  /// The script has no file from now on.
  void New();
  /// Writes the script to its file, or to one that the user chooses.
  Ending Save(const std::string& script);
  Ending SaveAs(const std::string& script);
  /// Puts a script aside that is not saved, for the next run of the program; with an empty one
  /// nothing is there any more. What fails is lost.
  void KeepUnsaved(const std::string& script);
  /// What a program that has ended put aside, with where it came from; empty when there is nothing.
  std::string TakeUnsaved();
  /// Lets the user choose the file of the console log; false when he cancels.
  bool ChooseLogFile();

 private:
  std::string DeviceName() const { return desk_.session.Selected().GetKennName().value_or(""); }
  Ending SendConfirmed(const ScriptLines& lines);
  bool SendLines(const Writing& device, const ScriptLines& lines);
  bool SendEach(const Writing& device, const std::string& prefix,
                const std::vector<ScriptLine>& lines);
  std::optional<std::string> ReadScriptText(const Reading& device);
  Ending SendToEach(const std::vector<std::string>& stations, const ScriptLines& lines,
                    const std::string& fileName, std::string& report);
  Ending Write(const std::string& fileName, const std::string& script);
  bool NotEmpty(const std::string& script, int message) const;

  Desk desk_;
  ConsoleLog log_;
  ScriptOrigin origin_;
  UnsavedScript unsaved_;
  bool loaded_ = false;
  bool monitor_ = false;
  bool running_ = false;
};

}  // namespace ostrel
