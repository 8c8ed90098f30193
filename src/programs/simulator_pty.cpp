#include "programs/simulator_pty.h"

#include <unistd.h>

#include <QCoreApplication>
#include <iostream>
#include <utility>

namespace ostrel::simulator {

namespace {

constexpr std::size_t kReadBuffer = 64 * 1024;

}  // namespace

std::string PtyHost::Open() {
  auto pty = std::make_unique<Pty>();
  if (!pty->Error().empty()) return pty->Error();
  if (std::string failure = link_.LeadTo(pty->Name()); !failure.empty()) return failure;
  unread_.clear();
  unsent_.clear();
  // Not deleted at once: one of them may have led here.
  for (QSocketNotifier* watch : std::exchange(watches_, {})) {
    watch->setEnabled(false);
    watch->deleteLater();
  }
  // The link leads to the new one before a host notices the end of the old one.
  pty_ = std::move(pty);
  Watch();
  return {};
}

void PtyHost::Watch() {
  readable_ = Watch(pty_->Master(), QSocketNotifier::Read, &PtyHost::Take);
  writable_ = Watch(pty_->Master(), QSocketNotifier::Write, &PtyHost::Deliver);
  writable_->setEnabled(false);
  if (pty_->Closings() < 0) return;
  Watch(pty_->Closings(), QSocketNotifier::Read, &PtyHost::SomebodyClosed);
}

QSocketNotifier* PtyHost::Watch(int descriptor, QSocketNotifier::Type type,
                                void (PtyHost::*then)()) {
  auto* watch = new QSocketNotifier(descriptor, type, this);
  connect(watch, &QSocketNotifier::activated, this, then);
  watches_.push_back(watch);
  return watch;
}

void PtyHost::Take() {
  Fetch();
  readable_->setEnabled(unread_.size() < kReadBuffer);
  Serve();
}

/// False when there was nothing.
bool PtyHost::Fetch() {
  char bytes[4096];
  const ssize_t length = read(pty_->Master(), bytes, sizeof(bytes));
  if (length > 0) unread_.insert(unread_.end(), bytes, bytes + length);
  return length > 0;
}

bool PtyHost::Read(char& byte) {
  if (unread_.empty()) return false;
  byte = unread_.front();
  unread_.pop_front();
  readable_->setEnabled(unread_.size() < kReadBuffer);
  return true;
}

void PtyHost::Write(std::string_view bytes) {
  unsent_ += bytes;
  writable_->setEnabled(true);
}

void PtyHost::Deliver() {
  const ssize_t length = write(pty_->Master(), unsent_.data(), unsent_.size());
  if (length > 0) unsent_.erase(0, static_cast<std::size_t>(length));
  writable_->setEnabled(!unsent_.empty());
  Serve();
}

/// On a line, what a device says to nobody is lost: the next host must not get it.
void PtyHost::SomebodyClosed() {
  // A pseudo-terminal holds less than this.
  while (unread_.size() < 4 * kReadBuffer && Fetch()) continue;
  if (pty_->IsAlone()) {
    pty_->Reset();
    unsent_.clear();
    writable_->setEnabled(false);
    Leave(unread_.size());
  } else {
    Serve();
  }
}

void PtyHost::DropLink() {
  const std::string failure = Open();
  if (failure.empty()) return;
  std::cerr << "ostrel-simulator: " << link_.Path() << ": " << failure << std::endl;
  QCoreApplication::exit(1);
}

}  // namespace ostrel::simulator
