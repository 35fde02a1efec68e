#include "macro/value.h"

#include <QLocale>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

namespace tornelia {

bool isEmpty(const MacroValue& v) { return std::holds_alternative<std::monostate>(v); }

namespace {

bool skippable(QChar c) { return c == u' ' || c == u'\t' || c == u'\n'; }

// Digits of a base after "&H" or "&O"; the number wraps like the 16- and
// 32-bit integers it stands for, so "&HFFFF" is -1.
double radixNumber(const QString& text, qsizetype i, int base)
{
    quint64 value = 0;
    int digits = 0;
    for (; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (skippable(c))
            continue;
        const int d = c.isDigit() ? c.digitValue()
                      : (base == 16 && c.toLower() >= u'a' && c.toLower() <= u'f') ? c.toLower().unicode() - 'a' + 10
                                                                                     : -1;
        if (d < 0 || d >= base)
            break;
        value = value * quint64(base) + quint64(d);
        ++digits;
        if (value > 0xFFFFFFFFull)
            return 0;  // too long to be any integer the language has
    }
    if (digits == 0)
        return 0;
    if (value <= 0xFFFF && ((base == 16 && digits <= 4) || (base == 8 && value <= 0xFFFF)))
        return double(std::int16_t(std::uint16_t(value)));
    return double(std::int32_t(std::uint32_t(value)));
}

}  // namespace

double numberOfText(const QString& text)
{
    qsizetype i = 0;
    const qsizetype n = text.size();
    auto skip = [&] {
        while (i < n && skippable(text.at(i)))
            ++i;
    };
    skip();
    if (i + 1 < n && text.at(i) == u'&') {
        const QChar k = text.at(i + 1).toUpper();
        if (k == u'H')
            return radixNumber(text, i + 2, 16);
        if (k == u'O')
            return radixNumber(text, i + 2, 8);
    }
    std::string s;
    if (i < n && (text.at(i) == u'+' || text.at(i) == u'-')) {
        s += char(text.at(i).unicode());
        ++i;
    }
    bool any = false;
    auto digits = [&] {
        for (skip(); i < n && text.at(i) >= u'0' && text.at(i) <= u'9'; skip()) {
            s += char(text.at(i).unicode());
            ++i;
            any = true;
        }
    };
    digits();
    if (i < n && text.at(i) == u'.') {
        s += '.';
        ++i;
        digits();
    }
    if (!any)
        return 0;
    skip();
    if (i < n) {
        const QChar e = text.at(i).toUpper();
        if (e == u'E' || e == u'D') {
            std::string ex = "e";
            qsizetype j = i + 1;
            while (j < n && skippable(text.at(j)))
                ++j;
            if (j < n && (text.at(j) == u'+' || text.at(j) == u'-'))
                ex += char(text.at(j++).unicode());
            bool expDigits = false;
            for (; j < n; ++j) {
                const QChar c = text.at(j);
                if (skippable(c))
                    continue;
                if (c < u'0' || c > u'9')
                    break;
                ex += char(c.unicode());
                expDigits = true;
            }
            if (expDigits)
                s += ex;
        }
    }
    const double d = std::strtod(s.c_str(), nullptr);
    if (!std::isfinite(d))
        throw MacroError(MacroError::Overflow);
    return d;
}

QString textOf(const MacroValue& v)
{
    struct {
        QString operator()(std::monostate) const { return {}; }
        QString operator()(const QString& s) const { return s; }
        QString operator()(std::int32_t i) const { return QString::number(i); }
        QString operator()(std::int16_t i) const { return QString::number(i); }
        QString operator()(double d) const
        {
            if (d == 0)
                return QStringLiteral("0");
            // Fifteen significant digits: what a double holds for sure, so
            // 0.1 + 0.2 reads 0.3.
            QString s = QString::number(d, 'g', 15);
            s.replace(u'e', u'E');
            const QString mark = QLocale().decimalPoint();
            if (mark != QLatin1String("."))
                s.replace(u'.', mark);
            return s;
        }
    } visitor;
    return std::visit(visitor, v);
}

double numberOf(const MacroValue& v)
{
    // Always through the text, even for a number: a sum of fractions is cut
    // to the digits its text shows, and on a comma locale "2,5" reads 2.
    return numberOfText(textOf(v));
}

bool isNumericText(const QString& text)
{
    const QString t = text.trimmed();
    if (t.isEmpty())
        return false;
    bool ok = false;
    QLocale().toDouble(t, &ok);
    if (ok)
        return true;
    // A bare run of digits with a sign is a number in every locale.
    qsizetype i = (t.at(0) == u'+' || t.at(0) == u'-') ? 1 : 0;
    if (i == t.size())
        return false;
    for (; i < t.size(); ++i)
        if (!t.at(i).isDigit())
            return false;
    return true;
}

double strictDouble(const QString& text)
{
    if (!isNumericText(text))
        throw MacroError(MacroError::TypeMismatch);
    const QString t = text.trimmed();
    bool ok = false;
    double d = QLocale().toDouble(t, &ok);
    if (!ok)
        d = t.toDouble(&ok);
    if (!ok || !std::isfinite(d))
        throw MacroError(MacroError::Overflow);
    return d;
}

std::int32_t roundToInt32(double d)
{
    // nearbyint rounds ties to the even neighbour in the default mode.
    const double r = std::nearbyint(d);
    if (!(r >= double(std::numeric_limits<std::int32_t>::min()) && r <= double(std::numeric_limits<std::int32_t>::max())))
        throw MacroError(MacroError::Overflow);
    return std::int32_t(r);
}

std::int32_t strictInt32(const QString& text) { return roundToInt32(strictDouble(text)); }

std::int16_t strictInt16(const QString& text)
{
    const double r = std::nearbyint(strictDouble(text));
    if (!(r >= -32768.0 && r <= 32767.0))
        throw MacroError(MacroError::Overflow);
    return std::int16_t(r);
}

bool strictBool(const QString& text) { return strictDouble(text) != 0; }

}  // namespace tornelia
