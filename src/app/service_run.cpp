// What happens once a run, and in its background: start, alive timer, end.

#include <array>

#include "app/service.h"
#include "base/text.h"
#include "base/user_files.h"

namespace ostrel {

namespace {

constexpr int kPeriodMs = 600000;

void MakeFolderOf(const std::filesystem::path& file) {
  std::error_code ignored;
  std::filesystem::create_directories(file.parent_path(), ignored);
}

}  // namespace

std::string Service::Title() {
  return "Service " OSTREL_VERSION;
}

std::span<const std::string_view> Service::Minutes() {
  static constexpr std::array<std::string_view, 4> kMinutes = {"00", "15", "30", "45"};
  return kMinutes;
}

void Service::ReadStartValues() {
  const SettingsStore& settings = ports_.settings;
  log_.Init(ServiceLogFile(ports_.desktop.DocumentsFolder()));
  log_.Active(settings.ReadShared(keys::kServiceMisc, "ServiceLog", "0") != "0");
  if (log_.Active()) MakeFolderOf(log_.FileName());
  consoleLog_ = ConsoleLogFile(settings, ports_.desktop.ProfileFolder());
  contactQM_ = settings.ReadShared(keys::kServerMisc, "ContactQM", "0") == "1";
  logPeriod_ = {settings.ReadProgram("Ostrel", "Misc", "XFLogFrom", ""),
                settings.ReadProgram("Ostrel", "Misc", "XFLogTo", "")};
  Note("Start: " + Title());
}

Service::~Service() {
  Note("End: " + Title());
}

void Service::SwitchLog(bool on) {
  ports_.settings.WriteShared(keys::kServiceMisc, "ServiceLog", on ? "1" : "0");
  if (on) MakeFolderOf(log_.FileName());
  log_.Active(on);
}

void Service::Note(std::string_view text) const {
  log_.SaveLog(VisibleLine(text));
}

void Service::AliveTick(int intervalMs, bool idle) {
  link_.KeepAliveTick((ports_.desktop.ProgramFolder() / "service.exe ").string());
  if (idle) link_.LookForLoss();
  aliveMs_ += intervalMs;
  if (aliveMs_ <= kPeriodMs || !idle || link_.Busy()) return;
  aliveMs_ = 0;
  PeriodicAction();
}

void Service::PeriodicAction() {
  const std::optional<std::string> regulator = selection_.GetKennReglerFam();
  if (link_.ConnState() != LinkState::kChannel || link_.Lost() || locked_ || !regulator) return;
  commands_.DevCmdQuiet(link_.CurrentChannel(), *regulator + "dd-");
}

void Service::KeepPeriod() {
  if (logPeriod_.from.empty() && logPeriod_.to.empty()) return;  // never shown, never stored
  ports_.settings.WriteProgram("Ostrel", "Misc", "XFLogFrom", logPeriod_.from);
  ports_.settings.WriteProgram("Ostrel", "Misc", "XFLogTo", logPeriod_.to);
}

void Service::Beenden(bool mayAsk) {
  KeepPeriod();
  DeleteParameterFiles(ports_.desktop.DocumentsFolder());
  if (mayAsk && onSimulationOff) onSimulationOff();
  link_.ConnectionClose();
}

}  // namespace ostrel
