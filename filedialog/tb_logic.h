#pragma once

// The resource bar's entries: the two fixed ones, resolved when used, and
// the user's own, kept in the settings under "RisorsePers".

#include <QString>

#include <vector>

namespace tornelia {

class SettingsStore;

struct TbEntry {
    QString name;
    QString path;  // a folder, or "(Cartella documenti)" / "(Cartella desktop)"
    bool fixed = false;
};

// "Documenti", "Desktop", then the personal entries: what CreABar puts on the bar.
std::vector<TbEntry> barEntries(const SettingsStore& settings);
std::vector<TbEntry> personalEntries(const SettingsStore& settings);
// Rewrites every personal key: the "T" marker, then "Nome<i>" and "Percorso<i>"
// from 1; the keys of entries that went are emptied.
void savePersonalEntries(SettingsStore& settings, const std::vector<TbEntry>& entries);
// The folder an entry leads to: the user's documents and desktop folders for
// the fixed ones.
QString resolveEntry(const QString& path);

}  // namespace tornelia
