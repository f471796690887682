#include "app/common/qt_settings_store.h"

#include "app/common/texts.h"
#include "text/replace_file.h"

#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

#include <exception>
#include <utility>

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

// Why a file cannot be replaced by one with so much more in it; empty: it can. QSettings itself would put in its
// place the part that a nearly full disk takes, without a fault.
std::string refusal_of(const QString& file, std::size_t more)
{
    constexpr std::size_t kRoom = 4096; // bytes, for keys and escapes
    const QFileInfo old(file);
    QDir().mkpath(old.path());
    try {
        FileReplacement replacement(to_utf8(file));
        replacement.write(std::string(static_cast<std::size_t>(old.size()) + 2 * more + kRoom, ' '));
        replacement.flush();
        return {};
    } catch (const std::exception& fault) {
        return fault.what();
    }
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
    const QString file = store_file(folder_, application);
    QSettings settings(file, QSettings::IniFormat);
    const QVariant stored = settings.value(full_key(section, key));
    if (stored.typeId() == QMetaType::QString && stored.toString() == to_qt(value)) return;
    const std::string refusal = refusal_of(file, value.size());
    if (refusal.empty()) settings.setValue(full_key(section, key), to_qt(value));
    if (!std::exchange(has_failed_, !refusal.empty()) && has_failed_ && on_fault) {
        on_fault("The settings could not be kept: " + refusal);
    }
}

} // namespace tarvo
