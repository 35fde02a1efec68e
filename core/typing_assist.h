#pragma once

// What the main window does with the keys of the document as the user types:
// the automatic corrections chosen in "Correzioni automatiche" and the keys
// that KeyDown takes for itself. Everything is done by moving the selection
// over the characters just typed and replacing them.

#include "core/rich_text_surface.h"
#include "core/settings.h"
#include "core/undo_store.h"

#include <QMetaObject>
#include <QString>

#include <array>
#include <functional>
#include <span>

namespace tornelia {

// The procedures the keys reach that live elsewhere. The commands have no
// body here: whoever plugs in (the window, the command line) must give each
// a real one. The hooks below them only keep a window's controls in step
// with the text, so where there is no window they have nothing to do.
class TypingProcedures {
public:
    virtual ~TypingProcedures() = 0;

    // --- Control with a letter ---
    virtual void CopYa() = 0;
    virtual void AntEP() = 0;
    virtual void showForm1() = 0;  // the line inserter, modal
    virtual void INco(const QString& how) = 0;
    virtual void TaGl() = 0;

    // The formatting controls follow the caret.
    virtual void aggText() {}

    // --- paragraphs with a picture bullet ---
    virtual bool bulletImmagine() const { return false; }
    virtual void saveClipboard() {}
    virtual void restoreClipboard() {}
    // Puts the current bullet picture on the clipboard.
    virtual void copyBulletPicture() {}

    // --- what the window shows of the caret ---
    // The ruler's marker follows the paragraph's indent.
    virtual void rulerFollowsCaret() {}
    // The status line: line and column.
    virtual void Conalinee() {}
    // The menu entries that depend on the text.
    virtual void ChMnu() {}
    // A load is running: the status line waits for its end.
    virtual bool loadRunning() const { return false; }
};

// A key that KeyDown takes for itself: its key code, and the shift state it
// is taken with (-1: any). The window's command table has a row for each.
struct TakenKey {
    int code;
    int shift;
    bool operator==(const TakenKey&) const = default;
};
// Every key KeyDown takes, Control with the letters and signs included;
// Control with any other key of code 18 and above is only swallowed.
std::span<const TakenKey> keysTaken();

// The nine rules, in the order of their settings keys "1" to "9" of "Corr".
enum class Correction : int {
    CapitalAfterStop = 1,
    SpaceAfterComma,
    SpaceAfterSemicolon,
    SpaceAfterColon,
    Copyright,
    Registered,
    TradeMark,
    Euro,
    Arrows,
};

inline const QString kCorrSection = QStringLiteral("Corr");

// The nine rules as the settings hold them now.
std::array<bool, 9> readCorrections(const SettingsStore& settings);
void writeCorrections(SettingsStore& settings, const std::array<bool, 9>& on);

class TypingAssist {
public:
    TypingAssist(RichTextSurface& testo, SettingsStore& settings, UndoStore& undo);
    ~TypingAssist();
    TypingAssist(const TypingAssist&) = delete;
    TypingAssist& operator=(const TypingAssist&) = delete;

    // The window's procedures; nullptr puts back the ones that do nothing.
    void setProcedures(TypingProcedures* procedures);
    // Lets waiting events through, where the window lets them through on
    // Change and SelChange.
    void setPump(std::function<void()> pump) { pump_ = std::move(pump); }

    // The handlers of the document's events; they are connected to the
    // surface and public so that a caller can run them as the window does.
    void KeyDown(int& keyCode, int& shift);
    void KeyPress(int& keyAscii);
    void KeyUp(int& keyCode, int& shift);
    void SelChange();
    void Change();

    bool puntoVisto() const { return puntoVisto_; }
    bool spazioVisto() const { return spazioVisto_; }
    int statoMaiuscole() const { return statoMaiuscole_; }

private:
    void caseCycle();
    void pictureBulletEnter();

    RichTextSurface& testo_;
    SettingsStore& settings_;
    UndoStore& undo_;
    TypingProcedures* procs_;
    std::function<void()> pump_;
    QMetaObject::Connection connections_[5];

    // A full stop or Enter was seen, waiting for a letter.
    bool puntoVisto_ = false;
    // A blank or Enter was seen, waiting for a letter.
    bool spazioVisto_ = false;
    // The F2 cycle: 0 upper case next, 1 lower case, 2 a capital at each word.
    int statoMaiuscole_ = 0;
};

// The F2 conversions, one character for one so that the selection keeps its
// length.
QString toUpperKeepingLength(const QString& text);
QString toLowerKeepingLength(const QString& text);
QString toProperCase(const QString& text);

}  // namespace tornelia
