#pragma once

#include "widgets/waiting_dialog.h"

class QLabel;

namespace ostrel {

/// Shows what the user may do at the connected device, and lets him log in for more.
class frmRechteShow : public WaitingDialog {
 public:
  /// False when the user cancels. `level` is the grant level in force.
  static bool DoDialog(QWidget* parent, Service& service, int level);

 private:
  frmRechteShow(QWidget* parent, Service& service, int level);
  void ShowLevel(std::optional<int> level);

  QLabel* lblGrants;
};

}  // namespace ostrel
