#pragma once

#include <QString>
#include <string>

#include "base/dialogs.h"
#include "base/messages.h"

class QDialog;
class QWidget;

namespace ostrel {

/// Shows a dialog and waits for it; the busy pointer is away meanwhile. True when it was accepted.
bool RunModal(QDialog& dialog);

/// The filter of a file dialog of the window system for one of ours, "text|*.a;*.b|…".
std::string WindowFilter(const std::string& filter);

/// Message boxes, file dialogs, pointer and clipboard of the window system.
class WindowDialogs : public Dialogs {
 public:
  /// The window above which the dialogs stand, and the source of their captions. Without them, as
  /// at the very start, the captions are German. Both are null again when the window goes.
  void Attach(QWidget* parent, const Messages* messages);
  /// What a dialog stands above: the dialog that is open, else the window.
  QWidget* Parent() const;

  /// From now on nothing is shown, every question is answered with No; what is open closes.
  void Silence();
  /// Takes that back.
  void Speak() { silent_ = false; }

  void Show(const Message& message) override;
  bool AskYesNo(const std::string& question) override;
  std::optional<std::string> AskText(const InputRequest& request) override;
  std::optional<std::string> ChooseFile(FileDialogKind kind, const std::string& title,
                                        const std::string& filter,
                                        const std::string& folder) override;
  void SetBusy(bool busy) override;
  void ToClipboard(const std::string& text, const std::string& pngPicture) override;

 private:
  QString Caption(int id) const;

  QWidget* parent_ = nullptr;
  const Messages* messages_ = nullptr;
  bool silent_ = false;
};

}  // namespace ostrel
