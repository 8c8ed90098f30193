#pragma once

#include "widgets/waiting_dialog.h"

namespace ostrel {

/// Says that the selected device has no administrator's password, and lets the user define it.
class frmMeldLogin : public WaitingDialog {
 public:
  /// True when it was defined.
  static bool DoDialog(QWidget* parent, Service& service);

 private:
  frmMeldLogin(QWidget* parent, Service& service);
  void Define();

  bool done_ = false;
};

}  // namespace ostrel
