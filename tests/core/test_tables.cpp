// Tables: read into QTextTables with their widths, merges, borders and
// shading; seen by Text and positions as tab-separated lines; written back
// in the rich edit shape; kept whole through the round trips.

#include "core/rich_text_surface.h"
#include "core/run_dump.h"
#include "rtf_support.h"
#include "table_support.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTextBlock>
#include <QTextTable>

using namespace tornelia;
using test::tableDump;

namespace {

QString sample(const char* name) { return QStringLiteral(TORNELIA_RTF_SAMPLES "/") + QLatin1String(name); }

void load(RichTextSurface& s, const QString& rtf) { s.setTextRTF(rtf); }

QString rtfDoc(const char* body)
{
    return QStringLiteral("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}") + QString::fromLatin1(body) + u'}';
}

// Every position maps to the document and back, and each character of
// Text is the one the surface selects there.
::testing::AssertionResult positionsAgree(RichTextSurface& s)
{
    const QString text = s.Text();
    if (text.size() != s.length())
        return ::testing::AssertionFailure() << "length " << s.length() << " but Text has " << text.size();
    for (long p = 0; p <= s.length(); ++p) {
        const long back = s.fromDocPos(s.toDocPos(p));
        const bool betweenCrLf = p > 0 && text[p - 1] == u'\r';
        if (back != p && !(betweenCrLf && back == p - 1))
            return ::testing::AssertionFailure() << "position " << p << " comes back as " << back;
        if (p < s.length() && text[p] != u'\r' && text[p] != u'\n' && text[p] != u'\t') {
            s.setSelStart(p);
            s.setSelLength(1);
            if (s.SelText() != text.mid(p, 1) || s.SelStart() != p || s.SelLength() != 1)
                return ::testing::AssertionFailure() << "at " << p << " the selection holds \"" << s.SelText().toStdString()
                                                     << "\" for \"" << text.mid(p, 1).toStdString() << '"';
        }
    }
    return ::testing::AssertionSuccess();
}

}  // namespace

TEST(Tables, WordTableWithMergesBordersAndShading)
{
    RichTextSurface s;
    s.LoadFile(sample("table_word_merges.rtf"), RichTextSurface::RtfKind);
    EXPECT_EQ(tableDump(*s.document()).toStdString(), "");
    EXPECT_EQ(s.Text().toStdString(), "");
    EXPECT_TRUE(positionsAgree(s));
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
}

TEST(Tables, NestedTable)
{
    RichTextSurface s;
    s.LoadFile(sample("table_nested.rtf"), RichTextSurface::RtfKind);
    EXPECT_EQ(tableDump(*s.document()).toStdString(), "");
    EXPECT_EQ(s.Text().toStdString(), "");
    EXPECT_TRUE(positionsAgree(s));
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
    EXPECT_EQ(s.TextRTF().toStdString(), "");
}

TEST(Tables, RaggedRows)
{
    RichTextSurface s;
    s.LoadFile(sample("table_ragged_rows.rtf"), RichTextSurface::RtfKind);
    EXPECT_EQ(tableDump(*s.document()).toStdString(), "");
    EXPECT_EQ(s.Text().toStdString(), "");
    EXPECT_TRUE(positionsAgree(s));
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
}

TEST(Tables, WrittenInTheRichEditShape)
{
    RichTextSurface s;
    load(s, rtfDoc("\\pard Hi\\par\\trowd\\trgaph108\\trleft-108\\cellx1000\\cellx2000\\pard\\intbl A\\cell B\\cell\\row\\pard Bye\\par"));
    EXPECT_EQ(s.TextRTF().toStdString(), "");
    EXPECT_EQ(s.Text().toStdString(), "");
}
