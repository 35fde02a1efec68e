#include "core/rich_text_surface.h"
#include "core/run_dump.h"
#include "rtf_support.h"

#include <gtest/gtest.h>

#include <QBuffer>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextBlock>
#include <QTextDocument>
#include <QUrl>

using namespace tornelia;
using tornelia::test::selectionRoundTripHolds;
using tornelia::test::wholeRoundTripHolds;

namespace {

const char* const kHead = "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1040{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}";

QString rtf(const char* s) { return QString::fromLatin1(s); }
std::string str(const QString& s) { return s.toStdString(); }
std::string str(const QStringList& l) { return l.join(QLatin1Char('\n')).toStdString(); }
#define EXPECT_QEQ(a, b) EXPECT_EQ(str(a), str(b))

// One run of the dump as "text|attribute=value,..." listing what differs
// from plain Tahoma 10, so expectations read as a line each.
QStringList runsOf(const RichTextSurface& s)
{
    const QJsonObject plain{{"font", "Tahoma"},   {"size", 10.0},         {"bold", false},
                            {"italic", false},    {"underline", "none"},  {"strike", false},
                            {"color", "auto"},    {"highlight", "none"},  {"offset_half_points", 0},
                            {"hidden", false},    {"caps", false}};
    QStringList out;
    const QJsonObject root = QJsonDocument::fromJson(dumpRuns(s).toUtf8()).object();
    for (const QJsonValue p : root["paragraphs"].toArray()) {
        const QJsonObject para = p.toObject();
        QString head = QStringLiteral("¶ %1").arg(para["align"].toString());
        if (para["indent_twips"].toInt()) head += QStringLiteral(" li=%1").arg(para["indent_twips"].toInt());
        if (para["right_indent_twips"].toInt()) head += QStringLiteral(" ri=%1").arg(para["right_indent_twips"].toInt());
        if (para["bullet"].toBool()) head += QStringLiteral(" bullet");
        out << head;
        for (const QJsonValue r : para["runs"].toArray()) {
            const QJsonObject run = r.toObject();
            QStringList attrs;
            for (auto it = plain.begin(); it != plain.end(); ++it)
                if (run[it.key()] != it.value())
                    attrs << it.key() + "=" + run[it.key()].toVariant().toString();
            attrs.sort();
            out << run["text"].toString() + "|" + attrs.join(",");
        }
    }
    if (int pictures = root["pictures"].toInt())
        out << QStringLiteral("pictures=%1").arg(pictures);
    return out;
}

}  // namespace

// The shape the RTF string engine cuts and splices: the head and its line
// ends, the body's first words, words glued, one blank before text, \par
// with CR LF after every paragraph.
TEST(RtfWriter, WritesTheRichEditShape)
{
    RichTextSurface s;
    s.setText(QStringLiteral("Hello world\r\ncentred {x}\\ \tcaffè € Ω"));
    s.setSelStart(6);
    s.setSelLength(5);
    s.setSelBold(true);
    s.setSelColor(0x0000FF);
    s.setSelStart(13);
    s.setSelAlignment(2);
    EXPECT_QEQ(s.TextRTF(), rtf("{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1040{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}}\r\n"
                               "{\\colortbl ;\\red255\\green0\\blue0;}\r\n"
                               "\\viewkind4\\uc1\\pard\\f0\\fs20 Hello \\cf1\\b world\\par\r\n"
                               "\\pard\\qc\\cf0\\b0 centred \\{x\\}\\\\ \\tab caff\\'e8 \\'80 \\u937?\\par\r\n"
                               "}\r\n"));

    // An empty document still names its font and size.
    RichTextSurface empty;
    EXPECT_QEQ(empty.TextRTF(), rtf(kHead) + rtf("}\r\n\\viewkind4\\uc1\\pard\\f0\\fs20\\par\r\n}\r\n"));
    EXPECT_QEQ(empty.Text(), QString());
    EXPECT_EQ(empty.length(), 0);
}

TEST(RtfWriter, WritesEveryCharacterFormatAsToggles)
{
    RichTextSurface s;
    s.setText(QStringLiteral("abcdefghijklmn"));
    struct Step {
        long at;
        std::function<void()> apply;
    } steps[] = {
        {1, [&] { s.setSelItalic(true); }},
        {2, [&] { s.setSelUnderlineKind(UnderlineKind::Double); }},
        {3, [&] { s.setSelUnderlineKind(UnderlineKind::Thick); }},
        {4, [&] { s.setSelUnderlineKind(UnderlineKind::Word); }},
        {5, [&] { s.setSelUnderlineKind(UnderlineKind::Hair); }},
        {6, [&] { s.setSelUnderlineKind(UnderlineKind::Wave); }},
        {7, [&] { s.setSelStrikeThru(true); }},
        {8, [&] { s.setSelHidden(true); }},
        {9, [&] { s.setSelCharOffset(60); }},
        {10, [&] { s.setSelCharOffset(-40); }},
        {11, [&] { s.setSelCaps(true); }},
        {12, [&] { s.setSelHighlight(0x00FFFF); }},
        {13, [&] { s.setSelFontName(QStringLiteral("Courier New")); s.setSelFontSize(12); }},
    };
    for (auto& step : steps) {
        s.setSelStart(step.at);
        s.setSelLength(1);
        step.apply();
    }
    EXPECT_QEQ(s.TextRTF(),
              rtf(kHead) + rtf("{\\f1\\fmodern\\fcharset0 Courier New;}}\r\n"
                               "{\\colortbl ;\\red255\\green255\\blue0;}\r\n"
                               "\\viewkind4\\uc1\\pard\\f0\\fs20 a\\i b\\uldb\\i0 c\\ulth d\\ulw e\\ulhair f\\ulwave g"
                               "\\ulnone\\strike h\\strike0\\v i\\v0\\up6 j\\dn4 k\\up0\\caps l\\highlight1\\caps0 m"
                               "\\highlight0\\f1\\fs24 n\\par\r\n}\r\n"));
    EXPECT_TRUE(wholeRoundTripHolds(s));
    EXPECT_QEQ(runsOf(s), (QStringList{"¶ left", "a|", "b|italic=true", "c|underline=double", "d|underline=thick",
                                      "e|underline=word", "f|underline=hair", "g|underline=wave", "h|strike=true",
                                      "i|hidden=true", "j|offset_half_points=6", "k|offset_half_points=-4",
                                      "l|caps=true", "m|highlight=#ffff00", "n|font=Courier New,size=12"}));
}

TEST(RtfReader, ReadsEveryFormatAndWritesItBack)
{
    const QString input = rtf(
        "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss\\fcharset0 Arial;}{\\f1\\fnil\\fcharset2 Wingdings;}"
        "{\\f2\\froman\\fprq2\\fcharset0 Times New Roman;}}\r\n"
        "{\\colortbl ;\\red0\\green0\\blue255;\\red0\\green255\\blue0;}\r\n"
        "\\viewkind4\\uc1\\pard\\qr\\li567\\ri283\\f0\\fs24 right \\b bold\\b0  \\i it\\i0  \\ul u\\ulnone  \\uld dot"
        "\\ulnone  \\uldash dash\\ulnone  \\uldashd dd\\ulnone  \\uldashdd ddd\\ulnone  \\ulwave w\\ulnone  \\uldb db"
        "\\ulnone  \\uldbl dbl\\ulnone  \\ulth th\\ulnone  \\ulw word\\ulnone  \\ulhair h\\ulnone\\par\r\n"
        "\\pard\\qj\\cf1 blue\\cf0  \\highlight2 hl\\highlight0  \\strike s\\strike0  \\v hid\\v0  \\up6 up\\up0  \\dn4 dn"
        "\\up0  \\caps caps\\caps0  \\f1\\'e0\\'df\\f2  Times\\par\r\n"
        "\\pard{\\pntext\\f1\\'B7\\tab}{\\*\\pn\\pnlvlblt\\pnf1\\pnindent0{\\pntxtb\\'B7}}\\fi-360\\li360\\f0 one\\par\r\n"
        "{\\pntext\\f1\\'B7\\tab}two\\tab tab\\line line caf\\'e8 \\u8364? \\{\\}\\\\\\par\r\n"
        "}\r\n");
    RichTextSurface s;
    s.setTextRTF(input);
    EXPECT_QEQ(s.Text(), QStringLiteral("right bold it u dot dash dd ddd w db dbl th word h\r\n"
                                       "blue hl s hid up dn caps \uF0E0\uF0DF Times\r\n"
                                       "one\r\n"
                                       "two\ttab\vline cafè € {}\\"));
    const QStringList runs = runsOf(s);
    const QStringList expected = {
        "¶ right li=567 ri=283", "right |font=Arial,size=12", "bold|bold=true,font=Arial,size=12",
        " |font=Arial,size=12", "it|font=Arial,italic=true,size=12", " |font=Arial,size=12",
        "u|font=Arial,size=12,underline=single", " |font=Arial,size=12", "dot|font=Arial,size=12,underline=dotted",
        " |font=Arial,size=12", "dash|font=Arial,size=12,underline=dash", " |font=Arial,size=12",
        "dd|font=Arial,size=12,underline=dashdot", " |font=Arial,size=12",
        "ddd|font=Arial,size=12,underline=dashdotdot", " |font=Arial,size=12",
        "w|font=Arial,size=12,underline=wave", " |font=Arial,size=12", "db|font=Arial,size=12,underline=double",
        " |font=Arial,size=12", "dbl|font=Arial,size=12,underline=double", " |font=Arial,size=12",
        "th|font=Arial,size=12,underline=thick", " |font=Arial,size=12", "word|font=Arial,size=12,underline=word",
        " |font=Arial,size=12", "h|font=Arial,size=12,underline=hair",
        "¶ justify", "blue|color=#0000ff,font=Arial,size=12", " |font=Arial,size=12",
        "hl|font=Arial,highlight=#00ff00,size=12", " |font=Arial,size=12", "s|font=Arial,size=12,strike=true",
        " |font=Arial,size=12", "hid|font=Arial,hidden=true,size=12", " |font=Arial,size=12",
        "up|font=Arial,offset_half_points=6,size=12", " |font=Arial,size=12",
        "dn|font=Arial,offset_half_points=-4,size=12", " |font=Arial,size=12", "caps|caps=true,font=Arial,size=12",
        " |font=Arial,size=12", "\uF0E0\uF0DF|font=Wingdings,size=12", " Times|font=Times New Roman,size=12",
        "¶ left li=360 bullet", "one|font=Arial,size=12", "¶ left li=360 bullet",
        "two\ttab\u2028line cafè € {}\\|font=Arial,size=12"};
    EXPECT_QEQ(runs, expected);
    EXPECT_TRUE(wholeRoundTripHolds(s));

    // The program's own spelling of double underline comes back as it went in;
    // the symbol font's bytes go back as bytes in that font.
    const QString out = s.TextRTF();
    EXPECT_TRUE(out.contains(rtf("\\uldb db\\ulnone  \\uldbl dbl\\ulnone ")));
    EXPECT_TRUE(out.contains(rtf("{\\f1\\fnil\\fcharset2 Wingdings;}")));
    EXPECT_TRUE(out.contains(rtf("\\f1\\'e0\\'df\\f2  Times")));
    EXPECT_TRUE(out.contains(rtf("{\\f2\\froman\\fprq2\\fcharset0 Times New Roman;}")));
    EXPECT_TRUE(out.contains(rtf("\\pard{\\pntext\\f3\\'B7\\tab}{\\*\\pn\\pnlvlblt\\pnf3\\pnindent0{\\pntxtb\\'B7}}"
                                 "\\fi-360\\li360\\f0 one\\par\r\n{\\pntext\\f3\\'B7\\tab}two\\tab tab\\line line")));
}

// A list whose bullet is a blank keeps the blank through saves, instead of
// turning into the default dot on the second reading.
TEST(RtfReader, ABlankBulletStaysBlank)
{
    RichTextSurface s;
    s.setTextRTF(rtf("{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}{\\*\\listtable{\\list{\\listlevel\\levelnfc23"
                     "{\\leveltext\\'01 ;}{\\levelnumbers;}\\li720}\\listid1}}"
                     "{\\*\\listoverridetable{\\listoverride\\listid1\\ls1}}\\pard\\ls1 Dot\\par}"));
    EXPECT_TRUE(s.TextRTF().contains(rtf("{\\pntxtb  }"))) << s.TextRTF().toStdString();
    EXPECT_TRUE(wholeRoundTripHolds(s));
}

// What the colour effects write back: a created colour table with an inner
// group, glued runs, one entry per character, per-character sizes, offsets
// and highlights.
TEST(RtfReader, AcceptsWhatTheStringEngineWrites)
{
    QString body;
    QString table;
    for (int i = 1; i <= 3000; ++i) {
        table += QStringLiteral("\\red%1\\green%2\\blue%3;").arg(i % 256).arg((i / 256) % 256).arg(7);
        body += QStringLiteral("\\cf%1\\highlight%2\\up%3\\fs%4 %5").arg(i).arg(3001 - i).arg(i % 5).arg(20 + i % 9).arg(QChar('a' + i % 26));
    }
    const QString input = rtf(kHead) + rtf("}\r\n{\\colortbl{;") + table + rtf("}  }\r\n\\viewkind4\\uc1\\pard\\f0\\fs20 ") +
                          body + rtf("\\par\r\n}\r\n");
    RichTextSurface s;
    s.setTextRTF(input);
    ASSERT_EQ(s.Text().size(), 3000);
    s.setSelStart(0);
    s.setSelLength(1);
    EXPECT_EQ(s.SelColor(), std::optional<Colour>(0x070001));
    EXPECT_EQ(s.SelHighlight(), std::optional<Colour>(0x070BB8));  // entry 3000: red 184, green 11
    EXPECT_EQ(s.SelCharOffset(), std::optional<int>(10));
    EXPECT_EQ(s.SelFontSize(), std::optional<float>(10.5f));
    s.setSelLength(2);
    EXPECT_EQ(s.SelColor(), std::nullopt);
    EXPECT_TRUE(wholeRoundTripHolds(s));

    RichTextSurface glued;
    glued.setTextRTF(rtf(kHead) + rtf("}\r\n{\\colortbl ;\\red1\\green0\\blue0;\\red2\\green0\\blue0;}\r\n"
                                      "\\viewkind4\\uc1\\pard\\f0\\fs20\\cf1 H\\cf2 e\\cf1 y\\par\r\n}\r\n"));
    EXPECT_QEQ(runsOf(glued), (QStringList{"¶ left", "H|color=#010000", "e|color=#020000", "y|color=#010000"}));
}

TEST(RtfReader, HonoursCodePagesUnicodeAndSkips)
{
    struct Case {
        const char* rtf;
        QString text;
    } cases[] = {
        // \ansicpg of the document; \fcharset of a font; \cpg over \fcharset.
        {"{\\rtf1\\ansi\\ansicpg1251{\\fonttbl{\\f0 Arial;}}\\f0 \\'cf\\'f0\\'e8\\par}", QStringLiteral("При")},
        {"{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset204 Arial;}{\\f1\\fcharset0 Arial;}}\\f0\\'cf\\f1\\'cf\\par}",
         QStringLiteral("ПÏ")},
        {"{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset0\\cpg1253 Arial;}}\\f0\\'e1\\par}", QStringLiteral("α")},
        // A name in a far-eastern font keeps a character its code page lacks.
        {"{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset129 \\u8226?Gulim;}}\\f0 a\\par}", QStringLiteral("a")},
        // A double-byte pair decodes as one character.
        {"{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset128 MS Mincho;}}\\f0\\'82\\'a0\\'93\\'fa\\par}", QStringLiteral("あ日")},
        // \u with the fallback skipped, \uc0 and \uc2, negative values, surrogate pairs.
        {"{\\rtf1\\ansi \\u8364?\\uc0\\u8364 \\uc2\\u8364\\'80\\'80x\\u-4064?\\par}", QStringLiteral("€€€x\uF020")},
        {"{\\rtf1\\ansi \\u-10179?\\u-8694?\\par}", QString::fromUtf8("\xF0\x9F\x98\x8A")},
        // A brace ends a skip; a control word counts as one unit.
        {"{\\rtf1\\ansi\\uc3 {\\u8364\\'80}z\\uc1\\u8364\\tab y\\par}", QStringLiteral("€z€y")},
        // Unknown destinations go with their text; unknown words alone.
        {"{\\rtf1\\ansi a{\\*\\unknowndest hidden text}b\\foo c{\\info{\\title T}}d\\par}", QStringLiteral("abcd")},
        // Field results are text, instructions are not; symbols.
        {"{\\rtf1\\ansi{\\field{\\*\\fldinst HYPERLINK \"x\"}{\\fldrslt link}}\\~\\emdash\\endash\\lquote\\rquote"
         "\\ldblquote\\rdblquote\\bullet\\par}",
         QStringLiteral("link\u00A0—–‘’“”•")},
        // Tables: cells separated by tabs, each row ending in a paragraph
        // break, and the document's last paragraph behind the table.
        {"{\\rtf1\\ansi\\trowd\\cellx1000\\cellx2000 \\intbl a\\cell b\\cell\\row\\trowd\\intbl c\\cell d\\cell\\row}",
         QStringLiteral("a\tb\r\nc\td\r\n")},
        // The old newline-as-\par, text after the last brace ignored.
        {"{\\rtf1\\ansi one\\\ntwo\\par}trailing junk", QStringLiteral("one\r\ntwo")},
    };
    for (const auto& c : cases) {
        RichTextSurface s;
        s.setTextRTF(rtf(c.rtf));
        EXPECT_QEQ(s.Text(), c.text) << c.rtf;
        EXPECT_TRUE(wholeRoundTripHolds(s)) << c.rtf;
    }
}

// A whole document's last \par ends its last paragraph; inserted RTF makes
// every \par a break, and the paragraph it lands in keeps its format.
TEST(RtfReader, LastParDependsOnWholeDocumentOrInsertion)
{
    RichTextSurface s;
    s.setTextRTF(rtf("{\\rtf1\\ansi a\\par b\\par}"));
    EXPECT_QEQ(s.Text(), QStringLiteral("a\r\nb"));
    s.setTextRTF(rtf("{\\rtf1\\ansi a\\par b\\par\\par}"));
    EXPECT_QEQ(s.Text(), QStringLiteral("a\r\nb\r\n"));

    s.setText(QStringLiteral("xxyy"));
    s.setSelStart(0);
    s.setSelAlignment(2);
    s.setSelStart(2);
    s.setSelRTF(rtf("{\\rtf1\\ansi\\pard\\qr A\\par B\\par}"));
    EXPECT_QEQ(s.Text(), QStringLiteral("xxA\r\nB\r\nyy"));
    EXPECT_EQ(s.SelStart(), 8);
    const QStringList runs = runsOf(s);
    EXPECT_EQ(runs.filter("¶"), (QStringList{"¶ right", "¶ right", "¶ center"}));

    // An insertion without \par leaves the paragraph's format alone.
    s.setSelStart(0);
    s.setSelRTF(rtf("{\\rtf1\\ansi\\pard\\qj Z}"));
    EXPECT_QEQ(runsOf(s).first(), QStringLiteral("¶ right"));
}

TEST(RtfReader, KeepsPicturesAndObjectsItCannotShow)
{
    QImage image(4, 3, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    const QString pngGroup = rtf("{\\pict\\pngblip\\picw4\\pich3\\picwgoal60\\pichgoal45 ") + QString::fromLatin1(png.toHex()) + "}";
    const QString wmfGroup = rtf("{\\pict\\wmetafile8\\picw100\\pich100\\picwgoal567\\pichgoal567 0100090000036e00000000}");
    const QString objectGroup = rtf("{\\object\\objemb{\\*\\objclass Paint.Picture}\\objw100\\objh100{\\*\\objdata 0105}"
                                    "{\\result {\\pict\\wmetafile8 0100}}}");
    const QString input = rtf("{\\rtf1\\ansi{\\fonttbl{\\f0 Tahoma;}}\\f0\\fs20 a") + pngGroup + "b" + wmfGroup +
                          rtf("{\\*\\shppict") + pngGroup + rtf("}{\\nonshppict{\\pict\\wmetafile8 00}}c") + objectGroup +
                          rtf("d\\par}");
    RichTextSurface s;
    s.setTextRTF(input);
    EXPECT_QEQ(s.Text(), QStringLiteral("a\uFFFCb\uFFFC\uFFFCc\uFFFCd"));
    EXPECT_QEQ(runsOf(s).last(), QStringLiteral("pictures=4"));
    // The PNG is shown as itself, at its goal size.
    const QTextBlock block = s.document()->firstBlock();
    const QTextFragment pictureFragment = (++block.begin()).fragment();
    ASSERT_TRUE(pictureFragment.charFormat().isImageFormat());
    const QTextImageFormat f = pictureFragment.charFormat().toImageFormat();
    EXPECT_EQ(f.width(), 4);
    const QImage shown = s.document()->resource(QTextDocument::ImageResource, QUrl(f.name())).value<QImage>();
    EXPECT_EQ(shown.pixelColor(1, 1), QColor(Qt::red));
    // Every group goes back unchanged.
    const QString out = s.TextRTF();
    EXPECT_TRUE(out.contains(pngGroup + "b" + wmfGroup + pngGroup + "c" + objectGroup + "d")) << out.toStdString();
    EXPECT_TRUE(wholeRoundTripHolds(s));
}

// SelRTF is a whole document of its own, with \par only for the breaks
// inside the selection, and writing it back changes nothing.
TEST(RtfWriter, SelectionWritesOnlyItsOwnBreaksAndTables)
{
    RichTextSurface s;
    s.setTextRTF(rtf("{\\rtf1\\ansi{\\fonttbl{\\f0 Tahoma;}{\\f1 Arial;}}{\\colortbl ;\\red9\\green9\\blue9;\\red7\\green7\\blue7;}"
                     "\\f0\\fs20 one \\cf2 two\\par\\qc\\f1 three\\par}"));
    s.setSelStart(4);
    s.setSelLength(7);  // "two", the break, "th"
    EXPECT_QEQ(s.SelText(), QStringLiteral("two\r\nth"));
    EXPECT_QEQ(s.SelRTF(), rtf("{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1040{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}"
                              "{\\f1\\fswiss\\fcharset0 Arial;}}\r\n{\\colortbl ;\\red7\\green7\\blue7;}\r\n"
                              "\\viewkind4\\uc1\\pard\\cf1\\f0\\fs20 two\\par\r\n\\pard\\qc\\f1 th}\r\n"));
    for (long start = 0; start <= s.length(); ++start)
        for (long len = 0; start + len <= s.length(); ++len)
            ASSERT_TRUE(selectionRoundTripHolds(s, start, len));
}
