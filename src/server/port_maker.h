#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "server/line_port.h"
#include "server/serial_port.h"
#include "simulator/faulty_line.h"
#include "wire/connections.h"

namespace ostrel {

/// Makes the ports that connections need.
class PortMaker {
 public:
  /// Adapters of serial lines are known by the names of the links to them in `adapterFolder`.
  explicit PortMaker(std::string adapterFolder = "/dev/serial/by-id") {
    serial_.adapterFolder = std::move(adapterFolder);
  }

  /// A port for a connection with valid data. `again`: in place of one that was lost; a serial port
  /// then is that of the same adapter, wherever it is plugged in now. No port outlives its maker.
  std::unique_ptr<LinePort> Make(const Connection& connection, bool again);
  /// The devices of a connection of kind "simulator".
  simulator::Simulation& SimulationOf(const Connection& connection);

 private:
  // By the connection's name.
  std::map<std::string, std::unique_ptr<simulator::Simulation>> simulated_;
  std::map<std::string, std::string> adapters_;
  SerialPorts serial_;
};

}  // namespace ostrel
