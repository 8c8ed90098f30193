#include "config/users/frmMeldLogin.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/texts.h"
#include "config/users/users_texts.h"
#include "widgets/named.h"
#include "widgets/window_dialogs.h"

namespace ostrel {

frmMeldLogin::frmMeldLogin(QWidget* parent, Service& service)
    : WaitingDialog(parent, service, "frmMeldLogin", text::kUserManagement) {
  auto* notice = Named(new QLabel(Text(text::kNoAdminPassword)), "lblNotice");
  notice->setTextFormat(Qt::PlainText);
  notice->setWordWrap(true);
  notice->setMinimumWidth(360);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(Button("butLogin", text::kDefinePassword, [this] { Define(); }));
  QPushButton* cancel = Button("butCancel", text::kCancel, [this] { reject(); });
  cancel->setDefault(true);
  buttons->addWidget(cancel);
  auto* layout = new QVBoxLayout(Body());
  layout->addWidget(notice);
  layout->addStretch();
  layout->addLayout(buttons);
}

void frmMeldLogin::Define() {
  Wait([this] {
    Users& users = service_.UserManagement();
    // Nobody is asked anything once the dialog was closed.
    if (!users.LogOut() || !isVisible()) return;
    done_ = users.SetPassword(kAdministrator) == Users::Outcome::kDone;
  });
  if (done_ && isVisible()) accept();
}

bool frmMeldLogin::DoDialog(QWidget* parent, Service& service) {
  frmMeldLogin dialog(parent, service);
  RunModal(dialog);
  return dialog.done_;
}

}  // namespace ostrel
