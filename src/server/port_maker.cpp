#include "server/port_maker.h"

#include "server/simulator_port.h"
#include "server/tcp_port.h"

namespace ostrel {

std::unique_ptr<LinePort> PortMaker::Make(const Connection& connection) {
  if (connection.kind == "tcp") {
    return std::make_unique<TcpPort>(QString::fromStdString(connection.host),
                                     static_cast<quint16>(connection.port));
  }
  if (connection.kind == "simulator") {
    auto& bus = simulated_[connection.name];
    if (bus == nullptr) bus = std::make_unique<simulator::Bus>();
    return std::make_unique<SimulatorPort>(*bus);
  }
  return nullptr;
}

}  // namespace ostrel
