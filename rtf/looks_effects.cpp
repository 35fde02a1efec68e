// The colour effects and the ripple of ClsRTFFontLooks: each computes its
// colours or masks for the whole selection first, then rewrites the stream
// of the selection once.

#include "rtf/cls_rtf_font_looks.h"
#include "rtf/colour_effects.h"

#include <cmath>
#include <functional>
#include <optional>

namespace tornelia {

using namespace rtfkit;

void ClsRTFFontLooks::reportEffectError()
{
    messages_.mostraMsg(QStringLiteral("Errore"), QStringLiteral("Errore nell'applicazione dell'effetto!"), 0, 3);
}

void ClsRTFFontLooks::selectionEffect(const std::function<Colours(long, long)>& make, bool toText,
                                      std::optional<Steps> steps, bool shuffle)
{
    long first, last;
    if (!surface() || !SelEdges(first, last))
        return;
    try {
        Colours colours = make(first, last);
        if (steps)
            ArraySteps(colours, steps->mirror, steps->foreToBack);
        ApplyColours(colours, toText, shuffle);
    } catch (const RtfStreamError&) {
        // Nothing was stored: the selection is as it was.
        reportEffectError();
    }
}

void ClsRTFFontLooks::Candy(int sector, int mode, bool toText)
{
    selectionEffect([&](long first, long last) { return CandyColours(first, last, sector, mode); }, toText);
}

void ClsRTFFontLooks::SpectrumSector(int sector, bool mirror, bool foreToBack, bool toText)
{
    selectionEffect([&](long first, long last) { return SpectrumColours(first, last, sector); }, toText,
                    Steps{mirror, foreToBack});
}

void ClsRTFFontLooks::RainBow(bool forward, bool toText)
{
    selectionEffect([&](long first, long last) { return RainBowColours(first, last, forward); }, toText);
}

void ClsRTFFontLooks::Materials(const QString& name, bool mirror, bool foreToBack, bool toText)
{
    selectionEffect(
        [&](long first, long last) {
            Colours colours(size_t(last - first + 1), 0);
            if (const Material* m = FindMaterial(name))
                MaterialWave(colours, m->lo, m->hi, m->red, m->green, m->blue, m->f);
            return colours;
        },
        toText, Steps{mirror, foreToBack});
}

void ClsRTFFontLooks::MaterialsTest(int /*unused*/, bool mirror, bool foreToBack, bool toText, int lo, int hi,
                                    int red, int green, int blue, double f)
{
    selectionEffect(
        [&](long first, long last) {
            Colours colours(size_t(last - first + 1), 0);
            MaterialWave(colours, lo, hi, red, green, blue, f);
            return colours;
        },
        toText, Steps{mirror, foreToBack});
}

void ClsRTFFontLooks::RandomColour(int kind, bool toText)
{
    selectionEffect(
        [&](long first, long last) {
            Colours colours;
            colours.reserve(size_t(last - first + 1));
            const RandomSource rnd = [this] { return Rnd(); };
            for (long i = first; i <= last; ++i)
                colours.push_back(kind == 0 ? ColourNamed(QStringLiteral("random")) : RandomKindColour(kind, rnd));
            return colours;
        },
        toText);
}

void ClsRTFFontLooks::ShuffleColour(int kind, bool shuffle)
{
    selectionEffect(
        [&](long first, long last) {
            Colours colours;
            colours.reserve(size_t(last - first + 1));
            const RandomSource rnd = [this] { return Rnd(); };
            for (long i = first; i <= last; ++i) {
                if (Rnd() <= 0.5) {
                    if (shuffle)
                        colours.push_back(ColourNamed(QStringLiteral("random")));
                    else
                        colours.push_back(Rnd() > 0.5 ? 0 : 0xFFFFFF);
                } else {
                    colours.push_back(RandomKindColour(kind, rnd));
                }
            }
            return colours;
        },
        true, std::nullopt, shuffle);
}

void ClsRTFFontLooks::Blender(bool mirror, bool toText)
{
    long first, last;
    if (!surface() || !SelEdges(first, last))
        return;
    const auto start = ColourUser();
    if (!start)
        return;
    const auto end = ColourUser();
    if (!end)
        return;
    lastBlendStartColour_ = *start;
    lastBlendEndColour_ = *end;
    BlenderHard(*start, *end, mirror, toText);
}

void ClsRTFFontLooks::BlenderHard(Colour start, Colour end, bool mirror, bool toText)
{
    selectionEffect([&](long first, long last) { return BlendColours(first, last, start, end, mirror); }, toText);
}

void ClsRTFFontLooks::Dither(bool mirror, bool foreToBack, bool toText)
{
    long first, last;
    if (!surface() || !SelEdges(first, last))
        return;
    const auto colour = ColourUser();
    if (!colour)
        return;
    lastDitherColor_ = *colour;
    DitherHard(*colour, mirror, foreToBack, toText);
}

void ClsRTFFontLooks::DitherHard(Colour colour, bool mirror, bool foreToBack, bool toText)
{
    selectionEffect([&](long first, long last) { return DitherColours(first, last, colour); }, toText,
                    Steps{mirror, foreToBack});
}

void ClsRTFFontLooks::RainBowIO(bool forward, bool mirror, bool toText)
{
    selectionEffect([](long first, long last) { return RainBowIOColours(first, last); }, toText,
                    Steps{mirror, forward});
}

void ClsRTFFontLooks::ColourTemplate(bool mirror, bool foreToBack, bool toText)
{
    selectionEffect([](long first, long last) { return Colours(size_t(last - first + 1), 0); }, toText,
                    Steps{mirror, foreToBack});
}

void ClsRTFFontLooks::ColourRemove(bool toText)
{
    if (!surface())
        return;
    const QString word = toText ? QStringLiteral("\\cf") : QStringLiteral("\\highlight");
    BusyState(true);
    const QString s = RtfFetch(false);
    const int count = int(TableText(s, headerLen_, QStringLiteral("{\\colortbl")).count(QLatin1String("\\red")));
    QString head;
    QStringList bits;
    try {
        SplitStream(s, head, bits);
    } catch (const RtfStreamError&) {
        BusyState(false);
        reportEffectError();
        return;
    }
    QString joined = JoinBits(bits, QStringLiteral(" "));
    // From the highest index down, so that "\cf1" does not eat the start
    // of "\cf12".
    for (int n = count * 4; n >= 0; --n)
        joined.replace(word + QString::number(n), word + u'0');
    RtfStore(head + joined);
    BusyState(false);
}

void ClsRTFFontLooks::ColourRemoveAll()
{
    ColourRemove(false);
    ColourRemove(true);
}

void ClsRTFFontLooks::Ransom(int mode)
{
    long first, last;
    if (!surface() || !SelEdges(first, last))
        return;
    try {
        int size = FirstFontSize();
        if (size == 0)
            size = 29;
        QStringList masks;
        masks.reserve(last - first + 1);
        const RandomSource rnd = [this] { return Rnd(); };
        for (long i = first; i <= last; ++i)
            masks << RansomMask(size, rnd);
        ApplyMasks(masks);
    } catch (const RtfStreamError&) {
        reportEffectError();
        return;
    }
    switch (mode) {
    case 1: RandomColour(int(std::floor(Rnd() * 7)), true); break;
    case 2: RandomColour(int(std::floor(Rnd() * 7)), false); break;
    case 3: ShuffleColour(int(std::floor(Rnd() * 7)), true); break;
    default: break;
    }
}

void ClsRTFFontLooks::RippleEngine(int mode, int amplitude, bool goDown, int& value, int step)
{
    long first, last;
    if (!surface() || !SelEdges(first, last))
        return;
    try {
        QStringList masks;
        masks.reserve(last - first + 1);
        int lo = 0, hi = 0;
        for (long i = first; i <= last; ++i) {
            if (mode == 1) {
                if (i == first) {
                    value += FirstFontSize();
                    lo = value - 2 * amplitude;
                    hi = value + 2 * amplitude;
                    // Keeps the smallest size readable; the wave then runs
                    // as far above as it would have run below.
                    if (lo < 8) {
                        hi = std::abs(8 - lo) + 2 * amplitude + value;
                        lo = 8;
                    }
                }
                WaveSize(value, lo, hi, goDown, step);
                masks << QStringLiteral("\\fs") + QString::number(value) + QStringLiteral("***");
            } else if (mode == 0) {
                WavePosition(value, amplitude, goDown, step);
                masks << QStringLiteral("\\up") + QString::number(value) + QStringLiteral("***");
            } else {
                masks << QString();
            }
        }
        ApplyMasks(masks);
    } catch (const RtfStreamError&) {
        reportEffectError();
    }
}

void ClsRTFFontLooks::ApplyMasks(const QStringList& masks)
{
    if (!surface())
        return;
    // Busy until the stream is back, and no longer once it failed.
    struct Busy {
        ClsRTFFontLooks* self;
        ~Busy() { self->BusyState(false); }
    } busy{this};
    BusyState(true);
    RtfStore(MaskStream(RtfFetch(false), masks));
}

int ClsRTFFontLooks::FirstFontSize()
{
    QString head;
    QStringList bits;
    SplitBits(head, bits);
    int size = 0;
    const QString first = bits.value(0);
    const int p = InStr(1, first, QStringLiteral("\\fs"));
    if (p != 0) {
        // The number behind the word, as far as it goes.
        qsizetype i = p + 2;
        QString digits;
        while (i < first.size() && first[i].isDigit())
            digits += first[i++];
        size = digits.toInt();
    } else if (rtb_) {
        BusyState(true);
        rtb_->setSelStart(1);
        rtb_->setSelLength(1);
        size = int(rtb_->SelFontSize().value_or(0));
        BusyState(false);
    }
    return size < 1 ? 30 : size;
}

}  // namespace tornelia
