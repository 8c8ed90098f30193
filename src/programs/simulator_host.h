#pragma once

#include <QObject>
#include <QTimer>
#include <cstddef>
#include <optional>
#include <string_view>

#include "simulator/faulty_line.h"

namespace ostrel::simulator {

/// One host with its line to the devices, whatever it is connected by. It answers one line at a
/// time, so that other hosts and signals get their turn in between, and reads no further while the
/// host does not fetch its replies.
class SimulatorHost : public QObject {
 public:
  /// The simulation outlives the host.
  SimulatorHost(Simulation& simulation, QObject* parent);

 protected:
  /// To be called whenever there is something to read, or less unsent than before.
  void Serve();
  /// The host is gone, and the next bytes to be read are still its own: they are taken in, but
  /// nobody is there for the replies. Calls Left() when that is done.
  void Leave(std::size_t unread);

  virtual bool Read(char& byte) = 0;
  /// Takes all of the bytes and calls Serve() later, when some of them have gone.
  virtual void Write(std::string_view bytes) = 0;
  /// In bytes.
  virtual std::size_t Unsent() const = 0;
  /// The line fails: it is closed without a word.
  virtual void DropLink() = 0;
  virtual void Left() = 0;

 private:
  void Send();
  void Renew();
  void CountLeaving();

  Simulation& simulation_;
  std::optional<FaultyLine> line_;
  QTimer delay_;
  std::size_t leaving_ = 0;  // bytes to be read of a host that is gone
  bool turnQueued_ = false;
};

}  // namespace ostrel::simulator
