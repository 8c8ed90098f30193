#pragma once

#include <QWidget>
#include <functional>

namespace ostrel {

/// A page of the main window. It is created when it is shown for the first time.
class Page : public QWidget {
 public:
  /// Runs what exchanges lines with a device: with the busy pointer, and all commands disabled.
  using Runner = std::function<void(const std::function<void()>& operation)>;

  /// Takes all captions from the string table again.
  virtual void Captions() = 0;
  /// Shows what is known after another device was selected.
  virtual void Refresh() = 0;
  /// Reads what the page shows from the device, when it can.
  virtual void Read() = 0;
  /// Whether it wants to be read about every minute, as the user has it.
  virtual bool Polls() const { return false; }
  /// Whether commands may be started now; the page disables what does not fit besides.
  virtual void EnableCommands(bool free) = 0;
  /// Whether the user lets the page go; it may ask him. What it holds may be lost then.
  virtual bool MayClose() { return true; }
  /// The program ends. Where nobody was asked, what was not saved is put aside for its next run.
  virtual void KeepUnsaved(bool /*unasked*/) {}

  /// Shows a text in the status line.
  std::function<void(const QString& text)> onStatus;
};

}  // namespace ostrel
