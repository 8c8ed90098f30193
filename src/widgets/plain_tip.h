#pragma once

#include <QString>

namespace ostrel {

/// A text for a tip, which would take "<b>" in it for markup.
inline QString PlainTip(const QString& text) {
  return QStringLiteral("<span>%1</span>").arg(text.toHtmlEscaped());
}

}  // namespace ostrel
