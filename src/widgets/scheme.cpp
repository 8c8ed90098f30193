#include "widgets/scheme.h"

#include <QApplication>
#include <QStyle>

namespace ostrel {

namespace {

struct Colours {
  QRgb window, base, alternate, button, text, faint, bright, highlight, highlighted, link, shadow;
};

constexpr Colours kLight = {0xfff3f4f6, 0xffffffff, 0xfff7f8fa, 0xffe9ebee, 0xff1b1f24, 0xff858c95,
                            0xffffffff, 0xff1f6fb2, 0xffffffff, 0xff0b5cad, 0xff9aa1a9};
constexpr Colours kDark = {0xff24272b, 0xff1a1c1f, 0xff212428, 0xff33373c, 0xffe6e8ea, 0xff80868d,
                           0xffffffff, 0xff4a9fe0, 0xff0d1116, 0xff7bbcf0, 0xff0c0d0f};

QPalette PaletteOf(const Colours& colours) {
  const QColor text = QColor::fromRgb(colours.text);
  QPalette palette(text, QColor::fromRgb(colours.button),
                   QColor::fromRgb(colours.button).lighter(130), QColor::fromRgb(colours.shadow),
                   QColor::fromRgb(colours.button).darker(130), text,
                   QColor::fromRgb(colours.bright), QColor::fromRgb(colours.base),
                   QColor::fromRgb(colours.window));
  palette.setColor(QPalette::AlternateBase, QColor::fromRgb(colours.alternate));
  palette.setColor(QPalette::Highlight, QColor::fromRgb(colours.highlight));
  palette.setColor(QPalette::HighlightedText, QColor::fromRgb(colours.highlighted));
  palette.setColor(QPalette::Link, QColor::fromRgb(colours.link));
  palette.setColor(QPalette::ToolTipBase, QColor::fromRgb(colours.alternate));
  palette.setColor(QPalette::ToolTipText, text);
  const QColor faint = QColor::fromRgb(colours.faint);
  palette.setColor(QPalette::PlaceholderText, faint);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, faint);
  }
  return palette;
}

}  // namespace

Scheme SchemeFromName(const std::string& name) {
  if (name == "light") return Scheme::kLight;
  return name == "dark" ? Scheme::kDark : Scheme::kSystem;
}

std::string SchemeName(Scheme scheme) {
  if (scheme == Scheme::kLight) return "light";
  return scheme == Scheme::kDark ? "dark" : "system";
}

QPalette SchemePalette(Scheme scheme) {
  if (scheme == Scheme::kSystem) return {};
  return PaletteOf(scheme == Scheme::kLight ? kLight : kDark);
}

void ApplyScheme(Scheme scheme) {
  QApplication::setPalette(SchemePalette(scheme));
}

}  // namespace ostrel
