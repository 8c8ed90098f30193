#pragma once

#include <array>

#include "app/service.h"
#include "widgets/page.h"

class QCheckBox;
class QComboBox;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace ostrel {

/// The page of the device's users, what they may do, and the ports that are excepted.
class UsersPage : public Page {
 public:
  UsersPage(Service& service, Runner run);

  void Captions() override;
  void Refresh() override;
  void Read() override;
  void EnableCommands(bool free) override;

 private:
  using Operation = std::function<Users::Outcome(Users&)>;

  QPushButton* Button(const char* name, int id, void (UsersPage::*command)());
  QLabel* Label(int id, QWidget* buddy);
  QHBoxLayout* UserRow();
  QHBoxLayout* PortRow();
  void Arrange();

  void PWReadAll();
  /// Runs what changes the device; shows the page anew when it did.
  void Change(const Operation& operation);
  void SetPassword();
  void SendSettings();
  void Unprotect();
  void SendPorts();
  void LogIn();
  void LogOut();

  /// The texts of everything that was read.
  void ShowAll();
  void ShowLogin();
  void ShowRows();
  void ShowUser();
  void ShowPorts();
  /// Enables what fits a device, and what fits the selected user.
  void PWEnable();
  void PWEnableSingle();
  int SelectedUser() const;
  const std::optional<UserRecord>& SelectedRecord() const;
  QString Text(int id) const;

  Service& service_;
  Runner run_;
  bool free_ = false;
  std::vector<std::pair<int, std::function<void(const QString&)>>> captions_;
  QPushButton* butPWRead;
  QPushButton* butLogin;
  QPushButton* butLogout;
  QLabel* lblUser;
  QLabel* lblGrant;
  QTreeWidget* lstUsers;
  QLabel* txtPWUser;
  QComboBox* cmbPWGrants;
  QLineEdit* edtPWTimeout;
  QPushButton* butPWSendSi;
  QPushButton* butPWPW;
  std::array<QCheckBox*, 3> chkPWCOM;
  QPushButton* butCOMSend;
  QPushButton* butPWDel;
};

}  // namespace ostrel
