#include "core/text_format.h"

#include <QBrush>
#include <QStringList>
#include <QTextDocument>
#include <QTextList>

#include <algorithm>
#include <cmath>

namespace tornelia {

void setUnderlineFormat(QTextCharFormat& f, UnderlineKind kind, const QString& spelling)
{
    QTextCharFormat::UnderlineStyle style = QTextCharFormat::SingleUnderline;
    switch (kind) {
    case UnderlineKind::None: style = QTextCharFormat::NoUnderline; break;
    case UnderlineKind::Dotted: style = QTextCharFormat::DotLine; break;
    case UnderlineKind::Dash: style = QTextCharFormat::DashUnderline; break;
    case UnderlineKind::DashDot: style = QTextCharFormat::DashDotLine; break;
    case UnderlineKind::DashDotDot: style = QTextCharFormat::DashDotDotLine; break;
    case UnderlineKind::Wave: style = QTextCharFormat::WaveUnderline; break;
    default: break;  // double, thick, word and hair are drawn by the view over a plain line
    }
    f.setUnderlineStyle(style);
    f.setProperty(prop::UnderlineKind, int(kind));
    f.setProperty(prop::UnderlineWord, spelling);
}

UnderlineKind underlineKindOf(const QTextCharFormat& f)
{
    if (f.hasProperty(prop::UnderlineKind))
        return static_cast<UnderlineKind>(std::clamp(f.intProperty(prop::UnderlineKind), 0, int(UnderlineKind::Hair)));
    switch (f.underlineStyle()) {
    case QTextCharFormat::NoUnderline: return f.fontUnderline() ? UnderlineKind::Single : UnderlineKind::None;
    case QTextCharFormat::DotLine: return UnderlineKind::Dotted;
    case QTextCharFormat::DashUnderline: return UnderlineKind::Dash;
    case QTextCharFormat::DashDotLine: return UnderlineKind::DashDot;
    case QTextCharFormat::DashDotDotLine: return UnderlineKind::DashDotDot;
    case QTextCharFormat::WaveUnderline:
    case QTextCharFormat::SpellCheckUnderline: return UnderlineKind::Wave;
    default: return UnderlineKind::Single;
    }
}

QString underlineWord(const QTextCharFormat& f)
{
    const QString spelling = f.stringProperty(prop::UnderlineWord);
    if (!spelling.isEmpty())
        return spelling;
    switch (underlineKindOf(f)) {
    case UnderlineKind::None: return QStringLiteral("ulnone");
    case UnderlineKind::Single: return QStringLiteral("ul");
    case UnderlineKind::Dotted: return QStringLiteral("uld");
    case UnderlineKind::Dash: return QStringLiteral("uldash");
    case UnderlineKind::DashDot: return QStringLiteral("uldashd");
    case UnderlineKind::DashDotDot: return QStringLiteral("uldashdd");
    case UnderlineKind::Wave: return QStringLiteral("ulwave");
    case UnderlineKind::Double: return QStringLiteral("uldb");
    case UnderlineKind::Thick: return QStringLiteral("ulth");
    case UnderlineKind::Word: return QStringLiteral("ulw");
    case UnderlineKind::Hair: return QStringLiteral("ulhair");
    }
    return QStringLiteral("ul");
}

const char* underlineName(UnderlineKind kind)
{
    static const char* const names[] = {"none", "single", "dotted", "dash", "dashdot", "dashdotdot",
                                        "wave", "double", "thick", "word", "hair"};
    return names[std::clamp(int(kind), 0, 10)];
}

QString fontNameOf(const QTextCharFormat& f)
{
    const QStringList families = f.fontFamilies().toStringList();
    if (!families.isEmpty() && !families.first().isEmpty())
        return families.first();
    return f.font().family();
}

QString defaultFontKind(const QString& name)
{
    static const QStringList swiss = {"Tahoma", "Arial", "Verdana", "Helvetica", "Segoe UI", "Calibri",
                                      "DejaVu Sans", "Liberation Sans", "MS Sans Serif", "Trebuchet MS"};
    static const QStringList roman = {"Times New Roman", "Times", "Georgia", "Cambria", "Garamond",
                                      "DejaVu Serif", "Liberation Serif", "Book Antiqua"};
    static const QStringList modern = {"Courier New", "Courier", "Consolas", "Lucida Console",
                                       "DejaVu Sans Mono", "Liberation Mono"};
    if (swiss.contains(name, Qt::CaseInsensitive))
        return QStringLiteral("fswiss");
    if (roman.contains(name, Qt::CaseInsensitive))
        return QStringLiteral("froman");
    if (modern.contains(name, Qt::CaseInsensitive))
        return QStringLiteral("fmodern");
    return QStringLiteral("fnil");
}

int defaultFontCharset(const QString& name)
{
    static const QStringList symbol = {"Wingdings", "Wingdings 2", "Wingdings 3", "Webdings",
                                       "Symbol", "Marlett", "Zapf Dingbats"};
    return symbol.contains(name, Qt::CaseInsensitive) ? 2 : 0;
}

bool isSymbolCharset(const QTextCharFormat& f)
{
    if (f.hasProperty(prop::FontCharset) && f.intProperty(prop::FontCharset) >= 0)
        return f.intProperty(prop::FontCharset) == 2;
    return defaultFontCharset(fontNameOf(f)) == 2;
}

int offsetHalfPointsOf(const QTextCharFormat& f)
{
    if (f.hasProperty(prop::OffsetHalfPoints))
        return f.intProperty(prop::OffsetHalfPoints);
    switch (f.verticalAlignment()) {
    case QTextCharFormat::AlignSuperScript: return 6;
    case QTextCharFormat::AlignSubScript: return -6;
    default: return 0;
    }
}

int superSubOf(const QTextCharFormat& f)
{
    if (f.hasProperty(prop::OffsetHalfPoints) || !f.hasProperty(prop::SuperSub))
        return 0;
    switch (f.verticalAlignment()) {
    case QTextCharFormat::AlignSuperScript: return 1;
    case QTextCharFormat::AlignSubScript: return -1;
    default: return 0;
    }
}

bool isHidden(const QTextCharFormat& f) { return f.boolProperty(prop::Hidden); }

bool isCaps(const QTextCharFormat& f) { return f.fontCapitalization() == QFont::AllUppercase; }

int halfPointsOf(const QTextCharFormat& f, const QTextCharFormat& fallback)
{
    double pt = f.fontPointSize();
    if (pt <= 0)
        pt = fallback.fontPointSize();
    if (pt <= 0)
        pt = 10;
    return std::max(1, int(std::lround(pt * 2)));
}

namespace {
// A colour is "none" both when the property is absent and when it holds an
// empty brush, which is how Qt clears a colour set earlier.
qint64 brushColourOf(const QTextCharFormat& f, int property)
{
    if (!f.hasProperty(property))
        return -1;
    const QBrush b = f.brushProperty(property);
    if (b.style() == Qt::NoBrush)
        return -1;
    return toColour(b.color());
}
} // namespace

qint64 foregroundOf(const QTextCharFormat& f) { return brushColourOf(f, QTextFormat::ForegroundBrush); }

qint64 highlightOf(const QTextCharFormat& f) { return brushColourOf(f, QTextFormat::BackgroundBrush); }

int alignmentOf(const QTextBlockFormat& f)
{
    const Qt::Alignment a = f.alignment() & Qt::AlignHorizontal_Mask;
    if (a & Qt::AlignJustify)
        return 3;
    if (a & Qt::AlignHCenter)
        return 2;
    if (a & (Qt::AlignRight | Qt::AlignTrailing))
        return 1;
    return 0;
}

void setAlignment(QTextBlockFormat& f, int alignment)
{
    switch (alignment) {
    case 1: f.setAlignment(Qt::AlignRight); break;
    case 2: f.setAlignment(Qt::AlignHCenter); break;
    case 3: f.setAlignment(Qt::AlignJustify); break;
    default: f.setAlignment(Qt::AlignLeft); break;
    }
}

int twipsOf(const QTextBlockFormat& f, int property)
{
    return f.hasProperty(property) ? f.intProperty(property) : 0;
}

void setTwips(QTextBlockFormat& f, int property, int twips)
{
    if (twips)
        f.setProperty(property, twips);
    else
        f.clearProperty(property);
    const double px = twips / 15.0;  // 1440 twips to the inch, 96 pixels to the inch
    if (property == prop::LeftIndent)
        f.setLeftMargin(px);
    else if (property == prop::RightIndent)
        f.setRightMargin(px);
    else if (property == prop::FirstIndent)
        f.setTextIndent(px);
}

}  // namespace tornelia

namespace tornelia {

namespace {

// Adobe's Symbol encoding from 0x20 to 0xFF; 0 where it has no character.
constexpr char16_t kSymbol[224] = {
    // 0x20
    0x0020, 0x0021, 0x2200, 0x0023, 0x2203, 0x0025, 0x0026, 0x220B, 0x0028, 0x0029, 0x2217, 0x002B,
    0x002C, 0x2212, 0x002E, 0x002F,
    // 0x30
    0x0030, 0x0031, 0x0032, 0x0033, 0x0034, 0x0035, 0x0036, 0x0037, 0x0038, 0x0039, 0x003A, 0x003B,
    0x003C, 0x003D, 0x003E, 0x003F,
    // 0x40
    0x2245, 0x0391, 0x0392, 0x03A7, 0x0394, 0x0395, 0x03A6, 0x0393, 0x0397, 0x0399, 0x03D1, 0x039A,
    0x039B, 0x039C, 0x039D, 0x039F,
    // 0x50
    0x03A0, 0x0398, 0x03A1, 0x03A3, 0x03A4, 0x03A5, 0x03C2, 0x03A9, 0x039E, 0x03A8, 0x0396, 0x005B,
    0x2234, 0x005D, 0x22A5, 0x005F,
    // 0x60
    0x203E, 0x03B1, 0x03B2, 0x03C7, 0x03B4, 0x03B5, 0x03C6, 0x03B3, 0x03B7, 0x03B9, 0x03D5, 0x03BA,
    0x03BB, 0x03BC, 0x03BD, 0x03BF,
    // 0x70
    0x03C0, 0x03B8, 0x03C1, 0x03C3, 0x03C4, 0x03C5, 0x03D6, 0x03C9, 0x03BE, 0x03C8, 0x03B6, 0x007B,
    0x007C, 0x007D, 0x223C, 0,
    // 0x80, 0x90
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
    // 0xA0
    0x20AC, 0x03D2, 0x2032, 0x2264, 0x2044, 0x221E, 0x0192, 0x2663, 0x2666, 0x2665, 0x2660, 0x2194,
    0x2190, 0x2191, 0x2192, 0x2193,
    // 0xB0
    0x00B0, 0x00B1, 0x2033, 0x2265, 0x00D7, 0x221D, 0x2202, 0x2022, 0x00F7, 0x2260, 0x2261, 0x2248,
    0x2026, 0x23D0, 0x23AF, 0x21B5,
    // 0xC0
    0x2135, 0x2111, 0x211C, 0x2118, 0x2297, 0x2295, 0x2205, 0x2229, 0x222A, 0x2283, 0x2287, 0x2284,
    0x2282, 0x2286, 0x2208, 0x2209,
    // 0xD0
    0x2220, 0x2207, 0x00AE, 0x00A9, 0x2122, 0x220F, 0x221A, 0x22C5, 0x00AC, 0x2227, 0x2228, 0x21D4,
    0x21D0, 0x21D1, 0x21D2, 0x21D3,
    // 0xE0
    0x25CA, 0x2329, 0x00AE, 0x00A9, 0x2122, 0x2211, 0x239B, 0x239C, 0x239D, 0x23A1, 0x23A2, 0x23A3,
    0x23A7, 0x23A8, 0x23A9, 0x23AA,
    // 0xF0
    0, 0x232A, 0x222B, 0x2320, 0x23AE, 0x2321, 0x239E, 0x239F, 0x23A0, 0x23A4, 0x23A5, 0x23A6,
    0x23AB, 0x23AC, 0x23AD, 0,
};

// Suffixes that name a script of a font, as the font substitutes of Windows
// list them.
constexpr const char* kScriptSuffixes[] = {" CE", " Cyr", " CYR", " Greek", " Tur", " Baltic", " (Arabic)",
                                          " (Hebrew)", " (Vietnamese)"};

}  // namespace

QString baseFontName(const QString& name)
{
    for (const char* suffix : kScriptSuffixes) {
        const QLatin1String s(suffix);
        if (name.size() > s.size() && name.endsWith(s))
            return name.left(name.size() - s.size());
    }
    return name;
}

char16_t symbolFontChar(char16_t c)
{
    if (c < 0xF020 || c > 0xF0FF)
        return 0;
    return kSymbol[c - 0xF020];
}

bool isSymbolFont(const QTextCharFormat& f)
{
    return isSymbolCharset(f) && baseFontName(fontNameOf(f)).compare(QLatin1String("Symbol"), Qt::CaseInsensitive) == 0;
}

QString readableText(const QTextBlock& block)
{
    QString text;
    for (auto it = block.begin(); !it.atEnd(); ++it) {
        const QTextFragment frag = it.fragment();
        QString part = frag.text();
        const QTextCharFormat f = frag.charFormat();
        if (isSymbolFont(f)) {
            for (QChar& c : part)
                if (const char16_t u = symbolFontChar(c.unicode()))
                    c = QChar(u);
        }
        text += part;
    }
    return text;
}

int listStart(const QTextListFormat& f)
{
    return f.hasProperty(prop::ListStart) ? f.intProperty(prop::ListStart) : 1;
}

namespace {

QString romanNumber(int n)
{
    static const std::pair<int, const char*> parts[] = {{1000, "m"}, {900, "cm"}, {500, "d"}, {400, "cd"},
                                                        {100, "c"},  {90, "xc"},  {50, "l"},  {40, "xl"},
                                                        {10, "x"},   {9, "ix"},   {5, "v"},   {4, "iv"},
                                                        {1, "i"}};
    QString out;
    for (const auto& [value, text] : parts)
        for (; n >= value; n -= value)
            out += QLatin1String(text);
    return out;
}

QString letterNumber(int n)
{
    // 1 a, 26 z, 27 aa, as word processors count past the alphabet.
    QString out;
    for (; n > 0; n = (n - 1) / 26)
        out.prepend(QChar(char16_t(u'a' + (n - 1) % 26)));
    return out;
}

}  // namespace

QString listLabel(const QTextBlock& block)
{
    const QTextList* list = block.textList();
    if (!list)
        return {};
    const QTextListFormat f = list->format();
    switch (f.style()) {
    case QTextListFormat::ListDisc:
    case QTextListFormat::ListCircle:
    case QTextListFormat::ListSquare: {
        const QString glyph = f.stringProperty(prop::ListLabel);
        if (!glyph.isEmpty())
            return glyph;
        return f.style() == QTextListFormat::ListCircle ? QStringLiteral("\u25E6")
               : f.style() == QTextListFormat::ListSquare ? QStringLiteral("\u25AA")
                                                          : QStringLiteral("\u2022");
    }
    default: break;
    }
    const int n = listStart(f) + list->itemNumber(block);
    QString number;
    switch (f.style()) {
    case QTextListFormat::ListLowerAlpha: number = letterNumber(n); break;
    case QTextListFormat::ListUpperAlpha: number = letterNumber(n).toUpper(); break;
    case QTextListFormat::ListLowerRoman: number = romanNumber(n); break;
    case QTextListFormat::ListUpperRoman: number = romanNumber(n).toUpper(); break;
    default: number = QString::number(n); break;
    }
    return f.numberPrefix() + number + f.numberSuffix();
}

QString plainTextExport(const QTextDocument& doc)
{
    QString out;
    for (QTextBlock b = doc.begin(); b.isValid(); b = b.next()) {
        if (b != doc.begin())
            out += QLatin1String("\r\n");
        const QString label = listLabel(b);
        if (!label.isEmpty())
            out += label + u'\t';
        out += readableText(b);
    }
    out.replace(QChar::LineSeparator, QLatin1Char('\v'));  // as Text has it
    return out;
}

std::vector<TabStop> tabStopsOf(const QTextBlockFormat& f)
{
    std::vector<TabStop> stops;
    const QList<int> raw = f.property(prop::TabStops).value<QList<int>>();
    for (qsizetype i = 0; i + 2 < raw.size(); i += 3)
        stops.push_back(TabStop{raw[i + 2], char(raw[i]), raw[i + 1]});
    return stops;
}

void setTabStops(QTextBlockFormat& f, const std::vector<TabStop>& stops)
{
    if (stops.empty()) {
        f.clearProperty(prop::TabStops);
        f.clearProperty(QTextFormat::TabPositions);
        return;
    }
    QList<int> raw;
    QList<QTextOption::Tab> tabs;
    for (const TabStop& t : stops) {
        raw << int(t.kind) << t.leader << t.twips;
        QTextOption::Tab tab;
        tab.position = t.twips / 15.0;  // 1440 twips to the inch, 96 pixels to the inch
        tab.type = t.kind == 'r' ? QTextOption::RightTab
                   : t.kind == 'c' ? QTextOption::CenterTab
                   : t.kind == 'd' ? QTextOption::DelimiterTab
                                   : QTextOption::LeftTab;
        if (t.kind == 'd')
            tab.delimiter = QLatin1Char('.');
        tabs << tab;
    }
    f.setProperty(prop::TabStops, QVariant::fromValue(raw));
    f.setTabPositions(tabs);
}

}  // namespace tornelia
