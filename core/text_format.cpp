#include "core/text_format.h"

#include <QBrush>
#include <QStringList>

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

qint64 foregroundOf(const QTextCharFormat& f)
{
    if (!f.hasProperty(QTextFormat::ForegroundBrush))
        return -1;
    const QBrush b = f.foreground();
    if (b.style() == Qt::NoBrush)
        return -1;
    return toColour(b.color());
}

qint64 highlightOf(const QTextCharFormat& f)
{
    if (!f.hasProperty(QTextFormat::BackgroundBrush))
        return -1;
    const QBrush b = f.background();
    if (b.style() == Qt::NoBrush)
        return -1;
    return toColour(b.color());
}

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
