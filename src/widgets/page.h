#pragma once

#include <QWidget>
#include <functional>
#include <vector>

#include "device/desk.h"
#include "widgets/captions.h"

class QCheckBox;
class QPushButton;

namespace ostrel {

/// A page of the main window. It declares its controls, what they show, when they are enabled and
/// what they do; the rest is done here. It is made when it is shown for the first time.
class Page : public QWidget {
 public:
  /// What a page is given: what it works with, and what the window does for it.
  struct Seat {
    Desk desk;
    /// Runs what exchanges lines: with the busy pointer, and all commands disabled.
    std::function<void(const std::function<void()>& operation)> run;
    /// Shows a text in the status line.
    std::function<void(const QString& text)> status;
  };

  /// Whether commands may be started: the selected device has the page, and nothing is under way.
  void EnableCommands(bool free);
  /// Takes all captions from the string table again.
  void SetCaptions();
  /// Another device was selected, or none. Also called once when the page was made.
  void DeviceChanged();
  /// Reads what the page shows from the device, when it can.
  virtual void Read();
  /// Reads about every minute, as the user has it; `intervalMs` went by since the last time.
  void Tick(int intervalMs, bool mayRead);
  /// Whether the user lets the page go; it may ask him. What it holds may be lost then.
  virtual bool MayClose() { return true; }
  /// The program ends. Where nobody was asked, what was not saved is put aside for its next run.
  virtual void KeepUnsaved(bool /*unasked*/) {}

 protected:
  /// What a command is about, and so when it is enabled and how it runs: files and what is shown,
  /// which exchanges nothing; lines, which need no selected device; or the selected device.
  enum class About { kFiles, kLines, kDevice };
  using Action = std::function<void()>;
  using Condition = std::function<bool()>;

  explicit Page(const Seat& seat) : desk_(seat.desk), captions_(desk_.texts), seat_(seat) {}

  /// A button that starts a command, where `also` holds.
  QPushButton* Command(const char* name, int id, About about, Action action, Condition also = {});
  /// The same that reads what the page shows.
  QPushButton* ReadCommand(const char* name, int id, Action action);
  /// A switch with which the user has the page read every minute.
  QCheckBox* PollSwitch(const char* name);
  /// Enables a control as a command is enabled.
  template <typename Control>
  Control* Follows(Control* control, About about, Condition also = {}) {
    AddRule({[control](bool on) { control->setEnabled(on); }, about, std::move(also)});
    return control;
  }
  /// The same for what is no such control.
  void OnEnable(About about, std::function<void(bool)> enable) {
    AddRule({std::move(enable), about, {}});
  }
  /// Starts a command, as its button does.
  void Start(About about, const Action& action);
  /// Enables all anew after what a condition goes by has changed.
  void Enable() const;
  bool Free() const { return free_; }
  void ShowStatus(const QString& text) const { seat_.status(text); }

  /// What was read is another device's.
  virtual void Forget() {}
  /// Shows what is known; called after each operation, too.
  virtual void Refresh() = 0;

  const Desk desk_;
  Captions captions_;

 private:
  struct Rule {
    std::function<void(bool)> enable;
    About about;
    Condition also;
  };
  void AddRule(Rule rule) { rules_.push_back(std::move(rule)); }

  Seat seat_;
  std::vector<Rule> rules_;
  QPushButton* read_ = nullptr;
  QCheckBox* poll_ = nullptr;
  int pollMs_ = 0;  // since the page was read last
  bool free_ = false;
};

}  // namespace ostrel
