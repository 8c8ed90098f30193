#include "config/users/frmLogin.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "base/texts.h"
#include "config/users/users_texts.h"
#include "widgets/named.h"
#include "widgets/window_dialogs.h"

namespace ostrel {

namespace {

constexpr const char* kConnected = "AA:";

}  // namespace

frmLogin::frmLogin(QWidget* parent, Service& service, Target target)
    : WaitingDialog(parent, service, "frmLogin", text::kLoginTitle),
      target_(std::move(target)),
      cmbUserNr(Named(new QComboBox, "cmbUserNr")),
      edtPasswort(Named(new QLineEdit, "edtPasswort")),
      edtDevice(Named(new QLineEdit, "edtDevice")) {
  for (int user = 0; user < kUserCount; ++user) {
    cmbUserNr->addItem(QString::fromStdString(service.UserManagement().UserName(user)));
  }
  cmbUserNr->setCurrentIndex(kAdministrator);
  edtPasswort->setEchoMode(QLineEdit::Password);
  edtDevice->setReadOnly(true);
  edtDevice->setFocusPolicy(Qt::NoFocus);
  edtDevice->setText(target_.login == kConnected
                         ? QString::fromLatin1(kConnected)
                         : QString::fromStdString(service.Selected().KennName()));
  Arrange();
  edtPasswort->setFocus();
}

void frmLogin::Arrange() {
  auto* txtKommentar = Named(new QLabel(Text(text::kUserNameAndPassword)), "txtKommentar");
  txtKommentar->setTextFormat(Qt::PlainText);
  auto* txtDevice =
      Named(new QLabel(Text(text::kDevice).remove(QLatin1Char('&')) + ':'), "txtDevice");
  auto* form = new QFormLayout;
  form->addRow(txtDevice, edtDevice);
  const auto addRow = [&](int id, QWidget* field) {
    auto* label = new QLabel(Text(id));
    label->setBuddy(field);
    form->addRow(label, field);
  };
  addRow(text::kFieldUser, cmbUserNr);
  addRow(text::kFieldPassword, edtPasswort);
  auto* buttons = new QDialogButtonBox;
  QPushButton* ok = Button("ButOK", text::kOk, [this] { Accept(); });
  ok->setDefault(true);
  buttons->addButton(ok, QDialogButtonBox::ActionRole);
  buttons->addButton(Button("butCancel", text::kCancel, [this] { reject(); }),
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
  if (target_.login.empty()) {
    const int problem = PasswordProblem(typed.password);
    if (problem != 0) return service_.Texts().Warn(problem);
    return accept();
  }
  Wait([&] {
    Users& users = service_.UserManagement();
    done_ = users.LogIn(target_.login, typed.user, typed.password);
    if (done_ && !target_.grant.empty()) grant_ = users.GrantRead(target_.grant);
  });
  if (!isVisible()) return;  // closed meanwhile
  if (done_) return accept();
  edtPasswort->selectAll();
  edtPasswort->setFocus();
}

frmLogin::Target frmLogin::Selected(const Service& service) {
  const std::string prefix = service.Selected().GetKenn().value_or("");
  return {prefix, prefix};
}

std::optional<frmLogin::Data> frmLogin::DoDialogGetData(QWidget* parent, Service& service) {
  frmLogin dialog(parent, service, {});
  if (!RunModal(dialog)) return std::nullopt;
  return dialog.Typed();
}

std::optional<std::string> frmLogin::DoDiaGetLoginx(QWidget* parent, Service& service) {
  const std::optional<Data> data = DoDialogGetData(parent, service);
  if (!data) return std::nullopt;
  return user_lines::LogIn({}, data->user, data->password);
}

bool frmLogin::DoDiaLogin(QWidget* parent, Service& service) {
  frmLogin dialog(parent, service, {Selected(service).login, {}});
  RunModal(dialog);
  return dialog.done_;
}

bool frmLogin::DoDiaLoginAA(QWidget* parent, Service& service) {
  frmLogin dialog(parent, service, {kConnected, {}});
  RunModal(dialog);
  return dialog.done_;
}

std::optional<int> frmLogin::DoDiaLoginGrants(QWidget* parent, Service& service) {
  frmLogin dialog(parent, service, Selected(service));
  RunModal(dialog);
  return dialog.grant_;
}

std::optional<int> frmLogin::DoDiaLoginGrantsAA(QWidget* parent, Service& service) {
  frmLogin dialog(parent, service, {kConnected, "aa:"});
  RunModal(dialog);
  return dialog.grant_;
}

}  // namespace ostrel
