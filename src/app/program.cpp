#include "app/program.h"

#include <array>
#include <utility>

#include "base/program_title.h"
#include "base/user_files.h"

namespace ostrel {

Program::Program(const ProgramPorts& ports, SessionOptions options, const std::string& language)
    : ports_(ports),
      messages_(ports.dialogs),
      languages_(ports.settings, messages_, ports.computer.ProgramFolder()),
      log_(ports.clock),
      contactQM_(ports.settings.ReadShared(keys::kServerMisc, "ContactQM", "0") == "1"),
      logPeriod_{ports.settings.ReadProgram("Ostrel", "Misc", "XFLogFrom", ""),
                 ports.settings.ReadProgram("Ostrel", "Misc", "XFLogTo", "")},
      session_(Start(language), std::move(options)),
      tester_(ports.automation, ports.settings, ports.clock, ports.computer.ProgramFolder()) {
  session_.onNote = [this](const std::string& text) { log_.SaveLog(text); };
}

/// What comes before the session: the language of its messages, and the log.
SessionPorts Program::Start(const std::string& language) {
  languages_.UserIndex_Test();
  if (!language.empty()) languages_.SetLanguage(language);
  log_.Open(ports_.settings, ports_.computer.DocumentsFolder());
  log_.SaveLog(std::string("Start: ") + kProgramTitle);
  return {ports_.settings, ports_.automation, ports_.dialogs,
          ports_.clock,    messages_,         ports_.computer.ProgramFolder()};
}

Program::~Program() {
  log_.SaveLog(std::string("End: ") + kProgramTitle);
}

Desk Program::MakeDesk() {
  return {session_, messages_, ports_.dialogs, ports_.settings, ports_.clock, ports_.computer};
}

std::span<const std::string_view> Program::Minutes() {
  static constexpr std::array<std::string_view, 4> kMinutes = {"00", "15", "30", "45"};
  return kMinutes;
}

void Program::KeepPeriod() {
  if (logPeriod_.from.empty() && logPeriod_.to.empty()) return;  // never shown, never stored
  ports_.settings.WriteProgram("Ostrel", "Misc", "XFLogFrom", logPeriod_.from);
  ports_.settings.WriteProgram("Ostrel", "Misc", "XFLogTo", logPeriod_.to);
}

void Program::Beenden(bool mayAsk) {
  KeepPeriod();
  DeleteParameterFiles(ports_.computer.DocumentsFolder());
  if (mayAsk && onSimulationOff) onSimulationOff();
  session_.ConnectionClose();
}

}  // namespace ostrel
