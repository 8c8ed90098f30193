#include "app/service.h"

#include <utility>

#include "base/text.h"
#include "base/texts.h"
#include "base/user_files.h"
#include "wire/answers.h"
#include "wire/connections.h"

namespace ostrel {

namespace {

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

Service::Service(const Ports& ports, RunOptions options)
    : ports_(ports),
      options_(std::move(options)),
      messages_(ports.dialogs),
      sprachen_(ports.settings, messages_, ports.desktop.ProgramFolder()),
      log_(ports.clock),
      link_(ports.automation, ports.settings, ports.clock, ports.dialogs, messages_,
            ports.desktop.ProgramFolder()),
      tester_(ports.automation, ports.settings, ports.clock, ports.desktop.ProgramFolder()),
      commands_(link_, ports.dialogs, messages_),
      stations_(link_, commands_),
      statistics_(link_, commands_, selection_, ports.dialogs, messages_),
      users_(link_, commands_, selection_, ports.dialogs, messages_),
      console_({link_, commands_, selection_, device_, messages_, ports.dialogs, ports.settings,
                ports.clock, [this] { return ConsoleReady(); },
                [this](const std::string& address) { return DeviceSelectByAddress(address); },
                UnsavedScriptFile(ports.desktop.DocumentsFolder()).string()}) {
  sprachen_.UserIndex_Test();
  if (!options_.language.empty()) sprachen_.SetLanguage(options_.language);
  ReadStartValues();
  link_.OfferChooser(options_.chooser);
  link_.LoadSettings();
  link_.onLost = [this](int code) { Note("Connection lost: " + std::to_string(code)); };
  // Nothing of a page may reach a device of which it is not known whether it is the selected one.
  link_.holdsWhenLost = [this] { return identifying_ == 0 && selection_.GetKenn(); };
  selection_.SetCheck([this] {
    if (locked_) messages_.Warn(text::kWritingLocked);
    return !locked_;
  });
}

bool Service::ConnectionOpen() {
  return ConnectionOpen(options_.connection);
}

bool Service::ConnectionOpen(const std::string& connection) {
  // Asking for the name also finds out that the server is gone; a new one counts channels afresh.
  const bool wasOpen = !link_.ConnectionName().empty();
  const LinkState state = link_.ConnectionOpen(connection, frame::kFramed);
  if (state == LinkState::kChannel) {
    // Settings that change later do not change where an open channel leads.
    if (!wasOpen) {
      simulated_ = LeadsToSimulator();
      if (connection == options_.connection) goOver_ = false;
      link_.Doubt();
    }
    KeepSelection();
    return true;
  }
  // A server that could not be created has told so itself, and the chooser tells as well.
  const bool told = link_.LastError().Code() == code::kServerNotStarted ||
                    (options_.chooser && state == LinkState::kServer);
  const ServerError& error = link_.LastError();
  if (!told) messages_.Warn(error.Code(), error.Detail());
  return false;
}

/// What an open channel leaves of the selection: a device selected on another connection is none.
void Service::KeepSelection() {
  if (selection_.GetKenn() && link_.ConnectionName() != selectedOn_) Deselect();
  // Nothing can be mistaken for another one.
  if (!selection_.GetKenn()) link_.Identified();
}

bool Service::ConnectionReselect() {
  const std::optional<std::string> address = selection_.GetKenn();
  if (link_.ConnState() != LinkState::kChannel) return address ? Reconnect() : ConnectionOpen();
  if (!link_.ConnectionReselect()) return false;
  simulated_ = LeadsToSimulator();
  KeepSelection();
  return !address || MakeSure();
}

bool Service::Reconnect() {
  link_.ConnectionName();  // finds out that the server is gone
  link_.LookForLoss();
  if (link_.ConnState() == LinkState::kChannel && !link_.Lost()) return true;
  if (!selection_.GetKenn()) return ConnectionOpen();
  // Where the device was selected, whichever connection is the current one by now.
  return ConnectionOpen(selectedOn_.empty() ? options_.connection : selectedOn_) && MakeSure();
}

bool Service::ConsoleReady() {
  if (!selection_.GetKenn()) messages_.Warn(text::kNoDeviceSelected);
  return selection_.GetKenn() && Reconnect();
}

/// Whether the selected device is the one that answers at its address.
bool Service::MakeSure() {
  const std::optional<std::string> address = selection_.GetKenn();
  if (!address) return false;  // another connection was opened
  link_.Doubt();
  const Identifying now(identifying_);
  const BusyPointer busy(ports_.dialogs);
  std::string kennName, typ, firmware, serial;
  int code = stations_.NameGet(*address, kennName);
  if (code == 0) code = stations_.VersionGet(*address, typ, firmware);
  if (code == 0) code = SerialGet(*address, serial);
  if (code != 0) {
    messages_.WarnFilled(code, *address);
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

/// The serial number; empty when the device refuses to tell. 0 or a code.
int Service::SerialGet(const std::string& address, std::string& serial) {
  std::string answer;
  const int code = link_.CommandExchangeCode(link_.CurrentChannel(), address + "sysSN#", answer);
  serial = IsErrorAnswer(answer) ? std::string() : TrimAnswer(answer);
  return code;
}

void Service::LockWriting(const std::string& typ, const std::string& serial) {
  locked_ = true;
  const auto line = [this](int id, const std::string& type, const std::string& number) {
    const std::string device = VisibleLine(type + ", " + (number.empty() ? "–" : number));
    return "\n" + messages_.Filled(id, device);
  };
  Note("Another device: " + typ + ", " + serial);
  messages_.Warn(text::kOtherDevice,
                 "\n" + line(text::kDeviceBefore, selection_.Typ(), selection_.Serial()) +
                     line(text::kDeviceNow, typ, serial));
}

StationList Service::ListOfStations(RightsDisplay rights) {
  return {link_, commands_, ports_.dialogs, messages_, std::move(rights)};
}

bool Service::DeviceSelect(const StationChooser& choose, const RightsDisplay& rights) {
  if (goOver_) link_.ConnectionClose();
  if (!ConnectionOpen()) return false;
  const Identifying now(identifying_);
  const std::string before = link_.ConnectionName();
  StationList list = ListOfStations(rights);
  const StationChoice choice = choose(list, selection_.GetKenn().value_or(""));
  if (choice.code > 0) messages_.Warn(choice.code);
  if (link_.ConnectionName() != before) FollowConnection();
  return choice.station && Adopt(choice.station->KennName());
}

void Service::FollowConnection() {
  const std::string name = link_.ConnectionName();
  if (name.empty()) return;
  // A link that is lost later is opened again where the user went.
  options_.connection = name;
  simulated_ = LeadsToSimulator();
  goOver_ = false;
  KeepSelection();
}

bool Service::DeviceSelectByAddress(const std::string& address) {
  if (!ConnectionOpen()) return false;
  const Identifying now(identifying_);
  const BusyPointer busy(ports_.dialogs);
  std::string kennName;
  const int code = stations_.NameGet(address, kennName);
  if (code != 0) messages_.WarnFilled(code, address);
  return code == 0 && Adopt(kennName);
}

bool Service::Adopt(const std::string& kennName) {
  const BusyPointer busy(ports_.dialogs);
  const std::string address = AddressPart(kennName);
  std::string typ, firmware, serial;
  if (const int code = stations_.VersionGet(address, typ, firmware); code != 0) {
    link_.ServerErrorReport({kObjectErrorBase + code, {}}, false);
    return false;
  }
  link_.Identified();
  SerialGet(address, serial);  // a device without one can be selected as well
  DeviceChange(kennName, typ, firmware, serial);
  return true;
}

void Service::DeviceChange(const std::string& kennName, const std::string& typ,
                           const std::string& firmware, const std::string& serial) {
  CurrentDevSet(kennName, typ);
  CurrentDevSet2(firmware);
  CurrentDevShow(kennName, typ, firmware, serial);
  RefreshAfterDevChange();
}

void Service::CurrentDevSet(const std::string& kennName, const std::string& typ) {
  device_.SetIdentity(kennName, typ);
}

void Service::CurrentDevSet2(const std::string& firmware) {
  device_.SetFirmware(firmware);
}

void Service::CurrentDevShow(const std::string& kennName, const std::string& typ,
                             const std::string& firmware, const std::string& serial) {
  selection_.Set(kennName, typ, firmware, serial);
  selectedOn_ = link_.ConnectionName();
  locked_ = false;
  Note("Device: " + kennName + ", " + typ + ", " + firmware + ", " + serial);
  if (onDeviceShow) onDeviceShow();
}

void Service::Deselect() {
  device_ = {};
  selection_.Clear();
  locked_ = false;
  Note("Device: none");
  if (onDeviceShow) onDeviceShow();
  RefreshAfterDevChange();
}

void Service::RefreshGlobal() {
  autoCommand_ = AutoReadCommand(selection_.GetTypeCode());
}

Availability Service::On(Feature feature) const {
  const bool selected = selection_.GetKenn().has_value();
  return AvailabilityOf(feature, selected ? std::optional(selection_.GetTypeCode()) : std::nullopt);
}

void Service::RefreshAfterDevChange() {
  RefreshGlobal();
  statistics_.DeviceChanged();
  users_.DeviceChanged();
  if (onDeviceChange) onDeviceChange();
}

bool Service::LeadsToSimulator() {
  const std::optional<Connection> connection =
      Connections(ports_.settings).Find(link_.ConnectionName());
  return connection && connection->Simulated();
}

bool Service::Simulated() const {
  // Simulated devices behind a TCP port say so with their serial number; another one that answers
  // in place of the selected may be real.
  return (!locked_ && selection_.Serial().starts_with("SIM")) ||
         (link_.ConnState() == LinkState::kChannel && simulated_);
}

void Service::ConnectionChanged(const std::string& before, const std::string& after) {
  const auto isIt = [before](const std::string& other) { return SameText(other, before); };
  if (isIt(link_.ConnectionName())) link_.ConnectionClose();
  if (isIt(options_.connection)) options_.connection = after;
  // Another device may answer there under the address of the selected one.
  if (isIt(selectedOn_)) selectedOn_.clear();
}

bool Service::ConnectionUse(const std::string& name) {
  if (!Connections(ports_.settings).Use(name)) return false;
  // A connection that was named for this run counts no longer.
  options_.connection.clear();
  goOver_ = !SameText(link_.ConnectionName(), name);
  return true;
}

}  // namespace ostrel
