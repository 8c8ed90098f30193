#include "config/users/frmRechteShow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/texts.h"
#include "config/users/frmLogin.h"
#include "config/users/users_texts.h"
#include "device/rights.h"
#include "widgets/window_dialogs.h"

namespace ostrel {

frmRechteShow::frmRechteShow(QWidget* parent, const Desk& desk, int level)
    : WaitingDialog(parent, desk, "frmRechteShow", text::kGrantsTitle),
      users_(desk),
      lblGrants(Named(new QLabel, "lblGrants")) {
  lblGrants->setTextFormat(Qt::PlainText);
  lblGrants->setWordWrap(true);
  lblGrants->setMinimumWidth(360);
  ShowLevel(level);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(captions_.Button("butLogin", text::kLogIn, [this] {
    Wait([this] { ShowLevel(frmLogin::DoDiaLoginGrantsAA(this, desk_, users_)); });
  }));
  buttons->addWidget(captions_.Button("butRefresh", text::kRefresh, [this] {
    Wait([this] {
      const std::optional<Writing> connected = desk_.session.ToStation("aa:");
      if (connected) ShowLevel(users_.GrantRead(*connected));
    });
  }));
  buttons->addStretch();
  QPushButton* ok = captions_.Button("ButOK", text::kOk, [this] { accept(); });
  ok->setDefault(true);
  buttons->addWidget(ok);
  buttons->addWidget(captions_.Button("butCancel", text::kCancel, [this] { reject(); }));
  ok->setFocus();
  auto* layout = new QVBoxLayout(Body());
  layout->addWidget(lblGrants);
  layout->addStretch();
  layout->addLayout(buttons);
}

void frmRechteShow::ShowLevel(std::optional<int> level) {
  if (!level) return;
  const QString grant = QString::fromStdString(GrantText(desk_.texts, *level));
  lblGrants->setText(captions_.Text(text::kGrantsCurrently) + QLatin1Char(' ') + grant +
                     QLatin1Char('\n') + captions_.Text(text::kLoginForMore));
}

bool frmRechteShow::DoDialog(QWidget* parent, const Desk& desk, int level) {
  frmRechteShow dialog(parent, desk, level);
  return RunModal(dialog);
}

}  // namespace ostrel
