#include "app/service.h"

#include <utility>

#include "app/text.h"
#include "app/texts.h"
#include "link/answers.h"
#include "link/connections.h"

namespace ostrel {

namespace {

constexpr int kPeriodMs = 600000;

}  // namespace

Service::Service(const Ports& ports, RunOptions options)
    : ports_(ports),
      options_(std::move(options)),
      messages_(ports.dialogs),
      sprachen_(ports.settings, messages_, ports.desktop.ProgramFolder()),
      link_(ports.automation, ports.settings, ports.clock, ports.dialogs, messages_,
            ports.desktop.ProgramFolder()),
      tester_(ports.automation, ports.settings, ports.clock, ports.desktop.ProgramFolder()),
      commands_(link_, ports.dialogs, messages_),
      stations_(link_, commands_),
      statistics_(link_, commands_, selection_, ports.dialogs, messages_),
      console_({link_, commands_, selection_, device_, messages_, ports.dialogs, ports.settings,
                ports.clock, [this] { return ConsoleReady(); },
                [this](const std::string& address) { return DeviceSelectByAddress(address); }}) {
  sprachen_.UserIndex_Test();
  if (!options_.language.empty()) sprachen_.SetLanguage(options_.language);
  link_.OfferChooser(options_.chooser);
  link_.LoadSettings();
}

std::string Service::Title() {
  return "Service " OSTREL_VERSION;
}

bool Service::ConnectionOpen() {
  // Asking for the name also finds out that the server is gone; a new one counts channels afresh.
  const bool wasOpen = !link_.ConnectionName().empty();
  const LinkState state = link_.ConnectionOpen(options_.connection, frame::kFramed);
  if (state == LinkState::kChannel) {
    // Settings that change later do not change where an open channel leads.
    if (!wasOpen) {
      simulated_ = LeadsToSimulator();
      goOver_ = false;
    }
    // The device selected until now is not on this connection.
    if (selection_.GetKenn() && link_.ConnectionName() != selectedOn_) Deselect();
    return true;
  }
  // A server that could not be created has told so itself, and the chooser tells as well.
  const bool told = link_.LastError().Code() == code::kServerNotStarted ||
                    (options_.chooser && state == LinkState::kServer);
  const ServerError& error = link_.LastError();
  if (!told) messages_.Warn(error.Code(), error.Detail());
  return false;
}

bool Service::ConnectionReselect() {
  const std::optional<std::string> address = selection_.GetKenn();
  if (link_.ConnState() != LinkState::kChannel) return address ? Reconnect() : ConnectionOpen();
  if (!link_.ConnectionReselect()) return false;
  simulated_ = LeadsToSimulator();
  return !address || DeviceSelectByAddress(*address);
}

bool Service::Reconnect() {
  link_.ConnectionName();  // finds out that the server is gone
  if (link_.ConnState() == LinkState::kChannel) return true;
  const std::optional<std::string> address = selection_.GetKenn();
  return address && ConnectionOpen() && selection_.GetKenn() && DeviceSelectByAddress(*address);
}

bool Service::ConsoleReady() {
  if (!selection_.GetKenn()) messages_.Warn(text::kNoDeviceSelected);
  return selection_.GetKenn() && Reconnect();
}

bool Service::DeviceSelect(const StationChooser& choose) {
  if (goOver_) link_.ConnectionClose();
  if (!ConnectionOpen()) return false;
  std::vector<Station> rows;
  {
    const BusyPointer busy(ports_.dialogs);
    const int code = stations_.ListFill(rows);
    if (code != 0) messages_.Warn(code);
    if (rows.empty()) return false;
  }
  const std::optional<Station> chosen = choose(rows, selection_.GetKenn().value_or(""));
  return chosen && Adopt(chosen->KennName());
}

bool Service::DeviceSelectByAddress(const std::string& address) {
  if (!ConnectionOpen()) return false;
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
  if (!commands_.DevQueryChecked(link_.CurrentChannel(), address + "sysSN#", serial)) {
    serial.clear();
  }
  DeviceChange(kennName, typ, firmware, TrimAnswer(serial));
  return true;
}

void Service::DeviceChange(const std::string& kennName, const std::string& typ,
                           const std::string& firmware, const std::string& serial) {
  device_.SetIdentity(kennName, typ);
  device_.SetFirmware(firmware);
  selection_.Set(kennName, typ, firmware, serial);
  selectedOn_ = link_.ConnectionName();
  RefreshAfterDevChange();
}

void Service::Deselect() {
  device_ = {};
  selection_ = {};
  RefreshAfterDevChange();
}

void Service::RefreshAfterDevChange() {
  statistics_.DeviceChanged();
  if (onDeviceChange) onDeviceChange();
}

bool Service::LeadsToSimulator() {
  const std::optional<Connection> connection =
      Connections(ports_.settings).Find(link_.ConnectionName());
  return connection && connection->Simulated();
}

bool Service::Simulated() const {
  // Simulated devices behind a TCP port say so with their serial number.
  return selection_.Serial().starts_with("SIM") ||
         (link_.ConnState() == LinkState::kChannel && simulated_);
}

void Service::ConnectionChanged(const std::string& before, const std::string& after) {
  const auto isIt = [name = LowerAscii(before)](const std::string& other) {
    return LowerAscii(other) == name;
  };
  if (isIt(link_.ConnectionName())) link_.ConnectionClose();
  if (isIt(options_.connection)) options_.connection = after;
  // Another device may answer there under the address of the selected one.
  if (isIt(selectedOn_)) selectedOn_.clear();
}

bool Service::ConnectionUse(const std::string& name) {
  if (!Connections(ports_.settings).Use(name)) return false;
  // A connection that was named for this run counts no longer.
  options_.connection.clear();
  goOver_ = LowerAscii(link_.ConnectionName()) != LowerAscii(name);
  return true;
}

void Service::AliveTick(int intervalMs) {
  link_.KeepAliveTick((ports_.desktop.ProgramFolder() / "service.exe ").string());
  aliveMs_ += intervalMs;
  if (aliveMs_ <= kPeriodMs || link_.Busy()) return;
  aliveMs_ = 0;
  PeriodicAction();
}

void Service::PeriodicAction() {
  const std::optional<std::string> regulator = selection_.GetKennReglerFam();
  if (link_.ConnState() != LinkState::kChannel || !regulator) return;
  commands_.DevCmdQuiet(link_.CurrentChannel(), *regulator + "dd-");
}

void Service::Beenden() {
  link_.ConnectionClose();
}

}  // namespace ostrel
