#include "programs/run_in_terminal.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <iostream>

#include "platform/event_clock.h"
#include "platform/program_control.h"
#include "platform/program_desktop.h"
#include "platform/registry_settings.h"
#include "platform/server_factory.h"
#include "platform/terminal_echo.h"

namespace ostrel {

namespace {

std::size_t TerminalWidth() {
  winsize size{};
  const bool known = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
  return known ? size.ws_col : 80;
}

}  // namespace

ExitStatus RunInTerminal(const std::vector<std::string>& arguments) {
  RegistrySettings settings;
  ServerFactory automation;
  EventClock clock;
  ProgramDesktop desktop;
  ProgramControl server;
  return RunCli(arguments, {.settings = settings,
                            .automation = automation,
                            .clock = clock,
                            .desktop = desktop,
                            .server = server,
                            .in = std::cin,
                            .out = std::cout,
                            .err = std::cerr,
                            .echo = ShowTyping,
                            .interactive = isatty(STDIN_FILENO) != 0,
                            .width = TerminalWidth()});
}

}  // namespace ostrel
