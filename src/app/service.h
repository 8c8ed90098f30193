#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/connection_test.h"
#include "app/model_table.h"
#include "base/clock.h"
#include "base/csprachen.h"
#include "base/desktop.h"
#include "base/dialogs.h"
#include "base/messages.h"
#include "base/settings_store.h"
#include "config/users/users.h"
#include "device/clsDevice.h"
#include "device/rights.h"
#include "device/selection.h"
#include "device/station_list.h"
#include "device/stations.h"
#include "link/commands.h"
#include "link/link.h"
#include "logs/service_log/clsLog.h"
#include "logs/tap_statistics/tap_statistics.h"
#include "pages/console/console.h"
#include "wire/automation.h"

namespace ostrel {

/// What the service functions need of the outside world.
struct Ports {
  SettingsStore& settings;
  AutomationFactory& automation;
  Dialogs& dialogs;
  Clock& clock;
  Desktop& desktop;
};

/// What one run is told when it starts.
struct RunOptions {
  std::string connection;  // empty = the server's current one
  std::string language;    // "deu", "eng", "fra"; empty = as the settings say
  bool chooser = true;     // offer other connections when one does not open
};

/// The service functions and what they work on. Desktop program and command line are its two faces.
class Service {
 public:
  Service(const Ports& ports, RunOptions options);
  ~Service();
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  /// "Service " and the version.
  static std::string Title();
  /// The minutes that lists of times offer.
  static std::span<const std::string_view> Minutes();

  const Messages& Texts() const { return messages_; }
  CSprachen& Languages() { return sprachen_; }
  SettingsStore& Settings() { return ports_.settings; }
  Dialogs& Boxes() { return ports_.dialogs; }
  Desktop& Computer() { return ports_.desktop; }
  Link& ServerLink() { return link_; }
  ConnectionTest& Tester() { return tester_; }
  Stations& Bus() { return stations_; }
  const clsDevice& Device() const { return device_; }
  const Selection& Selected() const { return selection_; }
  TapStatistics& Statistics() { return statistics_; }
  Users& UserManagement() { return users_; }
  const clsLog& Log() const { return log_; }
  /// Switches the service log, now and for later runs; its folder is made when it is missing.
  void SwitchLog(bool on);
  /// Where the console writes its commands.
  const std::filesystem::path& ConsoleLogPath() const { return consoleLog_; }
  /// The start-up switch of the power-quality devices.
  bool ContactQM() const { return contactQM_; }
  Console& CommandConsole() { return console_; }

  /// The period that the data-log page shows, as it shows it. It is kept from run to run.
  struct Period {
    std::string from, to;
  };
  Period& LogPeriod() { return logPeriod_; }
  void KeepPeriod();

  /// What the selected device makes of a page or of some of its buttons.
  Availability On(Feature feature) const;
  /// Reads the automatic or manual state of the selected device, with an address before it; empty
  /// when the model has none.
  std::string_view AutoCommand() const { return autoCommand_; }

  /// The list of stations of the open connection, not filled yet. It lives no longer than this.
  StationList ListOfStations(RightsDisplay rights);
  /// Fills the list and lets the user choose. `preselected` is the address selected until now.
  using StationChooser =
      std::function<StationChoice(StationList& list, const std::string& preselected)>;
  /// Opens the connection, lets the user choose a station, perhaps of another connection, and makes
  /// it the selected device. False when there is no connection, no answer or no choice; failures
  /// are shown.
  bool DeviceSelect(const StationChooser& choose, const RightsDisplay& rights);
  /// The same for a station whose address ("B1:") is known.
  bool DeviceSelectByAddress(const std::string& address);
  /// Opens the connection of this run; shows what went wrong. When that is another one than the
  /// selected device's, no device is selected any more.
  bool ConnectionOpen();
  /// Closes the connection and opens it anew, also when it is lost, and makes sure of the selected
  /// device as Reconnect does. Asks before while a station still answers; failures are shown.
  bool ConnectionReselect();
  /// To be called before each command of a page. True at once while the link stands. A lost one is
  /// opened, and type and serial number of what answers there are compared with the selected
  /// device's. The same device: true, and nothing else changes. Another one: the user is told once,
  /// false, and writing is locked until a device is selected. No answer: that is shown, false, and
  /// the link stays lost.
  bool Reconnect();
  /// Whether another device than the selected one answers, so that nothing may be written.
  bool WritingLocked() const { return locked_; }
  /// Makes a station the selected device, shows it and refreshes what depends on it.
  void DeviceChange(const std::string& kennName, const std::string& typ,
                    const std::string& firmware, const std::string& serial);
  /// What has to follow when the stored connection `before` got other data or another name, or was
  /// removed (`after` is empty): an open channel on it is closed, so that the next one is opened
  /// with the new data, and a device that was selected on it is selected no more from then on.
  void ConnectionChanged(const std::string& before, const std::string& after);
  /// Makes a connection the current one. What is open on another stays so until the next device
  /// selection. False when there is none with this name.
  bool ConnectionUse(const std::string& name);
  /// Shows which device is selected.
  std::function<void()> onDeviceShow;
  /// Called at the end of every device change.
  std::function<void()> onDeviceChange;
  /// Reads whether a simulation runs on the device, and offers to switch it off. Set by the first
  /// that reads or writes that state.
  std::function<void()> onSimulationOff;

  /// True when the channel leads to simulated devices.
  bool Simulated() const;

  /// One tick of the alive timer. What is due now and then waits until nothing else is going on
  /// (`idle`), and is left out while the link is lost.
  void AliveTick(int intervalMs, bool idle);
  /// The end of the program, after its window: keeps what is to be kept, deletes the temporary
  /// parameter files, offers to switch a simulation off when `mayAsk`, closes the connection.
  void Beenden(bool mayAsk);

 private:
  // service_run.cpp
  void ReadStartValues();
  void PeriodicAction();
  void Note(std::string_view text) const;

  bool ConnectionOpen(const std::string& connection);
  void KeepSelection();
  bool Adopt(const std::string& kennName);
  bool MakeSure();
  int SerialGet(const std::string& address, std::string& serial);
  void LockWriting(const std::string& typ, const std::string& serial);
  void CurrentDevSet(const std::string& kennName, const std::string& typ);
  void CurrentDevSet2(const std::string& firmware);
  void CurrentDevShow(const std::string& kennName, const std::string& typ,
                      const std::string& firmware, const std::string& serial);
  void RefreshAfterDevChange();
  void RefreshGlobal();
  void Deselect();
  void FollowConnection();
  bool LeadsToSimulator();
  bool ConsoleReady();

  Ports ports_;
  RunOptions options_;
  Messages messages_;
  CSprachen sprachen_;
  clsLog log_;
  std::filesystem::path consoleLog_;
  bool contactQM_ = false;
  Period logPeriod_;
  Link link_;
  ConnectionTest tester_;
  Commands commands_;
  Stations stations_;
  clsDevice device_;
  Selection selection_;
  bool simulated_ = false;  // the open channel leads to the simulator
  bool goOver_ = false;     // the next device selection opens another connection
  std::string selectedOn_;  // the connection of the selected device
  int identifying_ = 0;     // operations that find out what answers on the line
  bool locked_ = false;     // another device answers than the selected one
  std::string_view autoCommand_;
  TapStatistics statistics_;
  Users users_;
  Console console_;
  int aliveMs_ = 0;
};

}  // namespace ostrel
