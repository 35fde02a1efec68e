#pragma once

// The character formats the surface has no property for, above all the RTF
// underline styles, each a toggle of one control word in the selection's
// RTF; also showing hidden text again and the go-to-percent position.

#include "rtf/rtf_toolkit.h"

#include <optional>

namespace tornelia {

class ClsExtendedRTF : public RtfEngine {
public:
    // Busy reads true until the first edit ends: the flag starts set.
    explicit ClsExtendedRTF(MessagePort& messages) : RtfEngine(messages, true) {}

    // The toggles. A setter turns the format on where the word stands
    // nowhere in the selection and off everywhere otherwise; the value
    // passed is not looked at, so setting true twice turns it off again.
    bool SelDash() { return WordPresent(QStringLiteral("\\uldash")); }
    void setSelDash(bool) { SelRTFToggle(QStringLiteral("\\uldash")); }
    bool SelDashd() { return WordPresent(QStringLiteral("\\uldashd")); }
    void setSelDashd(bool) { SelRTFToggle(QStringLiteral("\\uldashd")); }
    bool SelDashdd() { return WordPresent(QStringLiteral("\\uldashdd")); }
    void setSelDashdd(bool) { SelRTFToggle(QStringLiteral("\\uldashdd")); }
    bool SelDot() { return WordPresent(QStringLiteral("\\uld")); }
    void setSelDot(bool) { SelRTFToggle(QStringLiteral("\\uld")); }
    bool SelHair() { return WordPresent(QStringLiteral("\\ulhair")); }
    void setSelHair(bool) { SelRTFToggle(QStringLiteral("\\ulhair")); }
    bool SelThick() { return WordPresent(QStringLiteral("\\ulth")); }
    void setSelThick(bool) { SelRTFToggle(QStringLiteral("\\ulth")); }
    bool SelUlDouble() { return WordPresent(QStringLiteral("\\uldbl")); }
    void setSelUlDouble(bool) { SelRTFToggle(QStringLiteral("\\uldbl")); }
    bool SelUlWord() { return WordPresent(QStringLiteral("\\ulw")); }
    void setSelUlWord(bool) { SelRTFToggle(QStringLiteral("\\ulw")); }
    bool SelWave() { return WordPresent(QStringLiteral("\\ulwave")); }
    void setSelWave(bool) { SelRTFToggle(QStringLiteral("\\ulwave")); }
    bool SelQuoteDbl() { return WordPresent(QStringLiteral("\\dbquote")); }
    void setSelQuoteDbl(bool) { SelRTFToggle(QStringLiteral("\\dbquote")); }
    bool SelQuoteSng() { return WordPresent(QStringLiteral("\\squote")); }
    void setSelQuoteSng(bool) { SelRTFToggle(QStringLiteral("\\squote")); }

    // Plain underline and colour are the surface's own.
    std::optional<bool> SelUnderline();
    void setSelUnderline(bool on);
    std::optional<Colour> SelColor();
    void setSelColor(Colour c);

    // The last underline word toggled, "\ul" until one is.
    const QString& CurrentUnderlineStyle() const { return currentUnderlineStyle_; }

    // Toggles word over the selection, or over the whole document when
    // nothing is selected; true when the format is now on.
    bool SelRTFToggle(const QString& word);
    static QString ToggleBit(const QString& bit, const QString& word, bool on);
    // The toggle both engines share: the word on over the fetched stream when
    // it is off anywhere in it, else off; returns whether it is now on. The
    // head is cut off with all its tables (fullHeader) or at the word ahead
    // of "\uc"; a stream that cannot be cut is left untouched, giving false.
    static bool ToggleStream(RtfEngine& engine, const QString& word, bool fullHeader);
    // With a selection this reads true where the word is absent: the test
    // has always stood that way round, and the dialogs only set.
    bool WordPresent(const QString& word);

    // Makes every hidden character of the document visible again.
    void HiddenTextShow();

    // Puts the caret at that percent of the text.
    void setDocPercent(double percent);

    // Entries of the colour table plus one; 0 while busy, or with nothing
    // selected unless the whole document is asked for.
    long ColoursUsed(bool wholeDocument);

    void SplitBitsFull(QString& head, QStringList& bits);
    static QString AddSlug(const QString& text, const QString& startMark, const QString& value,
                           const QString& endMark, bool atFront)
    {
        return rtfkit::AddSlug(text, startMark, value, endMark, atFront);
    }

private:
    QString currentUnderlineStyle_ = QStringLiteral("\\ul");
};

}  // namespace tornelia
