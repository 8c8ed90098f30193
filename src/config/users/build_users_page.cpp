// What the page of the users consists of, and its captions.

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <utility>

#include "base/texts.h"
#include "config/users/users_page.h"
#include "config/users/users_texts.h"
#include "widgets/named.h"

namespace ostrel {

namespace {

constexpr int kGap = 12;  // between what does not belong together, in pixels
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
  sending->addStretch();
  for (QPushButton* button : {butPWSendSi, butPWPW}) sending->addWidget(button);

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(buttons);
  layout->addLayout(login);
  layout->addWidget(Label(text::kFieldUsers, lstUsers));
  layout->addWidget(lstUsers, 1);
  layout->addWidget(txtPWUser);
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

}  // namespace ostrel
