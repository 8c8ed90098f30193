// What the page of the users consists of.

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "base/texts.h"
#include "config/users/users_page.h"
#include "config/users/users_texts.h"

namespace ostrel {

namespace {

constexpr int kGap = 12;  // between what does not belong together, in pixels
constexpr std::array<const char*, 3> kPortBoxes = {"chkPWCOM1", "chkPWCOM2", "chkPWCOM4"};
constexpr std::array<const char*, 3> kPortNumbers = {"&1", "&2", "&4"};

}  // namespace

UsersPage::UsersPage(const Seat& seat)
    : Page(seat),
      users_(desk_),
      lblUser(Named(new QLabel, "lblUser")),
      lblGrant(Named(new QLabel, "lblGrant")),
      lstUsers(Named(new QTreeWidget, "lstUsers")),
      txtPWUser(OfUser(Named(new QLabel, "txtPWUser"))),
      cmbPWGrants(OfUser(Named(new QComboBox, "cmbPWGrants"))),
      edtPWTimeout(OfUser(Named(new QLineEdit, "edtPWTimeout"))) {
  for (QLabel* label : {lblUser, lblGrant, txtPWUser}) label->setTextFormat(Qt::PlainText);
  ArrangeUsers();
  Arrange();
  connect(lstUsers, &QTreeWidget::currentItemChanged, this, [this] {
    ShowUser();
    Enable();
  });
}

template <typename Control>
Control* UsersPage::OfUser(Control* control) {
  return Follows(control, About::kDevice, [this] {
    return SelectedRecord().has_value() && users_.State().protects.value_or(false);
  });
}

void UsersPage::ArrangeUsers() {
  lstUsers->setRootIsDecorated(false);
  lstUsers->setAllColumnsShowFocus(true);
  lstUsers->setColumnCount(4);
  for (int user = 0; user < kUserCount; ++user) new QTreeWidgetItem(lstUsers);
  lstUsers->setCurrentItem(lstUsers->topLevelItem(kAdministrator));
  captions_.Add([this] {
    lstUsers->setHeaderLabels({captions_.Text(text::kUser), captions_.Text(text::kPassword),
                               captions_.Text(text::kGrant),
                               captions_.Text(text::kTimeoutMinutes)});
  });
}

QHBoxLayout* UsersPage::Commands() {
  auto* row = new QHBoxLayout;
  row->addWidget(ReadCommand("butPWRead", text::kRead, [this] { PWReadAll(); }));
  row->addWidget(Command("butLogin", text::kLogIn, About::kDevice, [this] { LogIn(); }));
  row->addWidget(Command("butLogout", text::kLogOut, About::kDevice, [this] {
    if (users_.LogOut()) users_.ReadLogin();
  }));
  row->addStretch();
  row->addWidget(Command(
      "butPWDel", text::kUnprotect, About::kDevice,
      [this] {
        if (users_.Unprotect() == Ending::kDone) PWReadAll();
      },
      [this] { return users_.State().protects.has_value(); }));
  return row;
}

QHBoxLayout* UsersPage::UserRow() {
  for (int level = 0; level <= kHighestGrant; ++level) {
    cmbPWGrants->addItem(QString());
    captions_.Add(
        [=, this] { cmbPWGrants->setItemText(level, captions_.Text(text::kGrant0 + level)); });
  }
  static const QRegularExpression digits(QStringLiteral("[0-9]{0,5}"));
  edtPWTimeout->setValidator(new QRegularExpressionValidator(digits, this));
  edtPWTimeout->setFixedWidth(edtPWTimeout->fontMetrics().horizontalAdvance("000000") + 16);
  QFont bold = txtPWUser->font();
  bold.setBold(true);
  txtPWUser->setFont(bold);
  auto* row = new QHBoxLayout;
  row->addWidget(captions_.Label(text::kFieldGrant, cmbPWGrants));
  row->addWidget(cmbPWGrants);
  row->addSpacing(kGap);
  row->addWidget(captions_.Label(text::kFieldTimeout, edtPWTimeout));
  row->addWidget(edtPWTimeout);
  row->addStretch();
  return row;
}

QHBoxLayout* UsersPage::SendRow() {
  auto* row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(
      OfUser(captions_.Button("butPWSendSi", text::kSendSettings, [this] { SendSettings(); })));
  row->addWidget(Command(
      "butPWPW", text::kSetPassword, About::kDevice, [this] { SetPassword(); },
      // The first password is the administrator's.
      [this] {
        const std::optional<bool>& protects = users_.State().protects;
        return protects && (*protects || SelectedUser() == kAdministrator);
      }));
  return row;
}

QHBoxLayout* UsersPage::PortRow() {
  const auto known = [this] { return users_.State().ports.has_value(); };
  auto* boxes = new QVBoxLayout;
  for (std::size_t n = 0; n < chkPWCOM.size(); ++n) {
    QCheckBox* box = Follows(Named(new QCheckBox, kPortBoxes[n]), About::kDevice, known);
    captions_.Add(
        [=, this] { box->setText(captions_.Filled(text::kExceptPort, kPortNumbers[n])); });
    boxes->addWidget(box);
    chkPWCOM[n] = box;
  }
  auto* row = new QHBoxLayout;
  row->addLayout(boxes);
  row->addStretch();
  row->addWidget(
      Command(
          "butCOMSend", text::kSendExceptions, About::kDevice, [this] { SendPorts(); }, known),
      0, Qt::AlignBottom);
  return row;
}

void UsersPage::Arrange() {
  auto* login = new QHBoxLayout;
  login->addWidget(lblUser);
  login->addSpacing(2 * kGap);
  login->addWidget(lblGrant);
  login->addStretch();

  auto* layout = new QVBoxLayout(this);
  layout->addLayout(Commands());
  layout->addLayout(login);
  layout->addWidget(captions_.Label(text::kFieldUsers, lstUsers));
  layout->addWidget(lstUsers, 1);
  layout->addWidget(txtPWUser);
  layout->addLayout(UserRow());
  layout->addLayout(SendRow());
  layout->addSpacing(kGap);
  layout->addLayout(PortRow());
}

Page* MakeUsersPage(const Page::Seat& seat) {
  return new UsersPage(seat);
}

}  // namespace ostrel
