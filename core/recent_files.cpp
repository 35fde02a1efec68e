#include "core/recent_files.h"

namespace tornelia {

namespace {
const QString kApp = QStringLiteral("Tornelia");
const QString kSection = QStringLiteral("FileRecenti");
}  // namespace

RecentFiles::RecentFiles(SettingsStore& settings) : settings_(settings) {}

void RecentFiles::caricaRecenti()
{
    for (int i = 0; i < kSlots; ++i)
        captions_[i] = settings_.leggiReg(kApp, kSection, QString::number(i));
    if (onChanged)
        onChanged();
}

bool RecentFiles::separatorVisible() const
{
    for (const QString& c : captions_)
        if (!c.isEmpty())
            return true;
    return false;
}

void RecentFiles::aggiungiRecente(const QString& path)
{
    if (path.isEmpty())
        return;
    // A document opened again keeps its place: the list records what came
    // in, not what was used last.
    for (const QString& c : captions_)
        if (c == path)
            return;
    // Shifted by position: a free slot in the middle moves down with the rest.
    std::array<QString, kSlots> shifted;
    shifted[0] = path;
    for (int i = 1; i < kSlots; ++i)
        shifted[i] = captions_[i - 1];
    // A free slot is written free too, so the gap stays where it went
    // rather than being filled by the entry that stood there before.
    for (int i = 0; i < kSlots; ++i)
        settings_.scriviReg(kApp, kSection, QString::number(i), shifted[i]);
    caricaRecenti();
}

void RecentFiles::attach(Document& document)
{
    document.onRecentAdd = [this](const QString& path) { aggiungiRecente(path); };
}

void RecentFiles::svuota()
{
    for (int i = 0; i < kSlots; ++i)
        settings_.scriviReg(kApp, kSection, QString::number(i), {});
    settings_.scriviReg(kApp, kSection, QStringLiteral("Descrizione"), QStringLiteral("EFR"));
    caricaRecenti();
}

FileIcon iconForPath(const QString& path)
{
    const QString tail = path.right(4).toUpper();
    if (tail == QLatin1String(".TXT"))
        return FileIcon::Text;
    if (tail == QLatin1String(".DAT"))
        return FileIcon::Data;
    if (tail == QLatin1String(".RTF"))
        return FileIcon::Rtf;
    if (tail == QLatin1String("HTML") || tail == QLatin1String(".HTM"))
        return FileIcon::Html;
    if (tail == QLatin1String(".TNL"))
        return FileIcon::Tornelia;
    return FileIcon::Other;
}

QString filePart(const QString& path)
{
    const int cut = std::max(path.lastIndexOf(QLatin1Char('/')), path.lastIndexOf(QLatin1Char('\\')));
    return path.mid(cut + 1);
}

QList<RecentRow> recentRows(const SettingsStore& settings)
{
    QList<RecentRow> rows;
    for (int i = 0; i < RecentFiles::kSlots; ++i) {
        const QString path = settings.leggiReg(kApp, kSection, QString::number(i));
        if (!path.isEmpty())
            rows.append({filePart(path), path, iconForPath(path)});
    }
    return rows;
}

}  // namespace tornelia
