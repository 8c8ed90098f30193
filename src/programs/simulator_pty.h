#pragma once

#include <QSocketNotifier>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "programs/simulator_host.h"
#include "simulator/pty.h"
#include "simulator/pty_link.h"

namespace ostrel::simulator {

/// The hosts that open a pseudo-terminal one after the other.
class PtyHost : public SimulatorHost {
 public:
  /// The link to the pseudo-terminal is to stand at this path.
  PtyHost(Simulation& simulation, const std::string& path)
      : SimulatorHost(simulation, nullptr), link_(path) {}

  /// Makes pseudo-terminal and link. Returns why not, or nothing.
  std::string Open();

 private:
  bool Read(char& byte) override;
  void Write(std::string_view bytes) override;
  std::size_t Unsent() const override { return unsent_.size(); }
  void DropLink() override;
  void Left() override {}

  void Watch();
  QSocketNotifier* Watch(int descriptor, QSocketNotifier::Type type, void (PtyHost::*then)());
  void Take();
  bool Fetch();
  void Deliver();
  void SomebodyClosed();

  PtyLink link_;
  std::unique_ptr<Pty> pty_;
  std::vector<QSocketNotifier*> watches_;  // the next two among them
  QSocketNotifier* readable_ = nullptr;
  QSocketNotifier* writable_ = nullptr;
  std::deque<char> unread_;
  std::string unsent_;
};

}  // namespace ostrel::simulator
