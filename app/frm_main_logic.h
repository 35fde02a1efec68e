#pragma once

// What the main window does beyond showing controls: the status line, the
// format toggles, running the selection, the external programs, the settings
// the window reads at start and writes at close. It talks to the person only
// through the ports, so it runs the same with or without a window.

#include "app/app_context.h"

#include <QString>

#include <optional>

namespace tornelia {

// Where a toolbar stands, as its settings section keeps it.
struct ToolbarPlace {
    bool visible = true;
    int top = 0;
    int left = 0;
    bool operator==(const ToolbarPlace&) const = default;
};

// What the right mouse button on the text pops up.
struct ContextMenuState {
    enum class Menu { None, Text, Picture };
    Menu menu = Menu::None;
    // "&Esegui selezionato", "&Taglia", "&Copia" and the first special copy.
    bool selectionCommands = false;
    bool operator==(const ContextMenuState&) const = default;
};

// The formatting controls' view of the caret; an empty value shows nothing.
struct FormatControls {
    std::optional<QString> font;
    QString size;
    // Indexes of the colour combos' values: the colour, or -1 for none.
    long textColour = -1;
    long highlightColour = -1;
    bool operator==(const FormatControls&) const = default;
};

// What the close question decided.
enum class CloseAnswer {
    Cancel,      // the window stays
    Close,       // saved or unchanged: toolbars written, exit save
    CloseBare,   // changes given up: straight to the clearing
};

inline const QString kApp = QStringLiteral("Tornelia");

class FrmMainLogic {
public:
    // programFolder: where the program's own helpers sit (the executable's
    // folder); dataFolder: the per-user data folder.
    FrmMainLogic(AppContext& context, QString programFolder, QString dataFolder);

    const QString& programFolder() const { return programFolder_; }
    const QString& dataFolder() const { return dataFolder_; }

    // --- status line ---
    // A line number in the form "##,###" of the Italian locale: "1.234".
    static QString formatLine(long line);
    // "Lin: 3, Col: 7" for the caret.
    QString Conalinee();
    // The document's wrapped lines, counted when asked: the status bar does
    // not show them, and counting them all after every key cost the length
    // of the document.
    long lineCount() const;

    // --- formatting ---
    // 37 bold, 38 italic, 39 underline, 40 strike-through: each flips; 51
    // opens the guide.
    void Clic(int code);
    FormatControls aggText() const;
    // The alignment buttons' and entries' state: 0 left, 1 right, 2 centre,
    // or none on a mixed selection.
    std::optional<int> alignment() const { return ctx_.testo().SelAlignment(); }
    void setAlignment(int alignment);
    void setCharOffset(int twips);
    void toggleBullet();
    // Through the font chooser, seeded with the selection.
    void chooseFont();
    void chooseTextColour();
    void chooseBackColour();

    // --- editing commands ---
    // Paste: "" or "0" as the clipboard has it, "1" in the format at the
    // caret, "2" its text alone.
    void INco(const QString& how);
    // The selection's text alone on the clipboard.
    void copiaSoloTesto();
    void eseguiSelezione();
    void insertDate();
    void selectLine();
    void selectAll();
    ContextMenuState contextMenu() const;

    // --- external programs ---
    // The path of a helper by name, with and without ".exe", in the data
    // folder then beside the executable; empty when there is none.
    QString findProgram(const QString& name) const;
    // Starts the helper when it is there; false (and nothing said) otherwise.
    bool startProgram(const QString& name);
    QString guidePath() const;
    bool openGuide();
    QString updaterPath() const;
    bool startUpdater();
    void openSite();

    // --- start and close ---
    // The guide key is filled in when empty and the installed guide is there.
    void seedGuideKey();
    void writeProgramFolder();
    bool undoDisabled() const;
    void readUndoFlag();
    bool clipboardPanelShown() const;
    ToolbarPlace readToolbar(int index) const;
    void writeToolbar(int index, const ToolbarPlace& place);
    // "Version.dat" in the data folder: the version and nothing else.
    void writeVersionFile(const QString& version);
    // The close question, asked only when the document has changed; "si"
    // saves, and a save given up keeps the window.
    CloseAnswer QueryUnload();
    // The last step of the close: text, undo store.
    void clearForClose();

    static QString toolbarSection(int index);

private:
    AppContext& ctx_;
    QString programFolder_;
    QString dataFolder_;
};

// The site the help menu opens.
inline const QString kSiteAddress = QStringLiteral("https://www.tornelia.it/");

}  // namespace tornelia
