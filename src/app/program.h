#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "link/connection_test.h"
#include "base/csprachen.h"
#include "base/messages.h"
#include "device/desk.h"
#include "device/session.h"
#include "logs/service_log/clsLog.h"
#include "wire/automation.h"

namespace ostrel {

/// What the program needs of the outside world.
struct ProgramPorts {
  SettingsStore& settings;
  AutomationFactory& automation;
  Dialogs& dialogs;
  Clock& clock;
  Desktop& computer;
};

/// What happens once a run: its start, what it keeps from run to run, and its end.
class Program {
 public:
  /// `language` is "deu", "eng" or "fra"; empty = as the settings say.
  Program(const ProgramPorts& ports, SessionOptions options, const std::string& language);
  ~Program();
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  /// The minutes that lists of times offer.
  static std::span<const std::string_view> Minutes();

  /// What the features work with; as long as the program lives.
  Desk MakeDesk();
  CSprachen& Languages() { return languages_; }
  clsLog& Log() { return log_; }
  ConnectionTest& Tester() { return tester_; }
  /// The start-up switch of the power-quality devices.
  bool ContactQM() const { return contactQM_; }

  /// The period that the data-log page shows, as it shows it. It is kept from run to run.
  struct Period {
    std::string from, to;
  };
  Period& LogPeriod() { return logPeriod_; }
  void KeepPeriod();

  /// Reads whether a simulation runs on the device, and offers to switch it off. Set by the first
  /// that reads or writes that state.
  std::function<void()> onSimulationOff;

  /// The end of the program, after its window: keeps what is to be kept, deletes the temporary
  /// parameter files, offers to switch a simulation off when `mayAsk`, closes the connection.
  void Beenden(bool mayAsk);

 private:
  SessionPorts Start(const std::string& language);

  ProgramPorts ports_;
  Messages messages_;
  CSprachen languages_;
  clsLog log_;
  bool contactQM_;
  Period logPeriod_;
  Session session_;
  ConnectionTest tester_;
};

}  // namespace ostrel
