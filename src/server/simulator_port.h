#pragma once

#include <QTimer>
#include <string>

#include "server/line_port.h"
#include "simulator/faulty_line.h"

namespace ostrel {

/// The built-in simulated devices. They answer through the event loop, like a real line.
class SimulatorPort : public LinePort {
  Q_OBJECT
 public:
  /// The simulation outlives the port.
  explicit SimulatorPort(simulator::Simulation& simulation);

  void Open() override;
  void Write(std::string_view bytes) override;
  void Close() override;

 private:
  void TakeLine();
  void Deliver();

  simulator::FaultyLine line_;
  std::string unread_;  // of what was written
  QTimer delay_;
  bool open_ = false;
};

}  // namespace ostrel
