#include "app/common/qt_settings_store.h"

#include "app/common/texts.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>

namespace tarvo {

namespace {

QString store_file(const QString& folder, const std::string& application)
{
    const QString place =
        folder.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) : folder;
    return QDir(place).filePath(to_qt(application) + QStringLiteral(".ini"));
}

QString full_key(const std::string& section, const std::string& key)
{
    return to_qt(section) + QLatin1Char('/') + to_qt(key);
}

} // namespace

std::string QtSettingsStore::read(const std::string& application, const std::string& section, const std::string& key,
                                  const std::string& default_value) const
{
    const QSettings settings(store_file(folder_, application), QSettings::IniFormat);
    const QVariant value = settings.value(full_key(section, key));
    // A text with a comma that a person wrote into the file reads as a list.
    if (value.typeId() == QMetaType::QStringList) return to_utf8(value.toStringList().join(QLatin1Char(',')));
    return value.isValid() ? to_utf8(value.toString()) : default_value;
}

void QtSettingsStore::write(const std::string& application, const std::string& section, const std::string& key,
                            const std::string& value)
{
    QSettings settings(store_file(folder_, application), QSettings::IniFormat);
    settings.setValue(full_key(section, key), to_qt(value));
}

} // namespace tarvo
