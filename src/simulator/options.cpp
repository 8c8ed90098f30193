#include "simulator/options.h"

#include <CLI/CLI.hpp>
#include <QHostAddress>

#include "simulator/station.h"

namespace ostrel::simulator {

namespace {

std::string IsAddress(const std::string& text) {
  return QHostAddress().setAddress(QString::fromStdString(text)) ? "" : "not an address: " + text;
}

std::string IsFault(const std::string& text) {
  return LineFault::Parse(text, 0) ? "" : "no such fault: " + text;
}

}  // namespace

int ParseOptions(int argc, char** argv, Options& options) {
  CLI::App arguments("A bus of simulated voltage-regulator relays.", "ostrel-simulator");
  const auto* tcp =
      arguments.add_option("--tcp", options.port, "TCP port to listen on; 0 takes a free one")
          ->check(CLI::Range(0, 65535));
  arguments.add_option("--host", options.address, "address to listen on")
      ->check(IsAddress)
      ->capture_default_str();
  const auto* pty = arguments.add_option("--pty", options.terminal,
                                         "path at which a pseudo-terminal is to be found");
  arguments.add_option("--seed", options.seed, "the same seed gives the same history")
      ->capture_default_str();
  arguments
      .add_option("--connected", options.connected,
                  "which device of the bus is the connected one (AA), counted from 0")
      ->check(CLI::Range(std::size_t{0}, BuiltInStations().size() - 1))
      ->capture_default_str();
  std::string fault;
  arguments
      .add_option("--fault", fault, "fault at each line that comes in, or with :N at the Nth only")
      ->check(IsFault)
      ->type_name("NAME[:N]");
  arguments.set_version_flag("--version", "ostrel-simulator " OSTREL_VERSION);
  arguments.footer("Faults:\n" + LineFault::Help());
  try {
    arguments.parse(argc, argv);
    if (tcp->empty() && options.terminal.empty()) {
      throw CLI::RequiredError(pty->empty() ? "--tcp or --pty" : "the path of --pty");
    }
  } catch (const CLI::ParseError& error) {
    return arguments.exit(error) == 0 ? 0 : 2;
  }
  options.fault = LineFault::Parse(fault, options.seed).value_or(LineFault());
  return -1;
}

}  // namespace ostrel::simulator
