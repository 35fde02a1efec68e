// The ripple: the wave steps, the masks in the stream, and the waves the
// engine writes into a selection of the surface.

#include "rtf/cls_rtf_font_looks.h"
#include "tests/rtf/effects_support.h"

using namespace tornelia;
using namespace tornelia::rtfkit;

namespace {

// The values of n steps of a wave, in one line.
template <typename Step>
QString walk(int n, int value, Step step)
{
    QStringList out;
    bool goDown = true;
    for (int i = 0; i < n; ++i) {
        step(value, goDown);
        out << QString::number(value);
    }
    return out.join(u' ');
}

}  // namespace

TEST(Ripple, WavesTurnAtTheirBounds)
{
    // Position: turns where |value| meets the amplitude, never passes it.
    EXPECT_EQ(walk(8, 0, [](int& v, bool& d) { WavePosition(v, 2, d, 1); }), "-1 -2 -1 0 1 2 1 0");
    EXPECT_EQ(walk(5, 0, [](int& v, bool& d) { WavePosition(v, 2, d, 3); }), "-2 1 2 -1 -2");
    // A flat sea: nought flips at every step and the clamp holds it there.
    EXPECT_EQ(walk(3, 0, [](int& v, bool& d) { WavePosition(v, 0, d, 1); }), "0 0 0");
    // Size: steps of step + 2, turning once the value is outside lo..hi.
    EXPECT_EQ(walk(8, 20, [](int& v, bool& d) { WaveSize(v, 16, 24, d, 0); }), "18 16 18 20 22 24 22 20");
    int huge = 32766;
    bool down = false;
    EXPECT_THROW(WaveSize(huge, 0, 40000, down, 1), RtfStreamError);
}

TEST(Ripple, MasksGoOnTheVisibleCharacters)
{
    const QStringList masks = {"<1***>", "<2***>", "<3***>", "<4***>"};
    qsizetype idx = 0;
    // An empty bit is a blank of the text: it takes a mask, closed by a
    // delimiter so that the joining blank stays text. Control words take
    // none; an escape ends the masking of its bit.
    EXPECT_EQ(MaskBit("", masks, idx), "<1> ");
    EXPECT_EQ(MaskBit("", {"\\b ***\\b0 "}, idx = 0), "\\b \\b0 ");
    idx = 1;
    EXPECT_EQ(MaskBit("\\b\\i", masks, idx), "\\b\\i");
    EXPECT_EQ(MaskBit("ab\\'e8c}", masks, idx), "<2a><3b>\\'e8c}");
    EXPECT_EQ(idx, 3);
    EXPECT_THROW(MaskBit("xyz", masks, idx), RtfStreamError);

    const QString stream = test::kSurfaceHead + "\\viewkind4\\uc1\\pard\\f0\\fs20 ab  c}\r\n";
    EXPECT_EQ(MaskStream(stream, {"\\up1***", "\\up2***", "\\up3***", "\\up4***", "\\up5***"}),
              test::kSurfaceHead + "\\viewkind4\\uc1\\pard\\f0\\fs20 \\up1a\\up2b \\up3  \\up4c}\r\n");
}

TEST(Ripple, WavesInTheDocument)
{
    test::RecordingMessages messages;
    RichTextSurface surface;
    ClsRTFFontLooks looks(messages);
    looks.AssignControls(&surface, nullptr);
    surface.setText(QStringLiteral("Onde  su\r\nmare"));
    const QString text = surface.Text();
    test::select(surface, 0, 14);

    // Up and down, by half-points; the double blank rides as well.
    int value = 0;
    looks.RippleEngine(0, 2, true, value, 1);
    EXPECT_EQ(surface.SelRTF(), test::kSurfaceHead +
                                    "\\viewkind4\\uc1\\pard\\dn1\\f0\\fs20 O\\dn2 n\\dn1 d\\up0 e \\up1  \\up2 s\\up1 u"
                                    "\\par\r\nmare}\r\n");
    // The wave runs over every position, also those the stream has no
    // character for (the paragraph break, the last line).
    EXPECT_EQ(value, 2);
    EXPECT_EQ(surface.Text(), text);

    // Growing and shrinking around the size the selection starts with; the
    // caller keeps where the wave ended.
    surface.setText(QStringLiteral("Onde  su"));
    test::select(surface, 0, 8);
    value = 0;
    looks.RippleEngine(1, 2, true, value, 1);
    EXPECT_EQ(surface.SelRTF(), test::kSurfaceHead +
                                    "\\viewkind4\\uc1\\pard\\f0\\fs17 O\\fs14 n\\fs17 d\\fs20 e \\fs23  \\fs26 s"
                                    "\\fs23 u}\r\n");
    EXPECT_EQ(value, 20);
    EXPECT_TRUE(messages.shown.isEmpty());
}
