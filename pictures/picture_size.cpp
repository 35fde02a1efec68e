#include "pictures/picture_size.h"

#include <QLocale>

#include <cmath>

namespace tornelia::pictures {

namespace {

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\r' || c == u'\n' || c == u'\t';
}

// The number that starts at `from`, up to the first character that `ends`
// accepts; the rest of the text when none does.
template <typename End>
QString numberAt(const QString& text, qsizetype from, End ends, qsizetype* endOut = nullptr)
{
    qsizetype end = from;
    while (end < text.size() && !ends(text.at(end)))
        ++end;
    if (endOut)
        *endOut = end;
    return text.mid(from, end - from);
}

// The height's number ends at a blank; a writer that runs the data on the
// same line without one ends it with the next control word instead.
bool endsHeight(QChar c)
{
    return isBlank(c) || c == u'\\' || c == u'{' || c == u'}';
}

double leadingValue(const QString& text)
{
    // Like reading a number from the start of a text: digits up to the first
    // other character, zero for none.
    double v = 0;
    for (QChar c : text.trimmed()) {
        if (!c.isDigit())
            break;
        v = v * 10 + c.digitValue();
    }
    return v;
}

}  // namespace

PictureSize readPictureSize(const QString& rtf)
{
    const QString head = rtf.left(kSizeWindow);
    PictureSize size;

    qsizetype w = head.indexOf(QLatin1String("\\picwgoal"));
    if (w >= 0) {
        w += 9;
    } else if ((w = head.indexOf(QLatin1String("\\objw"))) >= 0) {
        w += 5;
    }
    if (w >= 0) {
        qsizetype end = 0;
        const QString n = numberAt(head, w, [](QChar c) { return c == u'\\'; }, &end);
        // A number cut off by the end of the window is not the number.
        if (end < head.size())
            size.width = n;
    }

    qsizetype h = head.indexOf(QLatin1String("\\pichgoal"));
    if (h >= 0) {
        qsizetype end = 0;
        const QString n = numberAt(head, h + 9, endsHeight, &end);
        if (end < head.size())
            size.height = n;
    } else if ((h = head.indexOf(QLatin1String("\\objh"))) >= 0) {
        qsizetype end = 0;
        const QString n = numberAt(head, h + 5, [](QChar c) { return c == u'{'; }, &end);
        if (end < head.size())
            size.height = n.trimmed();
    }
    return size;
}

QString validSide(const QString& text)
{
    if (text.trimmed().isEmpty() || leadingValue(text) < 1)
        return QStringLiteral("1");
    return text;
}

std::optional<QString> applyPictureSize(const QString& rtf, const QString& width, const QString& height)
{
    QString out = rtf;
    const qsizetype w = out.indexOf(QLatin1String("\\picwgoal"));
    if (w < 0)
        return std::nullopt;
    qsizetype end = 0;
    numberAt(out, w + 9, [](QChar c) { return c == u'\\'; }, &end);
    out.replace(w + 9, end - (w + 9), width);

    const qsizetype h = out.indexOf(QLatin1String("\\pichgoal"));
    if (h < 0)
        return std::nullopt;
    numberAt(out, h + 9, endsHeight, &end);
    out.replace(h + 9, end - (h + 9), height);
    return out;
}

QString formatTwips(double twips)
{
    const double r = std::round(twips);
    if (r == 0)
        return QString();
    return QString::number(static_cast<long long>(r));
}

QString centimetreLabel(const QString& twips)
{
    const double cm = leadingValue(twips) / kTwipsPerCm;
    QLocale italian(QLocale::Italian);
    italian.setNumberOptions(QLocale::OmitGroupSeparator);
    return italian.toString(cm, 'f', 2) + QStringLiteral(" cm");
}

bool isNumeric(const QString& text)
{
    bool ok = false;
    text.trimmed().toDouble(&ok);
    return ok;
}

ProportionResult proportionalUpdate(int edited, const QString& width, const QString& height, double ratio)
{
    ProportionResult r;
    const QString& typed = edited == 0 ? width : height;
    if (typed.isEmpty())
        return r;
    if (!isNumeric(width) || !isNumeric(height)) {
        r.error = ProportionError::NotNumeric;
        return r;
    }
    if (ratio <= 0)
        return r;
    if (edited == 1)
        r.other = formatTwips(height.toDouble() / ratio);
    else
        r.other = formatTwips(width.toDouble() * ratio);
    return r;
}

Components splitColour(Colour c)
{
    // The stored colour in hexadecimal, six digits with leading zeros, read
    // two digits at a time.
    const QString hex = QString::number(c & 0xFFFFFF, 16).rightJustified(6, u'0');
    Components k;
    k.blue = hex.mid(0, 2).toInt(nullptr, 16);
    k.green = hex.mid(2, 2).toInt(nullptr, 16);
    k.red = hex.mid(4, 2).toInt(nullptr, 16);
    return k;
}

std::vector<Colour> gradientColumns(Colour first, Colour second, int width)
{
    std::vector<Colour> out;
    if (width <= 0)
        return out;
    const Components a = splitColour(first);
    const Components b = splitColour(second);
    out.reserve(static_cast<size_t>(width));
    const double span = width > 1 ? width - 1 : 1;
    for (int x = 0; x < width; ++x) {
        const double f = x / span;
        const auto step = [f](int from, int to) { return static_cast<Colour>(std::lround(from + (to - from) * f)); };
        out.push_back(step(a.red, b.red) | (step(a.green, b.green) << 8) | (step(a.blue, b.blue) << 16));
    }
    return out;
}

}  // namespace tornelia::pictures
