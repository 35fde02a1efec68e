#include "rtf/colour_effects.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tornelia::rtfkit {

long CLng(double v)
{
    // nearbyint follows the default rounding mode, which rounds halves to even.
    return long(std::nearbyint(v));
}

Colour SpectrumColour(int sector, int value)
{
    switch (sector) {
    case 0: return RGB(255, value, 0);
    case 1: return RGB(255 - value, 255, 0);
    case 2: return RGB(0, 255, value);
    case 3: return RGB(0, 255 - value, 255);
    case 4: return RGB(value, 0, 255);
    case 5: return RGB(255, 0, 255 - value);
    default: return 0;
    }
}

float Percent(double part, double whole)
{
    if (whole == 0)
        return 0;
    return float(std::min(100.0 * part / whole, 100.0));
}

void ReverseColours(Colours& colours)
{
    std::reverse(colours.begin(), colours.end());
}

void MirrorColours(Colours& colours)
{
    const Colours old = colours;
    const size_t n = old.size();
    for (size_t j = 0; n > 0 && j <= (n - 1) / 2; ++j) {
        colours[j] = old[2 * j];
        colours[n - 1 - j] = old[2 * j];
    }
}

void ArraySteps(Colours& colours, bool mirror, bool foreToBack)
{
    if (!foreToBack)
        ReverseColours(colours);
    if (mirror)
        MirrorColours(colours);
}

const std::vector<Material>& MaterialTable()
{
    static const std::vector<Material> table = {
        {QStringLiteral("blue steel"), 1.3, 0, 255, 0, 33, 99},
        {QStringLiteral("diamond"), 1.3, 0, 255, 100, 100, 255},
        {QStringLiteral("gold"), 1.3, 0, 255, 70, 30, 0},
        {QStringLiteral("ice"), 3, 100, 255, 0, 40, 60},
        {QStringLiteral("lead"), 1.5, 0, 100, 33, 33, 33},
        {QStringLiteral("rubber"), 1.5, 0, 100, 100, 33, 33},
        {QStringLiteral("silver"), 1.3, 0, 255, 33, 33, 33},
        {QStringLiteral("slate"), 1.3, 0, 100, 33, 33, 100},
        {QStringLiteral("flesh1"), 1.3, 100, 255, 44, 4, 0},
        {QStringLiteral("yellowrose"), 1.3, 100, 255, 54, 24, 0},
        {QStringLiteral("milkchocolate"), 1.5, 0, 100, 95, 55, 45},
        {QStringLiteral("pineboard"), 1.5, 100, 165, 100, 85, 35},
        {QStringLiteral("oldgold"), 1.3, 100, 165, 180, 85, 35},
        {QStringLiteral("test"), 10, 100, 165, 180, 85, 35},
        {QStringLiteral("x1"), 1, 0, 165, 190, 75, 3},
        {QStringLiteral("x2"), 2, 10, 160, 100, 150, 55},
    };
    return table;
}

const Material* FindMaterial(const QString& name)
{
    for (const Material& m : MaterialTable())
        if (m.name == name)
            return &m;
    return nullptr;
}

void MaterialsSafeValues(int& lo, int& hi, int& red, int& green, int& blue, double& f)
{
    Limit(lo, hi, 255);
    Limit(0, red, 255);
    Limit(0, green, 255);
    Limit(0, blue, 255);
    // A frequency of exactly nought would make the period nought.
    if (f == 0)
        f = 0.00001;
}

void MaterialWave(Colours& colours, int lo, int hi, int red, int green, int blue, double f)
{
    MaterialsSafeValues(lo, hi, red, green, blue, f);
    const double range = hi - lo;
    const double n = colours.empty() ? 0 : double(colours.size() - 1);
    const double period = 2 * (n / 3.142) * std::fabs(f);
    for (size_t k = 0; k < colours.size(); ++k) {
        const double x = period == 0 ? 0 : double(k) / period;
        const double w = f <= 0 ? std::cos(x) : std::sin(x);
        const int v = int(CLng(std::fabs(range * w) + lo));
        colours[k] = RGB(red + v, green + v, blue + v);
    }
}

Colour MixColour(Colour start, Colour end, double t)
{
    if (t >= 1)
        return end;
    if (t <= 0)
        return start;
    int r1, g1, b1, r2, g2, b2;
    SplitColour(start, r1, g1, b1);
    SplitColour(end, r2, g2, b2);
    auto mix = [t](int a, int b) { return int(CLng((1 - t) * a + t * b)); };
    return RGB(mix(r1, r2), mix(g1, g2), mix(b1, b2));
}

Colours CandyColours(long first, long last, int sector, int mode)
{
    Colours colours;
    colours.reserve(size_t(std::max(last - first + 1, 0L)));
    const long seg = (last - first) / 5;
    long value = 0;
    long k = 1;
    for (long i = first; i <= last; ++i, ++k) {
        switch (mode) {
        case 0: value += seg; break;
        case 1: value = CLng((k + seg) * double(last) / 100 * 255); break;
        case 2: value = CLng(double(last) * i / 100 * 255); break;
        case 3:
            if (seg == 0)
                throw RtfStreamError("division by a zero segment");
            value = CLng(k * 255.0 / seg);
            break;
        default: break;
        }
        colours.push_back(SpectrumColour(sector, int(value % 255)));
    }
    return colours;
}

Colours SpectrumColours(long first, long last, int sector)
{
    Colours colours;
    const long n = last - first;
    for (long k = 0; k <= n; ++k)
        colours.push_back(SpectrumColour(sector, int(n == 0 ? 0 : CLng(k * 255.0 / n))));
    return colours;
}

namespace {

// The spectrum walked over the selection, ramping up over seg characters in
// each sector. One sector per sixth of the selection: the sector only ever
// moves on by one, so a short selection walks fewer sectors, and the last
// position (100%) lands beyond the sixth sector, in black.
Colours SectorWalk(long first, long last, long seg)
{
    Colours colours;
    colours.reserve(size_t(std::max(last - first + 1, 0L)));
    int sector = 0;
    long k = 0;
    for (long i = first; i <= last; ++i) {
        long value = CLng(k * 255.0 / seg);
        const float p = Percent(double(i - first), double(last - first));
        if (long(std::floor(double(p) / 16.6666666666667)) != sector) {
            ++sector;
            k = 0;
            value = 0;
        }
        colours.push_back(SpectrumColour(sector, int(value)));
        ++k;
    }
    return colours;
}

}  // namespace

Colours RainBowColours(long first, long last, bool forward)
{
    Colours colours = SectorWalk(first, last, std::max((last - first) / 6, 1L));
    if (!forward)
        ReverseColours(colours);
    return colours;
}

Colours RainBowIOColours(long first, long last)
{
    const long seg = (last - first) / 5;
    if (seg == 0)
        throw RtfStreamError("division by a zero segment");
    return SectorWalk(first, last, seg);
}

Colours BlendColours(long first, long last, Colour start, Colour end, bool mirror)
{
    Colours colours(size_t(std::max(last - first + 1, 0L)), 0);
    auto at = [&](long place) -> Colour* {
        const long j = place - first;
        return j >= 0 && j < long(colours.size()) ? &colours[size_t(j)] : nullptr;
    };
    long k = 1;
    for (long i = first; i <= last; ++i, ++k) {
        if (!mirror) {
            *at(i) = MixColour(start, end, Percent(double(k), double(last)) / 100.0);
            continue;
        }
        if (k > last / 2.0)
            break;
        const Colour c = MixColour(start, end, Percent(double(k), double(last)) / 50.0);
        *at(i) = c;
        if (Colour* mirrored = at(last - k + 1))
            *mirrored = c;
    }
    return colours;
}

Colours DitherColours(long first, long last, Colour colour)
{
    Colours colours;
    const long step = std::max(CLng(double(last - first) / 255), 1L);
    int r, g, b;
    SplitColour(colour, r, g, b);
    auto less = [](int c, int d) { return c - d >= 1 ? c - d : 0; };
    int d = 0;
    for (long i = first; i <= last; ++i) {
        if (i % step == 0)
            ++d;
        colours.push_back(RGB(less(r, d), less(g, d), less(b, d)));
    }
    return colours;
}

Colour RandomKindColour(int kind, const RandomSource& rnd)
{
    auto draw255 = [&rnd] { return int(std::floor(rnd() * 255)); };
    if (kind == 0) {
        const int r = draw255();
        const int g = draw255();
        const int b = draw255();
        return RGB(r, g, b);
    }
    if (kind == 1) {
        const int s = int(std::floor(rnd() * 5));
        return SpectrumColour(s, draw255());
    }
    if (kind >= 2 && kind <= 7)
        return SpectrumColour(kind - 2, draw255());
    if (kind == 8) {
        const int g = draw255();
        return RGB(g, g, g);
    }
    return 0;
}

void RandomWord(QString& on, QString& off, int threshold, const QString& word, const RandomSource& rnd)
{
    if (rnd() > threshold)
        on += word;
    if (on.contains(word))
        off += word + u'0';
}

void RandomUnderline(QString& on, QString& off, int threshold, const RandomSource& rnd)
{
    static const QStringList words = {
        QStringLiteral("\\ul"),     QStringLiteral("\\uld"),  QStringLiteral("\\uldash"),
        QStringLiteral("\\uldashd"), QStringLiteral("\\uldashdd"), QStringLiteral("\\ulth"),
        QStringLiteral("\\ulhair"), QStringLiteral("\\ulwave"),
    };
    if (!(rnd() > threshold))
        return;
    // Entries 1 to 7 of the eight: the wave underline is never drawn.
    const int entry = int(std::floor(rnd() * 7)) + 1;
    on += words.at(entry - 1);
    off = QStringLiteral("\\ulnone") + off;
}

QString RansomMask(int size, const RandomSource& rnd)
{
    QString on, off;
    const int d = int(std::floor(rnd() * 10 + 1));
    on += QStringLiteral("\\up") + QString::number(5 - d);
    off += QStringLiteral("\\up0");
    const double r = rnd();
    on += QStringLiteral("\\fs") + QString::number(size + 10 - int(std::floor(r * 25 + 1)));
    // Integer thresholds: 0.5 rounds to 0 (always passed), 0.6 to 1 (never).
    const int half = int(CLng(0.5));
    const int more = int(CLng(0.6));
    RandomWord(on, off, half, QStringLiteral("\\b"), rnd);
    RandomWord(on, off, more, QStringLiteral("\\sub"), rnd);
    RandomWord(on, off, half, QStringLiteral("\\super"), rnd);
    RandomWord(on, off, half, QStringLiteral("\\i"), rnd);
    RandomWord(on, off, half, QStringLiteral("\\caps"), rnd);
    RandomWord(on, off, more, QStringLiteral("\\strike"), rnd);
    RandomUnderline(on, off, half, rnd);
    if (!on.isEmpty())
        on += u' ';
    return on + QStringLiteral("***") + off + u' ';
}

void WavePosition(int& value, int amplitude, bool& goDown, int step)
{
    if (std::abs(value) == std::abs(amplitude))
        goDown = !goDown;
    value = goDown ? value - step : value + step;
    Limit(-amplitude, value, amplitude);
}

void WaveSize(int& value, int lo, int hi, bool& goDown, int step)
{
    if (!(value > lo && value < hi))
        goDown = !goDown;
    const long next = goDown ? long(value) - (step + 2) : long(value) + (step + 2);
    // The sizes are 16-bit numbers; a wave that leaves them is an error.
    if (next < std::numeric_limits<short>::min() || next > std::numeric_limits<short>::max())
        throw RtfStreamError("wave size out of range");
    value = int(next);
}

QString MaskBit(const QString& bit, const QStringList& masks, qsizetype& idx)
{
    auto mask = [&](QChar c) {
        if (idx >= masks.size())
            throw RtfStreamError("more characters than masks");
        QString m = masks.at(idx++);
        return m.replace(QLatin1String("***"), QString(c));
    };
    switch (BitKind(bit)) {
    case Blank: {
        // The blank this bit stands for is the joining blank behind it, and
        // the mask must end in a delimiter so that the join stays text. A
        // mask that ends in a blank of its own already has one; putting a
        // blank for "***" into it would double the blank in the text.
        if (idx >= masks.size())
            throw RtfStreamError("more characters than masks");
        QString m = masks.at(idx++);
        m.replace(QLatin1String("***"), QString());
        if (!m.isEmpty() && !m.endsWith(u' '))
            m += u' ';
        return m;
    }
    case RTFOnly: return bit;
    default: {
        QString out;
        for (qsizetype i = 0; i < bit.size(); ++i) {
            const QChar c = bit[i];
            if (c == u'\\' || c == u'}') {
                out += QStringView(bit).sliced(i);
                break;
            }
            out += mask(c);
        }
        return out;
    }
    }
}

namespace {

// Only blanks, as the engine's trim has always done: a line end stays.
QString trimBlanks(const QString& s)
{
    qsizetype a = 0, b = s.size();
    while (a < b && s[a] == u' ')
        ++a;
    while (b > a && s[b - 1] == u' ')
        --b;
    return s.mid(a, b - a);
}

}  // namespace

QString MaskStream(const QString& s, const QStringList& masks)
{
    QString head;
    QStringList bits;
    SplitStream(s, head, bits);
    qsizetype idx = 0;
    for (QString& bit : bits)
        bit = MaskBit(bit, masks, idx);
    return trimBlanks(head) + JoinBits(bits, QStringLiteral(" "));
}

}  // namespace tornelia::rtfkit
