#include "config/users/users_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
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

void UsersPage::Forget() {
  users_.DeviceChanged();
  ShowFields();
}

int UsersPage::SelectedUser() const {
  return std::max(lstUsers->indexOfTopLevelItem(lstUsers->currentItem()), 0);
}

const std::optional<UserRecord>& UsersPage::SelectedRecord() const {
  return users_.State().users[static_cast<std::size_t>(SelectedUser())];
}

void UsersPage::Refresh() {
  const QString none = QStringLiteral("–");
  const UserState& state = users_.State();
  lblUser->setText(
      captions_.Filled(text::kLoggedIn, state.user ? users_.UserName(*state.user) : "–"));
  lblGrant->setText(captions_.Filled(text::kGrantInForce,
                                     state.grant ? GrantText(desk_.texts, *state.grant) : "–"));
  for (int user = 0; user < kUserCount; ++user) {
    QTreeWidgetItem& row = *lstUsers->topLevelItem(user);
    const auto& record = state.users[static_cast<std::size_t>(user)];
    row.setText(0, QString::fromStdString(users_.UserName(user)));
    row.setText(1, record && record->passwordSet ? captions_.Text(text::kIsSet) : none);
    row.setText(2, record && record->grant
                       ? QString::fromStdString(GrantText(desk_.texts, *record->grant))
                       : none);
    row.setText(3, record ? QString::number(record->timeout) : none);
  }
  QHeaderView* const header = lstUsers->header();
  header->resizeSections(QHeaderView::ResizeToContents);
  for (int column = 0; column + 1 < header->count(); ++column) {
    header->resizeSection(column, header->sectionSize(column) + kGap);
  }
  txtPWUser->setText(lstUsers->topLevelItem(SelectedUser())->text(0));
}

void UsersPage::ShowFields() {
  ShowUser();
  ShowPorts();
}

void UsersPage::ShowUser() {
  const std::optional<UserRecord>& record = SelectedRecord();
  const int grant = record ? record->grant.value_or(-1) : -1;
  cmbPWGrants->setCurrentIndex(grant >= 0 && grant <= kHighestGrant ? grant : -1);
  edtPWTimeout->setText(record ? QString::number(record->timeout) : QString());
  txtPWUser->setText(lstUsers->topLevelItem(SelectedUser())->text(0));
}

void UsersPage::ShowPorts() {
  const PortExceptions ports = users_.State().ports.value_or(PortExceptions{});
  chkPWCOM[0]->setChecked(ports.com1);
  chkPWCOM[1]->setChecked(ports.com2);
  chkPWCOM[2]->setChecked(ports.com4.value_or(false));
  chkPWCOM[2]->setVisible(ports.com4.has_value());
}

void UsersPage::PWReadAll() {
  const bool read = users_.PWReadAll();
  Refresh();
  ShowFields();
  if (!read || *users_.State().protects) return;
  if (frmMeldLogin::DoDialog(window(), desk_, users_)) return PWReadAll();
  ShowFields();
}

void UsersPage::SetPassword() {
  const std::optional<bool> protects = users_.State().protects;
  const bool set = users_.SetPassword(SelectedUser()) == Ending::kDone;
  // With the protection begins or ends what there is to see.
  set&& users_.State().protects != protects ? PWReadAll() : ShowFields();
}

void UsersPage::SendSettings() {
  const int minutes = edtPWTimeout->text().toInt();
  const bool chosen = cmbPWGrants->currentIndex() >= 0;
  if (!chosen || edtPWTimeout->text().isEmpty() || minutes > kMostMinutes) {
    desk_.texts.Warn(chosen ? text::kOutOfRange : text::kChooseGrant);
    return chosen ? edtPWTimeout->setFocus() : cmbPWGrants->setFocus();
  }
  Start(About::kDevice, [=, this, user = SelectedUser(), grant = cmbPWGrants->currentIndex()] {
    users_.SetUser(user, grant, minutes);
    ShowFields();  // what the device has, sent or not
  });
}

void UsersPage::SendPorts() {
  PortExceptions ports{
      .com1 = chkPWCOM[0]->isChecked(), .com2 = chkPWCOM[1]->isChecked(), .com4 = {}};
  if (!chkPWCOM[2]->isHidden()) ports.com4 = chkPWCOM[2]->isChecked();
  users_.SetPorts(ports);
  ShowFields();
}

void UsersPage::LogIn() {
  if (LoginProgramShow(desk_.computer)) return;
  // A password of the selected device is not another one's.
  if (desk_.session.ToWrite()) frmLogin::DoDiaLoginGrants(window(), desk_, users_);
}

}  // namespace ostrel
