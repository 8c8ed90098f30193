#include "widgets/waiting_dialog.h"

#include <QApplication>
#include <QPointer>
#include <QVBoxLayout>

namespace ostrel {

WaitingDialog::WaitingDialog(QWidget* parent, const Desk& desk, const char* name, int titleId)
    : QDialog(parent), desk_(desk), captions_(desk.texts), body_(new QWidget) {
  setObjectName(QLatin1String(name));
  setWindowTitle(captions_.Plain(titleId));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->addWidget(body_);
}

void WaitingDialog::Wait(const std::function<void()>& exchange) {
  const QPointer<QWidget> focus = QApplication::focusWidget();
  body_->setEnabled(false);
  {
    const BusyPointer busy(desk_.dialogs);
    exchange();
  }
  body_->setEnabled(true);
  if (focus && isVisible()) focus->setFocus();
}

}  // namespace ostrel
