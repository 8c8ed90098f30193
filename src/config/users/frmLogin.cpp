#include "config/users/frmLogin.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/texts.h"
#include "config/users/users_texts.h"
#include "widgets/window_dialogs.h"

namespace ostrel {

frmLogin::frmLogin(QWidget* parent, const Desk& desk, Users& users, At at, bool reads)
    : WaitingDialog(parent, desk, "frmLogin", text::kLoginTitle),
      users_(users),
      at_(at),
      reads_(reads),
      cmbUserNr(Named(new QComboBox, "cmbUserNr")),
      edtPasswort(Named(new QLineEdit, "edtPasswort")),
      edtDevice(Named(new QLineEdit, "edtDevice")) {
  for (int user = 0; user < kUserCount; ++user) {
    cmbUserNr->addItem(QString::fromStdString(users_.UserName(user)));
  }
  cmbUserNr->setCurrentIndex(kAdministrator);
  edtPasswort->setEchoMode(QLineEdit::Password);
  edtDevice->setReadOnly(true);
  edtDevice->setFocusPolicy(Qt::NoFocus);
  edtDevice->setText(at_ == At::kConnected
                         ? QStringLiteral("AA:")
                         : QString::fromStdString(desk_.session.Selected().KennName()));
  Arrange();
  edtPasswort->setFocus();
}

void frmLogin::Arrange() {
  auto* txtKommentar = captions_.On(Named(new QLabel, "txtKommentar"), text::kUserNameAndPassword);
  txtKommentar->setTextFormat(Qt::PlainText);
  auto* txtDevice = Named(new QLabel(captions_.Plain(text::kDevice) + ':'), "txtDevice");
  auto* form = new QFormLayout;
  form->addRow(txtDevice, edtDevice);
  form->addRow(captions_.Label(text::kFieldUser, cmbUserNr), cmbUserNr);
  form->addRow(captions_.Label(text::kFieldPassword, edtPasswort), edtPasswort);
  auto* buttons = new QDialogButtonBox;
  QPushButton* ok = captions_.Button("ButOK", text::kOk, [this] { Accept(); });
  ok->setDefault(true);
  buttons->addButton(ok, QDialogButtonBox::ActionRole);
  buttons->addButton(captions_.Button("butCancel", text::kCancel, [this] { reject(); }),
                     QDialogButtonBox::RejectRole);
  auto* layout = new QVBoxLayout(Body());
  layout->addWidget(txtKommentar);
  layout->addLayout(form);
  layout->addStretch();
  layout->addWidget(buttons);
  resize(400, 220);
}

frmLogin::Data frmLogin::Typed() const {
  return {cmbUserNr->currentIndex(), edtPasswort->text().toStdString()};
}

void frmLogin::Accept() {
  const Data typed = Typed();
  if (at_ == At::kNowhere) {
    const int problem = PasswordProblem(typed.password);
    if (problem != 0) return desk_.texts.Warn(problem);
    return accept();
  }
  Wait([&] { LogIn(typed); });
  if (!isVisible()) return;  // closed meanwhile
  if (done_) return accept();
  edtPasswort->selectAll();
  edtPasswort->setFocus();
}

void frmLogin::LogIn(const Data& typed) {
  Session& session = desk_.session;
  const bool connected = at_ == At::kConnected;
  const std::optional<Writing> device = connected ? session.ToStation("AA:") : session.ToWrite();
  done_ = device && users_.LogIn(*device, typed.user, typed.password);
  if (!done_ || !reads_) return;
  const std::optional<Writing> asked = connected ? session.ToStation("aa:") : device;
  if (asked) grant_ = users_.GrantRead(*asked);
}

std::optional<frmLogin::Data> frmLogin::DoDialogGetData(QWidget* parent, const Desk& desk,
                                                        Users& users) {
  frmLogin dialog(parent, desk, users, At::kNowhere, false);
  if (!RunModal(dialog)) return std::nullopt;
  return dialog.Typed();
}

std::optional<std::string> frmLogin::DoDiaGetLoginx(QWidget* parent, const Desk& desk,
                                                    Users& users) {
  const std::optional<Data> data = DoDialogGetData(parent, desk, users);
  if (!data) return std::nullopt;
  return user_lines::LogIn(data->user, data->password);
}

bool frmLogin::DoDiaLogin(QWidget* parent, const Desk& desk, Users& users) {
  frmLogin dialog(parent, desk, users, At::kSelected, false);
  RunModal(dialog);
  return dialog.done_;
}

bool frmLogin::DoDiaLoginAA(QWidget* parent, const Desk& desk, Users& users) {
  frmLogin dialog(parent, desk, users, At::kConnected, false);
  RunModal(dialog);
  return dialog.done_;
}

std::optional<int> frmLogin::DoDiaLoginGrants(QWidget* parent, const Desk& desk, Users& users) {
  frmLogin dialog(parent, desk, users, At::kSelected, true);
  RunModal(dialog);
  return dialog.grant_;
}

std::optional<int> frmLogin::DoDiaLoginGrantsAA(QWidget* parent, const Desk& desk, Users& users) {
  frmLogin dialog(parent, desk, users, At::kConnected, true);
  RunModal(dialog);
  return dialog.grant_;
}

}  // namespace ostrel
