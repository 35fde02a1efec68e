#include "rtf/rtf_toolkit.h"

#include <QCursor>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace tornelia {
namespace rtfkit {

int InStr(int start, const QString& s, const QString& what)
{
    const qsizetype from = std::max(start, 1) - 1;
    if (from > s.size())
        return 0;
    const qsizetype at = s.indexOf(what, from);
    return at < 0 ? 0 : int(at) + 1;
}

QString Mid(const QString& s, int start, int length)
{
    const qsizetype from = std::max(start, 1) - 1;
    if (from >= s.size())
        return {};
    return length < 0 ? s.mid(from) : s.mid(from, length);
}

int HeadLength(const QString& s)
{
    const QString fs = QStringLiteral("\\fs");
    int pos = InStr(1, s, fs);
    while (pos != 0) {
        // The character at pos + 4 is the size's second digit; a one-digit
        // size, or "\fswiss" in the font table, does not end the head.
        const qsizetype at = pos + 3;
        if (at < s.size() && s[at].isDigit())
            return InStr(pos, s, QStringLiteral(" "));
        pos = InStr(pos + 1, s, fs);
    }
    return 0;
}

int BitKind(const QString& bit)
{
    if (bit.isEmpty())
        return Blank;
    const QChar c = bit[0];
    if (c == u'\\' || c == u'}' || c == u'{' || c == u'\t' || c == u'\r' || c == u'\n')
        return RTFOnly;
    if (bit.contains(u'\\'))
        return bit.startsWith(QLatin1String("uc1\\")) ? RTFOnly : Mixed;
    if (bit.contains(u'}'))
        return Mixed;
    return TextOnly;
}

QString BitKindName(int kind)
{
    switch (kind) {
    case Blank: return QStringLiteral("Blank");
    case RTFOnly: return QStringLiteral("RTFOnly");
    case TextOnly: return QStringLiteral("TextOnly");
    case Mixed: return QStringLiteral("Mixed");
    default: return {};
    }
}

QString SlugOrText(const QString& original, const QString& text)
{
    // A bit that was empty stands for a blank of the text and stays; one
    // that the edit emptied must not leave a blank behind.
    if (text == original || !text.isEmpty())
        return text;
    return SlugMark;
}

QString JoinBits(const QStringList& bits, const QString& delimiter)
{
    QString out;
    qsizetype size = 0;
    for (const QString& b : bits)
        size += b.size() + delimiter.size();
    out.reserve(size);
    for (const QString& b : bits) {
        if (b == SlugMark)
            continue;
        out += b;
        out += delimiter;
    }
    if (!delimiter.isEmpty())
        while (out.endsWith(delimiter))
            out.chop(delimiter.size());
    return out;
}

int WordState(const QString& s, const QString& word)
{
    if (s.contains(word + u'\\'))
        return 1;
    if (s.contains(word + u' ')) {
        if (s.contains(word + QLatin1String("  }")))
            return 2;
        if (s.contains(word + QLatin1String(" }")))
            return 3;
        return 4;
    }
    if (s.endsWith(word))
        return 5;
    return 0;
}

void RemoveWord(QString& bit, const QString& word)
{
    QStringList parts = bit.split(u'\\');
    const QString target = word + u' ';
    const QString bare = word.startsWith(u'\\') ? word.mid(1) : word;
    bool changed = false;
    for (QString& part : parts) {
        const QString probe = (u'\\' + part + u' ').left(word.size() + 1);
        if (probe == target) {
            QString stripped = part;
            stripped.replace(bare, QString());
            part = SlugOrText(part, stripped);
            changed = true;
        }
    }
    // Rejoining drops the trailing delimiters, which would eat an escaped
    // backslash at the end of a bit that never held the word.
    if (changed)
        bit = JoinBits(parts, QStringLiteral("\\"));
}

void StripWord(QString& s, const QString& word)
{
    // Purely textual: state 1 removes the word wherever it stands, also at
    // the head of a longer control word.
    for (int state = WordState(s, word); state != 0; state = WordState(s, word)) {
        switch (state) {
        case 1: s.replace(word, QString()); break;
        case 2: s.replace(word + QLatin1String("  "), QStringLiteral(" ")); break;
        case 3: s.replace(word + u' ', QString()); break;
        case 4: s.replace(word + u' ', QStringLiteral(" ")); break;
        default: s.chop(word.size()); break;
        }
    }
}

void SplitStream(const QString& s, QString& head, QStringList& bits)
{
    const int uc = InStr(1, s, QStringLiteral("\\uc"));
    if (uc == 0)
        throw RtfStreamError("no \\uc in the stream");
    int p = uc - 1;
    while (p >= 1) {
        const QChar c = s[p - 1];
        if (c == u'\\' || c == u' ' || c == u'\r' || c == u'\n')
            break;
        --p;
    }
    if (p >= 1 && s[p - 1] == u'\\')
        --p;
    p = std::max(p, 0);
    head = s.left(p);
    bits = s.mid(p).split(u' ');
}

void SplitStreamFull(const QString& s, int headerLen, QString& head, QStringList& bits)
{
    QString h = s.left(headerLen);
    QString preamble, fontPart, colourPart, stylePart;
    const int fontPos = InStr(1, h, QStringLiteral("{\\fonttbl"));
    int colourPos = InStr(1, h, QStringLiteral("{\\colortbl"));
    if (colourPos == 0)
        colourPos = InStr(fontPos, h, QStringLiteral(";}}")) + 3;
    const int stylePos = InStr(1, h, QStringLiteral("\\stylesheet{"));
    if (fontPos != 0) {
        fontPart = Mid(h, fontPos, std::max(colourPos - fontPos, 0));
        preamble = h.left(fontPos - 1);
        h = Mid(h, colourPos);
    }
    colourPos = InStr(1, h, QStringLiteral("{\\colortbl"));
    if (colourPos != 0) {
        const int p = InStr(colourPos, h, QStringLiteral(";}"));
        const int q = InStr(p, h, QStringLiteral("\\"));
        const int n = std::max(q - colourPos, 0);
        colourPart = Mid(h, colourPos, n);
        // From n, not from behind the table: the character before the next
        // control word (as a rule the line feed) stands in both halves.
        h = Mid(h, n);
    }
    if (stylePos != 0) {
        const int p = InStr(1, h, QStringLiteral(";}}"));
        stylePart = h.left(p + 4);
        h = Mid(h, p + 5);
    }
    bits = (h + s.mid(headerLen)).split(u' ');
    head = preamble + fontPart + colourPart + stylePart;
}

QString TableText(const QString& s, int headerLen, const QString& opener)
{
    const QString h = s.left(headerLen);
    const int p = InStr(1, h, opener);
    if (p == 0)
        return {};
    const int q = InStr(p, h, QStringLiteral(";}"));
    int r = q == 0 ? 0 : InStr(q, h, QStringLiteral("\\"));
    if (r == 0)
        r = int(h.size()) + 1;
    return Mid(h, p, r - p);
}

Colour RGB(int red, int green, int blue)
{
    auto c = [](int v) { return Colour(std::clamp(v, 0, 255)); };
    return c(red) | c(green) << 8 | c(blue) << 16;
}

void SplitColour(Colour colour, int& red, int& green, int& blue)
{
    red = int(colour & 0xFF);
    green = int((colour & 0xFF00) / 256);
    blue = int((colour & 0xFF0000) / 65536);
}

QString ColourEntry(Colour colour)
{
    int r, g, b;
    SplitColour(colour, r, g, b);
    return QStringLiteral("\\red%1\\green%2\\blue%3;").arg(r).arg(g).arg(b);
}

QString FontTableEntry(int index, const QString& name)
{
    return QStringLiteral("\\f%1\\froman\\fprq2\\fcharset0 %2;").arg(index).arg(name);
}

void Limit(double min, double& value, double max)
{
    if (value < min)
        value = min;
    if (value > max)
        value = max;
}

void Limit(int min, int& value, int max)
{
    if (value < min)
        value = min;
    if (value > max)
        value = max;
}

QString AddSlug(QString text, const QString& startMark, const QString& value, const QString& endMark, bool atFront)
{
    const int p = startMark.isEmpty() ? 0 : InStr(1, text, startMark);
    if (p != 0) {
        const int q = InStr(p + 1, text, endMark);
        const QString rest = q == 0 ? QString() : Mid(text, q + int(endMark.size()));
        text = text.left(p - 1) + startMark + value + endMark + rest;
        const QString emptyTag = startMark + endMark;
        if (text.contains(emptyTag))
            text.replace(emptyTag, QString());
    } else if (!value.isEmpty()) {
        const QString tag = startMark + value + endMark;
        text = atFront ? tag + text : text + tag;
    }
    return text;
}

Colour ContrastColour(Colour colour)
{
    int r, g, b;
    SplitColour(colour, r, g, b);
    if (std::abs(r - g) < 10 && std::abs(g - b) < 10 && std::abs(r - b) < 10) {
        const double mean = std::nearbyint((r + g + b) / 3.0);
        if (mean >= 120 && mean <= 135) {
            r += 128;
            g += 128;
            b += 128;
        }
    }
    const Colour candidate = RGB(std::abs(b - 255), std::abs(g - 255), std::abs(r - 255));
    if (candidate != colour)
        return candidate;
    return RGB(std::abs(b - 128), std::abs(g - 128), std::abs(r - 128));
}

void ColourTable::add(Colour c)
{
    text += ColourEntry(c);
    ++entries;
}

QString ColourBit(const QString& bit, ColourTable& table, const std::vector<Colour>& colours, size_t& idx,
                  bool toText)
{
    const QString word = toText ? QStringLiteral("\\cf") : QStringLiteral("\\highlight");
    const int n = table.entries;
    auto take = [&]() {
        if (idx >= colours.size())
            throw RtfStreamError("more characters than colours");
        table.add(colours[idx++]);
    };
    switch (BitKind(bit)) {
    case Blank:
        take();
        return word + QString::number(n + 1) + u' ';
    case RTFOnly:
        return bit;
    default: {
        QString out;
        out.reserve(bit.size() * (word.size() + 6));
        for (qsizetype i = 0; i < bit.size(); ++i) {
            const QChar c = bit[i];
            if (c == u'\\' || c == u'}') {
                // An escape, a control word or the closing brace: the rest
                // of the bit stays as it stands and takes no colour.
                out += QStringView(bit).sliced(i);
                break;
            }
            take();
            out += word;
            out += QString::number(n + int(i) + 1);
            out += u' ';
            out += c;
        }
        return out;
    }
    }
}

namespace {

// Braces opened minus braces closed, escaped ones not counted.
int braceBalance(const QString& bit)
{
    int balance = 0;
    for (qsizetype i = 0; i < bit.size(); ++i) {
        const QChar c = bit[i];
        if (c == u'\\')
            ++i;
        else if (c == u'{')
            ++balance;
        else if (c == u'}')
            --balance;
    }
    return balance;
}

}  // namespace

QString ColourStream(const QString& s, const std::vector<Colour>& colours, bool& toText, bool shuffle,
                     const std::function<double()>& rnd)
{
    const QString original = TableText(s, HeadLength(s), QStringLiteral("{\\colortbl"));
    ColourTable table;
    if (!original.isEmpty()) {
        // Keeps the ";" of the last entry: of ";}" and the line end three
        // characters go.
        table.text = original.left(original.size() - 3);
        table.entries = int(table.text.count(QLatin1String("\\red")));
    } else {
        table.text = QStringLiteral("{\\colortbl{;");
    }
    QString head;
    QStringList bits;
    SplitStream(s, head, bits);
    size_t idx = 0;
    // The bits stand in the document's group. Deeper, inside a picture or an
    // object kept whole from another program, blanks split hex data, which
    // is no text and must not be coloured.
    int depth = 1;
    for (QString& bit : bits) {
        if (shuffle)
            toText = rnd() > 0.5;
        const int balance = braceBalance(bit);
        if (depth <= 1)
            bit = ColourBit(bit, table, colours, idx, toText);
        depth += balance;
    }
    table.text += QLatin1String("}  ");
    if (head.contains(QLatin1String("{\\colortbl"))) {
        // A table the head rule did not find (no two-digit size before the
        // text) stays as it is: nothing is replaced by an empty search.
        if (!original.isEmpty())
            head.replace(original, table.text);
    } else {
        head.chop(1);
        head += table.text;
        head += u'}';
    }
    // The head is trimmed of blanks: a replaced table ends in "}  ", and
    // those blanks must not stand in front of the body as text.
    qsizetype end = head.size();
    while (end > 0 && head[end - 1] == u' ')
        --end;
    head.truncate(end);
    return head + JoinBits(bits, QStringLiteral(" "));
}

}  // namespace rtfkit

using namespace rtfkit;

void EngineControls::ReportError(bool missingControl)
{
    errorNote_.clear();
    if (missingControl && !rtb_)
        errorNote_ = QStringLiteral("RichTextBox");
    else if (missingControl && !dialog_)
        errorNote_ = QStringLiteral("CommonDialog");
    messages_.mostraMsg(QStringLiteral("Errore"), QStringLiteral("Errore inaspettato!"), 0, 3);
}

RichTextSurface* EngineControls::surface()
{
    if (!rtb_)
        ReportError(true);
    return rtb_;
}

std::optional<Colour> EngineControls::askColour(Colour initial)
{
    if (!dialog_) {
        ReportError(true);
        return std::nullopt;
    }
    const std::optional<std::uint32_t> c = dialog_->chooseColour(initial);
    if (!c) {
        // The dialog raises on cancel; the report is what the user sees.
        ReportError();
        return std::nullopt;
    }
    return Colour(*c & 0xFFFFFF);
}

QString RtfEngine::RtfFetch(bool wholeDocument)
{
    RichTextSurface* s = surface();
    if (!s) {
        headerLen_ = 0;
        return {};
    }
    const QString rtf = (wholeDocument || s->SelLength() == 0) ? s->TextRTF() : s->SelRTF();
    headerLen_ = HeadLength(rtf);
    return rtf;
}

void RtfEngine::RtfStore(const QString& s)
{
    RichTextSurface* r = surface();
    if (!r)
        return;
    if (r->SelLength() != 0) {
        if (r->SelRTF() != s)
            r->setSelRTF(s);
    } else if (r->TextRTF() != s) {
        r->setTextRTF(s);
    }
}

void RtfEngine::BusyState(bool on)
{
    if (on) {
        busyFlag_ = true;
        if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()))
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        selStartStack_.push_back(rtb_ ? rtb_->SelStart() : 0);
        selLengthStack_.push_back(rtb_ ? rtb_->SelLength() : 0);
        return;
    }
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance()) && QGuiApplication::overrideCursor())
        QGuiApplication::restoreOverrideCursor();
    busyFlag_ = false;
    if (selStartStack_.empty())
        return;
    if (rtb_) {
        rtb_->setSelStart(selStartStack_.back());
        rtb_->setSelLength(selLengthStack_.back());
    }
    selStartStack_.pop_back();
    selLengthStack_.pop_back();
}

bool RtfEngine::SelEdges(long& first, long& last) const
{
    first = rtb_ ? rtb_->SelStart() : 0;
    last = first + (rtb_ ? rtb_->SelLength() : 0) - 1;
    return last > first;
}

QString RtfEngine::ColourTableText(bool wholeDocument)
{
    const QString s = RtfFetch(wholeDocument);
    return TableText(s, headerLen_, QStringLiteral("{\\colortbl"));
}

QString RtfEngine::FontTableText(bool wholeDocument)
{
    const QString s = RtfFetch(wholeDocument);
    return TableText(s, headerLen_, QStringLiteral("{\\fonttbl"));
}

Colour RtfEngine::ColourNamed(const QString& name)
{
    const QString n = name.toLower();
    if (n == QLatin1String("beige"))
        return RGB(255, 200, 100);
    if (n == QLatin1String("mauve"))
        return RGB(255, 200, 255);
    if (n == QLatin1String("grey") || n == QLatin1String("gray"))
        return RGB(175, 175, 175);
    if (n == QLatin1String("pink"))
        return RGB(255, 200, 175);
    if (n == QLatin1String("marigold"))
        return RGB(255, 255, 200);
    if (n == QLatin1String("palegreen"))
        return RGB(200, 255, 200);
    if (n == QLatin1String("limegreen"))
        return RGB(200, 255, 100);
    if (n == QLatin1String("random") || n == QLatin1String("don't care") || n == QLatin1String("dumb luck")) {
        const int r = int(Rnd() * 255);
        const int g = int(Rnd() * 255);
        const int b = int(Rnd() * 255);
        return RGB(r, g, b);
    }
    ReportError();
    return 0;
}

}  // namespace tornelia
