#pragma once

#include <QDialog>
#include <functional>

#include "app/service.h"

class QPushButton;

namespace ostrel {

/// A dialog that exchanges lines while it is open. Its controls are disabled meanwhile; it can be
/// closed even then, and is hidden when the exchange returns.
class WaitingDialog : public QDialog {
 protected:
  WaitingDialog(QWidget* parent, Service& service, const char* name, int titleId);
  QString Text(int id) const;
  QPushButton* Button(const char* name, int id, const std::function<void()>& command);
  /// What holds all controls.
  QWidget* Body() { return body_; }
  void Wait(const std::function<void()>& exchange);

  Service& service_;

 private:
  QWidget* body_;
};

}  // namespace ostrel
