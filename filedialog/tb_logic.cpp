#include "filedialog/tb_logic.h"

#include "core/settings.h"

#include <QDir>
#include <QStandardPaths>

namespace tornelia {

namespace {

const QString kApp = QStringLiteral("Tornelia");
const QString kSection = QStringLiteral("RisorsePers");
const QString kMarker = QStringLiteral("T");
const QString kDocuments = QStringLiteral("(Cartella documenti)");
const QString kDesktop = QStringLiteral("(Cartella desktop)");

QString nameKey(int i)
{
    return QStringLiteral("Nome") + QString::number(i);
}

QString pathKey(int i)
{
    return QStringLiteral("Percorso") + QString::number(i);
}

}  // namespace

std::vector<TbEntry> personalEntries(const SettingsStore& settings)
{
    std::vector<TbEntry> out;
    if (settings.leggiReg(kApp, kSection, kMarker) != kMarker)
        return out;
    // The keys run from 1 without gaps; the first empty one ends them.
    for (int i = 1;; ++i) {
        const QString name = settings.leggiReg(kApp, kSection, nameKey(i));
        const QString path = settings.leggiReg(kApp, kSection, pathKey(i));
        if (name.isEmpty() && path.isEmpty())
            break;
        out.push_back({name.isEmpty() ? path : name, path, false});
    }
    return out;
}

std::vector<TbEntry> barEntries(const SettingsStore& settings)
{
    std::vector<TbEntry> out{{QStringLiteral("Documenti"), kDocuments, true}, {QStringLiteral("Desktop"), kDesktop, true}};
    for (const TbEntry& e : personalEntries(settings))
        out.push_back(e);
    return out;
}

void savePersonalEntries(SettingsStore& settings, const std::vector<TbEntry>& entries)
{
    const size_t before = personalEntries(settings).size();
    int i = 0;
    for (const TbEntry& e : entries) {
        if (e.fixed)
            continue;
        ++i;
        settings.scriviReg(kApp, kSection, nameKey(i), e.name);
        settings.scriviReg(kApp, kSection, pathKey(i), e.path);
    }
    for (int j = i + 1; j <= int(before); ++j) {
        settings.scriviReg(kApp, kSection, nameKey(j), {});
        settings.scriviReg(kApp, kSection, pathKey(j), {});
    }
    settings.scriviReg(kApp, kSection, kMarker, i > 0 ? kMarker : QStringLiteral("F"));
}

QString resolveEntry(const QString& path)
{
    if (path == kDocuments)
        return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (path == kDesktop)
        return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
    if (path.startsWith(QLatin1String("~/")))
        return QDir::homePath() + path.mid(1);
    return path;
}

}  // namespace tornelia
