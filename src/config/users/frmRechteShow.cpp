#include "config/users/frmRechteShow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/texts.h"
#include "config/users/frmLogin.h"
#include "config/users/users_texts.h"
#include "device/rights.h"
#include "widgets/named.h"
#include "widgets/window_dialogs.h"

namespace ostrel {

frmRechteShow::frmRechteShow(QWidget* parent, Service& service, int level)
    : WaitingDialog(parent, service, "frmRechteShow", text::kGrantsTitle),
      lblGrants(Named(new QLabel, "lblGrants")) {
  lblGrants->setTextFormat(Qt::PlainText);
  lblGrants->setWordWrap(true);
  lblGrants->setMinimumWidth(360);
  ShowLevel(level);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(Button("butLogin", text::kLogIn, [this] {
    Wait([this] { ShowLevel(frmLogin::DoDiaLoginGrantsAA(this, service_)); });
  }));
  buttons->addWidget(Button("butRefresh", text::kRefresh, [this] {
    Wait([this] { ShowLevel(service_.UserManagement().GrantRead("aa:")); });
  }));
  buttons->addStretch();
  QPushButton* ok = Button("ButOK", text::kOk, [this] { accept(); });
  ok->setDefault(true);
  buttons->addWidget(ok);
  buttons->addWidget(Button("butCancel", text::kCancel, [this] { reject(); }));
  ok->setFocus();
  auto* layout = new QVBoxLayout(Body());
  layout->addWidget(lblGrants);
  layout->addStretch();
  layout->addLayout(buttons);
}

void frmRechteShow::ShowLevel(std::optional<int> level) {
  if (!level) return;
  const QString grant = QString::fromStdString(GrantText(service_.Texts(), *level));
  lblGrants->setText(Text(text::kGrantsCurrently) + QLatin1Char(' ') + grant + QLatin1Char('\n') +
                     Text(text::kLoginForMore));
}

bool frmRechteShow::DoDialog(QWidget* parent, Service& service, int level) {
  frmRechteShow dialog(parent, service, level);
  return RunModal(dialog);
}

}  // namespace ostrel
