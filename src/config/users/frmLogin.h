#pragma once

#include <optional>
#include <string>

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
  static std::optional<Data> DoDialogGetData(QWidget* parent, Service& service);
  /// The same as the line that logs in, without an address.
  static std::optional<std::string> DoDiaGetLoginx(QWidget* parent, Service& service);
  /// True when the device accepted the user.
  static bool DoDiaLogin(QWidget* parent, Service& service);
  static bool DoDiaLoginAA(QWidget* parent, Service& service);
  /// The same, and reads the grant level then; nothing without one.
  static std::optional<int> DoDiaLoginGrants(QWidget* parent, Service& service);
  static std::optional<int> DoDiaLoginGrantsAA(QWidget* parent, Service& service);

 private:
  /// Addresses of the login and of the reading of the grant; without one it is not done.
  struct Target {
    std::string login, grant;
  };
  frmLogin(QWidget* parent, Service& service, Target target);
  static Target Selected(const Service& service);
  void Arrange();
  Data Typed() const;
  void Accept();

  Target target_;
  bool done_ = false;
  std::optional<int> grant_;
  QComboBox* cmbUserNr;
  QLineEdit* edtPasswort;
  QLineEdit* edtDevice;
};

}  // namespace ostrel
