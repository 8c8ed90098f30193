#pragma once

#include <array>

#include "config/users/users.h"
#include "widgets/page.h"

class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QTreeWidget;

namespace ostrel {

/// The page of the device's users, what they may do, and the ports that are excepted.
class UsersPage : public Page {
 public:
  explicit UsersPage(const Seat& seat);

 protected:
  void Forget() override;
  void Refresh() override;

 private:
  // build_users_page.cpp
  void Arrange();
  void ArrangeUsers();
  QHBoxLayout* Commands();
  QHBoxLayout* UserRow();
  QHBoxLayout* SendRow();
  QHBoxLayout* PortRow();
  /// Enables a control where the settings of the selected user are known.
  template <typename Control>
  Control* OfUser(Control* control);

  void PWReadAll();
  void SetPassword();
  void SendSettings();
  void SendPorts();
  void LogIn();

  /// What can be typed, as it was read.
  void ShowFields();
  void ShowUser();
  void ShowPorts();
  int SelectedUser() const;
  const std::optional<UserRecord>& SelectedRecord() const;

  Users users_;
  QLabel* lblUser;
  QLabel* lblGrant;
  QTreeWidget* lstUsers;
  QLabel* txtPWUser;
  QComboBox* cmbPWGrants;
  QLineEdit* edtPWTimeout;
  std::array<QCheckBox*, 3> chkPWCOM;
};

}  // namespace ostrel
