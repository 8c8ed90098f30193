#pragma once

// Controls by their names, and what is done in a dialog while an operation shows it.

#include <gtest/gtest.h>

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace ostrel {

template <typename Control>
Control& Find(const QObject& in, const char* name) {
  auto* found = in.findChild<Control*>(QLatin1String(name));
  EXPECT_NE(found, nullptr) << name;
  return *found;
}

/// Acts on the dialog (of this name, when one is given) that the operation shows, once it is shown.
template <typename Dialog>
void During(const std::function<void()>& operation, const std::function<void(Dialog&)>& act,
            const char* name = nullptr) {
  QTimer poll;
  bool seen = false;
  QObject::connect(&poll, &QTimer::timeout, [&] {
    auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
    if (dialog == nullptr) return;
    if (name != nullptr && dialog->objectName() != QLatin1String(name)) return;
    seen = true;
    poll.stop();
    act(*dialog);
  });
  poll.start(0);
  operation();
  EXPECT_TRUE(seen);
}

}  // namespace ostrel
