#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "app/csprachen.h"
#include "app/desktop.h"
#include "app/dialogs.h"
#include "app/messages.h"
#include "app/settings_store.h"
#include "device/clsDevice.h"
#include "device/selection.h"
#include "device/stations.h"
#include "link/automation.h"
#include "link/clock.h"
#include "link/commands.h"
#include "link/connection_test.h"
#include "link/link.h"
#include "logs/tap_statistics.h"
#include "pages/console.h"

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

  /// "Service " and the version.
  static std::string Title();

  const Messages& Texts() const { return messages_; }
  CSprachen& Languages() { return sprachen_; }
  SettingsStore& Settings() { return ports_.settings; }
  Dialogs& Boxes() { return ports_.dialogs; }
  Link& ServerLink() { return link_; }
  ConnectionTest& Tester() { return tester_; }
  Stations& Bus() { return stations_; }
  const clsDevice& Device() const { return device_; }
  const Selection& Selected() const { return selection_; }
  TapStatistics& Statistics() { return statistics_; }
  Console& CommandConsole() { return console_; }

  /// Chooses one of the stations found; nothing when the user cancels. `preselected` is the address
  /// selected until now.
  using StationChooser = std::function<std::optional<Station>(const std::vector<Station>& stations,
                                                              const std::string& preselected)>;
  /// Opens the connection, lets the user choose a station and makes it the selected device. False
  /// when there is no connection, no answer or no choice; failures are shown.
  bool DeviceSelect(const StationChooser& choose);
  /// The same for a station whose address ("B1:") is known.
  bool DeviceSelectByAddress(const std::string& address);
  /// Opens the connection of this run; shows what went wrong. When that is another one than the
  /// selected device's, no device is selected any more.
  bool ConnectionOpen();
  /// Closes the connection and opens it anew, also when it is lost, and identifies the selected
  /// device there again. Asks before while a station still answers; failures are shown.
  bool ConnectionReselect();
  /// Opens a link that was lost and identifies the selected device there again; true at once while
  /// the link stands. Failures are shown.
  bool Reconnect();
  /// Makes a station the selected device and refreshes what depends on it.
  void DeviceChange(const std::string& kennName, const std::string& typ,
                    const std::string& firmware, const std::string& serial);
  /// What has to follow when the stored connection `before` got other data or another name, or was
  /// removed (`after` is empty): an open channel on it is closed, so that the next one is opened
  /// with the new data, and a device that was selected on it is selected no more from then on.
  void ConnectionChanged(const std::string& before, const std::string& after);
  /// Makes a connection the current one. What is open on another stays so until the next device
  /// selection. False when there is none with this name.
  bool ConnectionUse(const std::string& name);
  /// Called at the end of every device change.
  std::function<void()> onDeviceChange;

  /// True when the channel leads to simulated devices.
  bool Simulated() const;

  /// One tick of the alive timer. Nothing happens while an exchange is under way.
  void AliveTick(int intervalMs);
  /// Closes the connection at the end of the program.
  void Beenden();

 private:
  bool Adopt(const std::string& kennName);
  void Deselect();
  bool LeadsToSimulator();
  void RefreshAfterDevChange();
  void PeriodicAction();
  bool ConsoleReady();

  Ports ports_;
  RunOptions options_;
  Messages messages_;
  CSprachen sprachen_;
  Link link_;
  ConnectionTest tester_;
  Commands commands_;
  Stations stations_;
  clsDevice device_;
  Selection selection_;
  bool simulated_ = false;  // the open channel leads to the simulator
  bool goOver_ = false;     // the next device selection opens another connection
  std::string selectedOn_;  // the connection of the selected device
  TapStatistics statistics_;
  Console console_;
  int aliveMs_ = 0;
};

}  // namespace ostrel
