// The colour effects: their sequences, and what they make of selections the
// surface really writes.

#include "rtf/cls_rtf_font_looks.h"
#include "tests/rtf/effects_support.h"

#include <functional>

using namespace tornelia;
using namespace tornelia::rtfkit;
using tornelia::test::rgbList;
using tornelia::test::ScriptedDraws;

namespace {

struct Looks {
    Looks()
    {
        looks.AssignControls(&surface, &colours);
        surface.setText(QString::fromUtf8("Un perché  così"));
    }
    test::RecordingMessages messages;
    test::ScriptedColours colours;
    RichTextSurface surface;
    ClsRTFFontLooks looks{messages};
};

}  // namespace

TEST(ColourEffects, SequencesFollowTheirArithmetic)
{
    // Halves round to even: 127.5 gives 128.
    EXPECT_EQ(rgbList(SpectrumColours(10, 14, 0)), "255,0,0 255,64,0 255,128,0 255,191,0 255,255,0");
    // The rainbow moves on one sector at a time, whatever the percent says,
    // and its last position lies past the sixth sector.
    const QString rainbow = "255,0,0 255,255,0 255,255,0 0,255,0 0,255,255 0,0,255 255,0,255";
    EXPECT_EQ(rgbList(RainBowColours(0, 6, true)), rainbow);
    Colours backwards = RainBowColours(0, 6, false);
    ReverseColours(backwards);
    EXPECT_EQ(rgbList(backwards), rainbow);
    // Two characters: no segment, one colour for both; mode 3 cannot divide.
    EXPECT_EQ(rgbList(CandyColours(4, 5, 0, 0)), "255,0,0 255,0,0");
    EXPECT_THROW(CandyColours(4, 5, 0, 3), RtfStreamError);
    EXPECT_EQ(rgbList(CandyColours(0, 10, 1, 0)),
              "253,255,0 251,255,0 249,255,0 247,255,0 245,255,0 243,255,0 241,255,0 239,255,0 237,255,0 "
              "235,255,0 233,255,0");
    EXPECT_EQ(SpectrumColour(6, 10), 0u);
}

TEST(ColourEffects, MaterialsMirrorAndMix)
{
    Colours gold(4), ice(4), unknown(3);
    const Material* m = FindMaterial("gold");
    ASSERT_NE(m, nullptr);
    MaterialWave(gold, m->lo, m->hi, m->red, m->green, m->blue, m->f);
    EXPECT_EQ(rgbList(gold), "70,30,0 170,130,100 254,214,184 255,255,238");
    m = FindMaterial("ice");
    MaterialWave(ice, m->lo, m->hi, m->red, m->green, m->blue, m->f);
    EXPECT_EQ(rgbList(ice), "100,140,160 127,167,187 153,193,213 178,218,238");
    // Names are exact: no material, black.
    EXPECT_EQ(FindMaterial("Gold"), nullptr);
    // A frequency of nought or less takes the cosine.
    MaterialWave(unknown, 0, 100, 0, 0, 0, -1.5);
    EXPECT_EQ(rgbList(unknown), "100,100,100 87,87,87 50,50,50");

    Colours five = {1, 2, 3, 4, 5}, four = {1, 2, 3, 4}, both = {1, 2, 3, 4, 5};
    MirrorColours(five);
    MirrorColours(four);
    ArraySteps(both, true, false);  // reversed first, then mirrored
    EXPECT_EQ(five, (Colours{1, 3, 5, 3, 1}));
    EXPECT_EQ(four, (Colours{1, 3, 3, 1}));
    EXPECT_EQ(both, (Colours{5, 3, 1, 3, 5}));

    EXPECT_EQ(MixColour(RGB(0, 0, 0), RGB(255, 100, 10), 0.5), RGB(128, 50, 5));
    EXPECT_EQ(MixColour(1, 2, 1.5), 2u);
    EXPECT_EQ(MixColour(1, 2, -1), 1u);
}

TEST(ColourEffects, RandomDrawsAndRansomMasks)
{
    ScriptedDraws grey({0.1, 0.5, 0.9});
    ScriptedDraws sector({0.99, 0.5});
    EXPECT_EQ(rgbList({RandomKindColour(8, std::ref(grey)), RandomKindColour(8, std::ref(grey)),
                       RandomKindColour(8, std::ref(grey))}),
              "25,25,25 127,127,127 229,229,229");
    EXPECT_EQ(rgbList({RandomKindColour(1, std::ref(sector))}), "127,0,255");
    ScriptedDraws none({0.7});
    EXPECT_EQ(RandomKindColour(9, std::ref(none)), 0u);
    EXPECT_EQ(none.used(), 0u);

    // Raise, size, then b, sub, super, i, caps, strike, and the underline
    // (a draw to fire, a draw to pick). Sub and strike never come.
    ScriptedDraws high({0.0, 0.0, 0.3, 0.99, 0.3, 0.3, 0.3, 0.99, 0.3, 0.999});
    EXPECT_EQ(RansomMask(24, std::ref(high)),
              "\\up4\\fs33\\b\\super\\i\\caps\\ulhair ***\\ulnone\\up0\\b0\\super0\\i0\\caps0 ");
    ScriptedDraws low({0.95, 0.999, 0.0, 0.5, 0.5, 0.5, 0.5, 0.5, 0.5, 0.0});
    EXPECT_EQ(RansomMask(24, std::ref(low)),
              "\\up-5\\fs9\\super\\i\\caps\\ul ***\\ulnone\\up0\\super0\\i0\\caps0 ");
}

TEST(ColourEffects, StreamOfARealSelection)
{
    // The stream the surface writes for a selection, coloured: letters up to
    // an escaped one, the empty bit of a double blank, and a table created
    // with its inner group.
    Looks t;
    test::select(t.surface, 0, 15);
    const QString in = t.surface.SelRTF();
    ASSERT_EQ(in, test::kSurfaceHead + "\\viewkind4\\uc1\\pard\\f0\\fs20 Un perch\\'e9  cos\\'ec}\r\n");
    bool toText = true;
    const QString out = ColourStream(in, SpectrumColours(0, 14, 0), toText, false, [] { return 0.0; });
    EXPECT_EQ(out, test::kSurfaceHead.chopped(1) +
                       "{\\colortbl{;\\red255\\green0\\blue0;\\red255\\green18\\blue0;\\red255\\green36\\blue0;"
                       "\\red255\\green55\\blue0;\\red255\\green73\\blue0;\\red255\\green91\\blue0;"
                       "\\red255\\green109\\blue0;\\red255\\green128\\blue0;\\red255\\green146\\blue0;"
                       "\\red255\\green164\\blue0;\\red255\\green182\\blue0;}  }"
                       "\\viewkind4\\uc1\\pard\\f0\\fs20 \\cf1 U\\cf2 n \\cf3 p\\cf4 e\\cf5 r\\cf6 c\\cf7 h\\'e9 "
                       "\\cf8  \\cf9 c\\cf10 o\\cf11 s\\'ec}\r\n");
}

TEST(ColourEffects, EffectsStoreTheirColoursInTheDocument)
{
    Looks t;
    t.surface.setText(QString::fromUtf8("Un perché  così\r\nDue"));
    test::select(t.surface, 0, 19);
    t.looks.RainBow(true, true);
    EXPECT_EQ(t.surface.SelRTF(),
              test::kSurfaceHead +
                  "{\\colortbl ;\\red255\\green0\\blue0;\\red255\\green85\\blue0;\\red255\\green170\\blue0;"
                  "\\red255\\green255\\blue0;\\red170\\green255\\blue0;\\red85\\green255\\blue0;"
                  "\\red0\\green255\\blue0;\\red0\\green255\\blue85;\\red0\\green255\\blue170;"
                  "\\red0\\green255\\blue255;}\r\n"
                  "\\viewkind4\\uc1\\pard\\cf1\\f0\\fs20 U\\cf2 n \\cf3 p\\cf4 er\\cf5 c\\cf6 h\\'e9 \\cf7  "
                  "\\cf8 c\\cf9 o\\cf10 s\\'ec\\par\r\nDu}\r\n");
    // The text, the selection and the double blank are as they were.
    EXPECT_EQ(t.surface.Text(), QString::fromUtf8("Un perché  così\r\nDue"));
    EXPECT_EQ(std::make_pair(t.surface.SelStart(), t.surface.SelLength()), std::make_pair(0L, 19L));

    // Random greys as background; then shuffled without shuffling: a low
    // draw gives black or white by a second one, a high draw a colour of the
    // kind, always as text colour. Every draw is used.
    struct Drawn {
        std::vector<double> draws;
        std::function<void(ClsRTFFontLooks&)> effect;
        QString table, body;
    };
    const Drawn drawn[] = {
        {{0.1, 0.5, 0.9}, [](ClsRTFFontLooks& l) { l.RandomColour(8, false); },
         "\\red25\\green25\\blue25;\\red127\\green127\\blue127;\\red229\\green229\\blue229;",
         "\\highlight1\\f0\\fs20 a\\highlight2 b\\highlight3 c"},
        {{0.2, 0.9, 0.2, 0.1, 0.7, 0.5}, [](ClsRTFFontLooks& l) { l.ShuffleColour(8, false); },
         "\\red0\\green0\\blue0;\\red255\\green255\\blue255;\\red127\\green127\\blue127;",
         "\\cf1\\f0\\fs20 a\\cf2 b\\cf3 c"},
    };
    for (const Drawn& d : drawn) {
        t.surface.setText(QStringLiteral("abc"));
        test::select(t.surface, 0, 3);
        ScriptedDraws draws(d.draws);
        t.looks.setRandomSource(std::ref(draws));
        d.effect(t.looks);
        EXPECT_EQ(t.surface.SelRTF(), test::kSurfaceHead + "{\\colortbl ;" + d.table + "}\r\n\\viewkind4\\uc1\\pard" +
                                          d.body + "}\r\n");
        EXPECT_EQ(draws.used(), d.draws.size());
    }
}

TEST(ColourEffects, ShortSelectionsAndFailures)
{
    Looks t;
    const QString before = t.surface.TextRTF();
    // One character, or none, is no selection for any effect.
    for (long length : {0L, 1L}) {
        test::select(t.surface, 3, length);
        t.looks.Candy(0, 0, true);
        t.looks.SpectrumSector(2, true, false, false);
        t.looks.RainBow(false, true);
        t.looks.Materials("gold", false, true, true);
        t.looks.RandomColour(0, true);
        t.looks.ShuffleColour(1, true);
        t.looks.Ransom(3);
        int value = 0;
        t.looks.RippleEngine(0, 3, true, value, 1);
        EXPECT_EQ(t.surface.TextRTF(), before);
        EXPECT_EQ(value, 0);
    }
    EXPECT_TRUE(t.messages.shown.isEmpty());
    // Candy's last mode divides by the segment, nought on two characters:
    // the person is told, and the document is untouched.
    test::select(t.surface, 3, 2);
    t.looks.Candy(0, 3, true);
    EXPECT_EQ(t.surface.TextRTF(), before);
    EXPECT_EQ(t.messages.shown, QStringList{"Errore|Errore nell'applicazione dell'effetto!|0|3"});
    // Without a surface: the engine's own report, once.
    test::RecordingMessages lone;
    ClsRTFFontLooks unbound(lone);
    unbound.RainBow(true, true);
    EXPECT_EQ(lone.shown, QStringList{"Errore|Errore inaspettato!|0|3"});
}

TEST(ColourEffects, RansomFormatsEveryCharacterThenColours)
{
    Looks t;
    t.surface.setText(QStringLiteral("ab c"));
    test::select(t.surface, 0, 4);
    // Every draw 0.5: a raise of -1 that the superscript overrides, size
    // 20 + 10 - 13, the words that always fire, the fourth underline; then
    // mode 1 picks kind 3, a yellow green. Sub and strike never come, and
    // the blank keeps the size and colour of the character before it.
    t.looks.setRandomSource([] { return 0.5; });
    t.looks.Ransom(1);
    EXPECT_EQ(t.surface.Text(), "ab c");
    EXPECT_EQ(t.surface.SelRTF(), test::kSurfaceHead +
                                      "{\\colortbl ;\\red128\\green255\\blue0;}\r\n"
                                      "\\viewkind4\\uc1\\pard\\cf1\\uldashd\\b\\i\\super\\caps\\f0\\fs17 "
                                      "ab\\ulnone\\b0\\i0\\nosupersub\\caps0  \\uldashd\\b\\i\\super\\caps c}\r\n");
}

TEST(ColourEffects, BlendsDithersAndRemoval)
{
    const Colour brown = RGB(200, 100, 0);
    EXPECT_EQ(rgbList(BlendColours(0, 4, 0, brown, false)), "50,25,0 100,50,0 150,75,0 200,100,0 200,100,0");
    // Mirrored: to the middle and back, the middle itself left black.
    EXPECT_EQ(rgbList(BlendColours(0, 4, 0, brown, true)), "100,50,0 200,100,0 0,0,0 200,100,0 100,50,0");
    EXPECT_EQ(rgbList(DitherColours(0, 3, RGB(3, 10, 0))), "2,9,0 1,8,0 0,7,0 0,6,0");
    EXPECT_THROW(RainBowIOColours(0, 3), RtfStreamError);

    Looks t;
    t.surface.setText(QStringLiteral("Sfumato"));
    const QString plain = t.surface.TextRTF();
    test::select(t.surface, 0, 7);
    // The two colours are asked in turn and kept; a cancel changes nothing.
    t.colours.answers = {0, brown, std::nullopt};
    t.looks.Blender(false, true);
    EXPECT_EQ(std::make_pair(t.looks.LastBlendStartColour(), t.looks.LastBlendEndColour()), std::make_pair(0u, brown));
    const QString blended = t.surface.TextRTF();
    EXPECT_NE(blended, plain);
    t.looks.Dither(false, true, true);
    EXPECT_EQ(t.surface.TextRTF(), blended);
    EXPECT_EQ(t.messages.shown, QStringList{"Errore|Errore inaspettato!|0|3"});

    // Removing the text colours leaves the background; removing both
    // leaves the text as it was.
    t.looks.Candy(3, 0, false);
    t.looks.ColourRemove(true);
    EXPECT_FALSE(t.surface.SelRTF().contains("\\cf"));
    EXPECT_TRUE(t.surface.SelRTF().contains("\\highlight7"));
    t.looks.ColourRemoveAll();
    EXPECT_EQ(t.surface.TextRTF(), plain);
}
