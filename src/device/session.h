#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/clock.h"
#include "base/dialogs.h"
#include "base/error.h"
#include "base/messages.h"
#include "base/settings_store.h"
#include "device/clsDevice.h"
#include "device/selection.h"
#include "device/station_list.h"
#include "device/stations.h"
#include "device/tokens.h"
#include "link/commands.h"
#include "link/link.h"
#include "wire/automation.h"

namespace ostrel {

/// What the session needs of the outside world.
struct SessionPorts {
  SettingsStore& settings;
  AutomationFactory& automation;
  Dialogs& dialogs;
  Clock& clock;
  const Messages& texts;
  std::filesystem::path programFolder;
};

/// Which connection a run is told to use.
struct SessionOptions {
  std::string connection = {};  // empty = the server's current one
  bool chooser = true;          // offer other connections when one does not open
};

/// The connection and the selected device, and the only way to it: whoever sends lines asks for a
/// token first. Failures are shown.
class Session {
 public:
  Session(const SessionPorts& ports, SessionOptions options);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Tokens. Each opens a lost link again; where a device is selected, type and serial number of
  // what answers there are compared with its. Without a token why there is none was shown.

  /// To ask the selected device.
  std::optional<Reading> ToRead();
  /// To change something on the selected device; none while another device answers.
  std::optional<Writing> ToWrite();
  /// For another station of the connection by its address ("B1:"); "AA:" is the physically
  /// connected one, an empty address the station to which lines without one go.
  std::optional<Writing> ToStation(const std::string& address);
  /// For all stations at once.
  std::optional<Writing> ToAll() { return ToStation("all,"); }
  /// For the selected device, on a link of its own.
  std::unique_ptr<OwnLine> ToOwnLine();
  /// The bytes of the selected device's connection; refused while another device answers.
  std::unique_ptr<Online> ToOnline();

  // The selected device.

  const clsDevice& Device() const { return device_; }
  const Selection& Selected() const { return selection_; }
  /// Whether another device than the selected one answers, so that nothing may be written.
  bool WritingLocked() const { return locked_; }
  /// True when the channel leads to simulated devices.
  bool Simulated() const;

  /// Fills the list and lets the user choose. `preselected` is the address selected until now.
  using StationChooser =
      std::function<StationChoice(StationList& list, const std::string& preselected)>;
  /// Opens the connection, lets the user choose a station, perhaps of another connection, and makes
  /// it the selected device. False when there is no connection, no answer or no choice.
  /// A station that refuses to tell its version has the one that the list told; where that told
  /// none, the device's words are shown and nothing is selected.
  bool DeviceSelect(const StationChooser& choose, const RightsDisplay& rights);
  /// The same for a station whose address ("B1:") is known.
  bool DeviceSelectByAddress(const std::string& address);
  /// Makes a station the selected device, shows it and refreshes what depends on it.
  void DeviceChange(const std::string& kennName, const std::string& typ,
                    const std::string& firmware, const std::string& serial);
  /// The list of stations of the open connection, not filled yet. It lives no longer than this.
  StationList ListOfStations(RightsDisplay rights);
  /// The lines of the answer to "all stations", without empty ones and comments.
  std::optional<std::vector<std::string>> StationsListAll();

  // The connection.

  LinkState ConnState() const { return link_.ConnState(); }
  /// The name of the connection on which the channel runs; empty when there is none.
  std::string ConnectionName() { return link_.ConnectionName(); }
  /// True from an error after which another device may answer, until it is known what does.
  bool Lost() const { return link_.Lost(); }
  /// Opens the connection of this run. When that is another one than the selected device's, no
  /// device is selected any more.
  bool ConnectionOpen();
  /// Closes the connection and opens it anew, also when it is lost, and makes sure of the selected
  /// device. Asks before while a station still answers.
  bool ConnectionReselect();
  /// What has to follow when the stored connection `before` got other data or another name, or was
  /// removed (`after` is empty): an open channel on it is closed, so that the next one is opened
  /// with the new data, and a device that was selected on it is selected no more from then on.
  void ConnectionChanged(const std::string& before, const std::string& after);
  /// Makes a connection the current one. What is open on another stays so until the next device
  /// selection. False when there is none with this name.
  bool ConnectionUse(const std::string& name);
  void ConnectionClose() { link_.ConnectionClose(); }

  /// The setting "DefTimeout_s": the answer time-out in whole seconds.
  int DefTimeout() const;
  /// Stores it as it was typed and uses it at once. Beyond 1..15 the bound is stored, which is
  /// told; what is no whole number, or cannot be stored, changes nothing and is told: kFailed.
  Ending DefTimeoutSet(std::string_view given);

  /// One tick of the alive timer: asks whether the server wants all programs to end, also while an
  /// answer is awaited. What else is due now and then waits until nothing else is going on
  /// (`idle`), and is left out while the link is lost.
  void AliveTick(int intervalMs, bool idle);
  /// Makes the wait that is going on, and every later one, end, until that is taken back.
  void GiveUp(bool givenUp = true) { link_.GiveUp(givenUp); }

  /// Notes for the service log.
  std::function<void(const std::string& text)> onNote;
  /// Shows which device is selected.
  std::function<void()> onDeviceShow;
  /// Called at the end of every device change.
  std::function<void()> onDeviceChange;
  /// The server asks all programs to end.
  std::function<void()> onTerminate;

 private:
  friend class Reading;
  friend class Writing;
  Error Refusal(const Reading& token) const;
  Answer Exchange(const Reading& token, const std::string& line);
  Error HandOver(const Reading& token, const std::string& line);

  bool Ready();
  bool ConnectionOpen(const std::string& connection);
  void KeepSelection();
  bool Adopt(const std::string& kennName, std::string typ, std::string firmware);
  bool MakeSure();
  void LockWriting(const std::string& typ, const std::string& serial);
  void CurrentDevSet(const std::string& kennName, const std::string& typ);
  void CurrentDevSet2(const std::string& firmware);
  void CurrentDevShow(const std::string& kennName, const std::string& typ,
                      const std::string& firmware, const std::string& serial);
  void Deselect();
  void FollowConnection();
  bool LeadsToSimulator();
  void PeriodicAction();
  void Note(const std::string& text) const;

  SessionPorts ports_;
  SessionOptions options_;
  Link link_;
  Commands commands_;
  Stations stations_;
  clsDevice device_;
  Selection selection_;
  int selections_ = 0;      // how often another device was selected, or none
  bool simulated_ = false;  // the open channel leads to the simulator
  bool goOver_ = false;     // the next device selection opens another connection
  std::string selectedOn_;  // the connection of the selected device
  int identifying_ = 0;     // operations that find out what answers on the line
  bool locked_ = false;     // another device answers than the selected one
  int aliveMs_ = 0;
};

}  // namespace ostrel
