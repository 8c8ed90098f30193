// ostrel-service: the desktop program.

#include <CLI/CLI.hpp>
#include <QApplication>
#include <algorithm>
#include <iostream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "app/frmChooser.h"
#include "app/frmMain.h"
#include "app/program.h"
#include "base/texts.h"
#include "link/connection_chooser.h"
#include "platform/display.h"
#include "platform/end_signals.h"
#include "platform/event_clock.h"
#include "platform/program_desktop.h"
#include "platform/registry_settings.h"
#include "platform/server_factory.h"
#include "programs/run_in_terminal.h"
#include "widgets/scheme.h"
#include "widgets/window_dialogs.h"
#include "wire/connections.h"
#include "wire/line_rules.h"

namespace ostrel {
namespace {

struct Options {
  SessionOptions session;
  std::string language;
  std::string station;
  std::string scheme;
};

/// Nothing when the program is to go on, else its exit status.
std::optional<int> Parse(int argc, char** argv, Options& options) {
  CLI::App app("Commissioning and maintenance of voltage-regulator relays.", "ostrel-service");
  app.add_option("--connection", options.session.connection,
                 "Connection of the server; else the current one");
  app.add_option("--station", options.station, "Select the station with this address at once")
      ->check(CLI::Validator(StationProblem, "ADDRESS"));
  app.add_option("--language", options.language, "Language of this run")
      ->check(CLI::IsMember({"deu", "eng", "fra"}));
  app.add_option("--scheme", options.scheme, "Colours of this run")
      ->check(CLI::IsMember({"light", "dark"}));
  app.set_version_flag("--version", "ostrel-service " OSTREL_VERSION);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& end) {
    return app.exit(end) == 0 ? 0 : 2;
  }
  // A connection named on the command line is meant: no other one is offered.
  options.session.chooser = options.session.connection.empty();
  options.station = StationAddress(options.station).value_or("");
  return std::nullopt;
}

/// Whether one of the window system's own options asks for a platform.
bool NamesPlatform(int argc, char** argv) {
  return std::any_of(argv + 1, argv + argc, [](std::string_view text) {
    return text == "-platform" || text == "--platform" || text.starts_with("-platform=") ||
           text.starts_with("--platform=");
  });
}

/// Why there is no window, in the language of this run.
std::string NoDisplayText(const std::string& language) {
  RegistrySettings settings;
  WindowDialogs unused;
  Messages messages(unused);
  CSprachen languages(settings, messages, ProgramDesktop().ProgramFolder());
  languages.UserIndex_Test();
  if (!language.empty()) languages.SetLanguage(language);
  return messages.Text(text::kNoDisplay);
}

/// The main job without windows: what is there, what it is, what it counted.
int RunWithoutDisplay(int argc, char** argv) {
  Options options;
  if (const auto status = Parse(argc, argv, options)) return *status;
  const QCoreApplication application(argc, argv);
  std::cerr << "ostrel-service: " << NoDisplayText(options.language) << std::endl;
  std::vector<std::string> arguments;
  const auto add = [&](const char* name, const std::string& value) {
    if (!value.empty()) arguments.insert(arguments.end(), {name, value});
  };
  add("--connection", options.session.connection);
  add("--station", options.station);
  add("--language", options.language);
  int status = 0;
  for (const char* command : {"stations", "identify", "statistics"}) {
    arguments.emplace_back(command);
    status = static_cast<int>(RunInTerminal(arguments));
    if (status != 0) break;
    arguments.pop_back();
    std::cout << std::endl;
  }
  return status;
}

int RunInWindow(QApplication& application, const Options& options) {
  RegistrySettings settings;
  WindowDialogs dialogs;
  const std::string stored = settings.ReadProgram("Ostrel", "Misc", "Scheme", "system");
  const Scheme scheme = SchemeFromName(options.scheme.empty() ? stored : options.scheme);
  if (scheme != Scheme::kSystem) ApplyScheme(scheme);

  const Messages* texts = nullptr;
  ServerFactory server;
  FactoryWithChooser factory(server, [&](const std::string& name, const Message& why) {
    const Connections connections(settings);
    return ChooseConnection(dialogs.Parent(), *texts, connections.List(),
                            name.empty() ? connections.Current() : name, why.text);
  });
  EventClock clock;
  ProgramDesktop desktop;
  Program program({settings, factory, dialogs, clock, desktop}, options.session, options.language);
  texts = &program.MakeDesk().texts;
  frmMain window(program, dialogs, scheme);
  const EndSignals asked([&window] { window.BeendenQuietly(); });
  QObject::connect(
      &application, &QGuiApplication::commitDataRequest, &window,
      [&window] { window.SessionEnds(); }, Qt::DirectConnection);
  window.SelectWhenShown(options.station);
  window.show();
  const int status = application.exec();
  window.Finish();
  return status;
}

}  // namespace
}  // namespace ostrel

int main(int argc, char** argv) {
  if (!ostrel::HasDisplay() && !ostrel::NamesPlatform(argc, argv)) {
    return ostrel::RunWithoutDisplay(argc, argv);
  }
  QApplication application(argc, argv);  // takes its own options out
  QApplication::setDesktopFileName(QStringLiteral("ostrel-service"));
  QApplication::setQuitOnLastWindowClosed(false);
  ostrel::Options options;
  if (const auto status = ostrel::Parse(argc, argv, options)) return *status;
  return ostrel::RunInWindow(application, options);
}
