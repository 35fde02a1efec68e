// The reader's destinations fed with RTF of their own, each compared by
// everything it declared (the reader's list of entries) and by the text
// that reached the document, which must be none of theirs. And the lexer's
// edge cases, token by token.

#include "core/rtf_lexer.h"
#include "core/rtf_reader.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>
#include <QTextCursor>
#include <QTextDocument>

using namespace tornelia;

namespace {

struct Read {
    QStringList declared;
    QString text;
};

Read read(const QByteArray& rtf)
{
    QTextDocument doc;
    QTextCursor cursor(&doc);
    RtfReadOptions options;
    Read r;
    options.declarations = &r.declared;
    readRtf(QByteArrayView(rtf), cursor, options);
    r.text = doc.toPlainText();
    return r;
}

std::string lines(const QStringList& l) { return l.join(u'\n').toStdString(); }

QStringList tokens(const QByteArray& in)
{
    RtfLexer lexer(in);
    QStringList got;
    for (RtfToken t = lexer.next(); t.type != RtfToken::End; t = lexer.next()) {
        const QString word = QString::fromLatin1(t.word.data(), qsizetype(t.word.size()));
        switch (t.type) {
        case RtfToken::GroupOpen: got << "{"; break;
        case RtfToken::GroupClose: got << "}"; break;
        case RtfToken::Word: got << "\\" + word + (t.hasParam ? QString::number(t.param) : QString()); break;
        case RtfToken::Symbol: got << QStringLiteral("sym %1").arg(QChar(t.byte)); break;
        case RtfToken::HexByte: got << QStringLiteral("hex %1").arg(t.byte, 2, 16, QLatin1Char('0')); break;
        case RtfToken::Text: got << "text " + word; break;
        case RtfToken::Binary: got << QStringLiteral("bin %1").arg(t.word.size()); break;
        case RtfToken::End: break;
        }
    }
    return got;
}

// A 2x1 PNG as the hex of a \pict group.
QByteArray pngHex()
{
    QImage image(2, 1, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return png.toHex();
}

}  // namespace

TEST(RtfLexer, EdgesOfWordsParametersHexAndBinary)
{
    // Parameters: negative, the sign alone, a blank that ends the word and
    // is eaten, a number too long for an int held at the largest.
    EXPECT_EQ(tokens("\\li-360\\fi- x\\fs24  y\\u99999999999z"),
              (QStringList{"\\li-360", "\\fi", "text - x", "\\fs24", "text  y", "\\u2147483647", "text z"}));
    // Hex: a broken escape leaves its digits as text; an escaped brace,
    // backslash or line break is a symbol (the reader's paragraph).
    EXPECT_EQ(tokens("\\'4\\'zz\\'Ab\\{\\}\\\\\\\r\n\\*\\-"),
              (QStringList{"text 4", "text zz", "hex ab", "sym {", "sym }", "sym \\", "sym \r", "sym *", "sym -"}));
    // Binary: as long as its count says, braces and all, but never past the
    // end; without a count it is only a word.
    EXPECT_EQ(tokens("\\bin2 }}{\\bin5 ab"), (QStringList{"bin 2", "{", "bin 2"}));
    EXPECT_EQ(tokens("\\bin x"), (QStringList{"\\bin", "text x"}));
    EXPECT_EQ(tokens("{\\"), (QStringList{"{"}));
}

TEST(RtfDestinations, FontTablesDeclareTheirFontsAndShowNothing)
{
    const Read r = read(
        "{\\rtf1\\ansi\\ansicpg1250{\\fonttbl{\\f0\\fswiss\\fcharset0 Arial;}"
        "{\\f1\\froman\\fcharset204{\\*\\panose 02020603050405020304}Times New Roman Cyr;}"
        "{\\f2\\fnil\\fcharset2 Symbol;}{\\f3\\fmodern\\fprq1 {\\*\\falt Courier}Courier New;}"
        "{\\f4\\fnil\\fcharset128 \\'82\\'6c\\'82\\'72 \\'96\\'be\\'92\\'a9;}{\\f5\\fnil\\cpg10001 Osaka;}"
        "{\\f6 Unterminated}}"
        // A second table in the user properties: Mac Word's real one.
        "{\\upr{\\fonttbl{\\f7 Geneva;}}{\\*\\ud{\\fonttbl{\\f7\\fnil Geneva;}}}}"
        "\\f0 Body}");
    EXPECT_EQ(lines(r.declared), lines({"font 0 \"Arial\" fswiss charset 0 cpg 1252", "font 1 \"Times New Roman Cyr\" froman charset 204 cpg 1251",
                                        "font 2 \"Symbol\" fnil charset 2 cpg -2", "font 3 \"Courier New\" fmodern charset -1 cpg 0",
                                        "font 4 \"ＭＳ 明朝\" fnil charset 128 cpg 932", "font 5 \"Osaka\" fnil charset -1 cpg 10001",
                                        "font 6 \"Unterminated\" - charset -1 cpg 0", "font 7 \"Geneva\" - charset -1 cpg 0",
                                        "font 7 \"Geneva\" fnil charset -1 cpg 0"}));
    EXPECT_EQ(r.text, "Body");
}

TEST(RtfDestinations, ColourTablesKeepTheAutomaticColourAndTheEnginesInnerGroup)
{
    const Read word = read("{\\rtf1{\\colortbl;\\red255\\green0\\blue0;\\red0\\green128\\blue255;;}x}");
    EXPECT_EQ(lines(word.declared), lines({"colour 0 auto", "colour 1 #ff0000", "colour 2 #0080ff", "colour 3 auto"}));
    // The colour effects extend a table with an inner group and pad it.
    const Read engine = read("{\\rtf1{\\colortbl{;\\red1\\green2\\blue3;\\red999\\green-4\\blue7;}  }x}");
    EXPECT_EQ(lines(engine.declared), lines({"colour 0 auto", "colour 1 #010203", "colour 2 #ff0007"}));
    EXPECT_EQ(engine.text, "x");
}

TEST(RtfDestinations, StylesheetsDeclareEachStyleWithItsFormats)
{
    const Read r = read("{\\rtf1\\deff0{\\fonttbl{\\f0 Arial;}{\\f1 Georgia;}}"
                        "{\\stylesheet{\\f0\\fs20 Normal;}{\\s1\\qc\\b\\f1\\fs32 heading 1;}{\\*\\cs10\\i\\fs20 Emphasis;}"
                        "{\\s2\\li720\\fi-360\\ls1\\ilvl1\\f0 List Paragraph;}{\\*\\ts11\\tsrowd Normal Table;}"
                        "{\\s3\\sbasedon1\\i Unterminated}}x}");
    EXPECT_EQ(lines(r.declared), lines({"font 0 \"Arial\" - charset -1 cpg 0", "font 1 \"Georgia\" - charset -1 cpg 0",
                                        "style 0: Arial 10", "style 1: Georgia 16 bold centre",
                                        "character style 10: Arial 10 italic", "style 2: Arial 12 li 720 fi -360 ls 1 ilvl 1",
                                        "style 3: Arial 12 italic"}));
    EXPECT_EQ(r.text, "x");
}

TEST(RtfDestinations, ListTablesDeclareLevelsAndOverridesAndPnListsTheirLabels)
{
    const Read r = read(
        "{\\rtf1{\\fonttbl{\\f0 Arial;}{\\f1\\fcharset2 Symbol;}}{\\*\\listtable{\\list\\listtemplateid5"
        "{\\listlevel\\levelnfc0\\levelstartat3{\\leveltext\\leveltemplateid9\\'02\\'00.;}{\\levelnumbers\\'01;}\\fi-360\\li720}"
        "{\\listlevel\\levelnfc4{\\leveltext\\'04\\'00.\\'01);}{\\levelnumbers\\'01\\'03;}\\li1440}"
        "{\\listlevel\\levelnfc23{\\leveltext\\'01\\u-3913 ?;}\\f1}{\\listname Secret name;}\\listid42}}"
        "{\\*\\listoverridetable{\\listoverride\\listid42\\listoverridecount0\\ls1}}"
        "{\\pntext 1)\\tab}{\\*\\pn\\pnlvlbody\\pnlcltr\\pnstart3\\pnf0{\\pntxtb (}{\\pntxta )}}Item\\par"
        "{\\*\\pn\\pnlvlblt\\pnf1{\\pntxtb \\'b7}}Dot}");
    EXPECT_EQ(lines(r.declared), lines({"font 0 \"Arial\" - charset -1 cpg 0", "font 1 \"Symbol\" - charset 2 cpg -2",
                                        "list 42 level 0: nfc 0 start 3 \"%0.\" li 720 fi -360",
                                        "list 42 level 1: nfc 4 start 1 \"%0.%1)\" li 1440",
                                        "list 42 level 2: nfc 23 start 1 \"•\"", "override ls 1 list 42",
                                        "pn numbered style 4 start 3 font 0 before \"(\" after \")\"",
                                        "pn bullet style 0 start 1 font 1 before \"•\" after \"\""}));
    EXPECT_EQ(r.text, "Item\nDot");
}

TEST(RtfDestinations, PicturesFieldsAndShapesShowWhatTheWriterMeant)
{
    const QByteArray hex = pngHex();
    const QByteArray png = QByteArray::fromHex(hex);
    // A picture with its goal size, one in binary, one that cannot be
    // decoded: all three shown, the last as its place.
    const Read pictures = read("{\\rtf1 a{\\pict\\pngblip\\picw2\\pich1\\picwgoal300\\pichgoal150 " + hex + "}b" +
                               "{\\pict\\pngblip\\picscalex50\\picscaley200\\bin" + QByteArray::number(png.size()) + " " + png +
                               "}c{\\pict\\wmetafile8\\picw2540\\pich1270 0102}d}");
    EXPECT_EQ(lines(pictures.declared),
              lines({QStringLiteral("picture png %1 bytes, 2x1 pixels, 300x150 twips").arg(png.size()),
                     QStringLiteral("picture png %1 bytes, 2x1 pixels, 15x30 twips").arg(png.size()),
                     "picture wmf 2 bytes, 0x0 pixels, 1440x720 twips"}));
    EXPECT_EQ(pictures.text, QStringLiteral("a\uFFFCb\uFFFCc\uFFFCd"));

    // A field shows its result, never its instruction.
    const Read field = read("{\\rtf1 see {\\field{\\*\\fldinst HYPERLINK \"http://example.org\"}{\\fldrslt {\\ul here}}} now}");
    EXPECT_EQ(lines(field.declared), "");
    EXPECT_EQ(field.text, "see here now");

    // A picture shape shows its own picture and not its result; \shppict
    // wins over \nonshppict.
    const Read shape = read("{\\rtf1 [{\\shp{\\*\\shpinst\\shpleft0{\\sp{\\sn shapeType}{\\sv 75}}{\\sp{\\sn pib}{\\sv "
                            "{\\pict\\pngblip\\picwgoal60\\pichgoal30 " + hex + "}}}}{\\shprslt fallback text}}]"
                            "{\\*\\shppict{\\pict\\pngblip " + hex + "}}{\\nonshppict{\\pict\\wmetafile8 00}}}");
    EXPECT_EQ(lines(shape.declared), lines({"shape property shapeType", "shape property pib",
                                            QStringLiteral("picture png %1 bytes, 2x1 pixels, 60x30 twips").arg(png.size()),
                                            QStringLiteral("picture png %1 bytes, 2x1 pixels, 30x15 twips").arg(png.size())}));
    EXPECT_EQ(shape.text, QStringLiteral("[\uFFFC]\uFFFC"));
}
