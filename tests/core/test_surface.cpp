#include "core/rich_text_surface.h"
#include "core/run_dump.h"
#include "rtf_support.h"

#include <gtest/gtest.h>

#include <QAbstractTextDocumentLayout>
#include <QFile>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextLayout>

#include <random>
#include <string>
#include <vector>

using namespace tornelia;

namespace {

std::string str(const QString& s) { return s.toStdString(); }

template <typename T>
std::string show(const std::optional<T>& v)
{
    if (!v)
        return "null";
    if constexpr (std::is_same_v<T, QString>)
        return v->toStdString();
    else
        return std::to_string(*v).substr(0, std::to_string(*v).find('.'));
}

// Every Sel... property in one line: the character ones, then the paragraph ones.
std::string selState(const RichTextSurface& s)
{
    return show(s.SelBold()) + " " + show(s.SelItalic()) + " " + show(s.SelUnderline()) + " " +
           show(s.SelStrikeThru()) + " " + show(s.SelColor()) + " " + show(s.SelCharOffset()) + " " +
           show(s.SelFontName()) + " " + show(s.SelFontSize()) + " " + show(s.SelHidden()) + " " +
           show(s.SelCaps()) + " " + show(s.SelHighlight()) + " | " + show(s.SelAlignment()) + " " +
           show(s.SelIndent()) + " " + show(s.SelRightIndent()) + " " + show(s.SelBullet());
}

QString readFile(const QString& path)
{
    QFile f(path);
    f.open(QIODevice::ReadOnly);
    return QString::fromLatin1(f.readAll());
}

}  // namespace

// Positions count a paragraph break as CR LF, as Text does.
TEST(Surface, PositionsCountABreakAsTwo)
{
    RichTextSurface s;
    EXPECT_EQ(s.Text(), QString());
    EXPECT_EQ(s.length(), 0);
    s.setText(QStringLiteral("ab\r\ncd\r\n\r\nef"));
    EXPECT_EQ(s.length(), 12);
    EXPECT_EQ(str(s.Text()), "ab\r\ncd\r\n\r\nef");

    // Every position of Text maps to the document and back; the one between
    // CR and LF is the end of its paragraph.
    const long expected[] = {0, 1, 2, 2, 4, 5, 6, 6, 8, 8, 10, 11, 12};
    for (long p = 0; p <= 12; ++p)
        EXPECT_EQ(s.fromDocPos(s.toDocPos(p)), expected[p]) << p;

    s.setSelStart(4);
    s.setSelLength(6);
    EXPECT_EQ(str(s.SelText()), "cd\r\n\r\n");
    EXPECT_EQ(s.SelLength(), 6);

    // Beyond the end goes to the end; negative is an error the caller skips.
    s.setSelStart(1000);
    EXPECT_EQ(s.SelStart(), 12);
    EXPECT_THROW(s.setSelStart(-1), SurfaceError);
    EXPECT_EQ(s.SelStart(), 12);
    s.setSelStart(10);
    s.setSelLength(1000);
    EXPECT_EQ(s.SelLength(), 2);
}

// Sel… properties read "no single value" over mixed selections, for every
// character and paragraph property.
TEST(Surface, MixedSelectionsReadAsNull)
{
    RichTextSurface s;
    s.setText(QStringLiteral("ab\r\ncd"));
    s.setSelStart(1);
    s.setSelLength(1);
    s.setSelBold(true);
    s.setSelItalic(true);
    s.setSelUnderline(true);
    s.setSelStrikeThru(true);
    s.setSelColor(0x00FF00);
    s.setSelCharOffset(50);
    s.setSelFontName(QStringLiteral("Arial"));
    s.setSelFontSize(14);
    s.setSelHidden(true);
    s.setSelCaps(true);
    s.setSelHighlight(0x123456);
    s.setSelStart(4);
    s.setSelAlignment(2);
    s.setSelIndent(567);
    s.setSelRightIndent(283);
    s.setSelBullet(true);

    // Over both paragraphs every value is mixed; over one character or one
    // paragraph each is single and as set. Automatic colour reads as 0.
    s.setSelStart(0);
    s.setSelLength(6);
    EXPECT_EQ(selState(s), "null null null null null null null null null null null | null null null null");
    s.setSelStart(1);
    s.setSelLength(1);
    EXPECT_EQ(selState(s), "1 1 1 1 65280 50 Arial 14 1 1 1193046 | 0 0 0 0");
    s.setSelStart(4);
    s.setSelLength(2);
    EXPECT_EQ(selState(s), "0 0 0 0 0 0 Tahoma 10 0 0 4294967295 | 2 567 283 1");
    s.setSelStart(0);
    s.setSelLength(1);
    EXPECT_EQ(selState(s), "0 0 0 0 0 0 Tahoma 10 0 0 4294967295 | 0 0 0 0");
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
}

// SelText takes the format of the selection's start; at a bare caret a
// format set through a Sel… write applies to the next text only.
TEST(Surface, TypedTextTakesTheRightFormat)
{
    RichTextSurface s;
    s.setTextRTF(QStringLiteral("{\\rtf1{\\fonttbl{\\f0 Tahoma;}}\\f0\\fs20 plain \\b bold\\b0  tail\\par}"));
    s.setSelStart(6);
    s.setSelLength(6);  // "bold t"... starts bold
    s.setSelText(QStringLiteral("X"));
    EXPECT_EQ(str(s.Text()), "plain Xail");
    EXPECT_EQ(s.SelStart(), 7);
    s.setSelStart(6);
    s.setSelLength(1);
    EXPECT_EQ(s.SelBold(), true);

    // At a bare caret: italic for what comes next, and only until the caret moves.
    s.setSelStart(10);
    s.setSelItalic(true);
    EXPECT_EQ(s.SelItalic(), true);
    s.setSelText(QStringLiteral("YZ"));
    s.setSelText(QStringLiteral("W"));  // goes on in the format of the character before
    s.setSelStart(0);
    s.setSelItalic(true);
    s.setSelStart(1);
    s.setSelText(QStringLiteral("V"));
    EXPECT_EQ(str(s.Text()), "pVlain XailYZW");
    s.setSelStart(11);
    s.setSelLength(3);
    EXPECT_EQ(s.SelItalic(), true);
    s.setSelStart(1);
    s.setSelLength(1);
    EXPECT_EQ(s.SelItalic(), false);

    // Paragraph breaks typed as CR LF, a deletion, the caret behind the text.
    s.setSelStart(0);
    s.setSelText(QStringLiteral("1\r\n2"));
    EXPECT_EQ(s.SelStart(), 4);
    s.setSelStart(0);
    s.setSelLength(3);
    s.setSelText(QString());
    EXPECT_EQ(str(s.Text()), "2pVlain XailYZW");
}

TEST(Surface, FindHonoursRangeCaseWholeWordAndNoHighlight)
{
    RichTextSurface s;
    s.setText(QStringLiteral("Cat catalog\r\ncat CAT"));
    EXPECT_EQ(s.Find(QStringLiteral("cat")), 0);
    EXPECT_EQ(s.SelStart(), 0);
    EXPECT_EQ(s.SelLength(), 3);
    EXPECT_EQ(s.Find(QStringLiteral("cat"), 1), 4);
    EXPECT_EQ(s.Find(QStringLiteral("cat"), 1, -1, RichTextSurface::WholeWord), 13);
    EXPECT_EQ(s.Find(QStringLiteral("CAT"), 0, -1, RichTextSurface::MatchCase), 17);
    EXPECT_EQ(s.Find(QStringLiteral("cat"), 5, 13), -1);  // the match must end inside the range
    EXPECT_EQ(s.Find(QStringLiteral("catalog"), 0, 11), 4);
    s.setSelStart(2);
    EXPECT_EQ(s.Find(QStringLiteral("cat"), 10, -1, RichTextSurface::NoHighlight | RichTextSurface::MatchCase), 13);
    EXPECT_EQ(s.SelStart(), 2);
    EXPECT_EQ(s.SelLength(), 0);
    EXPECT_EQ(s.Find(QStringLiteral("dog")), -1);
    EXPECT_EQ(s.Find(QString()), -1);
}

TEST(Surface, SpanExtendsOverOrOutsideASet)
{
    RichTextSurface s;
    s.setText(QStringLiteral("one two  three"));
    s.setSelStart(4);
    s.Span(QStringLiteral(" "), true, true);  // forward to the next blank
    EXPECT_EQ(str(s.SelText()), "two");
    s.Span(QStringLiteral(" "), true, false);  // then over the blanks
    EXPECT_EQ(str(s.SelText()), "two  ");
    s.setSelStart(6);
    s.Span(QStringLiteral(" "), false, true);  // backward to the word's start
    EXPECT_EQ(str(s.SelText()), "tw");
    EXPECT_EQ(s.SelStart(), 4);
}

// Without a text width lines are paragraphs; with one they are the wrapped
// lines of the layout.
TEST(Surface, LineMetricsFollowTheLayout)
{
    RichTextSurface s;
    s.setText(QStringLiteral("first paragraph\r\n\r\nthird"));
    EXPECT_EQ(s.GetLineCount(), 3);
    EXPECT_EQ(s.LineIndex(0), 0);
    EXPECT_EQ(s.LineIndex(1), 17);
    EXPECT_EQ(s.LineIndex(2), 19);
    EXPECT_EQ(s.LineIndex(3), -1);
    EXPECT_EQ(s.LineFromChar(18), 1);
    EXPECT_EQ(s.LineFromChar(20), 2);
    EXPECT_EQ(s.LineLength(3), 15);
    EXPECT_EQ(s.LineLength(17), 0);

    QString words;
    for (int i = 0; i < 60; ++i)
        words += QStringLiteral("word ");
    s.setText(words.trimmed() + QStringLiteral("\r\nshort"));
    s.setTextWidth(150);
    const long lines = s.GetLineCount();
    EXPECT_GT(lines, 4);
    long total = 0;
    for (long line = 0; line < lines; ++line) {
        const long start = s.LineIndex(line);
        EXPECT_EQ(s.LineFromChar(start), line);
        total += s.LineLength(start);
        if (line + 1 < lines - 1) {
            EXPECT_EQ(s.LineIndex(line + 1), start + s.LineLength(start));
        }
    }
    EXPECT_EQ(total, s.length() - 2);  // every character once, the break apart
    EXPECT_EQ(s.LineFromChar(s.length()), lines - 1);
    s.setTextWidth(-1);
    EXPECT_EQ(s.GetLineCount(), 2);
}

// The wrapped lines counted from the top, block by block, as a reference for
// the counts the surface keeps between questions.
struct LineModel {
    long lineOf(const RichTextSurface& s, long pos) const
    {
        QTextDocument* doc = s.document();
        doc->documentLayout()->blockBoundingRect(doc->lastBlock());
        const int d = s.toDocPos(pos);
        const QTextBlock target = doc->findBlock(d);
        long n = 0;
        for (QTextBlock b = doc->begin(); b != target; b = b.next())
            n += std::max(1, b.layout()->lineCount());
        const QTextLine line = target.layout()->lineForTextPosition(d - target.position());
        return n + (line.isValid() ? line.lineNumber() : target.layout()->lineCount() - 1);
    }
    long count(const RichTextSurface& s) const
    {
        QTextDocument* doc = s.document();
        doc->documentLayout()->blockBoundingRect(doc->lastBlock());
        long n = 0;
        for (QTextBlock b = doc->begin(); b.isValid(); b = b.next())
            n += std::max(1, b.layout()->lineCount());
        return n;
    }
};

// Edits above, inside and below the paragraph last asked about, a new width
// and a new font: after each, the line of the caret, the start of its line
// and the count agree with a count from the top.
TEST(Surface, LineMetricsStayRightAcrossEditsAnywhere)
{
    RichTextSurface s;
    QString text;
    for (int p = 0; p < 40; ++p) {
        for (int w = 0; w < 5 + (p * 7) % 30; ++w)
            text += QStringLiteral("parola ");
        text += QStringLiteral("\r\n");
    }
    s.setText(text);
    s.setTextWidth(180);
    const LineModel model;
    std::vector<std::string> wrong;
    auto check = [&](const std::string& step) {
        for (const long pos : {0L, s.SelStart(), s.length() / 3, s.length() / 2, s.length()}) {
            const long line = s.LineFromChar(pos);
            const long start = s.LineIndex(line);
            if (line != model.lineOf(s, pos) || start > pos || s.LineFromChar(start) != line)
                wrong.push_back(step + " at " + std::to_string(pos));
        }
        if (s.GetLineCount() != model.count(s))
            wrong.push_back(step + " count");
    };
    auto typeAt = [&](long pos, const QString& what) {
        s.setSelStart(pos);
        s.setSelText(what);
    };
    check("start");
    // Ask about the middle first, so the edits land around a counted paragraph.
    s.setSelStart(s.length() / 2);
    s.LineFromChar(s.SelStart());
    typeAt(10, QStringLiteral("molte parole in piu che vanno a capo piu volte "));
    check("typed above");
    typeAt(5, QStringLiteral("\r\n\r\n"));
    check("paragraphs above");
    typeAt(s.length() / 2, QStringLiteral("qui "));
    check("typed inside");
    typeAt(s.length() / 2, QStringLiteral("\r\n"));
    check("split inside");
    s.setSelStart(0);
    s.setSelLength(40);
    s.setSelText(QString());
    check("removed above");
    typeAt(s.length() - 3, QStringLiteral("in fondo in fondo in fondo"));
    check("typed below");
    s.setSelStart(3);
    s.setSelLength(30);
    s.setSelFontSize(30);
    check("bigger letters above");
    s.setTextWidth(90);
    check("narrower");
    s.setDefaultFormat(QStringLiteral("Courier New"), 14);
    check("new font");
    EXPECT_EQ(wrong, std::vector<std::string>{});
}

TEST(Surface, FilesLoadBySuffixOrContentAndSaveSafely)
{
    QTemporaryDir dir;
    const QString rtfPath = dir.filePath(QStringLiteral("a.tnl"));
    const QString txtPath = dir.filePath(QStringLiteral("b.txt"));
    RichTextSurface s;
    s.setText(QStringLiteral("città\r\nline"));
    s.setSelStart(0);
    s.setSelLength(5);
    s.setSelBold(true);
    s.SaveFile(rtfPath, RichTextSurface::RtfKind);
    s.SaveFile(txtPath, RichTextSurface::TextKind);
    EXPECT_EQ(readFile(rtfPath), s.TextRTF());
    QFile txt(txtPath);
    ASSERT_TRUE(txt.open(QIODevice::ReadOnly));
    EXPECT_EQ(txt.readAll(), QByteArray("citt\xC3\xA0\r\nline"));
    EXPECT_EQ(s.FileName(), QString());  // SaveFile does not name the document

    // FileName loads by content, whatever the suffix.
    RichTextSurface t;
    t.setFileName(rtfPath);
    EXPECT_EQ(t.FileName(), rtfPath);
    EXPECT_EQ(dumpRuns(t), dumpRuns(s));
    t.setFileName(txtPath);
    EXPECT_EQ(str(t.Text()), "città\r\nline");
    t.LoadFile(rtfPath, RichTextSurface::TextKind);
    EXPECT_TRUE(t.Text().startsWith(QLatin1String("{\\rtf1")));
    EXPECT_THROW(t.setFileName(dir.filePath(QStringLiteral("missing.rtf"))), SurfaceError);

    // A save that cannot be done leaves the old file whole.
    const QString before = readFile(rtfPath);
    QFile::setPermissions(dir.path(), QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    const bool writable = QFile(dir.filePath(QStringLiteral("probe"))).open(QIODevice::WriteOnly);
    if (!writable) {  // root may write anywhere: then there is nothing to check
        t.setText(QStringLiteral("other"));
        EXPECT_THROW(t.SaveFile(rtfPath, RichTextSurface::RtfKind), SurfaceError);
        EXPECT_EQ(readFile(rtfPath), before);
    }
    QFile::setPermissions(dir.path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    EXPECT_THROW(t.SaveFile(dir.filePath(QStringLiteral("no/such/folder.rtf")), RichTextSurface::RtfKind), SurfaceError);
}

// Change and SelChange come after every change, from the logic or typing;
// key events pass their arguments by reference.
TEST(Surface, RaisesItsEvents)
{
    RichTextSurface s;
    int changes = 0;
    int selChanges = 0;
    QObject::connect(&s, &RichTextSurface::Change, [&] { ++changes; });
    QObject::connect(&s, &RichTextSurface::SelChange, [&] { ++selChanges; });
    s.setText(QStringLiteral("abc"));
    EXPECT_GE(changes, 1);
    changes = selChanges = 0;
    s.setSelStart(3);
    EXPECT_EQ(changes, 0);
    EXPECT_EQ(selChanges, 1);
    s.typeText(QStringLiteral("d"));
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(selChanges, 2);

    QObject::connect(&s, &RichTextSurface::KeyPress, [](int& key) {
        if (key == 'x')
            key = 0;
        else if (key == 'a')
            key = 'A';
    });
    int key = 'x';
    s.raiseKeyPress(key);
    EXPECT_EQ(key, 0);
    key = 'a';
    s.raiseKeyPress(key);
    EXPECT_EQ(key, 'A');
}

// The clipboard carries RTF, so the formats Qt has no property for survive.
TEST(Surface, CopyAndPasteKeepEveryFormat)
{
    RichTextSurface s;
    s.setText(QStringLiteral("one two"));
    s.setSelStart(4);
    s.setSelLength(3);
    s.setSelUnderlineKind(UnderlineKind::Double);
    s.setSelHidden(true);
    s.setSelCharOffset(-30);
    s.Copy();
    s.setSelStart(0);
    s.Paste();
    s.setSelStart(0);
    s.setSelLength(3);
    EXPECT_EQ(s.SelUnderlineKind(), UnderlineKind::Double);
    EXPECT_EQ(s.SelHidden(), true);
    EXPECT_EQ(s.SelCharOffset(), -30);
    EXPECT_EQ(str(s.Text()), "twoone two");
    s.setSelStart(0);
    s.setSelLength(3);
    s.Cut();
    EXPECT_EQ(str(s.Text()), "one two");
}

// Random documents of random text, formats and selections: the position
// mapping agrees with Text, and the round-trip invariants hold.
TEST(Surface, RandomDocumentsKeepTheInvariants)
{
    std::mt19937 rng(20261122);
    auto pick = [&](int n) { return int(rng() % unsigned(n)); };
    const QString alphabet = QStringLiteral("abc xyz\tàé€Ωか{}\\\u2028");
    for (int round = 0; round < 40; ++round) {
        RichTextSurface s;
        QString text;
        const int paras = 1 + pick(5);
        for (int p = 0; p < paras; ++p) {
            if (p)
                text += QStringLiteral("\r\n");
            for (int n = pick(30); n > 0; --n)
                text += alphabet[pick(alphabet.size())];
        }
        s.setText(text);
        for (int edit = 0; edit < 12; ++edit) {
            const long len = s.length();
            s.setSelStart(pick(int(len) + 1));
            s.setSelLength(pick(int(len) + 1));
            switch (pick(14)) {
            case 0: s.setSelBold(pick(2)); break;
            case 1: s.setSelItalic(pick(2)); break;
            case 2: s.setSelUnderlineKind(static_cast<UnderlineKind>(pick(11))); break;
            case 3: s.setSelColor(Colour(rng() & 0xFFFFFF)); break;
            case 4: s.setSelFontSize(float(6 + pick(30)) / (pick(2) ? 1.0f : 2.0f)); break;
            case 5: s.setSelFontName(pick(2) ? QStringLiteral("Arial") : QStringLiteral("Wingdings")); break;
            case 6: s.setSelCharOffset((pick(9) - 4) * 10); break;
            case 7: s.setSelHidden(pick(2)); break;
            case 8: s.setSelHighlight(pick(2) ? kNoHighlight : Colour(rng() & 0xFFFFFF)); break;
            case 9: s.setSelAlignment(pick(4)); break;
            case 10: s.setSelBullet(pick(2)); break;
            case 11: s.setSelIndent(float(pick(5) * 283)); break;
            case 12: s.setSelText(QStringLiteral("new\r\ntext")); break;
            case 13: s.setSelStrikeThru(pick(2)); break;
            }
        }
        const QString t = s.Text();
        ASSERT_EQ(s.length(), t.size());
        for (long p = 0; p <= s.length(); ++p) {
            const long back = s.fromDocPos(s.toDocPos(p));
            const bool betweenCrLf = p > 0 && t[p - 1] == u'\r';
            ASSERT_EQ(back, betweenCrLf ? p - 1 : p) << round << " at " << p;
        }
        const long a = pick(int(s.length()) + 1);
        const long b = pick(int(s.length()) + 1);
        s.setSelStart(std::min(a, b));
        s.setSelLength(std::abs(a - b));
        ASSERT_EQ(s.SelText(), t.mid(s.SelStart(), s.SelLength()));
        ASSERT_TRUE(test::wholeRoundTripHolds(s)) << "round " << round;
        ASSERT_TRUE(test::selectionRoundTripHolds(s, std::min(a, b), std::abs(a - b))) << "round " << round;
    }
}

namespace {

// Text as the document holds it, read straight from its raw characters.
QString rawAsText(const RichTextSurface& s)
{
    QString t = s.document()->toRawText();
    t.replace(QChar(QChar::ParagraphSeparator), QLatin1String("\r\n"));
    t.replace(QChar(QChar::LineSeparator), u'\v');
    return t;
}

}  // namespace

// Text is read between edits, as a search or typing does, so every edit has
// to leave it exactly as a model of the same edits on a plain string: breaks
// of every spelling inserted, selections over breaks and between CR and LF,
// format changes in between.
TEST(Surface, TextFollowsEveryEditWhenReadBetweenThem)
{
    std::mt19937 rng(4242);
    auto pick = [&](int n) { return int(rng() % unsigned(n)); };
    const QStringList inserts = {QString(), QStringLiteral("x"), QStringLiteral("E"), QStringLiteral("a\r\nb"),
                                 QStringLiteral("\n"), QStringLiteral("c\rd"), QStringLiteral("\r\n\r\n"),
                                 QStringLiteral("line\vbreak"), QStringLiteral("tab\there"),
                                 QStringLiteral("è€\u2028")};
    // What each insert becomes in Text: every break spelling is CR LF, a
    // line separator reads as a vertical tab.
    auto normal = [](QString t) {
        t.replace(QLatin1String("\r\n"), QLatin1String("\n"));
        t.replace(u'\r', u'\n');
        t.replace(QLatin1String("\n"), QLatin1String("\r\n"));
        t.replace(QChar(QChar::LineSeparator), u'\v');
        return t;
    };
    for (int round = 0; round < 20; ++round) {
        RichTextSurface s;
        QString model = QStringLiteral("first line\r\nsecond\r\n\r\nfourth one");
        s.setText(model);
        ASSERT_EQ(s.Text(), model);
        for (int edit = 0; edit < 60; ++edit) {
            const long len = s.length();
            const long a = pick(int(len) + 1);
            const long b = pick(int(len) + 1);
            s.setSelStart(std::min(a, b));
            s.setSelLength(std::abs(a - b));
            if (pick(6) == 0) {
                s.setSelBold(pick(2));
            } else {
                const QString ins = inserts[pick(int(inserts.size()))];
                model.replace(s.SelStart(), s.SelLength(), normal(ins));
                s.setSelText(ins);
            }
            ASSERT_EQ(str(s.Text()), str(model)) << "round " << round << " edit " << edit;
            ASSERT_EQ(s.length(), model.size());
            ASSERT_EQ(s.Find(QStringLiteral("line"), 0, -1, RichTextSurface::NoHighlight),
                      model.indexOf(QStringLiteral("line"), 0, Qt::CaseInsensitive));
        }
    }
}

// Edits whose result is not just the text written: a symbol font keeps its
// characters as byte values, a selection over a table leaves the cells'
// marks behind. Text still reads what the document holds.
TEST(Surface, TextAfterEditsThatTheDocumentReshapes)
{
    RichTextSurface s;
    s.setText(QStringLiteral("ab\r\ncd"));
    ASSERT_EQ(str(s.Text()), "ab\r\ncd");
    s.setSelStart(1);
    s.setSelFontName(QStringLiteral("Wingdings"));
    s.setSelText(QStringLiteral("zz"));
    EXPECT_EQ(s.Text(), rawAsText(s));
    EXPECT_EQ(s.Text().size(), 8);
    EXPECT_NE(s.Text().mid(1, 2), QStringLiteral("zz"));

    s.setTextRTF(QStringLiteral("{\\rtf1\\ansi before\\par\\trowd\\cellx1000\\cellx2000 "
                                "one\\cell two\\cell\\row after\\par}"));
    const QString before = s.Text();
    ASSERT_EQ(str(before), "before\r\none\ttwo\r\nafter");
    s.setSelStart(3);
    s.setSelLength(before.size() - 6);
    s.setSelText(QStringLiteral("-"));
    RichTextSurface fresh;  // Text built whole, with no cache behind it
    fresh.setTextRTF(s.TextRTF());
    EXPECT_EQ(str(s.Text()), str(fresh.Text()));
    EXPECT_EQ(s.length(), s.Text().size());
}

// A large document read whole is built with the layout off and laid out
// afterwards; it must end up laid out exactly as the same text typed in,
// with the caret at the top, and read back the same.
TEST(Surface, ALargeDocumentReadWholeLaysOutAsOneTypedIn)
{
    std::mt19937 rng(11);
    QString text;
    while (text.size() < 320000) {
        const int words = std::uniform_int_distribution<int>(0, 90)(rng);
        for (int w = 0; w < words; ++w)
            text += QStringLiteral("parola ").left(std::uniform_int_distribution<int>(1, 7)(rng));
        text += QStringLiteral("\r\n");
    }
    text += QStringLiteral("ultimo");

    RichTextSurface typed;
    typed.setTextWidth(240);
    typed.typeText(text);
    RichTextSurface read;
    read.setTextWidth(240);
    read.setSelStart(0);
    read.setText(text);

    auto lines = [](const RichTextSurface& s) {
        std::vector<long> starts;
        const long n = s.GetLineCount();
        for (long i = 0; i < n; i += 97)
            starts.push_back(s.LineIndex(i));
        starts.push_back(n);
        starts.push_back(s.LineFromChar(s.length()));
        return starts;
    };
    EXPECT_EQ(read.SelStart(), 0);
    EXPECT_EQ(lines(read), lines(typed));
    EXPECT_EQ(read.Text(), typed.Text());

    // The same through RTF, with formats to carry.
    typed.setSelStart(1000);
    typed.setSelLength(5000);
    typed.setSelBold(true);
    read.setTextRTF(typed.TextRTF());
    EXPECT_EQ(read.SelStart(), 0);
    EXPECT_EQ(lines(read), lines(typed));
    EXPECT_EQ(read.TextRTF(), typed.TextRTF());
}
