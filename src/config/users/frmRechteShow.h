#pragma once

#include <optional>

#include "config/users/users.h"
#include "widgets/waiting_dialog.h"

class QLabel;

namespace ostrel {

/// Shows what the user may do at the connected device, and lets him log in for more.
class frmRechteShow : public WaitingDialog {
 public:
  /// False when the user cancels. `level` is the grant level in force.
  static bool DoDialog(QWidget* parent, const Desk& desk, int level);

 private:
  frmRechteShow(QWidget* parent, const Desk& desk, int level);
  void ShowLevel(std::optional<int> level);

  Users users_;
  QLabel* lblGrants;
};

}  // namespace ostrel
