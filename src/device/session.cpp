#include "device/session.h"

#include <utility>

#include "base/text.h"
#include "base/texts.h"
#include "wire/answers.h"
#include "wire/codes.h"
#include "wire/connections.h"
#include "wire/def_timeout.h"
#include "wire/line_rules.h"

namespace ostrel {

namespace {

constexpr int kPeriodMs = 600000;

/// Lets a lost link send while it lives, so that what answers there can be found out.
class Identifying {
 public:
  explicit Identifying(int& count) : count_(++count) {}
  ~Identifying() { --count_; }
  Identifying(const Identifying&) = delete;
  Identifying& operator=(const Identifying&) = delete;

 private:
  int& count_;
};

}  // namespace

Session::Session(const SessionPorts& ports, SessionOptions options)
    : ports_(ports),
      options_(std::move(options)),
      link_(ports.automation, ports.settings, ports.clock, ports.programFolder),
      commands_(link_, ports.dialogs, ports.texts),
      stations_(link_, commands_) {
  link_.OfferChooser(options_.chooser);
  link_.explain = [this](const Error& error) { return ports_.texts.Shown(error); };
  ports_.settings.onPutAside = [this](const std::string& file) {
    ports_.texts.WarnFilled(text::kSettingsPutAside, file);
  };
  if (!link_.LoadSettings()) TellCorrected(ports_.texts, link_.DefTimeout());
  link_.onLost = [this](int code) { Note("Connection lost: " + std::to_string(code)); };
  link_.onTerminate = [this] {
    if (onTerminate) onTerminate();
  };
  // Nothing may reach a device of which it is not known whether it is the selected one.
  link_.holdsWhenLost = [this] { return identifying_ == 0 && selection_.GetKenn(); };
  selection_.SetCheck([this] {
    if (locked_) ports_.texts.Warn(text::kWritingLocked);
    return !locked_;
  });
}

Session::~Session() {
  ports_.settings.onPutAside = nullptr;
}

void Session::Note(const std::string& text) const {
  if (onNote) onNote(VisibleLine(text));
}

bool Session::ConnectionOpen() {
  return ConnectionOpen(options_.connection);
}

bool Session::ConnectionOpen(const std::string& connection) {
  // Asking for the name also finds out that the server is gone; a new one counts channels afresh.
  const bool wasOpen = !link_.ConnectionName().empty();
  if (const Error error = link_.ConnectionOpen(connection, FrameMode::kFramed)) {
    ports_.texts.Warn(error);
    return false;
  }
  // Settings that change later do not change where an open channel leads.
  if (!wasOpen) {
    simulated_ = LeadsToSimulator();
    if (connection == options_.connection) goOver_ = false;
    link_.Doubt();
  }
  KeepSelection();
  return true;
}

bool Session::ConnectionReselect() {
  const bool selected = selection_.GetKenn().has_value();
  if (link_.ConnState() != LinkState::kChannel) return selected ? Ready() : ConnectionOpen();
  const Error error =
      link_.ConnectionReselect([this] { return ports_.texts.Ask(text::kReselectAnswering); });
  if (error) {
    ports_.texts.Warn(error);
    return false;
  }
  simulated_ = LeadsToSimulator();
  KeepSelection();
  return !selected || MakeSure();
}

/// Opens a lost link again and makes sure of the selected device. True at once while it stands.
bool Session::Ready() {
  if (identifying_ > 0) {
    const bool open = link_.ConnState() == LinkState::kChannel;
    if (!open) ports_.texts.Warn(Code::kNoChannel);
    return open;
  }
  link_.ConnectionName();  // finds out that the server is gone
  link_.LookForLoss();
  if (link_.ConnState() == LinkState::kChannel && !link_.Lost()) return true;
  if (!selection_.GetKenn()) return ConnectionOpen();
  // Where the device was selected, whichever connection is the current one by now.
  return ConnectionOpen(selectedOn_.empty() ? options_.connection : selectedOn_) && MakeSure();
}

/// Whether the selected device is the one that answers at its address.
bool Session::MakeSure() {
  const std::optional<std::string> address = selection_.GetKenn();
  if (!address) return false;  // another connection was opened
  link_.Doubt();
  const Identifying now(identifying_);
  const BusyPointer busy(ports_.dialogs);
  std::string kennName, typ, firmware, serial;
  Error error = stations_.NameGet(*address, kennName);
  if (!error) error = stations_.VersionGet(*address, typ, firmware);
  // Who refuses to tell is not known to be the selected one.
  if (error.code == text::kDeviceReplied) typ = std::exchange(error, {}).detail;
  if (!error) error = stations_.SerialGet(*address, serial);
  if (error) {
    ports_.texts.WarnFilled(error, *address);
    return false;
  }
  link_.Identified();
  if (typ != selection_.Typ() || serial != selection_.Serial()) {
    LockWriting(typ, serial);
    return false;
  }
  Note("Connection reopened: " + link_.ConnectionName());
  if (firmware != device_.Firmware()) {
    CurrentDevSet2(firmware);
    selection_.Set(selection_.KennName(), typ, firmware, serial);
    if (onDeviceShow) onDeviceShow();
  }
  return true;
}

void Session::LockWriting(const std::string& typ, const std::string& serial) {
  locked_ = true;
  const auto line = [this](int id, const std::string& type, const std::string& number) {
    const std::string device = VisibleLine(type + ", " + (number.empty() ? "–" : number));
    return "\n" + ports_.texts.Filled(id, device);
  };
  Note("Another device: " + typ + ", " + serial);
  ports_.texts.Warn(text::kOtherDevice,
                    "\n" + line(text::kDeviceBefore, selection_.Typ(), selection_.Serial()) +
                        line(text::kDeviceNow, typ, serial));
}

StationList Session::ListOfStations(RightsDisplay rights) {
  return {link_, commands_, ports_.dialogs, ports_.texts, std::move(rights)};
}

std::optional<std::vector<std::string>> Session::StationsListAll() {
  std::vector<std::string> stations;
  if (!Ready() || !stations_.StationsListAll(stations)) return std::nullopt;
  return stations;
}

bool Session::DeviceSelect(const StationChooser& choose, const RightsDisplay& rights) {
  if (goOver_) link_.ConnectionClose();
  if (!ConnectionOpen()) return false;
  const Identifying now(identifying_);
  const std::string before = link_.ConnectionName();
  StationList list = ListOfStations(rights);
  const StationChoice choice = choose(list, selection_.GetKenn().value_or(""));
  ports_.texts.Warn(choice.error);
  if (link_.ConnectionName() != before) FollowConnection();
  if (!choice.station) return false;
  const Station& row = *choice.station;
  const bool told = !IsErrorAnswer(row.type);
  return Adopt(row.KennName(), told ? TypeFromVerAnswer(row.type) : "", row.Firmware());
}

bool Session::DeviceSelectByAddress(const std::string& address) {
  if (!ConnectionOpen()) return false;
  const Identifying now(identifying_);
  const BusyPointer busy(ports_.dialogs);
  std::string kennName;
  const Error error = stations_.NameGet(address, kennName);
  if (error) ports_.texts.WarnFilled(error, address);
  return !error && Adopt(kennName, {}, {});
}

/// Type and firmware are what the list told; a station that refuses to tell them again has these.
bool Session::Adopt(const std::string& kennName, std::string typ, std::string firmware) {
  const BusyPointer busy(ports_.dialogs);
  const std::string address = AddressPart(kennName);
  std::string serial;
  const Error error = stations_.VersionGet(address, typ, firmware);
  const bool refused = error.code == text::kDeviceReplied;
  if (error && !refused) commands_.ServerErrorReport(error);
  if (refused && typ.empty()) ports_.texts.Warn(error);
  if (error && (!refused || typ.empty())) return false;
  link_.Identified();
  stations_.SerialGet(address, serial);  // a device without one can be selected as well
  DeviceChange(kennName, typ, firmware, serial);
  return true;
}

void Session::DeviceChange(const std::string& kennName, const std::string& typ,
                           const std::string& firmware, const std::string& serial) {
  CurrentDevSet(kennName, typ);
  CurrentDevSet2(firmware);
  CurrentDevShow(kennName, typ, firmware, serial);
  if (onDeviceChange) onDeviceChange();
}

void Session::CurrentDevShow(const std::string& kennName, const std::string& typ,
                             const std::string& firmware, const std::string& serial) {
  selection_.Set(kennName, typ, firmware, serial);
  ++selections_;
  selectedOn_ = link_.ConnectionName();
  locked_ = false;
  Note("Device: " + kennName + ", " + typ + ", " + firmware + ", " + serial);
  if (onDeviceShow) onDeviceShow();
}

void Session::Deselect() {
  device_ = {};
  selection_.Clear();
  ++selections_;
  locked_ = false;
  Note("Device: none");
  if (onDeviceShow) onDeviceShow();
  if (onDeviceChange) onDeviceChange();
}

/// What an open channel leaves of the selection: a device selected on another connection is none.
void Session::KeepSelection() {
  if (selection_.GetKenn() && link_.ConnectionName() != selectedOn_) Deselect();
  // Nothing can be mistaken for another one.
  if (!selection_.GetKenn()) link_.Identified();
}

void Session::FollowConnection() {
  const std::string name = link_.ConnectionName();
  if (name.empty()) return;
  // A link that is lost later is opened again where the user went.
  options_.connection = name;
  simulated_ = LeadsToSimulator();
  goOver_ = false;
  KeepSelection();
}

void Session::CurrentDevSet(const std::string& kennName, const std::string& typ) {
  device_.SetIdentity(kennName, typ);
}

void Session::CurrentDevSet2(const std::string& firmware) {
  device_.SetFirmware(firmware);
}

bool Session::LeadsToSimulator() {
  const std::optional<Connection> connection =
      Connections(ports_.settings).Find(link_.ConnectionName());
  return connection && connection->Simulated();
}

bool Session::Simulated() const {
  // Simulated devices behind a TCP port say so with their serial number; another one that answers
  // in place of the selected may be real.
  return (!locked_ && selection_.Serial().starts_with("SIM")) ||
         (link_.ConnState() == LinkState::kChannel && simulated_);
}

void Session::ConnectionChanged(const std::string& before, const std::string& after) {
  const auto isIt = [before](const std::string& other) { return SameText(other, before); };
  if (isIt(link_.ConnectionName())) link_.ConnectionClose();
  if (isIt(options_.connection)) options_.connection = after;
  // Another device may answer there under the address of the selected one.
  if (isIt(selectedOn_)) selectedOn_.clear();
}

bool Session::ConnectionUse(const std::string& name) {
  if (const Error error = Connections(ports_.settings).Use(name)) {
    ports_.texts.WarnFilled(error, name);
    return false;
  }
  // A connection that was named for this run counts no longer.
  options_.connection.clear();
  goOver_ = !SameText(link_.ConnectionName(), name);
  return true;
}

int Session::DefTimeout() const {
  return ReadDefTimeout(ports_.settings).seconds;
}

Ending Session::DefTimeoutSet(std::string_view given) {
  const GivenTimeout came = StoreDefTimeout(ports_.settings, given);
  Tell(ports_.texts, came, given);
  if (!came.Stored()) return Ending::kFailed;
  link_.ChannelTimeoutSet(came.seconds);
  return Ending::kDone;
}

void Session::AliveTick(int intervalMs, bool idle) {
  link_.KeepAliveTick((ports_.programFolder / "service.exe ").string());
  if (idle) link_.LookForLoss();
  aliveMs_ += intervalMs;
  if (aliveMs_ <= kPeriodMs || !idle || link_.Busy()) return;
  aliveMs_ = 0;
  PeriodicAction();
}

void Session::PeriodicAction() {
  const std::optional<std::string> regulator = selection_.GetKennReglerFam();
  if (link_.ConnState() != LinkState::kChannel || link_.Lost() || locked_ || !regulator) return;
  commands_.DevCmdQuiet(link_.CurrentChannel(), *regulator + "dd-");
}

}  // namespace ostrel
