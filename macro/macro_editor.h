#pragma once

// The macro editor without its window: the macro's text, its file, the
// dirty flag, the command list and the four toolbar actions. The window
// binds its controls to this and adds nothing of its own.

#include "core/rich_text_surface.h"
#include "macro/interpreter.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace tornelia {

class DialogPort;

struct MacroCommandHelp {
    QString name;
    QString title;
    QString syntax;
    QString description;
};

// The 40 entries of the command list, in the order the window shows them.
const std::vector<MacroCommandHelp>& macroCommandList();

// The filters of the open and save dialogs for macros.
QStringList macroFileFilters();

inline const QString kMacroNotSaved = QStringLiteral("Macro non salvata");

class MacroEditor {
public:
    // host: the document the macros run against; its hidden control is
    // replaced by the editor's own r.
    MacroEditor(MacroHost host, DialogPort& dialogs);
    ~MacroEditor();
    MacroEditor(const MacroEditor&) = delete;
    MacroEditor& operator=(const MacroEditor&) = delete;

    // t: the macro's text; r: the hidden control that ins borrows.
    RichTextSurface& t() { return t_; }
    RichTextSurface& r() { return r_; }

    QString fileName() const { return fileName_; }
    bool dirty() const { return dirty_; }
    // What the status line shows: the file's path, or "Macro non salvata".
    QString status() const { return status_; }

    // The list: the syntax label (blanks around) and the description label.
    static QString syntaxLabel(int entry);
    static QString descriptionLabel(int entry);
    // Double click: "name()" replaces the selection of t.
    void insertCommand(int entry);

    // The three keys and the context menu carry plain text only, so no
    // formatting comes into a macro through the clipboard.
    void copyText();
    void cutText();
    void pasteText();

    // The toolbar, buttons 0 to 3.
    void nuovo();
    void apri();
    void salva();
    void esegui();

    // Loads a macro file into t as plain text, as the open dialog does;
    // false when it cannot be read.
    bool load(const QString& path);

    // The status line or the flag changed.
    std::function<void()> onStateChanged;

private:
    QString askSave(const QString& title);
    bool saveTo(const QString& path);
    std::optional<QString> chooseSaveName();
    void empty();
    void changed();

    MacroHost host_;
    DialogPort& dialogs_;
    RichTextSurface t_;
    RichTextSurface r_;
    QString fileName_;
    QString status_ = kMacroNotSaved;
    bool dirty_ = false;
};

}  // namespace tornelia
