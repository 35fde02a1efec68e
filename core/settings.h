#pragma once

// The per-user settings tree: string values by application, section and key,
// in one INI file per application under a folder.

#include <QString>

#include <memory>

namespace tornelia {

class SettingsStore {
public:
    // folder: where the INI files live; empty means the user's configuration
    // folder (~/.config/Tornelia).
    explicit SettingsStore(QString folder = {});

    QString folder() const { return folder_; }
    // Path of the INI file that holds the given application ("" is "Tornelia").
    QString filePath(const QString& application) const;

    // A missing value or an empty string gives the default.
    QString leggiReg(const QString& application, const QString& section, const QString& key,
                     const QString& defaultValue = {}) const;
    void scriviReg(const QString& application, const QString& section, const QString& key,
                   const QString& value);

private:
    struct Cache;
    QString folder_;
    // The files as last read, kept while they stay unchanged on disk.
    std::shared_ptr<Cache> cache_;
};

}  // namespace tornelia
