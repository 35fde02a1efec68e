#include "text_tools_ports.h"

#include "core/rich_text_surface.h"
#include "core/undo_store.h"
#include "tools/case_convert.h"
#include "tools/go_to.h"
#include "tools/statistics.h"

#include <gtest/gtest.h>

using namespace tornelia;

namespace {

TEST(Statistics, CountsPiecesBetweenSingleBlanks)
{
    struct Case {
        QString text;
        DocStats expected;
    };
    const Case cases[] = {
        {QString(), {0, 0, 0}},
        {QStringLiteral("uno"), {1, 2, 1}},
        {QStringLiteral("uno due tre"), {3, 8, 1}},
        // Two blanks make an empty word between them.
        {QStringLiteral("uno  due"), {3, 5, 1}},
        // A line end does not separate words, but it is counted in the length.
        {QStringLiteral("uno\r\ndue tre"), {2, 10, 2}},
        {QStringLiteral(" "), {2, -1, 1}},
    };
    for (const Case& c : cases) {
        RichTextSurface s;
        s.setText(c.text);
        EXPECT_EQ(contaStatistiche(s), c.expected) << c.text.toStdString();
    }
}

TEST(Statistics, FiguresAreGroupedByThousands)
{
    const QStringList shown{formatFigure(0), formatFigure(7), formatFigure(999), formatFigure(1000),
                            formatFigure(1234567), formatFigure(-1234)};
    EXPECT_EQ(shown, (QStringList{"0", "7", "999", "1.000", "1.234.567", "-1.234"}));
}

class GoToTest : public ::testing::Test {
protected:
    GoToTest() { s.setText(QStringLiteral("prima\r\nseconda\r\nterza")); }
    RichTextSurface s;
    tooltest::Messages messages;
    GoTo go{s, messages};
};

TEST_F(GoToTest, LinesWithinTheDocumentMoveTheCaret)
{
    std::vector<long> positions;
    for (const char* line : {"1", "2", " 3 "}) {
        s.setSelStart(4);
        s.setSelLength(2);
        EXPECT_TRUE(go.cmdGo(GoTo::GotoLine, QString::fromLatin1(line), {}).moved);
        EXPECT_EQ(s.SelLength(), 0);
        positions.push_back(s.SelStart());
    }
    EXPECT_EQ(positions, (std::vector<long>{0, 7, 16}));
    EXPECT_TRUE(messages.said.isEmpty());
}

TEST_F(GoToTest, BadLineNumbersAreRefusedAndLeaveTheCaret)
{
    s.setSelStart(9);
    QStringList cleared;
    for (const char* line : {"", "abc", "2,5", "4", "0", "-1", "99999999999999999999"}) {
        const GoTo::Outcome out = go.cmdGo(GoTo::GotoLine, QString::fromLatin1(line), {});
        EXPECT_FALSE(out.moved);
        cleared << (out.clearField ? "vuoto" : "resta");
    }
    EXPECT_EQ(s.SelStart(), 9);
    EXPECT_EQ(cleared, (QStringList{"vuoto", "vuoto", "vuoto", "resta", "resta", "resta", "vuoto"}));
    const QString valid = QStringLiteral("Vai a... | Inserire un numero valido!");
    const QString line = QStringLiteral("Vai a... | Numero di linea non valido!");
    EXPECT_EQ(messages.said, (QStringList{valid, valid, valid, line, line, line, valid}));
}

TEST_F(GoToTest, StartEndAndPercentages)
{
    // Length 21: 50% is 10.5, which rounds to the even 10.
    std::vector<long> positions;
    s.setSelStart(5);
    go.cmdGo(GoTo::GoToEnd, {}, {});
    positions.push_back(s.SelStart());
    go.cmdGo(GoTo::GotoStart, {}, {});
    positions.push_back(s.SelStart());
    for (const char* p : {"50%", "10%", "100%"}) {
        go.cmdGo(GoTo::GotoPer, {}, QString::fromLatin1(p));
        positions.push_back(s.SelStart());
    }
    EXPECT_EQ(positions, (std::vector<long>{21, 0, 10, 2, 21}));
    EXPECT_EQ(GoTo::percentuali().first(), "10%");
    EXPECT_EQ(GoTo::percentuali().last(), "100%");
    EXPECT_EQ(GoTo::percentuali().size(), 10);

    go.cmdGo(GoTo::GotoPer, {}, QStringLiteral("molto"));
    EXPECT_EQ(s.SelStart(), 21);
    EXPECT_EQ(messages.said.size(), 1);
}

TEST_F(GoToTest, WrappedLinesAreLinesToo)
{
    s.setText(QString(60, QLatin1Char('x')) + QStringLiteral(" ") + QString(60, QLatin1Char('y')));
    s.setTextWidth(200);
    ASSERT_GT(s.GetLineCount(), 1);
    EXPECT_TRUE(go.cmdGo(GoTo::GotoLine, QStringLiteral("2"), {}).moved);
    EXPECT_GT(s.SelStart(), 0);
    EXPECT_EQ(s.SelStart(), s.LineIndex(1));
}

class CaseTest : public ::testing::Test {
protected:
    CaseTest()
    {
        s.setTextRTF(QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 Il \\b gatto\\b0  dell'ALBERO\\par "
                                    "è éCCO\\par}"));
    }
    RichTextSurface s;
    UndoStore undo{s};
    CaseConvert conv{s, &undo};
};

TEST_F(CaseTest, SelectionIsConvertedAndStaysSelected)
{
    const QString before = s.TextRTF();
    s.setSelStart(3);
    s.setSelLength(5);
    conv.Maiu(CaseScope::TestoSelezionato);
    EXPECT_EQ(s.Text(), QStringLiteral("Il GATTO dell'ALBERO\r\nè éCCO"));
    EXPECT_EQ(s.SelStart(), 3);
    EXPECT_EQ(s.SelLength(), 5);
    // The state before the change is the undo step.
    EXPECT_EQ(undo.passoTot(), 1);
    EXPECT_EQ(undo.passo(1), before);

    // The range goes through plain text: it takes the look of its first
    // character, so the bold of "gatto" is lost when the range starts plain.
    s.setSelStart(0);
    s.setSelLength(8);
    conv.cap(CaseScope::TestoSelezionato);
    EXPECT_EQ(s.Text(), QStringLiteral("Il Gatto dell'ALBERO\r\nè éCCO"));
    EXPECT_EQ(s.SelBold(), std::optional<bool>(false));
}

TEST_F(CaseTest, WholeDocumentInEachCase)
{
    conv.minu(CaseScope::TuttoDocumento);
    EXPECT_EQ(s.Text(), QStringLiteral("il gatto dell'albero\r\nè écco"));
    conv.Maiu(CaseScope::TuttoDocumento);
    EXPECT_EQ(s.Text(), QStringLiteral("IL GATTO DELL'ALBERO\r\nÈ ÉCCO"));
    conv.cap(CaseScope::TuttoDocumento);
    EXPECT_EQ(s.Text(), QStringLiteral("Il Gatto Dell'albero\r\nÈ Écco"));
    s.setSelStart(0);
    EXPECT_EQ(s.SelBold(), std::optional<bool>(false));
    s.setSelStart(5);
    EXPECT_EQ(s.SelBold(), std::optional<bool>(false));
}

TEST_F(CaseTest, NoSelectionChangesNothing)
{
    const QString before = s.TextRTF();
    s.setSelStart(4);
    conv.Maiu(CaseScope::TestoSelezionato);
    conv.cap(CaseScope::TestoSelezionato);
    EXPECT_EQ(s.TextRTF(), before);
    EXPECT_EQ(undo.passoTot(), 0);

    RichTextSurface empty;
    CaseConvert(empty, nullptr).Maiu(CaseScope::TuttoDocumento);
    EXPECT_EQ(empty.Text(), QString());
}

TEST(CapitalizeWords, WordsStartAfterBlanksAndPunctuation)
{
    EXPECT_EQ(capitalizeWords(QStringLiteral("ciao MONDO, l'uomo-ragno 3d (sì)\tfine\r\nok")),
              QStringLiteral("Ciao Mondo, L'uomo-Ragno 3d (Sì)\tFine\r\nOk"));
}

}  // namespace
