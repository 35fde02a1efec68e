#include "core/autosave.h"
#include "core/recent_files.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>

namespace tornelia {

namespace {
const QString kApp = QStringLiteral("Tornelia");
const QString kSalva = QStringLiteral("Salva");

QLocale italian() { return QLocale(QLocale::Italian, QLocale::Italy); }

bool isRealName(const QString& name) { return !name.isEmpty() && name != kNoDocument; }
}  // namespace

AutoSave::AutoSave(Document& document, SettingsStore& settings, MessagePort& messages, QString dataFolder,
                   QObject* parent)
    : QObject(parent), document_(document), settings_(settings), messages_(messages),
      dataFolder_(std::move(dataFolder))
{
    timer_.setInterval(1000);
    connect(&timer_, &QTimer::timeout, this, &AutoSave::tick);
}

QString AutoSave::tempFolder() const { return QDir(dataFolder_).filePath(QStringLiteral("temp")); }

void AutoSave::caricaIntervallo()
{
    bool ok = false;
    const int m = settings_.leggiReg(kApp, kSalva, QStringLiteral("0")).toInt(&ok);
    minuti_ = ok && m > 0 ? m : 0;
    contatore_ = 0;
    if (minuti_ != 0)
        timer_.start();
    else
        timer_.stop();
}

void AutoSave::tick()
{
    if (minuti_ == 0)
        return;
    ++contatore_;
    if (contatore_ < long(minuti_) * 60)
        return;
    // The count starts again whether or not there was anything to save, so
    // an unchanged document at one moment does not end autosave for the run.
    contatore_ = 0;
    if (document_.fileCambiato() && attivo_)
        salvaAutomatico();
}

bool AutoSave::ensureTemp() { return QDir().mkpath(tempFolder()); }

bool AutoSave::save(const QString& path, int kind)
{
    try {
        document_.testo().SaveFile(path, kind);
        return true;
    } catch (const std::exception& e) {
        messages_.mostraMsg(QStringLiteral("Salvataggio automatico"),
                            QStringLiteral("Impossibile salvare il file %1: %2").arg(path, QString::fromStdString(e.what())),
                            0, 3);
        return false;
    }
}

bool AutoSave::salvaAutomatico()
{
    ensureTemp();
    if (isRealName(document_.nomeFile)) {
        // Over its own file, in the file's own kind: .rtf and .tnl hold
        // formats, so they go out as RTF; plain text only for the others.
        const QString file = document_.testo().FileName();
        const int kind = Document::kindOf(file) == 2 ? RichTextSurface::TextKind : RichTextSurface::RtfKind;
        return save(file, kind);
    }
    return save(QDir(tempFolder()).filePath(QStringLiteral("documento 1.rtf")), RichTextSurface::RtfKind);
}

QString AutoSave::nomeUscita(const QDateTime& now)
{
    const QLocale it = italian();
    return QStringLiteral("Doc ") + it.toString(now.date(), QStringLiteral("dd MMM yyyy")) + QStringLiteral(" - ")
           + it.toString(now.time(), QStringLiteral("HH.mm")) + QStringLiteral(".tnl");
}

QString AutoSave::salvaUscita(const QDateTime& now)
{
    ensureTemp();
    if (settings_.leggiReg(kApp, kSalva, QStringLiteral("1")) != QLatin1String("1"))
        return {};
    if (document_.testo().length() == 0)
        return {};
    const QString name = isRealName(document_.nomeFile) ? filePart(document_.nomeFile) : nomeUscita(now);
    const QString path = QDir(tempFolder()).filePath(name);
    return save(path, RichTextSurface::RtfKind) ? path : QString();
}

// --- the recovery listing ----------------------------------------------------

QString RecoveryListing::message() const
{
    if (!exists)
        return QStringLiteral("La cartella Temp non esiste");
    if (files.isEmpty())
        return QStringLiteral("La cartella Temp è vuota");
    return {};
}

QString RecoveryListing::foot() const
{
    return QStringLiteral("Totale ") + QString::number(files.size()) + QStringLiteral(" files. Spazio occupato ")
           + italian().toString(totalBytes) + QStringLiteral(" bytes");
}

RecoveryListing listRecovery(const QString& tempFolder)
{
    RecoveryListing listing;
    const QDir dir(tempFolder);
    listing.exists = dir.exists();
    if (!listing.exists)
        return listing;
    const QFileInfoList entries = dir.entryInfoList(QDir::Files | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    for (const QFileInfo& info : entries) {
        QDateTime created = info.birthTime();
        if (!created.isValid())
            created = info.metadataChangeTime();  // file systems without a birth time
        listing.files.append({info.fileName(), info.absoluteFilePath(), info.size(), info.lastModified(), created});
        listing.totalBytes += info.size();
    }
    return listing;
}

QString recoveryDate(const QDateTime& when)
{
    const QLocale it = italian();
    return it.toString(when.date(), QLocale::ShortFormat) + QLatin1Char(' ')
           + it.toString(when.time(), QStringLiteral("HH.mm.ss"));
}

QStringList deleteRecovery(const RecoveryListing& listing)
{
    QStringList left;
    for (const RecoveryFile& f : listing.files)
        if (!QFile::remove(f.path))
            left << f.path;
    return left;
}

bool eliminaRecupero(const RecoveryListing& listing, MessagePort& messages)
{
    if (listing.files.isEmpty())
        return false;
    const QString answer = messages.mostraMsg(
        QStringLiteral("Conferma eliminazione"),
        QStringLiteral("Sei sicuro di voler eliminare ") + QString::number(listing.files.size())
            + QStringLiteral(" files temporanei? I files saranno irrecuperabili. Continuare?"),
        2, 4);
    if (answer != QLatin1String("si") && answer != QLatin1String("ok"))
        return false;
    const QStringList left = deleteRecovery(listing);
    if (!left.isEmpty())
        messages.mostraMsg(QStringLiteral("Recupero documenti"),
                           QStringLiteral("Impossibile eliminare i file:\n") + left.join(QLatin1Char('\n')), 0, 3);
    return left.size() < listing.files.size();
}

}  // namespace tornelia
