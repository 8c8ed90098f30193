#pragma once

#include <map>
#include <memory>
#include <string>

#include "link/connections.h"
#include "server/line_port.h"
#include "simulator/faulty_line.h"

namespace ostrel {

/// Makes the ports that connections need.
class PortMaker {
 public:
  /// Whether connections of this kind are supported.
  static bool Knows(const Connection& connection);
  std::unique_ptr<LinePort> Make(const Connection& connection);

 private:
  std::map<std::string, std::unique_ptr<simulator::Simulation>>
      simulated_;  // by the connection's name
};

}  // namespace ostrel
