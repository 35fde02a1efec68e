#pragma once

// Every command of the main window as one row: the menus, the context menus
// and the toolbar buttons are all built from commandTable(), so a caption, a
// shortcut and the procedure it runs are written once.
//
// Adding or enabling a feature's command:
//  - a row whose procedure lives in a feature folder names it in `need`
//    (Need::window(Window::X) or Need::feature(Feature::X)); the row is
//    enabled exactly when the folder has registered that window or procedure
//    in its app/wiring_<folder>.cpp, and otherwise shown greyed with the tool
//    tip kNotYetAvailable. Registering is all a feature has to do.
//  - a new command is a new row here, next to its neighbours in the menu; its
//    procedure must change something the person can see (the command walk in
//    tests/app/command_walk_test.cpp fails for a row that does nothing).
//  - a command that macros reach too names its macro command in `macro`; the
//    macro language's list of commands and these names are checked against
//    each other, so neither can gain a command the other does not know.
//  - the keys that the text's KeyDown takes for itself are rows of kind Key:
//    core/typing_assist does their work, and its list of keys and these rows
//    are checked against each other the same way.

#include "app/window_registry.h"

#include <QKeyCombination>
#include <QString>

#include <cstdint>
#include <span>

class QAction;

namespace tornelia {

class MainWindow;

inline const QString kNotYetAvailable = QStringLiteral("Non ancora disponibile");

// What a row waits for before it can be used.
struct Need {
    enum class Kind : std::uint8_t { Nothing, Window, Feature };
    Kind kind = Kind::Nothing;
    int id = 0;

    static constexpr Need nothing() { return {}; }
    static constexpr Need window(tornelia::Window w) { return {Kind::Window, int(w)}; }
    static constexpr Need feature(tornelia::Feature f) { return {Kind::Feature, int(f)}; }
    bool metBy(const WindowRegistry& registry) const;
};

enum class RowKind : std::uint8_t {
    Command,    // a menu entry or a toolbar button
    Menu,       // a menu of the bar, a submenu or a context menu
    Separator,  // a line in a menu
    Recent,     // one of the File menu's five recent files
    Combo,      // a combo of the formatting toolbar: a pick runs the procedure
    Key,        // a key the text's KeyDown takes for itself; no action of its own
};

enum RowFlag : unsigned {
    Checkable = 1u << 0,
    Hidden = 1u << 1,
    // Runs when the button is toggled, from a click or from the program,
    // and does not bring the undo entries up to date.
    OnToggle = 1u << 2,
    // A context menu, not a menu of the bar.
    Popup = 1u << 3,
    // One of an exclusive group with the rows next to it that carry it too.
    Exclusive = 1u << 4,
};

struct CommandRow {
    RowKind kind;
    // The object name of the entry or menu ("mnuApri"); toolbar buttons get
    // "t<bar>_<index>".
    const char* id;
    // The menu it sits in by its id; "t0" or "t1" for a toolbar button;
    // empty for a menu of the bar or a context menu.
    const char* parent;
    // The toolbar button's place, counting the separators; -1 in a menu.
    int button;
    const char* caption;
    const char* icon;
    // The toolbar button's tool tip; empty in the menus.
    const char* tip;
    QKeyCombination shortcut;
    Need need;
    void (*run)(MainWindow&);
    unsigned flags;
    // The macro command that runs the same procedure; empty when none does.
    const char* macro = "";
};

std::span<const CommandRow> commandTable();

// The id of a toolbar button's action.
QString toolButtonName(int bar, int index);

// The id a row's action or widget has in the window: the row's own, or the
// toolbar place of a button or combo ("t1_3").
QString rowName(const CommandRow& row);

// Enabled when its need is met; otherwise greyed with kNotYetAvailable.
void applyNeed(QAction* action, const CommandRow& row, const WindowRegistry& registry);

}  // namespace tornelia
