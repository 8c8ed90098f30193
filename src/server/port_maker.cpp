#include "server/port_maker.h"

#include "server/simulator_port.h"
#include "server/tcp_port.h"
#include "simulator/steady_clock.h"

namespace ostrel {

std::unique_ptr<LinePort> PortMaker::Make(const Connection& connection, bool again) {
  if (connection.Is(ConnectionKind::kTcp)) {
    return std::make_unique<TcpPort>(QString::fromStdString(connection.host),
                                     static_cast<quint16>(connection.port));
  }
  if (connection.Is(ConnectionKind::kSerial)) {
    std::string& adapter = adapters_[connection.name];
    if (!again) adapter.clear();
    return std::make_unique<SerialPort>(connection, serial_, adapter);
  }
  return std::make_unique<SimulatorPort>(SimulationOf(connection));
}

simulator::Simulation& PortMaker::SimulationOf(const Connection& connection) {
  auto& simulation = simulated_[connection.name];
  if (simulation == nullptr) {
    const simulator::BusStart start{.clock = simulator::RealTime()};
    simulation.reset(new simulator::Simulation{simulator::Bus(start)});
  }
  return *simulation;
}

}  // namespace ostrel
