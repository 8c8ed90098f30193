#include "programs/simulator_options.h"

#include <arpa/inet.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iterator>

#include "simulator/bus.h"

namespace ostrel::simulator {

namespace {

std::string IsAddress(const std::string& text) {
  unsigned char address[sizeof(in6_addr)];
  // "%" is the interface of a link-local address.
  const std::string numbers = text.substr(0, text.find('%'));
  const bool valid = inet_pton(AF_INET, text.c_str(), address) == 1 ||
                     inet_pton(AF_INET6, numbers.c_str(), address) == 1;
  return valid ? "" : "not an address: " + text;
}

std::string IsFault(const std::string& text) {
  return LineFault::Parse(text, 0) ? "" : "no such fault: " + text;
}

/// Of the devices behind the line.
void AddBusOptions(CLI::App& arguments, Options& options) {
  arguments.add_option("--seed", options.seed, "the same seed gives the same history")
      ->capture_default_str();
  arguments.add_option("--speed", options.speed, "simulated time runs so many times as fast")
      ->check(CLI::Range(0.001, 100'000.0))
      ->capture_default_str();
  auto* stations = arguments.add_option("--stations", options.stations,
                                        "file with the stations, one a line, the connected one "
                                        "first: model;firmware;name;serial number");
  stations->type_name("FILE");
  arguments
      .add_option("--connected", options.connected,
                  "which device of the bus is the connected one (AA), counted from 0")
      ->check(CLI::Range(std::size_t{0}, kMaxStations - 1))
      ->capture_default_str();
  arguments
      .add_option("--replay", options.replay,
                  "answer from what --record has written instead of with devices")
      ->type_name("FILE")
      ->excludes(stations);
}

/// What there is on request only, by name.
struct Extra {
  std::string_view name;
  bool Extras::*wanted;
};
constexpr Extra kExtras[] = {
    {"split-records", &Extras::splitRecords},
    {"odd-records", &Extras::oddRecords},
    {"many-cards", &Extras::manyCards},
};

void Want(Extras& extras, const std::vector<std::string>& names) {
  for (const std::string& name : names) {
    const auto* extra = std::find_if(std::begin(kExtras), std::end(kExtras),
                                     [&](const Extra& known) { return known.name == name; });
    if (extra == std::end(kExtras)) throw CLI::ValidationError("--with", "no such extra: " + name);
    extras.*extra->wanted = true;
  }
}

void AddExtras(CLI::App& arguments, Extras& extras) {
  arguments.add_option("--log-blocks", extras.logBlocks, "blocks in the ring of a data log")
      ->check(CLI::Range(Extras::kFewestLogBlocks, Extras::kMostLogBlocks))
      ->capture_default_str();
  const auto want = [&extras](const std::vector<std::string>& names) { Want(extras, names); };
  arguments
      .add_option_function<std::vector<std::string>>(
          "--with", want, "what there is on request: split-records, odd-records, many-cards")
      ->delimiter(',')
      ->type_name("NAME[,NAME]");
}

/// Of the line; the fault is still to be read.
void AddLineOptions(CLI::App& arguments, Options& options, std::string& fault) {
  arguments
      .add_option("--serial-speed", options.baud, "send replies as slowly as a line of that speed")
      ->check(CLI::Range(50, 4'000'000))
      ->type_name("BAUD");
  arguments
      .add_option("--fault", fault, "fault at each line that comes in, or with :N at the Nth only")
      ->check(IsFault)
      ->type_name("NAME[:N]");
  arguments
      .add_option("--record", options.record,
                  "append every line and reply, passwords too, to a file for you alone")
      ->type_name("FILE");
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
  AddBusOptions(arguments, options);
  AddExtras(arguments, options.extras);
  std::string fault;
  AddLineOptions(arguments, options, fault);
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
