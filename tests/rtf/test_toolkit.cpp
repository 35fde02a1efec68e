// The string rules of the toolkit, on streams in the shape the surface
// writes. Each rule is exact: the effects and toggles rely on its oddities.

#include "rtf/rtf_toolkit.h"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

using namespace tornelia;
using namespace tornelia::rtfkit;

namespace {

const QString kHead = QStringLiteral(
    "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1040{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}}\r\n");
const QString kColourTable = QStringLiteral("{\\colortbl ;\\red255\\green0\\blue0;}\r\n");

QString doc(const QString& body, bool colours = false)
{
    return kHead + (colours ? kColourTable : QString()) + QStringLiteral("\\viewkind4\\uc1\\pard") + body;
}

}  // namespace

TEST(Toolkit, HeadEndsAtTheBlankOfTheFirstTwoDigitSize)
{
    const QString two = doc(QStringLiteral("\\f0\\fs20 Hi\\fs8 x}\r\n"));
    EXPECT_EQ(HeadLength(two), two.indexOf(QLatin1String("\\fs20 ")) + 6);
    // A one-digit size is passed over for a later one, and with none later
    // there is no head at all.
    const QString later = doc(QStringLiteral("\\f0\\fs8 a\\fs24 b}\r\n"));
    EXPECT_EQ(HeadLength(later), later.indexOf(QLatin1String("\\fs24 ")) + 6);
    EXPECT_EQ(HeadLength(doc(QStringLiteral("\\f0\\fs8 a}\r\n"))), 0);
    EXPECT_EQ(HeadLength(QStringLiteral("plain text")), 0);
    EXPECT_EQ(HeadLength(QStringLiteral("{\\fonttbl{\\f0\\fswiss Arial;}}")), 0);
}

TEST(Toolkit, BitKinds)
{
    const std::vector<std::pair<QString, QString>> cases = {
        {"", "Blank"},
        {"\\b\\i", "RTFOnly"},
        {"}\r\n", "RTFOnly"},
        {"\r\n\\viewkind4", "RTFOnly"},
        {"uc1\\pard", "RTFOnly"},
        {"word", "TextOnly"},
        {"perch\\'e8", "Mixed"},
        {"end}", "Mixed"},
        {"uc2\\pard", "Mixed"},
    };
    for (const auto& [bit, name] : cases)
        EXPECT_EQ(BitKindName(BitKind(bit)), name) << qPrintable(bit);
}

TEST(Toolkit, SlugsAndJoining)
{
    // An emptied bit becomes a slug and goes with its blank; a bit that was
    // empty stays, and so does the double blank it stands for.
    EXPECT_EQ(SlugOrText(QStringLiteral("\\ul"), QString()), SlugMark);
    EXPECT_EQ(SlugOrText(QString(), QString()), QString());
    EXPECT_EQ(SlugOrText(QStringLiteral("a"), QStringLiteral("b")), QStringLiteral("b"));
    EXPECT_EQ(JoinBits({"a", SlugMark, "", "b", SlugMark}, " "), QStringLiteral("a  b"));
    // Trailing blanks of a stream are lost.
    EXPECT_EQ(JoinBits({"a", "b", "", ""}, " "), QStringLiteral("a b"));
    EXPECT_EQ(JoinBits({"", "b", SlugMark}, "\\"), QStringLiteral("\\b"));
}

TEST(Toolkit, WordStates)
{
    const std::vector<std::tuple<QString, QString, int>> cases = {
        {"x\\ul\\b y", "\\ul", 1},
        {"x\\ulnone y", "\\ul", 0},
        {"x\\ulnone y", "\\ulnone", 4},
        {"x\\v  }", "\\v", 2},
        {"x\\v }", "\\v", 3},
        {"x\\v y", "\\v", 4},
        {"x\\v", "\\v", 5},
        {"\\viewkind4 x", "\\v", 0},
    };
    for (const auto& [s, word, state] : cases)
        EXPECT_EQ(WordState(s, word), state) << qPrintable(s) << " " << qPrintable(word);
}

TEST(Toolkit, RemoveWordTakesOnlyTheWholeWord)
{
    const std::vector<std::tuple<QString, QString, QString>> cases = {
        {"\\ul\\b", "\\ul", "\\b"},
        {"\\ulth\\b", "\\ul", "\\ulth\\b"},
        {"\\b\\uld", "\\uld", "\\b"},
        {"\\uld", "\\uld", ""},
        {"world\\uld", "\\uld", "world"},
        {"perch\\'e8", "\\v", "perch\\'e8"},
        {"C:\\\\", "\\v", "C:\\\\"},  // an escaped backslash at the end stays
    };
    for (const auto& [bit, word, expected] : cases) {
        QString b = bit;
        RemoveWord(b, word);
        EXPECT_EQ(b, expected) << qPrintable(bit);
    }
}

TEST(Toolkit, StripWordIsTextual)
{
    // Hidden text in the middle: the blank behind the word stays, so the
    // text gains one.
    QString middle = doc(QStringLiteral("\\f0\\fs20 Hello \\v secret\\v0  world\\par\r\n}\r\n"));
    StripWord(middle, QStringLiteral("\\v"));
    EXPECT_EQ(middle, doc(QStringLiteral("\\f0\\fs20 Hello  secret\\v0  world\\par\r\n}\r\n")));
    // Glued to the next word, every "\v" goes, that of "\viewkind4" too.
    QString glued = doc(QStringLiteral("\\v\\f0\\fs20 secret\\v0  shown\\par\r\n}\r\n"));
    StripWord(glued, QStringLiteral("\\v"));
    EXPECT_EQ(glued, kHead + QStringLiteral("iewkind4\\uc1\\pard\\f0\\fs20 secret0  shown\\par\r\n}\r\n"));
}

TEST(Toolkit, SplittingKeepsEveryCharacter)
{
    const QString s = doc(QStringLiteral("\\f0\\fs20 Hello  perch\\'e8 \\b world\\b0}\r\n"), true);
    QString head;
    QStringList bits;
    SplitStream(s, head, bits);
    EXPECT_EQ(head, kHead + kColourTable);
    EXPECT_EQ(bits, QStringList({"\\viewkind4\\uc1\\pard\\f0\\fs20", "Hello", "", "perch\\'e8", "\\b",
                                 "world\\b0}\r\n"}));
    EXPECT_EQ(head + JoinBits(bits, " "), s);

    // The full split keeps the tables in the head and gives the rest of
    // the head to the first bit; the line feed before "\viewkind4" stands
    // on both sides.
    SplitStreamFull(s, HeadLength(s), head, bits);
    EXPECT_EQ(head, kHead + kColourTable);
    EXPECT_EQ(bits.first(), QStringLiteral("\n\\viewkind4\\uc1\\pard\\f0\\fs20"));
    EXPECT_EQ(bits.mid(1), QStringList({"Hello", "", "perch\\'e8", "\\b", "world\\b0}\r\n"}));

    const QString plain = doc(QStringLiteral("\\f0\\fs20 Hi}\r\n"));
    SplitStreamFull(plain, HeadLength(plain), head, bits);
    EXPECT_EQ(head, kHead.left(kHead.size() - 2));
    EXPECT_EQ(bits, QStringList({"\r\n\\viewkind4\\uc1\\pard\\f0\\fs20", "Hi}\r\n"}));

    // Without a head the stream is all body.
    SplitStreamFull(QStringLiteral("a b"), 0, head, bits);
    EXPECT_EQ(head, QString());
    EXPECT_EQ(bits, QStringList({"a", "b"}));
    EXPECT_THROW(SplitStream(QStringLiteral("{\\rtf1 no body}"), head, bits), RtfStreamError);
}

TEST(Toolkit, TablesOfTheHead)
{
    const QString s = doc(QStringLiteral("\\f0\\fs20 Hi}\r\n"), true);
    EXPECT_EQ(TableText(s, HeadLength(s), "{\\colortbl"), kColourTable);
    // The font table runs up to the next backslash: here the brace that
    // opens the colour table comes with it.
    EXPECT_EQ(TableText(s, HeadLength(s), "{\\fonttbl"), QStringLiteral("{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}}\r\n{"));
    EXPECT_EQ(TableText(doc(QStringLiteral("\\f0\\fs20 Hi}")), 60, "{\\colortbl"), QString());
    // Without a head nothing is found, even where the table stands.
    EXPECT_EQ(TableText(doc(QStringLiteral("\\f0\\fs8 Hi}"), true), 0, "{\\colortbl"), QString());
}

TEST(Toolkit, ColouringAStreamWithoutATableCreatesOne)
{
    const QString s = doc(QStringLiteral("\\f0\\fs20 ab  c\\'e8d}\r\n"));
    const std::vector<Colour> colours = {RGB(1, 2, 3), RGB(4, 5, 6), RGB(7, 8, 9), RGB(10, 11, 12), 0, 0};
    bool toText = true;
    const QString out = ColourStream(s, colours, toText, false, [] { return 0.0; });
    EXPECT_EQ(out, kHead.left(kHead.size() - 1) +
                       QStringLiteral("{\\colortbl{;\\red1\\green2\\blue3;\\red4\\green5\\blue6;\\red7\\green8\\blue9;"
                                      "\\red10\\green11\\blue12;}  }"
                                      "\\viewkind4\\uc1\\pard\\f0\\fs20 \\cf1 a\\cf2 b \\cf3  \\cf4 c\\'e8d}\r\n"));
}

TEST(Toolkit, ColouringAppendsToAnExistingTable)
{
    const QString s = doc(QStringLiteral("\\f0\\fs20 xy}\r\n"), true);
    bool toText = false;
    const QString out = ColourStream(s, {RGB(255, 0, 0), RGB(0, 0, 9)}, toText, false, [] { return 0.0; });
    EXPECT_EQ(out, kHead + QStringLiteral("{\\colortbl ;\\red255\\green0\\blue0;\\red255\\green0\\blue0;\\red0\\green0\\blue9;}"
                                          "\\viewkind4\\uc1\\pard\\f0\\fs20 \\highlight2 x\\highlight3 y}\r\n"));
    // More characters than colours: nothing is made.
    EXPECT_THROW(ColourStream(s, {1}, toText, false, [] { return 0.0; }), RtfStreamError);
    // Shuffling draws text or background for each bit.
    const QString two = doc(QStringLiteral("\\f0\\fs20 a b}\r\n"), true);
    std::vector<double> draws = {0.9, 0.1, 0.9};
    size_t next = 0;
    const QString mixed = ColourStream(two, {5, 6}, toText, true, [&] { return draws[next++]; });
    EXPECT_TRUE(mixed.endsWith(QStringLiteral("\\fs20 \\highlight2 a \\cf3 b}\r\n"))) << qPrintable(mixed);
}

TEST(Toolkit, SlugsInCaptions)
{
    const std::vector<std::tuple<QString, QString, bool, QString>> cases = {
        {"Doc <50%> x", "75%", false, "Doc <75%> x"},
        {"Doc <50%> x", "", false, "Doc  x"},
        {"Doc", "75%", true, "<75%>Doc"},
        {"Doc", "75%", false, "Doc<75%>"},
        {"Doc", "", false, "Doc"},
    };
    for (const auto& [text, value, front, expected] : cases)
        EXPECT_EQ(AddSlug(text, "<", value, ">", front), expected) << qPrintable(text);
}

TEST(Toolkit, ColourArithmetic)
{
    EXPECT_EQ(RGB(300, -4, 16), 0x1000FFu);
    int r, g, b;
    SplitColour(0x80000005u, r, g, b);
    EXPECT_EQ(std::make_tuple(r, g, b), std::make_tuple(5, 0, 0));
    EXPECT_EQ(ColourEntry(RGB(1, 22, 255)), QStringLiteral("\\red1\\green22\\blue255;"));
    EXPECT_EQ(FontTableEntry(3, "Georgia"), QStringLiteral("\\f3\\froman\\fprq2\\fcharset0 Georgia;"));
    // The opposite swaps red and blue; a mid grey is pushed off the middle
    // first, and a colour that is its own opposite falls back to 128.
    EXPECT_EQ(ContrastColour(RGB(255, 0, 0)), RGB(255, 255, 0));
    EXPECT_EQ(ContrastColour(RGB(10, 100, 200)), RGB(55, 155, 245));
    EXPECT_EQ(ContrastColour(RGB(128, 128, 128)), RGB(1, 1, 1));
    double v = 300;
    Limit(0.0, v, 255.0);
    EXPECT_EQ(v, 255);
}

TEST(Toolkit, ColouringLeavesGroupsAndUnfoundTablesAlone)
{
    // Hex data of a picture kept whole, split by a blank, is no text. (The
    // brace that opens the group takes a colour: only a backslash or a
    // closing brace ends a bit's colouring.)
    const QString pict = doc(QStringLiteral("\\f0\\fs20 a{\\pict\\wmetafile8\\picw10 0100 0900}b c}\r\n"), true);
    bool toText = true;
    const QString out = ColourStream(pict, {1, 2, 3}, toText, false, [] { return 0.0; });
    EXPECT_TRUE(out.endsWith(QStringLiteral("\\fs20 \\cf2 a\\cf3 {\\pict\\wmetafile8\\picw10 0100 0900}b \\cf4 c}\r\n")))
        << qPrintable(out);
    // A table that the head rule cannot find is not replaced by searching
    // for nothing; the stream stays whole.
    const QString glued = doc(QStringLiteral("\\f0\\fs20\\u8364?x}\r\n"), true);
    const QString same = ColourStream(glued, {1, 2, 3}, toText, false, [] { return 0.0; });
    EXPECT_EQ(same, glued);
}
