#include "config/users/frmMeldLogin.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/texts.h"
#include "config/users/users_texts.h"
#include "widgets/window_dialogs.h"

namespace ostrel {

frmMeldLogin::frmMeldLogin(QWidget* parent, const Desk& desk, Users& users)
    : WaitingDialog(parent, desk, "frmMeldLogin", text::kUserManagement), users_(users) {
  auto* notice = captions_.On(Named(new QLabel, "lblNotice"), text::kNoAdminPassword);
  notice->setTextFormat(Qt::PlainText);
  notice->setWordWrap(true);
  notice->setMinimumWidth(360);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(captions_.Button("butLogin", text::kDefinePassword, [this] { Define(); }));
  QPushButton* cancel = captions_.Button("butCancel", text::kCancel, [this] { reject(); });
  cancel->setDefault(true);
  buttons->addWidget(cancel);
  auto* layout = new QVBoxLayout(Body());
  layout->addWidget(notice);
  layout->addStretch();
  layout->addLayout(buttons);
}

void frmMeldLogin::Define() {
  Wait([this] {
    // Nobody is asked anything once the dialog was closed.
    if (!users_.LogOut() || !isVisible()) return;
    done_ = users_.SetPassword(kAdministrator) == Ending::kDone;
  });
  if (done_ && isVisible()) accept();
}

bool frmMeldLogin::DoDialog(QWidget* parent, const Desk& desk, Users& users) {
  frmMeldLogin dialog(parent, desk, users);
  RunModal(dialog);
  return dialog.done_;
}

}  // namespace ostrel
