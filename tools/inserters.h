#pragma once

// The inserters: date and time, cyclic text, a whole file, special
// characters and a font's look. Each puts its text at the caret of the
// document, in place of the selection.

#include "core/rich_text_surface.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace tornelia {

class DialogPort;
class MessagePort;
class UndoStore;

// Text typed at the caret in place of the selection, after an undo step.
// An empty text changes nothing.
void inserisciTesto(RichTextSurface& testo, UndoStore* undo, const QString& text);

// --- date and time ---

// A date and time written by a format of letters: d dd ddd dddd (day),
// m mm mmm mmmm (month; minutes right after an hour), yy yyyy, y (day of
// the year), h hh, n nn (minutes), s ss, w (weekday), ww (week), q
// (quarter), AM/PM am/pm A/P a/p AMPM (twelve-hour clock), c (date and
// time), text in double quotes or after a backslash as it stands. Other
// characters stand as they are. Names of days and months are Italian.
QString formatDateTime(const QDateTime& when, const QString& format);

// The formats of the list, in order, with " " as the empty line between
// dates and times.
QStringList dateTimeFormats();
// The list entries for a moment: each format applied, the empty line kept.
QStringList dateTimeEntries(const QDateTime& when);

// --- cyclic text ---

enum class CyclicMode { SoloTesto, TestoENumerazione };

struct CyclicRequest {
    CyclicMode mode = CyclicMode::SoloTesto;
    QString testo;
    QString ripetizioni;  // as typed
    QString prefisso;
    QString suffisso;
    bool vaiACapo = false;
};

// The most repeats one run makes; past it the number is refused like any
// other invalid one, so a slip of the finger cannot freeze the program.
inline constexpr long kMaxRipetizioni = 32767;

// The repeats as a number, or nothing when the text is not a whole number
// from 1 to kMaxRipetizioni.
std::optional<long> parseRipetizioni(const QString& text);

// Runs the loop: for i from 1 to the count, the text ("Solo testo") or
// prefix, i, suffix and the text ("Testo e numerazione"), with CR LF after
// each when vaiACapo. progress gets i and the count at each turn. False,
// after the message, when the count is not valid.
bool testoCiclico(RichTextSurface& testo, UndoStore* undo, MessagePort& messages, const CyclicRequest& req,
                  const std::function<void(long, long)>& progress = {});

// --- file insertion ---

// The line of 34 em dashes between CR LF pairs that frames an inserted file.
QString fileSeparator();

// The file waiting to be inserted, held in a hidden surface of its own.
class FileInserter {
public:
    FileInserter();
    ~FileInserter();

    // Loads the file: RTF by its contents, plain text otherwise. False, after
    // a message, when it does not exist or cannot be read; the file chosen
    // before stays.
    bool load(const QString& path, MessagePort& messages);
    // u2: asks for a file and loads it. False on cancel or a failed load.
    bool choose(DialogPort& dialogs, MessagePort& messages);
    QString path() const { return path_; }
    // "File: Nessuno", or "File: " and the path.
    QString label() const;
    const RichTextSurface& pio() const { return *pio_; }

    // u1: the whole file at the caret of testo, framed by the separator
    // when separatore is set. False, after a message, with no file chosen.
    bool insertInto(RichTextSurface& testo, UndoStore* undo, MessagePort& messages, bool separatore);

private:
    std::unique_ptr<RichTextSurface> pio_;
    QString path_;
};

// --- special characters ---

// The codes of the grid: 32 to 255 of the Windows code page.
inline constexpr int kFirstGridCode = 32;
inline constexpr int kLastGridCode = 255;
// The character a grid code shows in a font: symbol fonts keep their byte
// in the private area, as the RTF reader puts it; others take the code page.
QString gridCharacter(int code, bool symbolFont);
// The read-out under the grid for a character: "Ascii= ALT + 0" and its
// code, the one ALT and the keypad type on Windows.
QString asciiReadout(QChar c);
// u1: the collected characters at the caret in the chosen font. In a symbol
// font they go in as the font's own bytes, so the document keeps the font's
// symbol character set and other programs show the same signs.
void insertCharacters(RichTextSurface& testo, const QString& fontName, const QString& characters,
                      bool symbolFont = false);

// --- font viewer ---

struct FontLook {
    QString family;
    float size = 10;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    Colour colour = 0;  // 0x00BBGGRR
    bool operator==(const FontLook&) const = default;
};

// The sizes the viewer offers.
QStringList fontSizes();
// The look given to the selection of the document, as in the viewer.
void applyFontLook(RichTextSurface& testo, const FontLook& look);

}  // namespace tornelia
