#include "platform/program_desktop.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include "platform/x11_windows.h"

namespace ostrel {

std::filesystem::path ProgramDesktop::ProgramFolder() const {
  return QCoreApplication::applicationDirPath().toStdString();
}

std::filesystem::path ProgramDesktop::DocumentsFolder() const {
  return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation).toStdString();
}

std::filesystem::path ProgramDesktop::ProfileFolder() const {
  return QDir::homePath().toStdString();
}

std::string ProgramDesktop::Locale() const {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (!qEnvironmentVariableIsEmpty(name)) return qgetenv(name).toStdString();
  }
  return {};
}

bool ProgramDesktop::RaiseWindow(const std::string& title) {
  return RaiseX11Window(title);
}

bool ProgramDesktop::StartProgram(const std::filesystem::path& program,
                                  const std::vector<std::string>& arguments) {
  QStringList list;
  for (const std::string& argument : arguments) list << QString::fromStdString(argument);
  return QProcess::startDetached(QString::fromStdString(program.string()), list);
}

}  // namespace ostrel
