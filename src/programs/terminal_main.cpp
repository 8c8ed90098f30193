// ostrel: the service functions at the terminal.

#include <QApplication>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "programs/run_in_terminal.h"

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  // No event comes from a desktop here; without its loop a wait costs less.
  qputenv("QT_NO_GLIB", "1");
  const auto isChart = [](const std::string& text) { return text.starts_with("--chart"); };
  std::unique_ptr<QCoreApplication> application;
  if (std::any_of(arguments.begin(), arguments.end(), isChart)) {
    // Painting needs widgets, but no display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    application = std::make_unique<QApplication>(argc, argv);
  } else {
    application = std::make_unique<QCoreApplication>(argc, argv);
  }
  return static_cast<int>(ostrel::RunInTerminal(arguments));
}
