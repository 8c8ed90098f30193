#include "platform/registry_settings.h"

#include <QStandardPaths>
#include <QStringList>

#include "base/settings_path.h"

namespace ostrel {

namespace {

QString Location() {
#ifdef Q_OS_WIN
  return QStringLiteral("HKEY_CURRENT_USER");
#else
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
         QStringLiteral("/vantrel/ostrel.conf");
#endif
}

#ifdef Q_OS_WIN
constexpr QSettings::Format kFormat = QSettings::NativeFormat;
#else
constexpr QSettings::Format kFormat = QSettings::IniFormat;
#endif

QString ToStore(std::string_view path) {
  return QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size()))
      .replace(QLatin1Char('\\'), QLatin1Char('/'));
}

std::string FromStore(QString path) {
  return path.replace(QLatin1Char('/'), QLatin1Char('\\')).toStdString();
}

}  // namespace

RegistrySettings::RegistrySettings() : store_(Location(), kFormat) {}

QString RegistrySettings::Stored(const std::string& path) const {
  store_.sync();
  const QString wanted = ToStore(path);
  const QStringList all = store_.allKeys();
  for (const QString& key : all) {
    if (key.compare(wanted, Qt::CaseInsensitive) == 0) return key;
  }
  return wanted;
}

std::string RegistrySettings::ReadShared(std::string_view key, std::string_view name,
                                         std::string_view fallback) const {
  const QVariant value = store_.value(Stored(SettingsPath(key, name)));
  if (!value.isValid()) return std::string(fallback);
  // A comma in a file edited by hand reads as a list.
  return value.toStringList().join(QLatin1Char(',')).toStdString();
}

void RegistrySettings::WriteShared(std::string_view key, std::string_view name,
                                   std::string_view value) {
  store_.setValue(Stored(SettingsPath(key, name)),
                  QString::fromUtf8(value.data(), static_cast<qsizetype>(value.size())));
  store_.sync();
}

std::vector<std::string> RegistrySettings::SharedSubKeys(std::string_view key) const {
  store_.sync();
  QStringList names;
  const QStringList all = store_.allKeys();
  for (const QString& stored : all) {
    const QString name = QString::fromStdString(SubKeyOf(key, FromStore(stored)));
    if (!name.isEmpty() && !names.contains(name, Qt::CaseInsensitive)) names.append(name);
  }
  names.sort(Qt::CaseInsensitive);
  std::vector<std::string> result;
  for (const QString& name : names) result.push_back(name.toStdString());
  return result;
}

void RegistrySettings::RemoveSharedKey(std::string_view key) {
  store_.sync();
  const QString group = ToStore(SettingsPath(key, "")) + QLatin1Char('/');
  const QStringList all = store_.allKeys();
  for (const QString& stored : all) {
    if (stored.startsWith(group, Qt::CaseInsensitive)) store_.remove(stored);
  }
  store_.sync();
}

std::string RegistrySettings::FileName() const {
  return store_.fileName().toStdString();
}

}  // namespace ostrel
