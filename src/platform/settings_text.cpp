#include "platform/settings_text.h"

#include <QString>
#include <QStringDecoder>
#include <QStringList>
#include <algorithm>

namespace ostrel {

namespace {

QString FromUtf8(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string Folded(std::string_view path) {
  return FromUtf8(path).toCaseFolded().toStdString();
}

QString Hex(QChar letter, int digits) {
  return QString::number(letter.unicode(), 16).toUpper().rightJustified(digits, QLatin1Char('0'));
}

bool IsDigit(QChar letter, int base) {
  bool digit = false;
  QString(letter).toInt(&digit, base);
  return digit;
}

QString EscapedKey(const QString& key) {
  QString escaped;
  for (const QChar letter : key) {
    const bool plain = IsDigit(letter, 36) || QStringLiteral("_-.\\").contains(letter);
    if (plain) {
      escaped += letter;
    } else if (letter.unicode() < 256) {
      escaped += QLatin1Char('%') + Hex(letter, 2);
    } else {
      escaped += QStringLiteral("%U") + Hex(letter, 4);
    }
  }
  return escaped;
}

QString UnescapedKey(const QString& escaped) {
  QString key;
  for (qsizetype n = 0; n < escaped.size(); ++n) {
    const bool wide = escaped.mid(n + 1, 1) == QLatin1String("U");
    const QString digits = escaped.mid(n + (wide ? 2 : 1), wide ? 4 : 2);
    bool number = false;
    const char16_t code = digits.toUShort(&number, 16);
    if (escaped[n] != QLatin1Char('%') || !number) {
      key += escaped[n];
    } else {
      key += QChar(code);
      n += digits.size() + (wide ? 1 : 0);
    }
  }
  return key;
}

QString EscapedValue(const QString& value) {
  QString escaped;
  bool afterNumber = false;
  for (const QChar letter : value) {
    const qsizetype known = QStringLiteral("\n\r\t\"\\").indexOf(letter);
    const int code = letter.unicode();
    if (known >= 0) {
      escaped += QLatin1Char('\\');
      escaped += QStringLiteral("nrt\"\\")[known];
    } else if (code < 32 || code == 127 || (afterNumber && IsDigit(letter, 16))) {
      escaped += QStringLiteral("\\x") + Hex(letter, 1);
      afterNumber = true;
      continue;
    } else {
      escaped += letter;
    }
    afterNumber = false;
  }
  // A single "@" begins what is no text.
  if (value.startsWith(QLatin1Char('@'))) escaped.prepend(QLatin1Char('@'));
  const bool bare = value == value.trimmed() && !value.contains(QLatin1Char(';')) &&
                    !value.contains(QLatin1Char(',')) && !value.contains(QLatin1Char('='));
  return bare ? escaped : QLatin1Char('"') + escaped + QLatin1Char('"');
}

/// The character whose number stands at `n`; `n` is then its last digit.
QChar Numbered(const QString& text, qsizetype& n) {
  const bool hex = text[n] == QLatin1Char('x');
  char16_t code = 0;
  if (!hex) --n;
  while (n + 1 < text.size() && IsDigit(text[n + 1], hex ? 16 : 8)) {
    code = static_cast<char16_t>(code * (hex ? 16 : 8) + QString(text[++n]).toUShort(nullptr, 16));
  }
  return QChar(code);
}

QString UnescapedValue(const QString& escaped) {
  QString value;
  const qsizetype end = escaped.size() - 1;
  for (qsizetype n = 0; n <= end; ++n) {
    if (escaped[n] == QLatin1Char('"')) continue;
    if (escaped[n] != QLatin1Char('\\')) {
      value += escaped[n];
      continue;
    }
    if (++n > end) break;
    const qsizetype known = QStringLiteral("nrtabfv").indexOf(escaped[n]);
    if (known >= 0) {
      value += QStringLiteral("\n\r\t\a\b\f\v")[known];
    } else if (IsDigit(escaped[n], 8) ||
               (escaped[n] == QLatin1Char('x') && IsDigit(escaped.at(std::min(n + 1, end)), 16))) {
      value += Numbered(escaped, n);
    } else {
      value += escaped[n];
    }
  }
  return value.startsWith(QLatin1String("@@")) ? value.mid(1) : value;
}

QString SectionOf(const QString& line) {
  const QString name = line.mid(1, line.indexOf(QLatin1Char(']')) - 1);
  if (name.compare(QLatin1String("general"), Qt::CaseInsensitive) == 0) return {};
  // A key that is called so has a sign before its name.
  if (name.compare(QLatin1String("%general"), Qt::CaseInsensitive) == 0) return name.mid(1);
  return UnescapedKey(name);
}

QString SectionLine(const QString& section) {
  if (section.isEmpty()) return QStringLiteral("[General]\n");
  const bool general = section.compare(QLatin1String("general"), Qt::CaseInsensitive) == 0;
  return QLatin1Char('[') + (general ? QLatin1Char('%') + section : EscapedKey(section)) +
         QStringLiteral("]\n");
}

}  // namespace

bool IsSettingsText(std::string_view bytes) {
  return std::none_of(bytes.begin(), bytes.end(), [](unsigned char byte) {
    return (byte < 32 && byte != '\t' && byte != '\n' && byte != '\r') || byte == 127;
  });
}

SettingsValues ParseSettings(std::string_view bytes) {
  const auto size = static_cast<qsizetype>(bytes.size());
  QStringDecoder decoder(QStringDecoder::Utf8, QStringConverter::Flag::Stateless);
  QString text = decoder(QByteArrayView(bytes.data(), size));
  if (decoder.hasError()) text = QString::fromLatin1(bytes.data(), size);

  SettingsValues values(Folded);
  QString section;
  for (const QString& whole : text.split(QLatin1Char('\n'))) {
    const QString line = whole.trimmed();
    const qsizetype sign = line.indexOf(QLatin1Char('='));
    if (line.startsWith(QLatin1Char('['))) {
      section = SectionOf(line);
    } else if (sign > 0 && !line.startsWith(QLatin1Char(';')) &&
               !line.startsWith(QLatin1Char('#'))) {
      const QString name = UnescapedKey(line.left(sign).trimmed());
      const QString value = line.mid(sign + 1).trimmed();
      if (value == QLatin1String("@Invalid()")) continue;
      values.Set(SettingsPath(section.toStdString(), name.toStdString()),
                 UnescapedValue(value).toStdString());
    }
  }
  return values;
}

std::string SettingsText(const SettingsValues& values) {
  QString text;
  std::optional<QString> section;
  for (const auto& [folded, entry] : values.Entries()) {
    const QString path = FromUtf8(entry.path);
    const qsizetype end = path.indexOf(QLatin1Char('\\'));
    const QString first = path.left(std::max<qsizetype>(end, 0));
    if (section != first) {
      text += (section ? QStringLiteral("\n") : QString()) + SectionLine(first);
      section = first;
    }
    text += EscapedKey(path.mid(end + 1)) + QLatin1Char('=') + EscapedValue(FromUtf8(entry.value)) +
            QLatin1Char('\n');
  }
  return text.toStdString();
}

}  // namespace ostrel
