#include "config/users_page.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "app/texts.h"
#include "config/frmLogin.h"
#include "config/frmMeldLogin.h"
#include "config/login_program.h"
#include "device/rights.h"
#include "platform/named.h"

namespace ostrel {

namespace {

constexpr int kGap = 12;  // between the columns, in pixels
constexpr std::array<const char*, 3> kPortBoxes = {"chkPWCOM1", "chkPWCOM2", "chkPWCOM4"};
constexpr std::array<const char*, 3> kPortNumbers = {"&1", "&2", "&4"};

}  // namespace

UsersPage::UsersPage(Service& service, Runner run)
    : service_(service),
      run_(std::move(run)),
      butPWRead(Button("butPWRead", text::kRead, &UsersPage::Read)),
      butLogin(Button("butLogin", text::kLogIn, &UsersPage::LogIn)),
      butLogout(Button("butLogout", text::kLogOut, &UsersPage::LogOut)),
      lblUser(Named(new QLabel, "lblUser")),
      lblGrant(Named(new QLabel, "lblGrant")),
      lstUsers(Named(new QTreeWidget, "lstUsers")),
      txtPWUser(Named(new QLabel, "txtPWUser")),
      cmbPWGrants(Named(new QComboBox, "cmbPWGrants")),
      edtPWTimeout(Named(new QLineEdit, "edtPWTimeout")),
      butPWSendSi(Button("butPWSendSi", text::kSendSettings, &UsersPage::SendSettings)),
      butPWPW(Button("butPWPW", text::kSetPassword, &UsersPage::SetPassword)),
      butCOMSend(Button("butCOMSend", text::kSendExceptions, &UsersPage::SendPorts)),
      butPWDel(Button("butPWDel", text::kUnprotect, &UsersPage::Unprotect)) {
  for (std::size_t n = 0; n < chkPWCOM.size(); ++n) {
    chkPWCOM[n] = Named(new QCheckBox, kPortBoxes[n]);
  }
  for (QLabel* label : {lblUser, lblGrant, txtPWUser}) label->setTextFormat(Qt::PlainText);
  Arrange();
  connect(lstUsers, &QTreeWidget::currentItemChanged, this, [this] {
    ShowUser();
    PWEnableSingle();
  });
  Refresh();
}

QPushButton* UsersPage::Button(const char* name, int id, void (UsersPage::*command)()) {
  auto* button = Named(new QPushButton, name);
  connect(button, &QPushButton::clicked, this, command);
  captions_.emplace_back(id, [button](const QString& text) { button->setText(text); });
  return button;
}

QLabel* UsersPage::Label(int id, QWidget* buddy) {
  auto* label = new QLabel;
  label->setBuddy(buddy);
  captions_.emplace_back(id, [label](const QString& text) { label->setText(text); });
  return label;
}

QHBoxLayout* UsersPage::UserRow() {
  for (int level = 0; level <= kHighestGrant; ++level) cmbPWGrants->addItem(QString());
  static const QRegularExpression digits(QStringLiteral("[0-9]{0,5}"));
  edtPWTimeout->setValidator(new QRegularExpressionValidator(digits, this));
  edtPWTimeout->setFixedWidth(edtPWTimeout->fontMetrics().horizontalAdvance("000000") + 16);
  QFont bold = txtPWUser->font();
  bold.setBold(true);
  txtPWUser->setFont(bold);
  auto* row = new QHBoxLayout;
  row->addWidget(Label(text::kFieldGrant, cmbPWGrants));
  row->addWidget(cmbPWGrants);
  row->addSpacing(kGap);
  row->addWidget(Label(text::kFieldTimeout, edtPWTimeout));
  row->addWidget(edtPWTimeout);
  row->addStretch();
  return row;
}

QHBoxLayout* UsersPage::PortRow() {
  auto* boxes = new QVBoxLayout;
  for (QCheckBox* box : chkPWCOM) boxes->addWidget(box);
  auto* row = new QHBoxLayout;
  row->addLayout(boxes);
  row->addStretch();
  row->addWidget(butCOMSend, 0, Qt::AlignBottom);
  return row;
}

void UsersPage::Arrange() {
  lstUsers->setRootIsDecorated(false);
  lstUsers->setAllColumnsShowFocus(true);
  lstUsers->setColumnCount(4);
  for (int user = 0; user < kUserCount; ++user) new QTreeWidgetItem(lstUsers);
  lstUsers->setCurrentItem(lstUsers->topLevelItem(kAdministrator));

  auto* buttons = new QHBoxLayout;
  for (QPushButton* button : {butPWRead, butLogin, butLogout}) buttons->addWidget(button);
  buttons->addStretch();
  buttons->addWidget(butPWDel);
  auto* login = new QHBoxLayout;
  login->addWidget(lblUser);
  login->addSpacing(2 * kGap);
  login->addWidget(lblGrant);
  login->addStretch();
  auto* sending = new QHBoxLayout;
  sending->addWidget(txtPWUser);
  sending->addStretch();
  for (QPushButton* button : {butPWSendSi, butPWPW}) sending->addWidget(button);

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(buttons);
  layout->addLayout(login);
  layout->addWidget(Label(text::kFieldUsers, lstUsers));
  layout->addWidget(lstUsers, 1);
  layout->addLayout(UserRow());
  layout->addLayout(sending);
  layout->addSpacing(kGap);
  layout->addLayout(PortRow());
}

QString UsersPage::Text(int id) const {
  return QString::fromStdString(service_.Texts().Caption(id));
}

void UsersPage::Captions() {
  for (const auto& [id, set] : captions_) set(Text(id));
  lstUsers->setHeaderLabels(
      {Text(text::kUser), Text(text::kPassword), Text(text::kGrant), Text(text::kTimeoutMinutes)});
  for (int level = 0; level <= kHighestGrant; ++level) {
    cmbPWGrants->setItemText(level, Text(text::kGrant0 + level));
  }
  for (std::size_t n = 0; n < chkPWCOM.size(); ++n) {
    chkPWCOM[n]->setText(
        QString::fromStdString(service_.Texts().Filled(text::kExceptPort, kPortNumbers[n])));
  }
  ShowLogin();
  ShowRows();
}

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
  cmbPWGrants->setCurrentIndex(record ? record->grant : -1);
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
  if (edtPWTimeout->text().isEmpty() || minutes > kMostMinutes) {
    service_.Texts().Warn(text::kOutOfRange);
    return edtPWTimeout->setFocus();
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
    if (service_.Reconnect()) frmLogin::DoDiaLoginGrants(window(), service_);
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
