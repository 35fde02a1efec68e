#pragma once

// The rules of the program's own open and save dialog, apart from its
// window: the modes and their filters, the file list's rows and texts, the
// checks on the typed name, the view options and the last folder kept in the
// settings. The window binds its controls to CdLogic and decides nothing.

#include "core/ports.h"

#include <QDirIterator>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

namespace tornelia {

class MessagePort;
class SettingsStore;

// Modes of Apriii; each sets the title.
enum class CdMode { Apri = 1, Salva = 2, Immagine = 3, Inserisci = 4 };

QString cdTitle(CdMode mode);

struct CdFilter {
    QString label;
    QStringList patterns;  // "*.rtf"; "*.*" takes every file
    QString defaultExt;    // what a bare name gets under this filter, ".rtf"
};

std::vector<CdFilter> documentFilters();
std::vector<CdFilter> pictureFilters();
std::vector<CdFilter> pictureSaveFilters();
// A plain chooser's filters, written "Label (*.a *.b)", as the logic's own.
std::vector<CdFilter> filtersFromLabels(const QStringList& labels);

// What the caller asks for: a mode, the folder mode on top of it, the
// filters and the one shown first, a suggested name.
struct CdRequest {
    CdMode mode = CdMode::Apri;
    bool folderMode = false;
    QString title;  // empty: the mode's own
    std::vector<CdFilter> filters;
    int filterIndex = 0;
    QString suggestedName;
};

// The requests of the program's own choosers; the first filter comes from
// the options ("DefaultExt") for documents.
CdRequest requestFor(FileChoice choice, const SettingsStore& settings, const QString& suggestedName = {});

// Groups of extensions with one icon each.
enum class IcoGroup {
    Cartella,
    Documento,
    Immagine,
    Programma,
    PaginaWeb,
    FileSistema,
    Impostazioni,
    Suono,
    FoglioCalcolo,
    Archivio,
    Altro,
};

IcoGroup Ico(const QString& fileName);
// The list's size column.
QString dime(qint64 size);
// The details pane's size.
QString fsyze(qint64 size);
// ".rtf" for "lettera.rtf"; empty for "LEGGIMI" and for ".bashrc".
QString extensionOf(const QString& fileName);
// Pictures the preview shows.
bool canPreview(const QString& fileName);

struct CdEntry {
    QString name;      // as on disk
    QString nameText;  // "<..>", "<Lettere>", "lettera.rtf"
    QString sizeText;  // empty for folders
    QString typeText;  // "Cartella di file", "File RTF"
    qint64 size = 0;
    bool folder = false;
    bool parent = false;
    IcoGroup group = IcoGroup::Altro;
};

// Folders first, the parent on top, then by name without regard to case.
bool entryBefore(const CdEntry& a, const CdEntry& b);

// Reads one folder a slice at a time, so a window can fill its list from
// the event loop and stay responsive in a folder of many thousand files.
class FolderReader {
public:
    FolderReader(const QString& folder, const QStringList& patterns, bool hidden, bool system,
                 bool filesToo = true);
    // Appends up to max entries; false once the folder has been read whole.
    bool next(std::vector<CdEntry>& out, int max);
    bool done() const { return done_; }

private:
    bool accepts(const QFileInfo& info) const;

    std::unique_ptr<QDirIterator> it_;
    std::vector<QRegularExpression> patterns_;
    bool everyFile_ = false;
    bool hidden_;
    bool system_;
    bool filesToo_;
    bool parentDue_;
    bool done_ = false;
    QString folder_;
};

// The whole folder at once, sorted.
std::vector<CdEntry> readFolder(const QString& folder, const QStringList& patterns, bool hidden, bool system,
                                bool filesToo = true);

class CdLogic {
public:
    CdLogic(CdRequest request, SettingsStore& settings, MessagePort& messages);

    const CdRequest& request() const { return request_; }
    QString title() const;
    QString actionText() const;  // "Apri" or "Salva"
    // The filter box's items: the request's filters, and "Cartella" in folder mode.
    QStringList filterLabels() const;
    int filterIndex() const { return filterIndex_; }
    void setFilterIndex(int index);
    QStringList patterns() const;
    // The extension a bare name gets under the filter in use.
    QString defaultExt() const;

    QString folder() const { return folder_; }
    // False, and the folder stays, when the path is not a readable folder.
    bool setFolder(const QString& path);
    bool up();

    // "File nascosti", "File sistema" and the details view: kept under "DialOp".
    bool fileNascosti() const { return nascosti_; }
    bool fileSistema() const { return sistema_; }
    bool dettagli() const { return dettagli_; }
    void setFileNascosti(bool on);
    void setFileSistema(bool on);
    void setDettagli(bool on);

    std::unique_ptr<FolderReader> reader() const;
    std::vector<CdEntry> list() const;

    // The action button: checks the typed name and answers the path to hand
    // back, or nothing when a message stopped it (or the name was a folder,
    // which becomes the current one).
    std::optional<QString> conferma(const QString& typed);
    // "Crea cartella": makes the folder in the current one; a message on failure.
    bool creaCartella(const QString& name);
    // Remembers the folder for the next time ("DirOp").
    void salvaCartella();

    static const QString kBadChars;

private:
    std::optional<QString> confirmOpen(const QString& path);
    std::optional<QString> confirmSave(const QString& path);
    std::optional<QString> confirmFolder(const QString& path);
    void writeFlag(const QString& key, bool on);

    CdRequest request_;
    SettingsStore& settings_;
    MessagePort& messages_;
    int filterIndex_ = 0;
    QString folder_;
    bool nascosti_ = false;
    bool sistema_ = false;
    bool dettagli_ = true;
};

}  // namespace tornelia
