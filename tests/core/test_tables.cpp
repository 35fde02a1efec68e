// Tables: read into QTextTables with their widths, merges, borders and
// shading; seen by Text and positions as tab-separated lines; written back
// in the rich edit shape; kept whole through the round trips.

#include "core/rich_text_surface.h"
#include "core/run_dump.h"
#include "rtf_support.h"
#include "table_support.h"

#include <gtest/gtest.h>

#include <QAbstractTextDocumentLayout>
#include <QDir>
#include <QRegularExpression>
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
    // The header's two merged cells are one cell over two columns; the
    // borders are top, left, bottom, right as style, twips, colour.
    EXPECT_EQ(tableDump(*s.document()).toStdString(),
              "table 3x3 edges -108,2842,5792,8742\n"
              "  [0+2 \"Customer and town\" b1,10,-1,1,10,-1,3,15,255,1,10,-1 shaded9d9d9 va1 align1 h397] "
              "[2 \"Amount\" b1,10,-1,1,10,-1,3,15,255,1,10,-1 shaded9d9d9 va1 align1 h397]\n"
              "  [0v2 \"Rossi\" b1,10,-1,1,10,-1,1,10,-1,1,10,-1 align1] [1 \"Milano\" b1,10,-1,1,10,-1,1,10,-1,1,10,-1 align1] "
              "[2 \"1.200,00\" b1,10,-1,1,10,-1,1,10,-1,1,10,-1 align1]\n"
              "  [1 \"Como|Lecco\" b1,10,-1,1,10,-1,1,10,-1,1,10,-1 align1] [2 \"830,50\" b1,10,-1,1,10,-1,1,10,-1,1,10,-1 align1]");
    EXPECT_EQ(s.Text().toStdString(),
              "Orders of the week\r\nCustomer and town\tAmount\r\nRossi\tMilano\t1.200,00\r\nComo\r\nLecco\t830,50\r\n"
              "Total as above.");
    EXPECT_TRUE(positionsAgree(s));
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
}

TEST(Tables, NestedTable)
{
    RichTextSurface s;
    s.LoadFile(sample("table_nested.rtf"), RichTextSurface::RtfKind);
    EXPECT_EQ(tableDump(*s.document()).toStdString(),
              "table 1x2 edges 0,3000,6000 grid\n"
              "  [0 \"Left cell\"] [1 \"<n1<n2<n3<n4>after inner\"]\n"
              "  table 2x2 edges 0,4000,5000 grid\n"
              "    [0 \"n1\"] [1 \"n2\"]\n"
              "    [0 \"n3\"] [1 \"n4\"]");
    EXPECT_EQ(s.Text().toStdString(), "Outer table with a table inside:\r\nLeft cell\tn1\tn2\r\nn3\tn4\r\nafter inner\r\nEnd.");
    EXPECT_TRUE(positionsAgree(s));
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
    EXPECT_EQ(s.TextRTF().toStdString(),
              "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1040{\\fonttbl{\\f0\\fswiss\\fcharset0 Arial;}}\r\n"
              "\\viewkind4\\uc1\\pard\\f0\\fs20 Outer table with a table inside:\\par\r\n"
              "\\trowd\\trgaph70\\trleft0\\cellx3000\\cellx6000\\pard\\intbl Left cell\\cell"
              "\\pard\\intbl\\itap2 n1\\nestcell n2\\nestcell{\\*\\nesttableprops\\trowd\\trgaph70\\trleft0\\cellx4000\\cellx5000"
              "\\nestrow}{\\nonesttables\\par}\r\n"
              "\\pard\\intbl\\itap2 n3\\nestcell n4\\nestcell{\\*\\nesttableprops\\trowd\\trgaph70\\trleft0\\cellx4000\\cellx5000"
              "\\nestrow}{\\nonesttables\\par}\r\n"
              "\\pard\\intbl after inner\\cell\\row\r\n"
              "\\pard End.\\par\r\n}\r\n");
}

// A nested table that opens a row's first cell: the nested row's
// definition comes first in the file, and is still not the outer row's.
TEST(Tables, NestedTableFirstInItsCell)
{
    RichTextSurface s;
    load(s, rtfDoc("\\pard x\\par\\trowd\\trgaph0\\trleft0\\cellx1000\\cellx2000\\pard\\intbl\\itap2 n\\nestcell"
                   "{\\*\\nesttableprops\\trowd\\trgaph108\\trleft-108\\cellx1440\\nestrow}{\\nonesttables\\par}"
                   "\\pard\\intbl\\cell\\cell\\row\\pard y\\par"));
    EXPECT_EQ(tableDump(*s.document()).toStdString(),
              "table 1x2 edges 0,1000,2000 grid\n"
              "  [0 \"<n>\"] [1 \"\"]\n"
              "  table 1x1 edges -108,1440 grid\n"
              "    [0 \"n\"]");
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
}

// A numbered list that runs from a cell on below the table keeps its
// numbers through saves, also once Enter was typed behind the table: the
// block the layout hides there is no item of the list.
TEST(Tables, AListGoesOnBelowATable)
{
    RichTextSurface s;
    load(s, rtfDoc("\\trowd\\cellx8130\\pard\\intbl{\\pntext 1\\tab}{\\*\\pn\\pnlvlbody\\pnstart1\\pndec}ab\\cell\\row"
                   "\\pard{\\pntext 2\\tab}{\\*\\pn\\pnlvlbody\\pnstart2\\pndec}\\par{\\pntext 3\\tab}C\\par"));
    const auto numbers = [&s] {
        static const QRegularExpression label(QStringLiteral("\\\\pntext(?:\\\\f\\d+)? (\\d+)\\\\tab"));
        QStringList out;
        for (const QRegularExpressionMatch& m : label.globalMatch(s.TextRTF()))
            out << m.captured(1);
        return out.join(u' ').toStdString();
    };
    EXPECT_EQ(numbers(), "1 2 3");
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
    // Enter at the start of the paragraph right behind the table.
    s.setSelStart(long(s.Text().indexOf(u'C')) - 2);
    s.typeText(QStringLiteral("\r\n"));
    EXPECT_EQ(numbers(), "1 2 3 4");
    EXPECT_TRUE(test::wholeRoundTripHolds(s));

    // Enter at the start of an item that stands right behind the table.
    load(s, rtfDoc("\\trowd\\cellx8130\\pard\\intbl{\\pntext 1\\tab}{\\*\\pn\\pnlvlbody\\pnstart1\\pndec}ab\\cell\\row"
                   "\\pard{\\pntext 2\\tab}{\\*\\pn\\pnlvlbody\\pnstart2\\pndec}D\\par"));
    EXPECT_EQ(numbers(), "1 2");
    s.setSelStart(long(s.Text().indexOf(u'D')));
    s.typeText(QStringLiteral("\r\n"));
    EXPECT_EQ(numbers(), "1 2 3");
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
}

TEST(Tables, RaggedRows)
{
    RichTextSurface s;
    s.LoadFile(sample("table_ragged_rows.rtf"), RichTextSurface::RtfKind);
    // One grid for edges of every row; a row shorter than the grid ends in
    // a place that holds no cell ("-").
    EXPECT_EQ(tableDump(*s.document()).toStdString(),
              "table 3x4 edges 0,2000,3000,4000,6000 grid\n"
              "  [0 \"a1\"] [1+2 \"a2\"] [3 \"a3\"]\n"
              "  [0+2 \"b1\"] [2+2 \"b2\"]\n"
              "  [0 \"c1\"] -");
    EXPECT_EQ(s.Text().toStdString(), "Ragged rows:\r\na1\ta2\ta3\r\nb1\tb2\r\nc1\r\ndone");
    EXPECT_TRUE(positionsAgree(s));
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
    // Typing at the end of the short row goes into its last cell.
    s.setSelStart(long(s.Text().indexOf(QLatin1String("c1"))) + 2);
    s.setSelText(QStringLiteral("x"));
    EXPECT_EQ(s.Text().toStdString(), "Ragged rows:\r\na1\ta2\ta3\r\nb1\tb2\r\nc1x\r\ndone");
    EXPECT_TRUE(tableDump(*s.document()).endsWith(QLatin1String("[0 \"c1x\"] -"))) << tableDump(*s.document()).toStdString();
    EXPECT_TRUE(positionsAgree(s));

    // Text put in the empty place (a click there) makes it a cell, which is
    // saved and comes back as one.
    const auto* table = qobject_cast<QTextTable*>(s.document()->rootFrame()->childFrames().first());
    ASSERT_NE(table, nullptr);
    QTextCursor inPlace(s.document());
    inPlace.setPosition(table->cellAt(2, 1).firstPosition());
    inPlace.insertText(QStringLiteral("c2"));
    EXPECT_EQ(s.Text().toStdString(), "Ragged rows:\r\na1\ta2\ta3\r\nb1\tb2\r\nc1x\tc2\r\ndone");
    RichTextSurface back;
    back.setTextRTF(s.TextRTF());
    EXPECT_EQ(back.Text(), s.Text());
    EXPECT_EQ(tableDump(*back.document()).toStdString(),
              "table 3x4 edges 0,2000,3000,4000,6000 grid\n"
              "  [0 \"a1\"] [1+2 \"a2\"] [3 \"a3\"]\n"
              "  [0+2 \"b1\"] [2+2 \"b2\"]\n"
              "  [0 \"c1x\"] [1+3 \"c2\"]");
    EXPECT_TRUE(positionsAgree(back));
}

TEST(Tables, WrittenInTheRichEditShape)
{
    RichTextSurface s;
    load(s, rtfDoc("\\pard Hi\\par\\trowd\\trgaph108\\trleft-108\\cellx1000\\cellx2000\\pard\\intbl A\\cell B\\cell\\row\\pard Bye\\par"));
    EXPECT_EQ(s.TextRTF().toStdString(),
              "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1040{\\fonttbl{\\f0\\fswiss\\fcharset0 Arial;}}\r\n"
              "\\viewkind4\\uc1\\pard\\f0\\fs24 Hi\\par\r\n"
              "\\trowd\\trgaph108\\trleft-108\\cellx1000\\cellx2000\\pard\\intbl A\\cell B\\cell\\row\r\n"
              "\\pard Bye\\par\r\n}\r\n");
    EXPECT_EQ(s.Text().toStdString(), "Hi\r\nA\tB\r\nBye");
    EXPECT_TRUE(positionsAgree(s));
    EXPECT_EQ(s.Find(QStringLiteral("B"), 0, -1, 0), 6);
    EXPECT_EQ(s.Find(QStringLiteral("Bye"), 0, -1, 0), 9);

    // A row that names no gap has none: its text runs from border to
    // border, and the gap it is written with says so.
    load(s, rtfDoc("\\trowd\\cellx600\\cellx1200\\pard\\intbl P1\\cell P8\\cell\\row\\pard\\par"));
    const QTextTable* table = s.document()->rootFrame()->childFrames().isEmpty()
                                  ? nullptr
                                  : qobject_cast<QTextTable*>(s.document()->rootFrame()->childFrames().first());
    ASSERT_NE(table, nullptr);
    const QTextTableCellFormat cell = table->cellAt(0, 1).format().toTableCellFormat();
    EXPECT_EQ(cell.leftPadding(), 0);
    EXPECT_EQ(cell.rightPadding(), 0);
    EXPECT_TRUE(s.TextRTF().contains(QLatin1String("\\trowd\\trgaph0\\trleft0\\cellx600\\cellx1200\\pard\\intbl")))
        << s.TextRTF().toStdString();
}

// The insets a row gives its cells' text: the gap, or the paddings newer
// writers add when they name their unit; the first cell's border stands at
// the row's left edge. Insets, edge and the gap written back, row by row.
TEST(Tables, CellInsetsAndTheRowsLeftEdge)
{
    RichTextSurface s;
    load(s, rtfDoc("\\trowd\\trgaph60\\trleft300\\cellx1500\\pard\\intbl a\\cell\\row"
                   "\\trowd\\trgaph60\\trleft300\\trpaddl150\\trpaddr90\\trpaddfl3\\trpaddfr3\\cellx1500\\pard\\intbl b\\cell\\row"
                   "\\trowd\\trgaph60\\trleft300\\trpaddl150\\trpaddfl0\\cellx1500\\pard\\intbl c\\cell\\row\\pard\\par"));
    const auto frames = s.document()->rootFrame()->childFrames();
    ASSERT_EQ(frames.size(), 1);
    const auto* table = qobject_cast<QTextTable*>(frames.first());
    ASSERT_NE(table, nullptr);
    QStringList insets;
    for (int r = 0; r < table->rows(); ++r) {
        const QTextTableCellFormat f = table->cellAt(r, 0).format().toTableCellFormat();
        insets << QStringLiteral("%1/%2").arg(f.leftPadding() * 15).arg(f.rightPadding() * 15);
    }
    EXPECT_EQ(insets.join(u' ').toStdString(), "60/60 150/90 60/60");
    EXPECT_EQ(table->format().leftMargin() * 15, 300);
    const QString rtf = s.TextRTF();
    EXPECT_EQ(rtf.count(QLatin1String("\\trowd\\trgaph60\\trleft300\\cellx1500")), 2) << rtf.toStdString();
    EXPECT_EQ(rtf.count(QLatin1String("\\trowd\\trgaph150\\trleft300\\cellx1500")), 1) << rtf.toStdString();
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
}

// An empty paragraph right after a table is seen, in the text and on the
// screen, below the table; a paragraph of text there needs no such room.
TEST(Tables, AnEmptyParagraphAfterATableShowsBelowIt)
{
    RichTextSurface s;
    load(s, rtfDoc("\\pard top\\par\\trowd\\cellx1000\\pard\\intbl a\\cell\\row\\pard\\par\\pard b\\par"
                   "\\trowd\\cellx1000\\pard\\intbl c\\cell\\row\\pard d\\par"));
    EXPECT_EQ(s.Text().toStdString(), "top\r\na\r\n\r\nb\r\nc\r\nd");
    EXPECT_TRUE(positionsAgree(s));
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
    const QString rtf = s.TextRTF();
    EXPECT_TRUE(rtf.contains(QLatin1String("a\\cell\\row\r\n\\pard\\par\r\nb\\par"))) << rtf.toStdString();
    EXPECT_TRUE(rtf.contains(QLatin1String("c\\cell\\row\r\n\\pard d\\par"))) << rtf.toStdString();

    QTextDocument& doc = *s.document();
    const auto* first = qobject_cast<QTextTable*>(doc.rootFrame()->childFrames().first());
    ASSERT_NE(first, nullptr);
    const QRectF table = doc.documentLayout()->frameBoundingRect(const_cast<QTextTable*>(first));
    const QRectF blank = doc.documentLayout()->blockBoundingRect(doc.findBlock(s.toDocPos(8)));
    const QRectF b = doc.documentLayout()->blockBoundingRect(doc.findBlock(s.toDocPos(10)));
    // Hidden, it would stand a whole line up, inside the table's last row.
    EXPECT_GT(blank.top(), table.bottom() - blank.height() / 2);
    EXPECT_GT(blank.height(), 0);
    EXPECT_GE(b.top(), blank.bottom() - 1);


    // Enter at the start of the paragraph behind a table, or at the end of
    // a document that ends with a table, makes an empty paragraph like the
    // file's: in the text, on the screen and in what is saved.
    s.setSelStart(long(s.Text().indexOf(u'd')));
    s.setSelText(QStringLiteral("\r\n"));
    EXPECT_EQ(s.Text().toStdString(), "top\r\na\r\n\r\nb\r\nc\r\n\r\nd");
    EXPECT_EQ(s.SelStart(), s.length() - 1);
    EXPECT_TRUE(positionsAgree(s));
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
    RichTextSurface last;
    load(last, rtfDoc("\\trowd\\cellx1000\\pard\\intbl a\\cell\\row"));
    EXPECT_EQ(last.Text().toStdString(), "a\r\n");
    last.setSelStart(last.length());
    last.setSelText(QStringLiteral("\r\n"));
    last.setSelText(QStringLiteral("z"));
    EXPECT_EQ(last.Text().toStdString(), "a\r\n\r\nz");
    EXPECT_TRUE(positionsAgree(last));
    EXPECT_TRUE(test::wholeRoundTripHolds(last));
}

// Files no careful writer makes: each keeps all of its text, in order, in
// a table, and writes back to what it reads as.
TEST(Tables, MalformedTablesKeepTheirText)
{
    const std::pair<const char*, const char*> cases[] = {
        // A \cell with no \trowd and no \intbl.
        {"\\pard x1\\cell x2\\cell\\row\\pard after\\par", "x1\tx2\r\nafter"},
        // More cells than \cellx: each extra cell gets a column.
        {"\\trowd\\cellx1000\\pard\\intbl y1\\cell y2\\cell y3\\cell\\row\\pard after\\par", "y1\ty2\ty3\r\nafter"},
        // A \\row never closed: once every cell has ended, the text
        // outside the table's paragraphs goes on below the table; before
        // that, it is the next cell's.
        {"\\trowd\\cellx1000\\cellx2000\\pard\\intbl z1\\cell z2\\cell\\pard after\\par", "z1\tz2\r\nafter"},
        {"\\trowd\\cellx1000\\cellx2000 q1\\cell q2\\cell after\\par\\pard end\\par", "q1\tq2\r\nafter\r\nend"},
        {"\\trowd\\cellx1000\\cellx2000\\pard\\intbl r1\\cell\\pard r2\\cell\\pard after\\par", "r1\tr2\r\nafter"},
        // Cells narrower than the slack between rows' edges, and edges past
        // the widest a row may be: each cell keeps a column of its own.
        {"\\trowd\\cellx1000\\cellx1020\\cellx126720\\cellx126760\\pard\\intbl n1\\cell n2\\cell n3\\cell n4\\cell\\row"
         "\\pard after\\par",
         "n1\tn2\tn3\tn4\r\nafter"},
        // The file ends inside a cell.
        {"\\trowd\\cellx1000\\cellx2000\\pard\\intbl w1\\cell w2", "w1\tw2\r\n"},
        // A \row with no cell, a \nestrow with no table, a huge \itap.
        {"\\pard v0\\row\\nestrow\\par\\trowd\\cellx-5\\cellx-9\\pard\\intbl\\itap99999 v1\\nestcell\\nestrow v2\\cell\\row", nullptr},
    };
    for (const auto& [body, text] : cases) {
        SCOPED_TRACE(body);
        RichTextSurface s;
        load(s, rtfDoc(body));
        if (text) {
            EXPECT_EQ(s.Text().toStdString(), text);
        } else {
            for (const char* w : {"v0", "v1", "v2"})
                EXPECT_TRUE(s.Text().contains(QLatin1String(w))) << s.Text().toStdString();
        }
        EXPECT_FALSE(tableDump(*s.document()).isEmpty());
        EXPECT_TRUE(positionsAgree(s));
        if (text) {
            EXPECT_TRUE(test::wholeRoundTripHolds(s));
        }
    }
}

// Row words inside a picture of the row's first cell are the picture's
// data, not the row's: the row keeps its own widths, as it is written.
TEST(Tables, RowWordsInAPictureAreNotTheRows)
{
    RichTextSurface s;
    load(s, rtfDoc("\\trowd\\cellx1000\\cellx2000\\pard\\intbl a{\\pict\\pngblip\\picw1\\pich1\\trowd\\cellx8130 00}\\cell "
                   "b\\cell\\row\\pard after\\par"));
    EXPECT_TRUE(tableDump(*s.document()).startsWith(QLatin1String("table 1x2 edges 0,1000,2000")))
        << tableDump(*s.document()).toStdString();
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
}

// Typing, Tab, Enter, selections over cells, copy and paste of rows from
// one program to another (RTF between two surfaces), and undo by snapshot.
TEST(Tables, EditingInCells)
{
    RichTextSurface s;
    load(s, rtfDoc("\\pard Top\\par\\trowd\\cellx1000\\clbrdrb\\brdrs\\brdrw10\\cellx2000\\pard\\intbl A\\cell B\\cell\\row"
                   "\\trowd\\cellx1000\\clbrdrb\\brdrs\\brdrw10\\cellx2000\\pard\\intbl C\\cell D\\cell\\row\\pard End\\par"));
    const QString snapshot = s.TextRTF();
    ASSERT_EQ(s.Text().toStdString(), "Top\r\nA\tB\r\nC\tD\r\nEnd");
    // Typing in a cell, then Enter: a second paragraph in the same cell.
    s.setSelStart(8);
    s.typeText(QStringLiteral("b"));
    s.typeText(QStringLiteral("\r\n"));
    s.typeText(QStringLiteral("2"));
    EXPECT_EQ(s.Text().toStdString(), "Top\r\nA\tBb\r\n2\r\nC\tD\r\nEnd");
    EXPECT_EQ(s.SelStart(), 12);
    // Tab goes to the next cell with its text selected; Shift+Tab back.
    EXPECT_TRUE(s.tabInTable(false));
    EXPECT_EQ(s.SelText().toStdString(), "C");
    EXPECT_TRUE(s.tabInTable(true));
    EXPECT_EQ(s.SelText().toStdString(), "Bb\r\n2");
    // Tab in the last cell adds a row like the last one.
    s.setSelStart(17);
    EXPECT_TRUE(s.tabInTable(false));
    s.typeText(QStringLiteral("E"));
    EXPECT_EQ(s.Text().toStdString(), "Top\r\nA\tBb\r\n2\r\nC\tD\r\nE\t\r\nEnd");
    EXPECT_TRUE(positionsAgree(s));
    // Outside a table Tab is a tab.
    s.setSelStart(0);
    EXPECT_FALSE(s.tabInTable(false));

    // Two whole rows copied as RTF and pasted in another document make a
    // table there with the same rows, cells and borders.
    s.setSelStart(0);
    s.setSelLength(s.length());
    const QString rows = s.SelRTF();
    RichTextSurface other;
    other.setText(QStringLiteral("one\r\ntwo"));
    other.setSelStart(5);
    other.setSelRTF(rows);
    EXPECT_TRUE(other.Text().contains(QLatin1String("A\tBb\r\n2\r\nC\tD\r\nE\t\r\n"))) << other.Text().toStdString();
    EXPECT_EQ(tableDump(*other.document()).toStdString(), tableDump(*s.document()).toStdString());
    EXPECT_TRUE(positionsAgree(other));

    // Undo restores the snapshot, table and all.
    s.setTextRTF(snapshot);
    EXPECT_EQ(s.TextRTF(), snapshot);
    EXPECT_EQ(s.Text().toStdString(), "Top\r\nA\tB\r\nC\tD\r\nEnd");
}

// Keys typed into and around tables keep the positions of everything
// behind them right: after each edit the surface sees the text and the
// positions that a surface reading the same document afresh sees.
TEST(Tables, EditsKeepThePositionsBehindThem)
{
    RichTextSurface s;
    s.LoadFile(sample("table_ragged_rows.rtf"), RichTextSurface::RtfKind);
    const auto fresh = [&s] {
        RichTextSurface t;
        t.setTextRTF(s.TextRTF());
        return t.Text().toStdString();
    };
    const auto at = [&s](const char* text, long offset) {
        s.setSelStart(long(s.Text().indexOf(QLatin1String(text))) + offset);
    };
    struct Step {
        const char* where;
        long offset;
        long select;
        const char* typed;
    };
    const Step steps[] = {
        {"a2", 1, 0, "y"},           // in a cell, with cells behind it
        {"a1", 0, 0, "z"},           // at the start of the first cell
        {"b2", 2, 0, "\r\n"},      // a second paragraph in a cell
        {"b2", 0, 2, "B"},           // a selection inside a cell replaced
        {"c1", 2, 0, "x"},           // the end of the short row
        {"Ragged", 0, 0, "Q"},       // the paragraph in front of the table
        {"done", 4, 0, " ok"},       // behind the table
        {"a1", 1, 6, "w"},           // a selection across cells
    };
    for (const Step& step : steps) {
        at(step.where, step.offset);
        s.setSelLength(step.select);
        s.typeText(QString::fromLatin1(step.typed));
        ASSERT_EQ(s.Text().toStdString(), fresh()) << "after typing at " << step.where;
        ASSERT_TRUE(positionsAgree(s)) << "after typing at " << step.where;
    }
    // Backspace at the start of the paragraph behind the table.
    at("done", 0);
    s.setSelStart(s.SelStart() - 2);
    s.setSelLength(2);
    s.typeText(QString());
    EXPECT_EQ(s.Text().toStdString(), fresh());
    EXPECT_TRUE(positionsAgree(s));
}

// Every table file of the corpus opens as tables and keeps them through a
// save and a reload.
TEST(Tables, CorpusTablesStayTables)
{
    const QDir dir(QStringLiteral(TORNELIA_CORPUS_DIR));
    int files = 0;
    for (const QString& name : dir.entryList({QStringLiteral("*.rtf")}, QDir::Files, QDir::Name)) {
        QFile f(dir.filePath(name));
        if (!f.open(QIODevice::ReadOnly) || !f.readAll().contains("\\trowd"))
            continue;
        SCOPED_TRACE(name.toStdString());
        ++files;
        RichTextSurface s;
        s.LoadFile(dir.filePath(name), RichTextSurface::RtfKind);
        const QString tables = tableDump(*s.document());
        EXPECT_TRUE(tables.contains(QLatin1String("table "))) << "no table read";
        EXPECT_TRUE(positionsAgree(s));
        RichTextSurface again;
        again.setTextRTF(s.TextRTF());
        EXPECT_EQ(tableDump(*again.document()).toStdString(), tables.toStdString());
        EXPECT_EQ(again.Text().toStdString(), s.Text().toStdString());
    }
    EXPECT_GT(files, 10);
}
