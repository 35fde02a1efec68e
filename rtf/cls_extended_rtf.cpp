#include "rtf/cls_extended_rtf.h"

#include <cmath>

namespace tornelia {

using namespace rtfkit;

namespace {

// True when the bit's last token is a control word, whose delimiter is the
// blank the bit was split at. Behind an escape ("\'e8", "\u8364?", "\{")
// or a brace that blank is text, and a word appended there would take it.
bool endsWithControlWord(const QString& bit)
{
    qsizetype i = bit.size();
    while (i > 0 && bit[i - 1].isDigit())
        --i;
    if (i > 0 && i < bit.size() && bit[i - 1] == u'-')
        --i;
    const qsizetype letters = i;
    while (i > 0 && bit[i - 1].isLetter() && bit[i - 1].unicode() < 128)
        --i;
    if (i == letters)
        return false;
    qsizetype slashes = 0;
    while (i > 0 && bit[i - 1] == u'\\') {
        --i;
        ++slashes;
    }
    return slashes % 2 == 1;
}

}  // namespace

std::optional<bool> ClsExtendedRTF::SelUnderline()
{
    RichTextSurface* s = surface();
    return s ? s->SelUnderline() : std::nullopt;
}

void ClsExtendedRTF::setSelUnderline(bool on)
{
    if (RichTextSurface* s = surface())
        s->setSelUnderline(on);
}

std::optional<Colour> ClsExtendedRTF::SelColor()
{
    RichTextSurface* s = surface();
    return s ? s->SelColor() : std::nullopt;
}

void ClsExtendedRTF::setSelColor(Colour c)
{
    if (RichTextSurface* s = surface())
        s->setSelColor(c);
}

void ClsExtendedRTF::SplitBitsFull(QString& head, QStringList& bits)
{
    const QString s = RtfFetch(false);
    SplitStreamFull(s, headerLen_, head, bits);
}

QString ClsExtendedRTF::ToggleBit(const QString& bit, const QString& word, bool on)
{
    const int kind = BitKind(bit);
    if (!on) {
        QString out = bit;
        if (kind == RTFOnly || kind == Mixed)
            RemoveWord(out, word);
        return out;
    }
    // Every bit gets the word, so that it holds whatever formats the
    // control writes between the bits. A bit of control words takes it
    // behind them, unless it ends in an escape: a lone "\'e8" (the word
    // "è") would lose the blank behind it.
    if (kind == RTFOnly && endsWithControlWord(bit))
        return bit + word;
    return word + u' ' + bit;
}

bool ClsExtendedRTF::ToggleStream(RtfEngine& engine, const QString& word, bool fullHeader)
{
    engine.BusyState(true);
    const QString s = engine.RtfFetch(false);
    const bool on = WordState(s, word) == 0;
    QString head;
    QStringList bits;
    try {
        if (fullHeader)
            SplitStreamFull(s, engine.headerLen(), head, bits);
        else
            SplitStream(s, head, bits);
    } catch (const RtfStreamError&) {
        // Nothing to cut by: the toggle ends with the document untouched.
        engine.BusyState(false);
        return false;
    }
    for (QString& bit : bits)
        bit = SlugOrText(bit, ToggleBit(bit, word, on));
    engine.RtfStore(head + JoinBits(bits, QStringLiteral(" ")));
    engine.BusyState(false);
    return on;
}

bool ClsExtendedRTF::SelRTFToggle(const QString& word)
{
    if (word.startsWith(QLatin1String("\\ul")))
        currentUnderlineStyle_ = word;
    if (!surface())
        return false;
    return ToggleStream(*this, word, true);
}

bool ClsExtendedRTF::WordPresent(const QString& word)
{
    RichTextSurface* s = surface();
    if (!s)
        return false;
    const QString rtf = s->SelRTF();
    if (s->SelLength() != 0)
        return WordState(rtf, word) == 0;
    const QString bare = word.startsWith(u'\\') ? word.mid(1) : word;
    return rtf.contains(u'\\' + bare) || rtf.contains(u' ' + bare);
}

void ClsExtendedRTF::HiddenTextShow()
{
    RichTextSurface* r = surface();
    if (!r)
        return;
    BusyState(true);
    QString s = r->TextRTF();
    StripWord(s, QStringLiteral("\\v"));
    if (r->TextRTF() != s)
        r->setTextRTF(s);
    BusyState(false);
}

void ClsExtendedRTF::setDocPercent(double percent)
{
    RichTextSurface* r = surface();
    if (!r)
        return;
    const double pos = std::nearbyint(double(r->length()) * percent / 100.0);
    if (pos >= 0)
        r->setSelStart(long(pos));
}

long ClsExtendedRTF::ColoursUsed(bool wholeDocument)
{
    RichTextSurface* r = surface();
    if (!r || busyFlag_ || (!wholeDocument && r->SelLength() == 0))
        return 0;
    return long(ColourTableText(wholeDocument).count(QLatin1String("\\red"))) + 1;
}

}  // namespace tornelia
