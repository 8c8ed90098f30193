#include "config/users/users_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <algorithm>

#include "base/texts.h"
#include "config/users/frmLogin.h"
#include "config/users/frmMeldLogin.h"
#include "config/users/login_program.h"
#include "config/users/users_texts.h"
#include "device/rights.h"

namespace ostrel {

namespace {

constexpr int kGap = 12;  // between the columns, in pixels

}  // namespace

void UsersPage::Refresh() {
  ShowAll();
}

void UsersPage::EnableCommands(bool free) {
  free_ = free;
  PWEnable();
}

void UsersPage::PWEnable() {
  const UserState& state = service_.UserManagement().State();
  const bool device = free_ && service_.Selected().GetKenn().has_value();
  for (QPushButton* button : {butPWRead, butLogin, butLogout}) button->setEnabled(device);
  butPWDel->setEnabled(device && state.protects.has_value());
  const bool ports = device && state.ports.has_value();
  for (QCheckBox* box : chkPWCOM) box->setEnabled(ports);
  butCOMSend->setEnabled(ports);
  PWEnableSingle();
}

void UsersPage::PWEnableSingle() {
  const UserState& state = service_.UserManagement().State();
  const bool device = free_ && service_.Selected().GetKenn().has_value();
  const bool known = device && SelectedRecord().has_value() && state.protects.value_or(false);
  txtPWUser->setEnabled(known);
  cmbPWGrants->setEnabled(known);
  edtPWTimeout->setEnabled(known);
  butPWSendSi->setEnabled(known);
  // The first password is the administrator's.
  const bool first = device && state.protects && SelectedUser() == kAdministrator;
  butPWPW->setEnabled(first || (device && state.protects.value_or(false)));
}

int UsersPage::SelectedUser() const {
  return std::max(lstUsers->indexOfTopLevelItem(lstUsers->currentItem()), 0);
}

const std::optional<UserRecord>& UsersPage::SelectedRecord() const {
  return service_.UserManagement().State().users[static_cast<std::size_t>(SelectedUser())];
}

void UsersPage::ShowAll() {
  ShowLogin();
  ShowRows();
  ShowUser();
  ShowPorts();
}

void UsersPage::ShowLogin() {
  const Users& users = service_.UserManagement();
  const auto& [user, grant] = std::pair(users.State().user, users.State().grant);
  const auto show = [this](QLabel* label, int id, const std::string& value) {
    label->setText(QString::fromStdString(service_.Texts().Filled(id, value)));
  };
  show(lblUser, text::kLoggedIn, user ? users.UserName(*user) : "–");
  show(lblGrant, text::kGrantInForce, grant ? GrantText(service_.Texts(), *grant) : "–");
}

void UsersPage::ShowRows() {
  const Users& users = service_.UserManagement();
  for (int user = 0; user < kUserCount; ++user) {
    QTreeWidgetItem& row = *lstUsers->topLevelItem(user);
    const auto& record = users.State().users[static_cast<std::size_t>(user)];
    row.setText(0, QString::fromStdString(users.UserName(user)));
    row.setText(1, record && record->passwordSet ? Text(text::kIsSet) : QStringLiteral("–"));
    row.setText(2, record ? QString::fromStdString(GrantText(service_.Texts(), record->grant))
                          : QStringLiteral("–"));
    row.setText(3, record ? QString::number(record->timeout) : QStringLiteral("–"));
  }
  QHeaderView* const header = lstUsers->header();
  header->resizeSections(QHeaderView::ResizeToContents);
  for (int column = 0; column + 1 < header->count(); ++column) {
    header->resizeSection(column, header->sectionSize(column) + kGap);
  }
  txtPWUser->setText(lstUsers->topLevelItem(SelectedUser())->text(0));
}

void UsersPage::ShowUser() {
  const std::optional<UserRecord>& record = SelectedRecord();
  // The guest's record tells the grant in force: his own only while nobody is logged in.
  const bool own = SelectedUser() != 0 || service_.UserManagement().State().user == 0;
  cmbPWGrants->setCurrentIndex(record && own ? record->grant : -1);
  edtPWTimeout->setText(record ? QString::number(record->timeout) : QString());
  txtPWUser->setText(lstUsers->topLevelItem(SelectedUser())->text(0));
}

void UsersPage::ShowPorts() {
  const PortExceptions ports = service_.UserManagement().State().ports.value_or(PortExceptions{});
  chkPWCOM[0]->setChecked(ports.com1);
  chkPWCOM[1]->setChecked(ports.com2);
  chkPWCOM[2]->setChecked(ports.com4.value_or(false));
  chkPWCOM[2]->setVisible(ports.com4.has_value());
}

void UsersPage::Read() {
  if (!butPWRead->isEnabled()) return;
  run_([this] {
    if (service_.Reconnect()) PWReadAll();
  });
}

void UsersPage::PWReadAll() {
  Users& users = service_.UserManagement();
  const bool read = users.PWReadAll();
  ShowAll();
  if (!read || *users.State().protects) return;
  frmMeldLogin::DoDialog(window(), service_);
  ShowAll();
}

void UsersPage::Change(const Operation& operation) {
  run_([this, operation] {
    if (service_.Reconnect() && operation(service_.UserManagement()) == Users::Outcome::kDone) {
      ShowAll();
    }
  });
}

void UsersPage::SetPassword() {
  Change([user = SelectedUser()](Users& users) { return users.SetPassword(user); });
}

void UsersPage::SendSettings() {
  const int minutes = edtPWTimeout->text().toInt();
  const bool chosen = cmbPWGrants->currentIndex() >= 0;
  if (!chosen || edtPWTimeout->text().isEmpty() || minutes > kMostMinutes) {
    service_.Texts().Warn(text::kOutOfRange);
    return chosen ? edtPWTimeout->setFocus() : cmbPWGrants->setFocus();
  }
  Change([user = SelectedUser(), grant = cmbPWGrants->currentIndex(), minutes](Users& users) {
    return users.SetUser(user, grant, minutes);
  });
}

void UsersPage::Unprotect() {
  run_([this] {
    if (!service_.Reconnect()) return;
    if (service_.UserManagement().Unprotect() == Users::Outcome::kDone) PWReadAll();
  });
}

void UsersPage::SendPorts() {
  PortExceptions ports{
      .com1 = chkPWCOM[0]->isChecked(), .com2 = chkPWCOM[1]->isChecked(), .com4 = {}};
  if (!chkPWCOM[2]->isHidden()) ports.com4 = chkPWCOM[2]->isChecked();
  Change([ports](Users& users) { return users.SetPorts(ports); });
}

void UsersPage::LogIn() {
  if (LoginProgramShow(service_.Computer())) return;
  run_([this] {
    // A password of the selected device is not another one's.
    if (service_.Reconnect() && service_.Selected().GetKennSel()) {
      frmLogin::DoDiaLoginGrants(window(), service_);
    }
    ShowLogin();
  });
}

void UsersPage::LogOut() {
  run_([this] {
    if (service_.Reconnect() && service_.UserManagement().LogOut()) {
      service_.UserManagement().ReadLogin();
    }
    ShowLogin();
  });
}

}  // namespace ostrel
