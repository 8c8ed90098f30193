#pragma once

#include <optional>
#include <string>

#include "config/users/users.h"
#include "widgets/waiting_dialog.h"

class QComboBox;
class QLineEdit;

namespace ostrel {

/// Asks for a user and his password, and logs him in. It stays open until that succeeds or the user
/// cancels. The "AA" forms are for the physically connected device, the others for the selected
/// one.
class frmLogin : public WaitingDialog {
 public:
  struct Data {
    int user = 0;
    std::string password;
  };
  /// Asks alone; nothing when the user cancels.
  static std::optional<Data> DoDialogGetData(QWidget* parent, const Desk& desk, Users& users);
  /// The same as the line that logs in, without an address.
  static std::optional<std::string> DoDiaGetLoginx(QWidget* parent, const Desk& desk, Users& users);
  /// True when the device accepted the user.
  static bool DoDiaLogin(QWidget* parent, const Desk& desk, Users& users);
  static bool DoDiaLoginAA(QWidget* parent, const Desk& desk, Users& users);
  /// The same, and reads the grant level then; nothing without one.
  static std::optional<int> DoDiaLoginGrants(QWidget* parent, const Desk& desk, Users& users);
  static std::optional<int> DoDiaLoginGrantsAA(QWidget* parent, const Desk& desk, Users& users);

 private:
  /// Where the user is logged in; kNowhere asks alone.
  enum class At { kNowhere, kSelected, kConnected };
  frmLogin(QWidget* parent, const Desk& desk, Users& users, At at, bool reads);
  void Arrange();
  Data Typed() const;
  void Accept();
  void LogIn(const Data& typed);

  Users& users_;
  At at_;
  bool reads_;  // the grant level, after the login
  bool done_ = false;
  std::optional<int> grant_;
  QComboBox* cmbUserNr;
  QLineEdit* edtPasswort;
  QLineEdit* edtDevice;
};

}  // namespace ostrel
