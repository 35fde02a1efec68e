#include "core/document.h"

#include "core/codepage.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <exception>

namespace tornelia {

namespace {

// Blocks this size keep the bar moving and the window painting during a load.
constexpr qint64 kBlockSize = 10240;

enum Kind { KindTnl = 0, KindRtf = 1, KindText = 2 };

const QString kCaptionPrefix = QStringLiteral("Tornelia - ");
const QString kNoSavedDocument = QStringLiteral("Nessun documento salvato");
const QString kOpenDocument = QStringLiteral("Documento aperto: ");
const QString kAlreadyOpen = QStringLiteral("Il file è gia aperto!");
constexpr int kDocumentPanel = 1;

bool isRealName(const QString& name)
{
    return !name.isEmpty() && name != kNoDocument;
}

// Counts CR LF pairs in one block. A pair cut by the block border is counted
// in the block that holds the LF: crAtEnd carries the CR over.
long countPairs(const QByteArray& block, bool& crAtEnd)
{
    long lines = (crAtEnd && block.startsWith('\n')) ? 1 : 0;
    crAtEnd = false;
    for (qsizetype at = block.indexOf("\r\n"); at >= 0; at = block.indexOf("\r\n", at + 2))
        ++lines;
    crAtEnd = block.endsWith('\r');
    return lines;
}

// Reads the file block by block: full blocks while they fit, then the last,
// shorter one apart. A file of exactly one block size is one block.
template <typename OnBlock>
void readBlocks(QFile& file, OnBlock onBlock)
{
    const qint64 length = file.size();
    for (qint64 done = 0; done < length;) {
        const QByteArray block = file.read(std::min(kBlockSize, length - done));
        if (block.isEmpty())
            break;  // the file shrank under us: what was read is the document
        done += block.size();
        onBlock(block);
    }
}

}  // namespace

Document::Document(RichTextSurface& testo, SettingsStore& settings, MessagePort& messages,
                   DialogPort& dialogs, ShellPort& shell, FramePort& frame)
    : testo_(testo), settings_(settings), messages_(messages), dialogs_(dialogs), shell_(shell),
      frame_(frame)
{
    segnaSalvato();
}

QString Document::mostraMsg(const QString& title, const QString& text, int buttons, int icon)
{
    rispostaMsg = messages_.mostraMsg(title, text, buttons, icon);
    return rispostaMsg;
}

int Document::kindOf(const QString& path)
{
    const QString tail = path.right(3).toUpper();
    if (tail == QLatin1String("TNL"))
        return KindTnl;
    if (tail == QLatin1String("RTF"))
        return KindRtf;
    return KindText;
}

QString Document::captionFor(const QString& path)
{
    return kCaptionPrefix + QFileInfo(path).fileName();
}

bool Document::fileCambiato() const
{
    // The length first, as it costs nothing; then the whole document, so
    // bold given to a word or a word replaced by one as long is not lost at
    // the close without a question.
    if (testo_.changeCount() == modificheSalvate)
        return false;
    if (static_cast<float>(testo_.length()) != lenSalvata)
        return true;
    return !rtfTenuto || testo_.TextRTF() != rtfSalvato;
}

void Document::segnaSalvato()
{
    // Writing the RTF of a document of millions of characters takes most
    // of a second, at every open and save: beyond this size the change
    // count alone tells.
    constexpr long kRtfKeptUpTo = 200000;
    lenSalvata = static_cast<float>(testo_.length());
    modificheSalvate = testo_.changeCount();
    rtfTenuto = testo_.length() <= kRtfKeptUpTo;
    rtfSalvato = rtfTenuto ? testo_.TextRTF() : QString();
}

bool Document::fileGiaAperto(const QString& fileName) const
{
    // A window whose title holds the name while "Tornelia - " plus that title
    // does not: the second holds whenever the first does, so the walk never
    // finds one and a file may be open in two sessions.
    const QStringList titles = windowTitles ? windowTitles() : QStringList{};
    for (const QString& title : titles) {
        if (title.contains(fileName, Qt::CaseInsensitive)
            && !(kCaptionPrefix + title).contains(fileName, Qt::CaseInsensitive))
            return true;
    }
    return false;
}

bool Document::readOnlyTest(const QString& path, bool opening)
{
    // Our stand-in for the read-only attribute: a file we cannot write, or
    // one whose owner has no write bit. The second also holds for root, who
    // may write anything, just as the attribute held for everybody.
    const QFileInfo info(path);
    if (!info.exists() || (info.isWritable() && info.permissions().testFlag(QFileDevice::WriteOwner)))
        return false;
    const QString title = QStringLiteral("File di sola lettura");
    if (opening) {
        // Only a warning: the load goes on and the document is not marked.
        mostraMsg(title,
                  QStringLiteral("Attenzione! Il file che sia apre è di sola lettura e quindi non "
                                 "sarà possibile salvare le modifiche effettuate."),
                  0, 0);
        return false;
    }
    mostraMsg(title, QStringLiteral("File di sola lettura! Per salvare scegli un altro nome."), 0, 0);
    return true;
}

// --- new -------------------------------------------------------------------

void Document::applyDefaultFormat()
{
    const QString name = settings_.leggiReg({}, QStringLiteral("Font"), QStringLiteral("1"),
                                            QStringLiteral("Tahoma"));
    bool ok = false;
    float size = settings_.leggiReg({}, QStringLiteral("Font"), QStringLiteral("2"),
                                    QStringLiteral("10"))
                     .toFloat(&ok);
    if (!ok || size <= 0)
        size = 10;  // a size nobody can use: the table's default
    testo_.setDefaultFormat(name, size);
    testo_.setSelFontName(name);
    testo_.setSelFontSize(size);
    testo_.setSelBold(false);
    testo_.setSelItalic(false);
    testo_.setSelUnderline(false);
    testo_.setSelStrikeThru(false);
    testo_.setSelColor(0);
}

bool Document::Novo(int mostraAvvio)
{
    if (fileCambiato()) {
        mostraMsg(QStringLiteral("Nuovo"),
                  QStringLiteral("Il file è stato cambiato. Vuoi salvare le modifiche?"), 3, 0);
        if (rispostaMsg == QLatin1String("si")) {
            Salvare({});
            // A save that failed or was cancelled has told the user already;
            // clearing now would throw the work away, so nothing more happens.
            if (fileCambiato())
                return false;
            // The cleared text is a new document: keeping the saved file's
            // name would let a plain save write the empty text over it.
            testo_.setText({});
            frame_.setStatusPanel(kDocumentPanel, kNoSavedDocument);
            nomeFile = kNoDocument;
            frame_.setCaption(kCaptionPrefix + kNoDocument);
            segnaSalvato();
        } else if (rispostaMsg == QLatin1String("no")) {
            testo_.setText({});
            frame_.setStatusPanel(kDocumentPanel, kNoSavedDocument);
            nomeFile = kNoDocument;
            frame_.setCaption(kCaptionPrefix + kNoDocument);
            segnaSalvato();
        } else {
            return false;
        }
    } else {
        // The saved length stays: after a clean non-empty document the new
        // one counts as changed until it is saved.
        testo_.setText({});
        nomeFile = kNoDocument;
        frame_.setCaption(kCaptionPrefix + kNoDocument);
        frame_.setStatusPanel(kDocumentPanel, kNoSavedDocument);
    }
    applyDefaultFormat();
    if (onUndoClear)
        onUndoClear();
    if (mostraAvvio == 1 && onShowStartPanel)
        onShowStartPanel();
    return true;
}

// --- open ------------------------------------------------------------------

void Document::chooseFile(int mode)
{
    if (onFileDialog) {
        onFileDialog(mode);
        return;
    }
    if (mode == 1) {
        if (const auto path = dialogs_.chooseFile(FileChoice::OpenDocument))
            Aprii(*path);
    } else {
        const QString suggested = isRealName(nomeFile) ? nomeFile : kNoDocument + QStringLiteral(".tnl");
        if (const auto path = dialogs_.chooseFile(FileChoice::SaveDocument, suggested))
            Sv(*path);
    }
}

void Document::setUpBar(const QString& path)
{
    const long lines = lineCount(path);
    // The bar's scale has 16 bits.
    scala_ = std::min<long>(lines + lines / 10, 32767);
    if (scala_ <= 0)
        scala_ = 1;
    barPos_ = 0;
}

int Document::barPercent() const
{
    // The bar moves one step a block against a scale in lines, so it can run
    // past its end: it stops full.
    return static_cast<int>(std::clamp<long>(barPos_ * 100 / scala_, 0, 100));
}

long Document::lineCount(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    long lines = 0;
    bool crAtEnd = false;
    readBlocks(file, [&](const QByteArray& block) { lines += countPairs(block, crAtEnd); });
    return lines;
}

long Document::lineCar(const QString& path, bool comeRTF)
{
    return lineCar(path, comeRTF ? LoadAs::Rtf : LoadAs::Text);
}

long Document::lineCar(const QString& path, LoadAs as)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw SurfaceError("cannot read " + path.toStdString() + ": " + file.errorString().toStdString());

    const QString loading = QStringLiteral("Caricamento in memoria...");
    frame_.showProgress(loading, 0);
    // Bytes, not text, are gathered: decoding the whole at the end keeps a
    // character cut by a block border whole.
    QByteArray bytes;
    bytes.reserve(file.size());
    long lines = 0;
    bool crAtEnd = false;
    readBlocks(file, [&](const QByteArray& block) {
        bytes += block;
        lines += countPairs(block, crAtEnd);
        ++barPos_;
        frame_.showProgress(loading, barPercent());
        frame_.processEvents();
    });
    file.close();

    frame_.showProgress(QStringLiteral("Conversione..."), barPercent());
    switch (as) {
    case LoadAs::Rtf:
        // The RTF reader decodes the code pages itself.
        testo_.setTextRtfBytes(bytes);
        break;
    case LoadAs::Text:
        testo_.setText(decodePlainText(bytes));
        break;
    case LoadAs::Contents:
        testo_.setContents(bytes);
        break;
    }
    bytes.clear();

    frame_.showProgress(QStringLiteral("Completato"), 100);
    frame_.hideProgress();
    return lines;
}

void Document::writeFileName(const QString& path, bool load)
{
    // Writing the name of a TNL or RTF file loads it by content: the raw RTF
    // the load put in as text becomes the formatted document. A text file
    // only records its name, so a .txt holding RTF keeps showing the code.
    if (load && kindOf(path) != KindText) {
        try {
            testo_.setFileName(path);
        } catch (const SurfaceError& e) {
            // What the load put in stays, and the person is told the rest is missing.
            mostraMsg(QStringLiteral("Apri file"),
                      QStringLiteral("Errore durante la lettura del file!\n") + QString::fromUtf8(e.what()), 0, 3);
        }
    } else {
        testo_.recordFileName(path);
    }
}

void Document::showOpenedName(bool fullPath)
{
    nomeFile = testo_.FileName();
    if (!nomeFile.isEmpty()) {
        frame_.setCaption(fullPath ? kCaptionPrefix + nomeFile : captionFor(nomeFile));
        frame_.setStatusPanel(kDocumentPanel, kOpenDocument + nomeFile);
    } else {
        frame_.setCaption(kCaptionPrefix + kNoDocument);
        frame_.setStatusPanel(kDocumentPanel, kNoSavedDocument);
    }
}

void Document::Aprii(const QString& chosen)
{
    // A copy: Novo changes nomeFile, which a caller may have passed.
    const QString path = chosen;
    inApertura = true;
    // A cancel at "save the changes?" keeps the document and opens nothing.
    if (!Novo(0))
        return;

    if (path.isEmpty()) {
        // The chooser calls Aprii back with its file, so the empty open ends
        // first; a cancel leaves the empty, nameless document.
        testo_.recordFileName({});
        showOpenedName(false);
        segnaSalvato();
        if (onConalinee)
            onConalinee();
        frame_.processEvents();
        segnaSalvato();
        chooseFile(1);
        return;
    }

    const QFileInfo info(path);
    if (!info.exists()) {
        mostraMsg(QStringLiteral("Apri file"), QStringLiteral("File inesistente!"), 0, 3);
        return;
    }
    if (!readable(path, QStringLiteral("Apri file")))
        return;
    const qint64 size = info.size();
    frame_.processEvents();

    bool loaded = false;
    if (size > 0) {
        readOnlyTest(path, true);
        // A TNL or RTF file becomes what writing its name would load (its
        // contents decide between RTF and text), read and parsed once: a
        // second parse of a large file doubled the time of every open.
        try {
            setUpBar(path);
            lineCar(path, kindOf(path) == KindText ? LoadAs::Text : LoadAs::Contents);
            loaded = true;
            // A file opens at its beginning, whatever the load left the caret at.
            testo_.setSelStart(0);
        } catch (const SurfaceError&) {
            // Half a file is not the file: the person is told, and it does
            // not go on the recent list.
            testo_.setText({});
            segnaSalvato();
            mostraMsg(QStringLiteral("Apri file"), QStringLiteral("Errore durante la lettura del file!"), 0, 3);
            return;
        }
    }
    if (loaded)
        testo_.recordFileName(path);
    else
        writeFileName(path, size > 0);
    showOpenedName(false);

    segnaSalvato();
    if (onUndoOpened)
        onUndoOpened();
    if (onRecentAdd)
        onRecentAdd(path);
    if (onConalinee)
        onConalinee();
    frame_.processEvents();
    segnaSalvato();
}

bool Document::readable(const QString& path, const QString& title)
{
    const QFileInfo info(path);
    QString why;
    if (info.isDir())
        why = QStringLiteral("Il percorso scelto è una cartella, non un file!");
    else if (!info.exists())
        return true;  // said by the caller, each in its own words
    else if (!info.isFile())
        why = QStringLiteral("Il percorso scelto non è un documento!");
    else {
        QFile probe(path);
        if (!probe.open(QIODevice::ReadOnly))
            why = QStringLiteral("Impossibile leggere il file: accesso negato!");
    }
    if (why.isEmpty())
        return true;
    mostraMsg(title, why, 0, 3);
    return false;
}

void Document::RecENt(const QString& path)
{
    // A copy: Novo changes nomeFile, which a caller may have passed.
    const QString file = path;
    inApertura = true;
    if (!Novo(0))
        return;
    if (!readable(file, QStringLiteral("Apri file recente")))
        return;
    try {
        if (!QFileInfo(file).isFile()) {
            mostraMsg(QStringLiteral("Apri file"), QStringLiteral("Il file selezionato non esiste!"), 0, 0);
        } else if (fileGiaAperto(QFileInfo(file).fileName())) {
            mostraMsg(QStringLiteral("Apri file"), kAlreadyOpen, 0, 0);
        } else {
            readOnlyTest(file, true);
            setUpBar(file);
            lineCar(file, kindOf(file) == KindText ? LoadAs::Text : LoadAs::Contents);
            testo_.setSelStart(0);
            testo_.recordFileName(file);
            showOpenedName(true);
            segnaSalvato();
            if (onUndoOpened)
                onUndoOpened();
            if (onRecentAdd)
                onRecentAdd(file);
        }
    } catch (const SurfaceError&) {
        mostraMsg(QStringLiteral("Apri file recente"),
                  QStringLiteral("Errore durante l'apertura del file!"), 0, 0);
    }
    if (onConalinee)
        onConalinee();
}

// --- save ------------------------------------------------------------------

bool Document::writeFile(const QString& path, int kind)
{
    // SaveFile writes a temporary file and renames it over the target, so on
    // failure the old file is whole; the user hears why.
    try {
        testo_.SaveFile(path, kind);
        return true;
    } catch (const SurfaceError& e) {
        mostraMsg(QStringLiteral("Salva file"),
                  QStringLiteral("Impossibile salvare il file ") + path + QStringLiteral(": ")
                      + QString::fromUtf8(e.what()),
                  0, 3);
        return false;
    }
}

bool Document::saveChecked(const QString& path)
{
    if (fileGiaAperto(QFileInfo(path).fileName())) {
        mostraMsg(QStringLiteral("Apri file"), kAlreadyOpen, 0, 0);
        return false;
    }
    if (readOnlyTest(path, false))
        return false;
    const int kind = kindOf(path) == KindText ? RichTextSurface::TextKind : RichTextSurface::RtfKind;
    if (!writeFile(path, kind))
        return false;
    frame_.processEvents();
    segnaSalvato();
    return true;
}

void Document::Salvare(const QString& path)
{
    if (!path.isEmpty()) {
        saveChecked(path);
        return;
    }
    if (isRealName(nomeFile))
        saveChecked(testo_.FileName());
    else
        SalvareN();
    frame_.setStatusPanel(kDocumentPanel, kOpenDocument + testo_.FileName());
}

void Document::SalvareN()
{
    chooseFile(2);
}

void Document::Sv(const QString& path)
{
    if (fileGiaAperto(QFileInfo(path).fileName())) {
        mostraMsg(QStringLiteral("Apri file"), kAlreadyOpen, 0, 0);
        return;
    }
    const int kind = kindOf(path) == KindText ? RichTextSurface::TextKind : RichTextSurface::RtfKind;
    if (!writeFile(path, kind))
        return;
    // The document already is what was written: record the name, no reload.
    testo_.recordFileName(path);
    nomeFile = path;
    frame_.setCaption(captionFor(path));
    segnaSalvato();
    if (onRecentAdd)
        onRecentAdd(path);
}

void Document::nnm()
{
    if (!isRealName(nomeFile)) {
        SalvareN();
        return;
    }
    // Only an .rtf goes out as RTF here; a .tnl goes out as plain text.
    const int kind = kindOf(nomeFile) == KindRtf ? RichTextSurface::RtfKind : RichTextSurface::TextKind;
    if (writeFile(nomeFile, kind))
        segnaSalvato();
}

// --- file commands ---------------------------------------------------------

void Document::DelFile()
{
    const QString title = QStringLiteral("Elimina file");
    if (!isRealName(nomeFile) || !QFileInfo::exists(nomeFile)) {
        mostraMsg(title, QStringLiteral("Il documento non è stato salvato o il file non esiste."), 0, 1);
        return;
    }
    mostraMsg(title, QStringLiteral("Sei sicuro di volere eliminare il file ") + nomeFile + QStringLiteral("?"),
              2, 0);
    if (rispostaMsg != QLatin1String("si"))
        return;
    testo_.setText({});
    testo_.recordFileName({});
    QFile::remove(nomeFile);
    nomeFile = kNoDocument;
    frame_.setCaption(kCaptionPrefix + kNoDocument);
}

void Document::pROP()
{
    if (!nomeFile.isEmpty() && QFileInfo::exists(nomeFile))
        shell_.showProperties(nomeFile);
    else
        mostraMsg(QStringLiteral("Proprietà file"), QStringLiteral("Devi prima aprire un file!"), 0, 0);
}

void Document::nuovaSessione()
{
    shell_.startDetached(QCoreApplication::applicationFilePath(), {});
}

}  // namespace tornelia
