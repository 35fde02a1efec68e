#include "filedialog/cd_logic.h"

#include "core/ports.h"
#include "core/settings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace tornelia {

namespace {

const QString kApp = QStringLiteral("Tornelia");
const QString kDialOp = QStringLiteral("DialOp");
const QString kDirOp = QStringLiteral("DirOp");
const QString kHiddenKey = QStringLiteral("3");
const QString kSystemKey = QStringLiteral("4");
const QString kViewKey = QStringLiteral("5");
const QString kFolderKey = QStringLiteral("5");
const QString kCartella = QStringLiteral("Cartella");
const QString kTextFilter = QStringLiteral("Tutti i file di testo (*.tnl, *.rtf, *.txt)");
const QString kAllFiles = QStringLiteral("Tutti i file (*.*)");

const QLocale& italian()
{
    static const QLocale it(QLocale::Italian, QLocale::Italy);
    return it;
}

// "##,##0": whole, half away from zero, Italian thousands.
QString whole(double v)
{
    return italian().toString(static_cast<qlonglong>(std::floor(v + 0.5)));
}

// "##,##0.##": up to two decimals, none shown when they are zero.
QString twoDecimals(double v)
{
    const double r = std::floor(v * 100 + 0.5) / 100;
    QString s = italian().toString(r, 'f', 2);
    const QChar point = italian().decimalPoint().at(0);
    while (s.endsWith(u'0'))
        s.chop(1);
    if (s.endsWith(point))
        s.chop(1);
    return s;
}

struct Group {
    IcoGroup group;
    std::initializer_list<const char*> extensions;
};

const Group kGroups[] = {
    {IcoGroup::Documento, {".rtf", ".tnl", ".txt", ".log", ".dat"}},
    {IcoGroup::Immagine,
     {".bmp", ".gif", ".jpg", ".jpeg", ".tif", ".tiff", ".ico", ".wmf", ".emf", ".cur", ".png", ".rle"}},
    {IcoGroup::Programma, {".exe", ".bat", ".com", ".pif"}},
    {IcoGroup::PaginaWeb, {".html", ".htm"}},
    {IcoGroup::FileSistema, {".dll", ".ocx", ".sys", ".cpl", ".vxd", ".drv"}},
    {IcoGroup::Impostazioni, {".ini", ".inf"}},
    {IcoGroup::Suono, {".mp3", ".mp2", ".mpeg", ".wav", ".mid"}},
    {IcoGroup::FoglioCalcolo, {".xla", ".xls"}},
    {IcoGroup::Archivio, {".zip", ".rar", ".cab"}},
};

QRegularExpression wildcard(const QString& pattern)
{
    return QRegularExpression(QRegularExpression::wildcardToRegularExpression(pattern),
                              QRegularExpression::CaseInsensitiveOption);
}

bool isSpecial(const QFileInfo& info)
{
    // Devices, sockets, pipes and links that lead nowhere.
    if (info.isSymLink() && !info.exists())
        return true;
    return info.exists() && !info.isFile() && !info.isDir();
}

CdEntry fileEntry(const QFileInfo& info)
{
    CdEntry e;
    e.name = info.fileName();
    if (info.isDir()) {
        e.folder = true;
        e.nameText = u'<' + e.name + u'>';
        e.typeText = QStringLiteral("Cartella di file");
        e.group = IcoGroup::Cartella;
        return e;
    }
    e.nameText = e.name;
    e.size = info.exists() ? info.size() : 0;
    e.sizeText = dime(e.size);
    const QString ext = extensionOf(e.name);
    e.typeText = ext.isEmpty() ? QStringLiteral("File") : QStringLiteral("File ") + ext.mid(1).toUpper();
    e.group = Ico(e.name);
    return e;
}

}  // namespace

const QString CdLogic::kBadChars = QStringLiteral("\\/:*?\"<>|");

QString cdTitle(CdMode mode)
{
    switch (mode) {
    case CdMode::Salva: return QStringLiteral("Seleziona il file da salvare");
    case CdMode::Immagine: return QStringLiteral("Seleziona il file immagine");
    case CdMode::Inserisci: return QStringLiteral("Seleziona il file da inserire");
    case CdMode::Apri: break;
    }
    return QStringLiteral("Seleziona il file da aprire");
}

std::vector<CdFilter> documentFilters()
{
    return {
        {kTextFilter, {"*.tnl", "*.rtf", "*.txt"}, ".tnl"},
        {QStringLiteral("File Tornelia (*.tnl)"), {"*.tnl"}, ".tnl"},
        {QStringLiteral("Rich Text File (*.rtf)"), {"*.rtf"}, ".rtf"},
        {QStringLiteral("File di testo (*.txt)"), {"*.txt"}, ".txt"},
        {kAllFiles, {"*.*"}, ".tnl"},
    };
}

std::vector<CdFilter> pictureFilters()
{
    return {
        {QStringLiteral("Tutti i file immagine"), {"*.bmp", "*.gif", "*.jpg", "*.jpeg", "*.png", "*.ico"}, ".bmp"},
        {QStringLiteral("Immagini bitmap (*.bmp)"), {"*.bmp"}, ".bmp"},
        {QStringLiteral("Immagini GIF (*.gif)"), {"*.gif"}, ".gif"},
        {QStringLiteral("Immagini JPEG (*.jpg;*.jpeg)"), {"*.jpg", "*.jpeg"}, ".jpg"},
        {QStringLiteral("Immagini PNG (*.png)"), {"*.png"}, ".png"},
        {QStringLiteral("File icona (*.ico)"), {"*.ico"}, ".ico"},
        {kAllFiles, {"*.*"}, ".bmp"},
    };
}

std::vector<CdFilter> pictureSaveFilters()
{
    // Only the kinds a picture can be written as.
    return {
        {QStringLiteral("Tutti i file immagine"), {"*.bmp", "*.gif", "*.jpg", "*.jpeg"}, ".bmp"},
        {QStringLiteral("Immagini bitmap (*.bmp)"), {"*.bmp"}, ".bmp"},
        {QStringLiteral("Immagini GIF (*.gif)"), {"*.gif"}, ".gif"},
        {QStringLiteral("Immagini JPEG (*.jpg;*.jpeg)"), {"*.jpg", "*.jpeg"}, ".jpg"},
    };
}

std::vector<CdFilter> filtersFromLabels(const QStringList& labels)
{
    static const QRegularExpression inBrackets(QStringLiteral("\\(([^)]*)\\)\\s*$"));
    static const QRegularExpression separators(QStringLiteral("[\\s,;]+"));
    std::vector<CdFilter> out;
    for (const QString& label : labels) {
        CdFilter f{label, {}, {}};
        const auto m = inBrackets.match(label);
        if (m.hasMatch())
            f.patterns = m.captured(1).split(separators, Qt::SkipEmptyParts);
        if (f.patterns.isEmpty())
            f.patterns = {QStringLiteral("*")};
        const QString first = f.patterns.first();
        if (first.startsWith(QLatin1String("*.")) && first != QLatin1String("*.*") && !first.contains(u'?'))
            f.defaultExt = first.mid(1);
        out.push_back(f);
    }
    if (out.empty())
        out.push_back({kAllFiles, {"*.*"}, {}});
    return out;
}

CdRequest requestFor(FileChoice choice, const SettingsStore& settings, const QString& suggestedName)
{
    CdRequest r;
    r.suggestedName = suggestedName;
    auto pick = [&](const QString& key, const QString& fallback) {
        const QString wanted = settings.leggiReg(kApp, QStringLiteral("DefaultExt"), key, fallback);
        const auto it = std::find_if(r.filters.begin(), r.filters.end(),
                                     [&](const CdFilter& f) { return f.label == wanted; });
        r.filterIndex = it == r.filters.end() ? 0 : int(it - r.filters.begin());
    };
    switch (choice) {
    case FileChoice::OpenDocument:
        r.mode = CdMode::Apri;
        r.filters = documentFilters();
        pick(QStringLiteral("Apri"), kTextFilter);
        break;
    case FileChoice::SaveDocument:
        r.mode = CdMode::Salva;
        r.filters = documentFilters();
        pick(QStringLiteral("Salva"), kTextFilter);
        break;
    case FileChoice::OpenPicture:
        r.mode = CdMode::Immagine;
        r.filters = pictureFilters();
        break;
    case FileChoice::SavePicture:
        r.mode = CdMode::Salva;
        r.filters = pictureSaveFilters();
        break;
    case FileChoice::InsertFile:
        r.mode = CdMode::Inserisci;
        r.filters = documentFilters();
        r.filterIndex = int(r.filters.size()) - 1;
        break;
    }
    return r;
}

IcoGroup Ico(const QString& fileName)
{
    const QString ext = extensionOf(fileName).toLower();
    if (ext.isEmpty())
        return IcoGroup::Altro;
    for (const Group& g : kGroups)
        for (const char* e : g.extensions)
            if (ext == QLatin1String(e))
                return g.group;
    return IcoGroup::Altro;
}

QString dime(qint64 size)
{
    if (size == 0)
        return QStringLiteral("0 Kb");
    if (size < 1024)
        return QStringLiteral("1 Kb");
    return whole(double(size) / 1024) + QStringLiteral(" Kb");
}

QString fsyze(qint64 size)
{
    constexpr double kb = 1024;
    constexpr double mb = kb * 1024;
    constexpr double gb = mb * 1024;
    if (size < 1024)
        return QString::number(size) + QStringLiteral(" Bytes");
    if (size <= mb)
        return twoDecimals(double(size) / kb) + QStringLiteral(" Kb");
    if (size <= gb)
        return twoDecimals(double(size) / mb) + QStringLiteral(" Mb");
    return twoDecimals(double(size) / gb) + QStringLiteral(" Gb");
}

QString extensionOf(const QString& fileName)
{
    const int dot = int(fileName.lastIndexOf(u'.'));
    // A leading dot hides a file; it does not start an extension.
    if (dot <= 0 || dot == fileName.size() - 1)
        return {};
    return fileName.mid(dot);
}

bool canPreview(const QString& fileName)
{
    static const QStringList kinds{"bmp", "gif", "jpg", "jpeg", "png", "ico", "wmf", "emf", "cur"};
    const QString ext = extensionOf(fileName).mid(1).toLower();
    if (!kinds.contains(ext))
        return false;
    const QByteArray format = ext == QLatin1String("jpeg") ? QByteArray("jpg") : ext.toLatin1();
    return QImageReader::supportedImageFormats().contains(format)
           || (format == "jpg" && QImageReader::supportedImageFormats().contains("jpeg"));
}

bool entryBefore(const CdEntry& a, const CdEntry& b)
{
    if (a.parent != b.parent)
        return a.parent;
    if (a.folder != b.folder)
        return a.folder;
    const int c = a.name.compare(b.name, Qt::CaseInsensitive);
    return c != 0 ? c < 0 : a.name < b.name;
}

// --- reading a folder ----------------------------------------------------------

FolderReader::FolderReader(const QString& folder, const QStringList& patterns, bool hidden, bool system,
                           bool filesToo)
    : hidden_(hidden), system_(system), filesToo_(filesToo), folder_(folder)
{
    for (const QString& p : patterns) {
        // "*.*" is every file, also those without a point in the name.
        if (p == QLatin1String("*.*") || p == QLatin1String("*"))
            everyFile_ = true;
        else
            patterns_.push_back(wildcard(p));
    }
    QDir dir(folder);
    parentDue_ = !dir.isRoot();
    it_ = std::make_unique<QDirIterator>(folder, QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden
                                                     | QDir::System);
}

bool FolderReader::accepts(const QFileInfo& info) const
{
    const QString name = info.fileName();
    if (!hidden_ && name.startsWith(u'.'))
        return false;
    const bool special = isSpecial(info);
    if (special && !system_)
        return false;
    if (info.isDir() && !special)
        return true;
    if (!filesToo_)
        return false;
    if (everyFile_)
        return true;
    return std::any_of(patterns_.begin(), patterns_.end(),
                       [&](const QRegularExpression& re) { return re.match(name).hasMatch(); });
}

bool FolderReader::next(std::vector<CdEntry>& out, int max)
{
    if (done_)
        return false;
    if (parentDue_) {
        parentDue_ = false;
        CdEntry up;
        up.name = QStringLiteral("..");
        up.nameText = QStringLiteral("<..>");
        up.typeText = QStringLiteral("Cartella di file");
        up.folder = up.parent = true;
        up.group = IcoGroup::Cartella;
        out.push_back(up);
        --max;
    }
    for (int n = 0; n < max; ++n) {
        if (!it_->hasNext()) {
            done_ = true;
            return false;
        }
        it_->next();
        const QFileInfo info = it_->fileInfo();
        if (accepts(info))
            out.push_back(fileEntry(info));
    }
    if (!it_->hasNext())
        done_ = true;
    return !done_;
}

std::vector<CdEntry> readFolder(const QString& folder, const QStringList& patterns, bool hidden, bool system,
                                bool filesToo)
{
    FolderReader reader(folder, patterns, hidden, system, filesToo);
    std::vector<CdEntry> out;
    while (reader.next(out, 4096)) {
    }
    std::sort(out.begin(), out.end(), entryBefore);
    return out;
}

// --- the dialog's rules ----------------------------------------------------------

CdLogic::CdLogic(CdRequest request, SettingsStore& settings, MessagePort& messages)
    : request_(std::move(request)), settings_(settings), messages_(messages)
{
    if (request_.filters.empty())
        request_.filters = documentFilters();
    filterIndex_ = std::clamp(request_.filterIndex, 0, int(filterLabels().size()) - 1);
    if (request_.folderMode)
        filterIndex_ = int(request_.filters.size());

    nascosti_ = settings_.leggiReg(kApp, kDialOp, kHiddenKey, QStringLiteral("F")) == QLatin1String("T");
    sistema_ = settings_.leggiReg(kApp, kDialOp, kSystemKey, QStringLiteral("F")) == QLatin1String("T");
    dettagli_ = settings_.leggiReg(kApp, kDialOp, kViewKey, QStringLiteral("T")) == QLatin1String("T");

    // A suggested name with a folder starts there; otherwise the last folder.
    QString start;
    const QFileInfo suggested(request_.suggestedName);
    if (!request_.suggestedName.isEmpty() && request_.suggestedName.contains(u'/') && suggested.absoluteDir().exists())
        start = suggested.absolutePath();
    if (start.isEmpty())
        start = settings_.leggiReg(kApp, kDirOp, kFolderKey);
    if (start.isEmpty() || !setFolder(start))
        setFolder(QDir::homePath());
}

QString CdLogic::title() const
{
    return request_.title.isEmpty() ? cdTitle(request_.mode) : request_.title;
}

QString CdLogic::actionText() const
{
    return request_.mode == CdMode::Salva ? QStringLiteral("Salva") : QStringLiteral("Apri");
}

QStringList CdLogic::filterLabels() const
{
    QStringList labels;
    for (const CdFilter& f : request_.filters)
        labels << f.label;
    if (request_.folderMode)
        labels << kCartella;
    return labels;
}

void CdLogic::setFilterIndex(int index)
{
    filterIndex_ = std::clamp(index, 0, int(filterLabels().size()) - 1);
}

QStringList CdLogic::patterns() const
{
    if (filterIndex_ >= int(request_.filters.size()))
        return {};  // "Cartella": folders alone
    return request_.filters[size_t(filterIndex_)].patterns;
}

QString CdLogic::defaultExt() const
{
    if (filterIndex_ >= int(request_.filters.size()))
        return {};
    return request_.filters[size_t(filterIndex_)].defaultExt;
}

bool CdLogic::setFolder(const QString& path)
{
    const QFileInfo info(path);
    if (path.isEmpty() || !info.isDir() || !info.isReadable())
        return false;
    folder_ = QDir::cleanPath(info.absoluteFilePath());
    return true;
}

bool CdLogic::up()
{
    QDir dir(folder_);
    return !dir.isRoot() && dir.cdUp() && setFolder(dir.path());
}

void CdLogic::writeFlag(const QString& key, bool on)
{
    settings_.scriviReg(kApp, kDialOp, key, on ? QStringLiteral("T") : QStringLiteral("F"));
}

void CdLogic::setFileNascosti(bool on)
{
    nascosti_ = on;
    writeFlag(kHiddenKey, on);
}

void CdLogic::setFileSistema(bool on)
{
    sistema_ = on;
    writeFlag(kSystemKey, on);
}

void CdLogic::setDettagli(bool on)
{
    dettagli_ = on;
    writeFlag(kViewKey, on);
}

std::unique_ptr<FolderReader> CdLogic::reader() const
{
    const bool folders = filterIndex_ >= int(request_.filters.size());
    return std::make_unique<FolderReader>(folder_, patterns(), nascosti_, sistema_, !folders);
}

std::vector<CdEntry> CdLogic::list() const
{
    const bool folders = filterIndex_ >= int(request_.filters.size());
    return readFolder(folder_, patterns(), nascosti_, sistema_, !folders);
}

void CdLogic::salvaCartella()
{
    settings_.scriviReg(kApp, kDirOp, kFolderKey, folder_);
}

std::optional<QString> CdLogic::conferma(const QString& typed)
{
    const QString name = typed.trimmed();
    if (name.isEmpty() && !request_.folderMode) {
        messages_.mostraMsg(QStringLiteral("Nome file"), QStringLiteral("Inserire un nome per il file"), 0, 2);
        return std::nullopt;
    }
    if (name.isEmpty())
        return confirmFolder(folder_);

    // A slash may separate folders, when they exist; the name itself may
    // hold none of the characters that other systems refuse.
    const QString path = QDir::isAbsolutePath(name) ? QDir::cleanPath(name) : QDir::cleanPath(folder_ + u'/' + name);
    const QFileInfo info(path);
    if (info.isDir()) {
        if (request_.folderMode && filterIndex_ >= int(request_.filters.size()))
            return confirmFolder(path);
        setFolder(path);
        return std::nullopt;
    }
    const QString fileName = info.fileName();
    const bool badName = std::any_of(fileName.begin(), fileName.end(),
                                     [](QChar c) { return kBadChars.contains(c); });
    if (badName || fileName.isEmpty() || !info.absoluteDir().exists()) {
        messages_.mostraMsg(QStringLiteral("Nome file"),
                            QStringLiteral("Il nome del file non può contenere i caratteri \\ / : * ? \"\" < > |"), 0,
                            2);
        return std::nullopt;
    }
    if (request_.mode == CdMode::Salva)
        return confirmSave(path);
    if (request_.folderMode && filterIndex_ >= int(request_.filters.size()))
        return confirmFolder(path);
    return confirmOpen(path);
}

std::optional<QString> CdLogic::confirmOpen(const QString& path)
{
    if (QFileInfo(path).isFile())
        return path;
    // A bare name finds the file under the filter's extensions, in their order.
    if (extensionOf(QFileInfo(path).fileName()).isEmpty()) {
        for (const QString& p : patterns()) {
            if (!p.startsWith(QLatin1String("*.")) || p == QLatin1String("*.*"))
                continue;
            const QString candidate = path + p.mid(1);
            if (QFileInfo(candidate).isFile())
                return candidate;
        }
    }
    // Only a document can start empty; a picture or a file to insert must be there.
    if (request_.mode != CdMode::Apri) {
        messages_.mostraMsg(QStringLiteral("File inesistente"), QStringLiteral("Il file selezionato non esiste!"), 0, 2);
        return std::nullopt;
    }
    const QString target = extensionOf(QFileInfo(path).fileName()).isEmpty() ? path + defaultExt() : path;
    if (messages_.mostraMsg(QStringLiteral("File inesistente"), QStringLiteral("Il file non esiste, vuoi crearlo?"),
                            2, 4)
        != QLatin1String("si"))
        return std::nullopt;
    QFile file(target);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
        messages_.mostraMsg(QStringLiteral("File inesistente"),
                            QStringLiteral("Impossibile creare il file ") + target + QStringLiteral(": ")
                                + file.errorString(),
                            0, 3);
        return std::nullopt;
    }
    return target;
}

std::optional<QString> CdLogic::confirmSave(const QString& typedPath)
{
    QString path = typedPath;
    if (extensionOf(QFileInfo(path).fileName()).isEmpty())
        path += defaultExt();
    if (QFileInfo(path).isDir()) {
        setFolder(path);
        return std::nullopt;
    }
    if (QFileInfo::exists(path)
        && messages_.mostraMsg(QStringLiteral("Salva"),
                               QStringLiteral("Il file ") + QFileInfo(path).fileName()
                                   + QStringLiteral(" esiste già. Vuoi sostituirlo?"),
                               2, 4)
               != QLatin1String("si"))
        return std::nullopt;
    return path;
}

std::optional<QString> CdLogic::confirmFolder(const QString& path)
{
    setFolder(path);
    salvaCartella();
    return folder_;
}

bool CdLogic::creaCartella(const QString& typed)
{
    const QString name = typed.trimmed();
    const bool bad = name.isEmpty() || name == QLatin1String(".") || name == QLatin1String("..")
                     || std::any_of(name.begin(), name.end(), [](QChar c) { return kBadChars.contains(c); });
    if (bad) {
        messages_.mostraMsg(QStringLiteral("Crea cartella"),
                            QStringLiteral("Il nome della cartella non può essere vuoto né contenere i caratteri "
                                           "\\ / : * ? \"\" < > |"),
                            0, 2);
        return false;
    }
    const QString path = folder_ + u'/' + name;
    if (QFileInfo::exists(path)) {
        messages_.mostraMsg(QStringLiteral("Crea cartella"),
                            QStringLiteral("Esiste già un elemento chiamato ") + name + QStringLiteral("."), 0, 2);
        return false;
    }
    if (!QDir(folder_).mkdir(name)) {
        messages_.mostraMsg(QStringLiteral("Crea cartella"),
                            QStringLiteral("Impossibile creare la cartella ") + name
                                + QStringLiteral(": accesso negato o disco non scrivibile."),
                            0, 3);
        return false;
    }
    return true;
}

}  // namespace tornelia
