#include "server/port_maker.h"

#include "server/simulator_port.h"
#include "server/tcp_port.h"

namespace ostrel {

bool PortMaker::Knows(const Connection& connection) {
  return connection.kind == "tcp" || connection.kind == "simulator";
}

std::unique_ptr<LinePort> PortMaker::Make(const Connection& connection) {
  if (connection.kind == "tcp") {
    return std::make_unique<TcpPort>(QString::fromStdString(connection.host),
                                     static_cast<quint16>(connection.port));
  }
  auto& bus = simulated_[connection.name];
  if (bus == nullptr) bus = std::make_unique<simulator::Bus>();
  return std::make_unique<SimulatorPort>(*bus);
}

}  // namespace ostrel
