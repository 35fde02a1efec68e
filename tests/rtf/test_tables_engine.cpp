// The colour effects, the toggles and the highlight on text in table cells:
// the text takes the formats, and the rows stay as they were.

#include "core/rich_text_surface.h"
#include "engine_support.h"
#include "rtf/cls_extended_rtf.h"
#include "rtf/cls_rtf_font_looks.h"

#include "../core/table_support.h"

#include <gtest/gtest.h>

#include <QTextCursor>

#include <set>

using namespace tornelia;

TEST(EngineOnTables, EffectsAndTogglesKeepTheRows)
{
    const QString rtf = QStringLiteral(
        "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\\pard Intro\\par"
        "\\trowd\\trgaph108\\trleft0\\clbrdrb\\brdrs\\brdrw10\\cellx2000\\clvmgf\\cellx4000\\pard\\intbl alpha\\cell beta\\cell\\row"
        "\\trowd\\trgaph108\\trleft0\\cellx2000\\clvmrg\\cellx4000\\pard\\intbl gamma\\par delta\\cell\\cell\\row"
        "\\pard Outro\\par}");
    test::RecordingMessages messages;
    RichTextSurface s;
    s.setTextRTF(rtf);
    const QString text = s.Text();
    const QString tables = test::tableDump(*s.document());
    ASSERT_EQ(text.toStdString(), "Intro\r\nalpha\tbeta\r\ngamma\r\ndelta\r\nOutro");

    ClsRTFFontLooks looks(messages);
    looks.AssignControls(&s, nullptr);
    looks.seedRandom(3);
    // From inside the first cell to inside the last paragraph of the table.
    test::select(s, 8, 18);
    looks.RainBow(true, true);
    EXPECT_EQ(s.Text(), text);
    EXPECT_EQ(test::tableDump(*s.document()).toStdString(), tables.toStdString());
    // The letters selected took colours of their own; the text before the
    // table none.
    std::set<Colour> colours;
    for (long p = 0; p < s.length(); ++p) {
        if (text[p].isSpace())
            continue;
        test::select(s, p, 1);
        const Colour c = s.SelColor().value_or(0);
        if (p < 5) {
            EXPECT_EQ(c, 0u) << "at " << p;
        }
        colours.insert(c);
    }
    EXPECT_GT(colours.size(), 3u);

    test::select(s, 8, 18);
    EXPECT_TRUE(looks.ToggleWord(QStringLiteral("\\b")));
    EXPECT_EQ(s.Text(), text);
    EXPECT_EQ(test::tableDump(*s.document()).toStdString(), tables.toStdString());
    test::select(s, 8, 18);
    EXPECT_EQ(s.SelBold(), std::optional<bool>(true));
    test::select(s, 0, 5);
    EXPECT_EQ(s.SelBold(), std::optional<bool>(false));

    test::select(s, 8, 18);
    looks.RTFHighlightHard(0x00FFFF);
    EXPECT_EQ(s.Text(), text);
    EXPECT_EQ(test::tableDump(*s.document()).toStdString(), tables.toStdString());
    EXPECT_TRUE(messages.shown.isEmpty()) << messages.shown.join(u'\n').toStdString();
}

// A wave underline set and then taken away over words in and out of cells
// leaves the document as it was, blanks included: the string engine moves a
// blank past an empty paragraph on the way, and every blank must still be
// given its new format.
TEST(EngineOnTables, WaveOnAndOffLeavesTheDocumentAsItWas)
{
    const QString rtf = QStringLiteral(
        "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\\pard The row's cells are merged.\\par\\par Middle row is empty\\par"
        "\\trowd\\trgaph108\\trleft0\\cellx2000\\cellx4000\\pard\\intbl Cell  one\\cell Cell two\\cell\\row"
        "\\trowd\\trgaph108\\trleft0\\cellx4000\\pard\\intbl\\cell\\row"
        "\\pard After the table\\par}");
    test::RecordingMessages messages;
    RichTextSurface s;
    s.setTextRTF(rtf);
    ClsExtendedRTF extended(messages);
    extended.AssignControls(&s, nullptr);
    const QString text = s.Text();
    const QString original = s.TextRTF();
    const QString tables = test::tableDump(*s.document());
    // From inside the first word to inside the text after the table.
    const long from = 5;
    const long length = long(text.indexOf(QLatin1String("the table"))) - from;
    test::select(s, from, length);
    extended.setSelWave(true);
    EXPECT_EQ(s.Text(), text);
    test::select(s, from, length);
    EXPECT_EQ(s.SelUnderlineKind(), std::optional<UnderlineKind>(UnderlineKind::Wave));
    extended.setSelWave(true);
    EXPECT_EQ(s.Text(), text);
    EXPECT_EQ(test::tableDump(*s.document()).toStdString(), tables.toStdString());
    EXPECT_EQ(s.TextRTF(), original);
    EXPECT_TRUE(messages.shown.isEmpty()) << messages.shown.join(u'\n').toStdString();
}

// RTF whose text differs from the cells' only in blanks restyles every
// character, blanks the new text lost or gained included; RTF with other
// text is a paste, and replaces the selection.
TEST(EngineOnTables, RestyleAcrossCellsPairsTheBlanks)
{
    const QString doc = QStringLiteral(
        "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\\pard Intro\\par"
        "\\trowd\\trgaph108\\trleft0\\cellx2000\\cellx4000\\pard\\intbl one two\\cell three  four\\cell\\row"
        "\\pard Outro\\par}");
    RichTextSurface s;
    s.setTextRTF(doc);
    const QString text = s.Text();
    const QString tables = test::tableDump(*s.document());
    ASSERT_EQ(text.toStdString(), "Intro\r\none two\tthree  four\r\nOutro");

    // From inside "Intro" to inside "Outro". One blank gained between "one"
    // and "two", one lost between "three" and "four", one gained in front.
    test::select(s, 2, 28);
    s.setSelRTF(QStringLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\\pard\\b tro\\par  one  two\\par three four\\par Ou}"));
    EXPECT_EQ(s.Text(), text);
    EXPECT_EQ(test::tableDump(*s.document()).toStdString(), tables.toStdString());
    QString bold;
    for (long p = 0; p < s.length(); ++p) {
        test::select(s, p, 1);
        bold += text[p] == u'\t' || text[p] == u'\r' || text[p] == u'\n' ? QChar(u'.')
                : s.SelBold().value_or(false)                        ? QChar(u'B')
                                                                     : QChar(u'-');
    }
    EXPECT_EQ(bold.toStdString(), "--BBB..BBBBBBB.BBBBBBBBBBB..BB---");

    test::select(s, 2, 28);
    s.setSelRTF(QStringLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\\pard\\b tro\\par one tw0\\par three four\\par Ou}"));
    EXPECT_NE(s.Text(), text);
    EXPECT_TRUE(s.Text().contains(QLatin1String("tw0")));
}
