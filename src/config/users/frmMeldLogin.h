#pragma once

#include "config/users/users.h"
#include "widgets/waiting_dialog.h"

namespace ostrel {

/// Says that the selected device has no administrator's password, and lets the user define it.
class frmMeldLogin : public WaitingDialog {
 public:
  /// True when it was defined.
  static bool DoDialog(QWidget* parent, const Desk& desk, Users& users);

 private:
  frmMeldLogin(QWidget* parent, const Desk& desk, Users& users);
  void Define();

  Users& users_;
  bool done_ = false;
};

}  // namespace ostrel
