#include "core/settings.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>
#include <QVariant>

#include <map>

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

// Another session may write the files at any time, so a value is read from
// the file as it is now; but parsing the file again for every value made
// each key typed cost nine parses. A file is parsed again only when its
// time or size on disk moved.
struct SettingsStore::Cache {
    struct File {
        QDateTime modified;
        qint64 size = -1;
        bool exists = false;
        std::unique_ptr<QSettings> store;
    };
    std::map<QString, File> files;

    const QSettings& read(const QString& path)
    {
        const QFileInfo info(path);
        const bool exists = info.exists();
        const QDateTime modified = exists ? info.lastModified() : QDateTime();
        const qint64 size = exists ? info.size() : -1;
        File& f = files[path];
        if (!f.store || f.exists != exists || f.modified != modified || f.size != size) {
            f.store = std::make_unique<QSettings>(path, QSettings::IniFormat);
            f.exists = exists;
            f.modified = modified;
            f.size = size;
        }
        return *f.store;
    }
    void forget(const QString& path) { files.erase(path); }
};

SettingsStore::SettingsStore(QString folder)
    : folder_(std::move(folder)), cache_(std::make_shared<Cache>())
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
    const QSettings& store = cache_->read(filePath(application));
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
    const QString path = filePath(application);
    cache_->forget(path);
    QSettings store(path, QSettings::IniFormat);
    store.setValue(settingsKey(section, key), value);
    store.sync();
}

}  // namespace tornelia
