#pragma once

// The list of recent documents: five slots in section "FileRecenti" of the
// settings, key "0" the newest. The File menu shows them as its items 15 to
// 19; the captions kept here are the working copy the list is shifted on.

#include "core/document.h"
#include "core/settings.h"

#include <QList>
#include <QString>

#include <array>
#include <functional>

namespace tornelia {

class RecentFiles {
public:
    static constexpr int kSlots = 5;

    explicit RecentFiles(SettingsStore& settings);

    // Fills the captions from the settings.
    void caricaRecenti();
    // Puts a path at the head of the list. A path already on it, compared
    // exactly, keeps its place and nothing is written.
    void aggiungiRecente(const QString& path);
    // "Cancella elenco" of the options: every slot freed.
    void svuota();

    // The caption of menu item 15 + i; an empty caption is a hidden item.
    const std::array<QString, kSlots>& captions() const { return captions_; }
    bool itemVisible(int i) const { return i >= 0 && i < kSlots && !captions_[i].isEmpty(); }
    // Item 14, the separator above the list.
    bool separatorVisible() const;

    // Every document opened from then on goes on the list.
    void attach(Document& document);

    // Called after every change of the captions, so the menu follows.
    std::function<void()> onChanged;

private:
    SettingsStore& settings_;
    std::array<QString, kSlots> captions_;
};

// A row of the start panel's recent list.
enum class FileIcon { Text, Data, Rtf, Html, Tornelia, Other };

struct RecentRow {
    QString name;  // the file part
    QString path;
    FileIcon icon = FileIcon::Other;
    bool operator==(const RecentRow&) const = default;
};

// The icon by the last four characters of the path, in upper case.
FileIcon iconForPath(const QString& path);
// What follows the last separator of the path.
QString filePart(const QString& path);
// The start panel's list, read from the settings (Caric).
QList<RecentRow> recentRows(const SettingsStore& settings);

}  // namespace tornelia
