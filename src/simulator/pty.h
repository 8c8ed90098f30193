#pragma once

#include <string>

namespace ostrel::simulator {

/// A pseudo-terminal in raw mode. It holds its slave open, so that a host may open and close it as
/// often as it likes.
class Pty {
 public:
  /// Without one, Error() says why.
  Pty();
  ~Pty();
  Pty(const Pty&) = delete;
  Pty& operator=(const Pty&) = delete;

  const std::string& Error() const { return error_; }
  /// Does not block.
  int Master() const { return master_; }
  /// The slave's path.
  const std::string& Name() const { return name_; }
  /// Becomes readable when a host has closed the slave; -1 when that cannot be watched.
  int Closings() const { return closings_; }

  /// To be asked after Closings(): whether nobody but this object has the slave open now.
  bool IsAlone();
  /// As it was at first: raw, open for everybody, nothing left to be read by a host.
  void Reset();

 private:
  void Open();
  void OpenSlave();

  int master_ = -1;
  int slave_ = -1;
  int closings_ = -1;
  std::string name_;
  std::string error_;
};

}  // namespace ostrel::simulator
