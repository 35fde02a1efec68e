#pragma once

// The string toolkit of the RTF engine. Every format beyond the surface's own
// properties is made by cutting the RTF of the selection into its head and
// its "bits" (the pieces between single blanks), rewriting the bits and
// storing the joined string back. There is no parser behind it on purpose:
// a search for a literal such as "{\colortbl" is the whole analysis, so the
// rules below are exact and sometimes odd, and the callers depend on them.
//
// Positions in these rules are 1-based, as the engine has always counted
// them; the helpers take and give QStrings and hide that.

#include "core/ports.h"
#include "core/rich_text_surface.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <optional>
#include <random>
#include <stdexcept>
#include <vector>

namespace tornelia {

// A stream the engine cannot cut (no "\uc" to find the body by). The effects
// that have a handler report it; toggles end on it with nothing changed.
class RtfStreamError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

namespace rtfkit {

// Written into a bit that an edit emptied; JoinBits drops it, so the blank
// that stood for the bit goes with it.
inline const QString SlugMark = QStringLiteral("~!~!~!*~!");

enum BitKindCode { Blank = 0, RTFOnly = 1, TextOnly = 2, Mixed = 3 };

// 1-based search of what in s from start; 0 when absent. A start below 1
// searches from the beginning.
int InStr(int start, const QString& s, const QString& what);
// 1-based Mid, forgiving out-of-range arguments.
QString Mid(const QString& s, int start, int length = -1);

// The end of the head: the first blank behind the first "\fs" whose second
// digit is a digit; 0 when there is none. A one-digit size does not count.
int HeadLength(const QString& s);

int BitKind(const QString& bit);
// The name the engine gives each kind ("Blank", "RTFOnly", ...).
QString BitKindName(int kind);
QString SlugOrText(const QString& original, const QString& text);
QString JoinBits(const QStringList& bits, const QString& delimiter);
// 0 absent; 1 word followed by "\"; 2 by two blanks and "}"; 3 by one blank
// and "}"; 4 by a blank; 5 at the very end. Only what follows the word is
// looked at, so "\ul" counts in "\ul0\" but not in "\ulnone ".
int WordState(const QString& s, const QString& word);
void RemoveWord(QString& bit, const QString& word);
// Removes every occurrence of word from a whole stream, textually.
void StripWord(QString& s, const QString& word);

// Cuts a stream in front of the control word that stands before "\uc".
// Throws RtfStreamError when the stream has no "\uc".
void SplitStream(const QString& s, QString& head, QStringList& bits);
// Cuts a stream at headerLen, keeping the font, colour and style tables in
// the head and moving whatever else the head holds into the first bit.
void SplitStreamFull(const QString& s, int headerLen, QString& head, QStringList& bits);
// The table that opener ("{\colortbl", "{\fonttbl") starts inside the first
// headerLen characters, up to the next control word; "" when absent.
QString TableText(const QString& s, int headerLen, const QString& opener);

Colour RGB(int red, int green, int blue);
void SplitColour(Colour colour, int& red, int& green, int& blue);
QString ColourEntry(Colour colour);
QString FontTableEntry(int index, const QString& name);
void Limit(double min, double& value, double max);
void Limit(int min, int& value, int max);
QString AddSlug(QString text, const QString& startMark, const QString& value, const QString& endMark,
                bool atFront);

// An opposite colour that stays readable on colour (mid greys are pushed).
Colour ContrastColour(Colour colour);

// The colour table while colours are being added: its text without the
// closing "}  " and the count of its entries.
struct ColourTable {
    QString text;
    int entries = 0;
    void add(Colour c);
};

// Gives each visible character of bit its own colour-table entry, taking
// the colours in order from colours[idx]. Throws RtfStreamError when the
// stream has more characters than colours.
QString ColourBit(const QString& bit, ColourTable& table, const std::vector<Colour>& colours, size_t& idx,
                  bool toText);
// The whole colouring of a stream: every visible character gets "\cf" (text)
// or "\highlight" (background) and an entry appended to the colour table;
// with shuffle, each bit draws text or background anew from rnd.
QString ColourStream(const QString& s, const std::vector<Colour>& colours, bool& toText, bool shuffle,
                     const std::function<double()>& rnd);

}  // namespace rtfkit

// The controls an engine object works on, and its one error report.
class EngineControls {
public:
    explicit EngineControls(MessagePort& messages) : messages_(messages) {}
    virtual ~EngineControls() = default;

    void AssignControls(RichTextSurface* rtb, DialogPort* dialog)
    {
        rtb_ = rtb;
        dialog_ = dialog;
    }
    RichTextSurface* rtb() const { return rtb_; }

    // "Errore inaspettato!", titled "Errore". When the failure was a control
    // never assigned, the note names it for whoever debugs; the user sees
    // only the message.
    void ReportError(bool missingControl = false);
    const QString& lastErrorNote() const { return errorNote_; }

    // Uniform in [0, 1). Seedable so that tests can repeat a draw, or fed
    // from a source of their own so that they can choose each draw.
    double Rnd() { return source_ ? source_() : uniform_(random_); }
    void seedRandom(unsigned seed) { random_.seed(seed); }
    void setRandomSource(std::function<double()> source) { source_ = std::move(source); }

protected:
    // The surface, or a report and nullptr when none was assigned.
    RichTextSurface* surface();
    // The colour dialog: the chosen colour, or a report on cancel.
    std::optional<Colour> askColour(Colour initial);

    MessagePort& messages_;
    RichTextSurface* rtb_ = nullptr;
    DialogPort* dialog_ = nullptr;
    QString errorNote_;

private:
    std::mt19937 random_{std::random_device{}()};
    std::uniform_real_distribution<double> uniform_{0.0, 1.0};
    std::function<double()> source_;
};

// The stateful half of the toolkit, shared by the two string engines.
class RtfEngine : public EngineControls {
public:
    explicit RtfEngine(MessagePort& messages, bool startsBusy)
        : EngineControls(messages), busyFlag_(startsBusy)
    {
    }

    bool Busy() const { return busyFlag_; }
    int headerLen() const { return headerLen_; }

    // TextRTF when whole or nothing is selected, else SelRTF; sets headerLen.
    QString RtfFetch(bool wholeDocument);
    // Writes back only what differs, so an edit that changed nothing costs
    // no repaint and leaves the document as it was.
    void RtfStore(const QString& s);
    // Enters (true) or leaves an edit; leaving puts the caret and selection
    // back where they stood on entering. Calls nest.
    void BusyState(bool on);
    // True for a selection of two characters or more.
    bool SelEdges(long& first, long& last) const;

    QString ColourTableText(bool wholeDocument);
    QString FontTableText(bool wholeDocument);
    static QString FontTableEntry(int index, const QString& name) { return rtfkit::FontTableEntry(index, name); }
    static QString ColourEntry(Colour c) { return rtfkit::ColourEntry(c); }

    // A few names the engine knows; "random" draws one. Any other name is
    // reported and gives 0.
    Colour ColourNamed(const QString& name);
    // The colour dialog; a cancel is reported and gives nothing.
    std::optional<Colour> ColourUser() { return askColour(0); }

protected:
    bool busyFlag_;
    int headerLen_ = 0;
    std::vector<long> selStartStack_;
    std::vector<long> selLengthStack_;
};

}  // namespace tornelia
