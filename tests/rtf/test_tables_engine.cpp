// The colour effects, the toggles and the highlight on text in table cells:
// the text takes the formats, and the rows stay as they were.

#include "core/rich_text_surface.h"
#include "engine_support.h"
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
        if (p < 5)
            EXPECT_EQ(c, 0u) << "at " << p;
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
