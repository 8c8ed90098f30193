#include "widgets/page.h"

#include <QCheckBox>
#include <QPushButton>
#include <utility>

#include "base/texts.h"

namespace ostrel {

namespace {

constexpr int kPollMs = 60000;

}  // namespace

void Page::EnableCommands(bool free) {
  free_ = free;
  Enable();
}

void Page::SetCaptions() {
  captions_.SetAll();
  Refresh();
}

void Page::DeviceChanged() {
  Forget();
  Refresh();
  Enable();
}

void Page::Read() {
  if (read_ != nullptr) read_->click();
}

void Page::Tick(int intervalMs, bool mayRead) {
  const bool polls = poll_ != nullptr && poll_->isChecked() && isVisible();
  pollMs_ = polls ? pollMs_ + intervalMs : 0;
  if (pollMs_ <= kPollMs || !mayRead) return;
  pollMs_ = 0;
  Read();
}

QPushButton* Page::Command(const char* name, int id, About about, Action action, Condition also) {
  auto* button = captions_.Button(
      name, id, [this, about, action = std::move(action)] { Start(about, action); });
  return Follows(button, about, std::move(also));
}

QPushButton* Page::ReadCommand(const char* name, int id, Action action) {
  read_ = Command(name, id, About::kDevice, std::move(action));
  return read_;
}

QCheckBox* Page::PollSwitch(const char* name) {
  poll_ = captions_.On(Named(new QCheckBox, name), text::kReadEveryMinute);
  return poll_;
}

void Page::Start(About about, const Action& action) {
  if (about != About::kFiles) {
    return seat_.run([this, action] {
      action();
      Refresh();
    });
  }
  if (!free_) return;
  action();
  Refresh();
  Enable();
}

void Page::Enable() const {
  const bool device = desk_.session.Selected().GetKenn().has_value();
  for (const auto& [enable, about, also] : rules_) {
    enable(free_ && (about != About::kDevice || device) && (!also || also()));
  }
}

}  // namespace ostrel
