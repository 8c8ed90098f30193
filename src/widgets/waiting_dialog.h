#pragma once

#include <QDialog>
#include <functional>

#include "device/desk.h"
#include "widgets/captions.h"

namespace ostrel {

/// A dialog that exchanges lines while it is open. Its controls are disabled meanwhile; it can be
/// closed even then, and is hidden when the exchange returns.
class WaitingDialog : public QDialog {
 protected:
  WaitingDialog(QWidget* parent, const Desk& desk, const char* name, int titleId);
  /// What holds all controls.
  QWidget* Body() { return body_; }
  void Wait(const std::function<void()>& exchange);

  const Desk desk_;
  Captions captions_;

 private:
  QWidget* body_;
};

}  // namespace ostrel
