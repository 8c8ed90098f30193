#pragma once

#include <optional>
#include <string>

namespace ostrel {

enum class MessageStyle { kInformation, kExclamation };

/// kAppend is kSave where a file that exists is kept.
enum class FileDialogKind { kOpen, kSave, kAppend };

/// What a message box shows. The number is the one under which the text stands in the string table,
/// 0 for a text without one.
struct Message {
  int number = 0;
  std::string text;
  std::string title;
  MessageStyle style = MessageStyle::kInformation;
};

/// One line of text that is asked for.
struct InputRequest {
  std::string title;
  std::string prompt;
  std::string value;      // what stands in the field at first
  bool password = false;  // not shown while it is typed
};

/// What the program asks of and tells the person in front of it.
class Dialogs {
 public:
  virtual ~Dialogs() = default;
  virtual void Show(const Message& message) = 0;
  /// False for everything but Yes.
  virtual bool AskYesNo(const std::string& question) = 0;
  /// A line of text, as it was typed; nothing when the user cancels.
  virtual std::optional<std::string> AskText(const InputRequest& request) = 0;
  /// A file dialog that starts in `folder` (empty = the current one). The filter is
  /// "text|*.ext;*.ext|text|…". The chosen path; nothing when the user cancels.
  virtual std::optional<std::string> ChooseFile(FileDialogKind kind, const std::string& title,
                                                const std::string& filter,
                                                const std::string& folder) = 0;
  /// Shows or takes away the busy pointer; calls nest.
  virtual void SetBusy(bool busy) = 0;
  /// Puts a text and a picture (PNG bytes) on the clipboard together.
  virtual void ToClipboard(const std::string& text, const std::string& pngPicture) = 0;
};

/// Shows the busy pointer while it lives.
class BusyPointer {
 public:
  explicit BusyPointer(Dialogs& dialogs) : dialogs_(dialogs) { dialogs_.SetBusy(true); }
  ~BusyPointer() { dialogs_.SetBusy(false); }
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;

 private:
  Dialogs& dialogs_;
};

}  // namespace ostrel
