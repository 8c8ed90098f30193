#include "widgets/waiting_dialog.h"

#include <QApplication>
#include <QPointer>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/named.h"

namespace ostrel {

WaitingDialog::WaitingDialog(QWidget* parent, Service& service, const char* name, int titleId)
    : QDialog(parent), service_(service), body_(new QWidget) {
  setObjectName(QLatin1String(name));
  setWindowTitle(Text(titleId).remove(QLatin1Char('&')));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->addWidget(body_);
}

QString WaitingDialog::Text(int id) const {
  return QString::fromStdString(service_.Texts().Caption(id));
}

QPushButton* WaitingDialog::Button(const char* name, int id, const std::function<void()>& command) {
  auto* button = Named(new QPushButton(Text(id)), name);
  connect(button, &QPushButton::clicked, this, command);
  return button;
}

void WaitingDialog::Wait(const std::function<void()>& exchange) {
  const QPointer<QWidget> focus = QApplication::focusWidget();
  body_->setEnabled(false);
  {
    const BusyPointer busy(service_.Boxes());
    exchange();
  }
  body_->setEnabled(true);
  if (focus && isVisible()) focus->setFocus();
}

}  // namespace ostrel
