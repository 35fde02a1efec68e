#include "core/settings.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>
#include <QVariant>

namespace tornelia {

namespace {

// Sections and keys go to QSettings as "section/key". QSettings escapes
// spaces and other odd characters in section names and keeps keys that are
// bare numbers, so "Toolbar 1" / "1" is written as [Toolbar%201] 1=...
QString settingsKey(const QString& section, const QString& key)
{
    return section + QLatin1Char('/') + key;
}

}  // namespace

SettingsStore::SettingsStore(QString folder)
    : folder_(std::move(folder))
{
    if (folder_.isEmpty())
        folder_ = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
                  + QStringLiteral("/Tornelia");
}

QString SettingsStore::filePath(const QString& application) const
{
    const QString app = application.isEmpty() ? QStringLiteral("Tornelia") : application;
    return folder_ + QLatin1Char('/') + app + QStringLiteral(".conf");
}

QString SettingsStore::leggiReg(const QString& application, const QString& section,
                                const QString& key, const QString& defaultValue) const
{
    // A fresh QSettings per call: another session may have written the file
    // since, and the processes share the settings and nothing else.
    const QSettings store(filePath(application), QSettings::IniFormat);
    const QVariant value = store.value(settingsKey(section, key));

    QString text;
    switch (value.typeId()) {
    case QMetaType::QString:
        text = value.toString();
        break;
    case QMetaType::QStringList:
        // A hand-edited value with an unquoted comma: still one string to us.
        text = value.toStringList().join(QStringLiteral(", "));
        break;
    default:
        // Missing, or a value of another type: the default.
        break;
    }
    // Values are plain strings that end at the first NUL.
    const qsizetype nul = text.indexOf(QChar(0));
    if (nul >= 0)
        text.truncate(nul);
    return text.isEmpty() ? defaultValue : text;
}

void SettingsStore::scriviReg(const QString& application, const QString& section,
                              const QString& key, const QString& value)
{
    // Nobody reads a failure here: a value that did not reach the disk reads
    // as its default next time.
    QDir().mkpath(folder_);
    QSettings store(filePath(application), QSettings::IniFormat);
    store.setValue(settingsKey(section, key), value);
    store.sync();
}

}  // namespace tornelia
