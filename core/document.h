#pragma once

// The life of the one document: new, open, save, delete, and the dirty test.

#include "core/ports.h"
#include "core/rich_text_surface.h"
#include "core/settings.h"

#include <QString>
#include <QStringList>

#include <functional>

namespace tornelia {

inline const QString kNoDocument = QStringLiteral("Documento 1");

class Document {
public:
    Document(RichTextSurface& testo, SettingsStore& settings, MessagePort& messages,
             DialogPort& dialogs, ShellPort& shell, FramePort& frame);

    RichTextSurface& testo() { return testo_; }

    // --- state of the lifecycle ---
    QString nomeFile = kNoDocument;
    float lenSalvata = 0;
    // The document as last loaded or saved, so a change of format or a
    // same-length replacement still counts as a change.
    QString rtfSalvato;
    // The surface's change count at the last load or save; a large document
    // keeps no copy of its RTF, and any change to it counts.
    quint64 modificheSalvate = 0;
    bool rtfTenuto = false;
    bool inApertura = false;
    QString rispostaMsg;

    // --- what later parts of the program plug in; empty means nothing to do ---
    std::function<void()> onUndoClear;                  // the undo store is emptied
    std::function<void()> onUndoOpened;                 // a file was opened: undo can go back to it
    std::function<void()> onShowStartPanel;             // frmAv
    std::function<void(const QString&)> onRecentAdd;    // aggiungiRecente
    std::function<void()> onConalinee;                  // status bar refresh
    // frmCD.Apriii: mode 1 open, 2 save; it calls Aprii or Sv back. When not
    // set, the DialogPort's choosers stand in for it.
    std::function<void(int mode)> onFileDialog;
    // Titles of the desktop's top-level windows, for fileGiaAperto.
    std::function<QStringList()> windowTitles;

    // --- operations ---
    // False when the person cancelled at the question, or the save asked
    // for failed: the document stays as it was.
    bool Novo(int mostraAvvio);
    void Aprii(const QString& path);
    void RecENt(const QString& path);
    void Salvare(const QString& path);
    void SalvareN();
    void Sv(const QString& path);
    void DelFile();
    void pROP();
    void nnm();
    void nuovaSessione();  // "Nuova sessione di Tornelia..."
    long lineCount(const QString& path);
    // The block-wise load; throws SurfaceError when the file cannot be opened.
    // How lineCar turns the bytes it read into the document.
    enum class LoadAs { Text, Rtf, Contents };
    long lineCar(const QString& path, bool comeRTF);
    long lineCar(const QString& path, LoadAs as);
    bool fileCambiato() const;
    // What the text holds now counts as saved.
    void segnaSalvato();
    // False, after telling the person, for a folder, a device or a file
    // that cannot be read.
    bool readable(const QString& path, const QString& title);
    bool fileGiaAperto(const QString& fileName) const;
    // True when the caller has to stop (saving onto a read-only file).
    bool readOnlyTest(const QString& path, bool opening);
    // The caller's SelChange: an open ends here.
    void selChanged() { inApertura = false; }

    // mostraMsg, with the answer kept in rispostaMsg.
    QString mostraMsg(const QString& title, const QString& text, int buttons, int icon);

    // Kind of a path by its last three characters: 0 TNL, 1 RTF, 2 text.
    static int kindOf(const QString& path);
    // "Tornelia - " plus the file part.
    static QString captionFor(const QString& path);

private:
    RichTextSurface& testo_;
    SettingsStore& settings_;
    MessagePort& messages_;
    DialogPort& dialogs_;
    ShellPort& shell_;
    FramePort& frame_;

    // Progress of a load: the scale from lineCount and the bar's position.
    long scala_ = 1;
    long barPos_ = 0;

    void setUpBar(const QString& path);
    int barPercent() const;
    void chooseFile(int mode);
    void applyDefaultFormat();
    void writeFileName(const QString& path, bool load);
    void showOpenedName(bool fullPath);
    bool saveChecked(const QString& path);
    bool writeFile(const QString& path, int kind);
};

}  // namespace tornelia
