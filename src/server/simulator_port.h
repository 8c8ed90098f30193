#pragma once

#include "server/line_port.h"
#include "simulator/device_line.h"

namespace ostrel {

/// The built-in simulated devices. They answer through the event loop, like a real line.
class SimulatorPort : public LinePort {
  Q_OBJECT
 public:
  /// The bus outlives the port.
  explicit SimulatorPort(simulator::Bus& bus) : line_(bus) {}

  void Open() override;
  void Write(std::string_view bytes) override;
  void Close() override { open_ = false; }

 private:
  simulator::DeviceLine line_;
  bool open_ = false;
};

}  // namespace ostrel
