#include "platform/program_desktop.h"

#include <QCoreApplication>

namespace ostrel {

std::filesystem::path ProgramDesktop::ProgramFolder() const {
  return QCoreApplication::applicationDirPath().toStdString();
}

}  // namespace ostrel
