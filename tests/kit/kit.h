#pragma once

// The scripted outside world that all tests of the logic share: settings in memory, a communication
// server that answers from a script, dialogs that answer from a list, a clock moved by hand.

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/clock.h"
#include "base/desktop.h"
#include "base/dialogs.h"
#include "base/settings_values.h"
#include "device/desk.h"
#include "wire/automation.h"

namespace ostrel::kit {

/// Settings that end with the test.
class MemorySettings : public SettingsStore {
 public:
  std::optional<std::string> FindShared(std::string_view key,
                                        std::string_view name) const override {
    return values_.Find(key, name);
  }
  std::vector<std::string> SharedSubKeys(std::string_view key) const override {
    return values_.SubKeys(key);
  }
  Error Store(const std::vector<SettingsChange>& changes) override;

  Error fails;     // instead of the next writes
  int writes = 0;  // that changed something

 private:
  SettingsValues values_;
};

/// A clock that stands until something is awaited; every pass of a wait moves it a step.
class ManualClock : public Clock {
 public:
  LocalTime Now() const override { return now; }
  std::int64_t TickMs() const override { return tickMs; }
  void ProcessEvents() override;

  LocalTime now;
  std::int64_t tickMs = 500;
  std::int64_t stepMs = 100;
  std::function<void()> onEvents;  // what a timer or a click does meanwhile
};

/// Dialogs that answer from lists (then No, nothing) and remember what they were asked.
class ScriptedDialogs : public Dialogs {
 public:
  void Show(const Message& message) override { shown.push_back(message); }
  bool AskYesNo(const std::string& question) override;
  std::optional<std::string> ChooseFile(FileDialogKind, const std::string& title,
                                        const std::string& filter,
                                        const std::string& folder) override;
  std::optional<std::string> AskText(const InputRequest& request) override;
  void SetBusy(bool on) override;
  void ToClipboard(const std::string&, const std::string&) override {}

  /// The numbers of the messages shown, e.g. "10012 1280".
  std::string Numbers() const;

  std::vector<Message> shown;
  std::vector<std::string> asked;
  std::vector<bool> yesNo;
  std::vector<std::string> typed;    // "\x1b" cancels
  std::vector<std::string> offered;  // what stood in the fields at first
  std::vector<std::string> files;
  int busy = 0;
};

/// What the scripted server does and what it saw. It outlives the objects made of it.
struct ServerScript {
  std::map<std::string, std::string> answers;     // by line; a line without one is never answered
  std::map<std::string, AutomationResult> fails;  // by member: raised instead of an outcome
  std::int64_t answerAfterMs = 0;
  bool locked = false, online = false, terminate = false;
  bool queues = false;              // lines wait behind another channel's
  int failingCreations = 0;         // so many attempts fail first
  std::vector<std::string> chosen;  // what the chooser gives, in turn
  std::function<void()> onChoose;   // what happens while it is open
  std::set<std::string> closedFor;  // connections that do not open: 10042

  std::string connection = "Simulator";
  bool follows = false;  // the connection is from then on the one that was opened by its name

  std::vector<std::string> sent, opened, created, choosers, takenBack;
  std::vector<std::string> notices;
  int timeout = 10, frame = 0, translate = 0, closed = 0, received = 0;
};

class ScriptedFactory : public AutomationFactory {
 public:
  ScriptedFactory(ServerScript& script, ManualClock& clock) : script_(script), clock_(clock) {}
  Created Create(std::string_view className) override;

 private:
  ServerScript& script_;
  ManualClock& clock_;
};

/// A temporary folder with the language folders of an installation, removed at the end.
class TemporaryDesktop : public Desktop {
 public:
  TemporaryDesktop();
  ~TemporaryDesktop() override;
  std::filesystem::path ProgramFolder() const override { return folder; }
  std::filesystem::path DocumentsFolder() const override { return folder / "documents"; }
  std::filesystem::path ProfileFolder() const override { return folder / "home"; }
  std::string Locale() const override { return locale; }
  bool RaiseWindow(const std::string& title) override;
  bool StartProgram(const std::filesystem::path& program,
                    const std::vector<std::string>& arguments) override;

  std::filesystem::path folder;
  std::string locale = "de_DE.UTF-8";
  std::vector<std::string> windows;  // titles of those that are open
  std::vector<std::string> raised;
  std::vector<std::string> started;  // program and arguments, a blank between
};

/// The whole world of one program.
struct World {
  MemorySettings settings;
  ManualClock clock;
  ServerScript server;
  ScriptedFactory factory{server, clock};
  ScriptedDialogs dialogs;
  TemporaryDesktop desktop;
};

/// A run of a program in that world, in English.
struct Run {
  explicit Run(World& world, const SessionOptions& options = {})
      : messages(English(world.dialogs)),
        session({world.settings, world.factory, world.dialogs, world.clock, messages,
                 world.desktop.folder},
                options),
        desk{session, messages, world.dialogs, world.settings, world.clock, world.desktop} {}

  Messages messages;
  Session session;
  Desk desk;

 private:
  static Messages English(Dialogs& dialogs) {
    Messages messages(dialogs);
    messages.SetFactor(1);
    return messages;
  }
};

}  // namespace ostrel::kit
