// The placement of the main window, and the end of the program.

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <utility>

#include "app/frmMain.h"
#include "app/frmPages.h"
#include "app/placement.h"

namespace ostrel {

namespace {

constexpr std::string_view kApplication = "Service";
constexpr std::string_view kWindow = "frmMain";

}  // namespace

void frmMain::RestorePlacement() {
  resize(960, 640);
  const auto stored = LoadPlacement(desk_.settings, kApplication, kWindow);
  if (!stored) return;
  for (const QScreen* screen : QGuiApplication::screens()) {
    const QRect area = screen->availableGeometry();
    const auto place = FittedTo({area.left(), area.top(), area.width(), area.height()}, *stored);
    if (!place) continue;
    move(place->left, place->top);
    resize(place->width, place->height);
    return;
  }
}

void frmMain::KeepPlacement() {
  // The position is that of the frame, which the normal geometry of a large window leaves out.
  const bool large = isMaximized() || isFullScreen();
  const QPoint frame = geometry().topLeft() - frameGeometry().topLeft();
  const QRect place = large ? normalGeometry().translated(-frame) : QRect(pos(), size());
  SavePlacement(desk_.settings, kApplication, kWindow,
                {place.left(), place.top(), place.width(), place.height()}, isMinimized());
}

void frmMain::Beenden() {
  End(!sessionEnds_);
}

void frmMain::BeendenQuietly() {
  End(false);
}

void frmMain::End(bool asks) {
  asks_ = asks_ && asks;
  // A second time as well: that also ends what the end itself asks.
  dialogs_.Silence();
  desk_.session.GiveUp();
  if (std::exchange(ending_, true)) return;
  tmrAlive->stop();
  pages_->KeepUnsaved(!asks_);
  KeepPlacement();
  hide();
  QCoreApplication::exit(0);
}

void frmMain::SessionEnds() {
  sessionEnds_ = true;
  if (ending_) return BeendenQuietly();
  KeepPlacement();
  pages_->KeepUnsaved(true);
  program_.KeepPeriod();
}

void frmMain::Finish() {
  if (!ending_) BeendenQuietly();
  if (asks_) {
    dialogs_.Speak();
    desk_.session.GiveUp(false);
  }
  program_.Beenden(asks_);
}

void frmMain::closeEvent(QCloseEvent* event) {
  if (!ending_ && !pages_->MayClose()) return event->ignore();
  Beenden();
  event->accept();
}

}  // namespace ostrel
