#pragma once

// Styles: named sets of five font attributes that are set on the selection
// of the document. The table lives as long as the program and is kept in
// .sti files: records of six lines (name, font, size, bold, italic,
// underline), CR LF, Windows-1252, no header.

#include "core/rich_text_surface.h"

#include <QString>
#include <QList>
#include <QStringList>

#include <array>
#include <functional>

namespace tornelia {

class DialogPort;
class MessagePort;
class SettingsStore;
class UndoStore;

inline constexpr int kStyleSlots = 201;

// One record of a .sti file as it stands in the file.
struct StyleRecord {
    QString name;
    QString font;
    QString size;
    QString bold;  // "0", "1" or "" for not set
    QString italic;
    QString underline;
    bool operator==(const StyleRecord&) const = default;
};

struct StiReadResult {
    QList<StyleRecord> records;
    // The file had more records than the table has slots; the rest was not read.
    bool overflow = false;
};

// Reads records of six lines until the bytes end; a short last record gets
// empty fields. Never more than kStyleSlots records.
StiReadResult parseSti(const QByteArray& bytes);
QByteArray writeSti(const QList<StyleRecord>& records);

// The four styles that need no file, in the order the combo offers them.
QStringList builtInStyleNames();

// The controls of the window, as the logic sees them.
struct StyleControls {
    QString name;                       // "Nome stile:"
    QString font = QStringLiteral("Tahoma");
    QString size = QStringLiteral("10");
    int bold = 0;                       // check box states, 0 or 1
    int italic = 0;
    int underline = 0;
};

// The state and the commands of the window "Stili", and the program's one
// style table.
class StyleStore {
public:
    StyleStore(RichTextSurface& testo, SettingsStore& settings, MessagePort& messages, DialogPort& dialogs,
               UndoStore* undo = nullptr);

    // The six arrays, indexed as the list.
    std::array<QString, kStyleSlots> styleName;
    std::array<QString, kStyleSlots> styleFont;
    std::array<QString, kStyleSlots> styleSize;
    std::array<QString, kStyleSlots> styleBold;
    std::array<QString, kStyleSlots> styleItalic;
    std::array<QString, kStyleSlots> styleUnderline;

    StyleControls controls;

    // List1: the entries that exist, in order.
    const QStringList& list1() const { return list1_; }
    int selected() const { return selected_; }
    int newCount() const { return newCount_; }
    bool fileDirty() const { return fileDirty_; }
    // The names the main window's combo offers: the built-in ones, then the
    // table's, in order.
    QStringList comboNames() const;

    // At load of the window: the file last used is opened without a question.
    void load();

    // Adds an empty entry; false when the table is full (which is told).
    bool Novo();
    // The user picked an entry of the list: its values fill the controls.
    void select(int index);
    // The buttons bU by index: 0 apply, 1 new table, 2 open, 3 save as,
    // 4 store the controls into the entry, 5 close.
    void bU(int index);
    // Applies a style to the selection of the document. fromMain: the name
    // comes from the main window's combo, where built-in names are allowed.
    void appliC(const QString& name, bool fromMain);
    // Asked before the window closes: false keeps it open.
    bool queryClose();

    // Opens a file without the dialog and the question.
    bool openFile(const QString& path);
    // Writes the table to path; false (told) when it cannot.
    bool saveFile(const QString& path);

    // The window follows the table: the list, the combo and the controls.
    std::function<void()> onChanged;
    // The close button: the window hides.
    std::function<void()> onHide;

private:
    void clearSlots();
    bool newTable();
    bool openWithDialog();
    bool saveWithDialog();
    bool storeEntry();
    void applyBuiltIn(const QString& name);
    void changed();

    RichTextSurface& testo_;
    SettingsStore& settings_;
    MessagePort& messages_;
    DialogPort& dialogs_;
    UndoStore* undo_;
    QStringList list1_;
    int selected_ = -1;
    int newCount_ = -1;
    bool fileDirty_ = false;
    // The last entry is the empty one Novo added and nothing has filled yet.
    bool freshBlank_ = false;
};

}  // namespace tornelia
