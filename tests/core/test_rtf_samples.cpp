// Files of the kinds other programs write, one per thing a careless reader
// gets wrong: each is loaded as a file and compared whole, text with list
// labels and the formats that matter, then written back and read again.

#include "core/codepage.h"
#include "core/rich_text_surface.h"
#include "core/rtf_keywords.h"
#include "core/rtf_lexer.h"
#include "core/run_dump.h"
#include "core/text_format.h"
#include "rtf_support.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextDocument>

#include <cstring>
#include <tuple>

using namespace tornelia;

namespace {

QString sample(const char* name) { return QStringLiteral(TORNELIA_RTF_SAMPLES "/") + QLatin1String(name); }

std::string str(const QStringList& l) { return l.join(QLatin1Char('\n')).toStdString(); }

// "¶ label tabs" for each paragraph, then "text|font,size,attributes" for
// each run: the attributes listed are the ones that are not plain.
QStringList summary(const RichTextSurface& s)
{
    const QJsonObject plain{{"bold", false},      {"italic", false},  {"underline", "none"},
                            {"strike", false},    {"color", "auto"},  {"highlight", "none"},
                            {"offset_half_points", 0}, {"hidden", false}, {"caps", false}};
    QStringList out;
    const QJsonObject root = QJsonDocument::fromJson(dumpRuns(s).toUtf8()).object();
    for (const QJsonValue p : root["paragraphs"].toArray()) {
        const QJsonObject para = p.toObject();
        QString head = QStringLiteral("¶");
        if (para.contains("label")) head += QStringLiteral(" [%1]").arg(para["label"].toString());
        if (para["indent_twips"].toInt()) head += QStringLiteral(" li=%1").arg(para["indent_twips"].toInt());
        if (para["align"].toString() != QLatin1String("left")) head += u' ' + para["align"].toString();
        for (const QJsonValue t : para["tabs"].toArray()) head += QStringLiteral(" tab=") + t.toString();
        out << head;
        for (const QJsonValue r : para["runs"].toArray()) {
            const QJsonObject run = r.toObject();
            QStringList attrs{run["font"].toString(), QString::number(run["size"].toDouble())};
            for (auto it = run.begin(); it != run.end(); ++it)
                if (it.key() != "text" && it.key() != "font" && it.key() != "size" && plain.value(it.key()) != it.value())
                    attrs << it.key() + "=" + it.value().toVariant().toString();
            out << run["text"].toString() + "|" + attrs.join(",");
        }
    }
    if (const int pictures = root["pictures"].toInt())
        out << QStringLiteral("pictures=%1").arg(pictures);
    return out;
}

struct Loaded {
    QStringList runs;
    QString rtf;
};

// Loads the file, checks that writing it back keeps everything, and gives
// what was read and what is written.
Loaded load(const char* name)
{
    RichTextSurface s;
    s.setFileName(sample(name));
    Loaded l{summary(s), s.TextRTF()};
    EXPECT_TRUE(test::wholeRoundTripHolds(s)) << name;
    return l;
}

QString exportedText(const char* name)
{
    RichTextSurface s;
    s.setFileName(sample(name));
    QTemporaryDir dir;
    const QString out = dir.filePath(QStringLiteral("out.txt"));
    s.SaveFile(out, RichTextSurface::TextKind);
    QFile f(out);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly));
    return QString::fromUtf8(f.readAll());
}

}  // namespace

TEST(RtfSamples, MacCodePagesDecodeOnTheDocumentAndOnFonts)
{
    EXPECT_EQ(str(load("mac_code_pages.rtf").runs),
              str({"¶", "café |Helvetica,12", "日本語©|Osaka,12", "¶", "Привет |Geneva CY,12", "Łódź|Geneva CE,12"}));
}

TEST(RtfSamples, FontTableInsideUserPropertiesIsTheDocumentsOwn)
{
    EXPECT_EQ(str(load("fonts_in_user_properties.rtf").runs),
              str({"¶", "Serif |Times New Roman,12", "mono|Courier New,12,color=#ff0000"}));
}

TEST(RtfSamples, UnicodeInsideTheFallbackOfTheOneBeforeIsACharacter)
{
    EXPECT_EQ(str(load("unicode_pairs.rtf").runs),
              str({"¶", QStringLiteral("smile \U0001F603 ok \U0001F60A € end|Helvetica,12")}));
}

TEST(RtfSamples, ListTablesNeverShowTheirText)
{
    const Loaded l = load("list_tables.rtf");
    EXPECT_EQ(str(l.runs), str({"¶ [1.] li=720", "First|Times New Roman,12", "¶ [2.] li=720", "Second|Times New Roman,12"}));
    EXPECT_FALSE(l.rtf.contains(QLatin1String("Secret")));
}

TEST(RtfSamples, ListsShowTheirLabelsOnScreenInTextAndWhenWrittenBack)
{
    const Loaded l = load("lists_with_labels.rtf");
    EXPECT_EQ(str(l.runs), str({"¶ [3.] li=720",     "Three|Times New Roman,12",
                                "¶ [a)] li=1440",    "Sub a|Times New Roman,12",
                                "¶ [b)] li=1440",    "Sub b|Times New Roman,12",
                                "¶ [i.] li=2160",    "Deep|Times New Roman,12",
                                "¶",                 "Between|Times New Roman,12",
                                "¶ [4.] li=720",     "Four|Times New Roman,12",
                                "¶ [•] li=720",      "Dot|Times New Roman,12",
                                "¶ [o] li=1440",     "Circle|Times New Roman,12",
                                "¶ [▪] li=2160",     "Square|Times New Roman,12",
                                "¶ [a)] li=720",     "Old a|Times New Roman,12",
                                "¶ [b)] li=720",     "Old b|Times New Roman,12"}));
    EXPECT_EQ(exportedText("lists_with_labels.rtf").toStdString(),
              "3.\tThree\r\na)\tSub a\r\nb)\tSub b\r\ni.\tDeep\r\nBetween\r\n4.\tFour\r\n•\tDot\r\no\tCircle\r\n"
              "▪\tSquare\r\na)\tOld a\r\nb)\tOld b");
    // Written back as lists that readers without list tables understand.
    EXPECT_TRUE(l.rtf.contains(QLatin1String("{\\pntext\\f0 4.\\tab}{\\*\\pn\\pnlvlbody\\pnf0\\pnindent0\\pnstart4\\pndec{\\pntxta .}}")))
        << l.rtf.toStdString();
    EXPECT_TRUE(l.rtf.contains(QLatin1String("{\\pntext\\f0 b)\\tab}Sub b\\par"))) << l.rtf.toStdString();
}

// Word's levels number from their start value and stand at the level's
// indent when the paragraph gives none; \pn lists start where \pnstart says.
TEST(RtfSamples, ListLevelsKeepTheirStartAndIndent)
{
    const Loaded l = load("lists_on_screen.rtf");
    EXPECT_EQ(str(l.runs), str({"¶ [7.] li=720",  "Seven|Arial,12", "¶ [b)] li=1440", "Sub b|Arial,12",
                                "¶ [i.] li=2160", "Deep i|Arial,12", "¶ [8.] li=720",  "Eight|Arial,12",
                                "¶ [•] li=720",   "Dot|Arial,12",    "¶ [o] li=1440",  "Circle|Arial,12",
                                "¶ [▪] li=2160",  "Square|Arial,12", "¶ [V.] li=720",  "Five|Arial,12",
                                "¶ [VI.] li=720", "Six|Arial,12"}));
    EXPECT_EQ(exportedText("lists_on_screen.rtf").toStdString(),
              "7.\tSeven\r\nb)\tSub b\r\ni.\tDeep i\r\n8.\tEight\r\n•\tDot\r\no\tCircle\r\n▪\tSquare\r\n"
              "V.\tFive\r\nVI.\tSix");
    EXPECT_TRUE(l.rtf.contains(QLatin1String(
        "{\\pntext\\f0 7.\\tab}{\\*\\pn\\pnlvlbody\\pnf0\\pnindent0\\pnstart7\\pndec{\\pntxta .}}\\fi-360\\li720\\f0\\fs24 Seven")))
        << l.rtf.toStdString();
    EXPECT_TRUE(l.rtf.contains(QLatin1String("{\\pntext\\f0 VI.\\tab}Six\\par"))) << l.rtf.toStdString();
}

TEST(RtfSamples, SymbolFontKeepsItsBytesButReadsAsUnicode)
{
    const Loaded l = load("symbol_font.rtf");
    EXPECT_EQ(str(l.runs), str({"¶", "Area = |Arial,10", QStringLiteral("\uF070|Symbol,10"), " r|Arial,10",
                                "2|Arial,10,offset_half_points=6", ", 20|Arial,10",
                                QStringLiteral("\uF0B0|Symbol,10"), "C |Arial,10", QStringLiteral("\uF0B1|Symbol,10"),
                                " 1, |Arial,10", QStringLiteral("\uF0E0|Wingdings,10"), " arrow|Arial,10"}));
    EXPECT_EQ(exportedText("symbol_font.rtf").toStdString(), "Area = π r2, 20°C ± 1, \uF0E0 arrow");
    EXPECT_TRUE(l.rtf.contains(QLatin1String("\\f1 p"))) << l.rtf.toStdString();
}

TEST(RtfSamples, StylesGiveTheirFormatsToParagraphsAndRuns)
{
    EXPECT_EQ(str(load("stylesheet_formats.rtf").runs),
              str({"¶", "Title|Arial,16,bold=true", "¶ center", "Quoted|Courier New,14,italic=true", "¶",
                   "Body |Arial,12", "strong|Arial,12,bold=true,italic=true", " text|Arial,12", "¶",
                   "Latin|Calibri,12"}));
}

TEST(RtfSamples, FontsWithAScriptSuffixShowInTheBaseFontAndKeepTheirName)
{
    RichTextSurface s;
    s.setFileName(sample("script_suffix_fonts.rtf"));
    EXPECT_EQ(str(summary(s)), str({"¶", "Šcoda |Arial CE,12", "Привет |Times New Roman Cyr,12", "αβγ|Arial Greek,12"}));
    const QTextBlock b = s.document()->begin();
    EXPECT_EQ(b.begin().fragment().charFormat().fontFamilies().toStringList(), (QStringList{"Arial CE", "Arial"}));
    EXPECT_TRUE(s.TextRTF().contains(QLatin1String("{\\f1\\froman\\fcharset204 Times New Roman Cyr;}")));
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
}

TEST(RtfSamples, SuperSubSmallCapsAndDoubleStrikeAreKeptAndWritten)
{
    const Loaded l = load("character_formats.rtf");
    EXPECT_EQ(str(l.runs), str({"¶", "H|Arial,12", "2|Arial,12,offset_half_points=-6", "O x|Arial,12",
                                "2|Arial,12,offset_half_points=6", " |Arial,12",
                                "raised|Arial,12,offset_half_points=6", " |Arial,12", "lowered|Arial,12,offset_half_points=-4",
                                " |Arial,12", "Small Caps|Arial,12,small_caps=true", " |Arial,12",
                                "twice|Arial,12,double_strike=true,strike=true", " |Arial,12", "once|Arial,12,strike=true"}));
    // \super and \sub go back as themselves, so that the shrink survives a
    // reload; \up and \dn stay offsets at full size.
    EXPECT_TRUE(l.rtf.contains(QLatin1String(
        "\\pard\\f0\\fs24 H\\sub 2\\nosupersub O x\\super 2\\nosupersub  \\up6 raised\\up0  \\dn4 lowered\\up0  "
        "\\scaps Small Caps\\scaps0  \\striked1 twice\\striked0  \\strike once\\par\r\n")))
        << l.rtf.toStdString();
    // Only \super and \sub shrink, after a reload too.
    auto shownOffsets = [](const RichTextSurface& s) {
        QStringList shown;
        for (auto it = s.document()->begin().begin(); !it.atEnd(); ++it) {
            const QTextCharFormat f = it.fragment().charFormat();
            if (f.verticalAlignment() != QTextCharFormat::AlignNormal || f.baselineOffset() != 0)
                shown << QStringLiteral("%1:%2:%3").arg(it.fragment().text()).arg(int(f.verticalAlignment())).arg(f.baselineOffset());
        }
        return str(shown);
    };
    RichTextSurface s;
    s.setFileName(sample("character_formats.rtf"));
    const std::string expected = str({"2:2:0", "2:1:0", "raised:0:25", "lowered:0:-16.6667"});
    EXPECT_EQ(shownOffsets(s), expected);
    RichTextSurface back;
    back.setTextRTF(s.TextRTF());
    EXPECT_EQ(shownOffsets(back), expected);
    EXPECT_TRUE(test::wholeRoundTripHolds(s));

    // Moving between the shrunk and the full-size offsets.
    RichTextSurface mixed;
    mixed.setTextRTF(QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\fs24 a\\super b\\sub c\\up4 d\\super e\\up0 f"
                                    "\\dn2 g\\sub h\\nosupersub i\\par}"));
    EXPECT_TRUE(mixed.TextRTF().contains(QLatin1String(
        "a\\super b\\sub c\\nosupersub\\up4 d\\super e\\nosupersub f\\dn2 g\\sub h\\nosupersub i\\par")))
        << mixed.TextRTF().toStdString();
    EXPECT_TRUE(test::wholeRoundTripHolds(mixed));
}

// Going from a double to a single strike, the writer must end the double
// one first: \striked0 also ends the single strike a reader has just begun.
TEST(RtfSamples, DoubleThenSingleStrikeKeepsBothThroughTheRoundTrip)
{
    RichTextSurface s;
    s.setTextRTF(QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0\\fs24\\striked1 twice\\striked0\\strike  once"
                                "\\strike0  none\\striked1  again\\par}"));
    const QStringList runs{"¶", "twice|Arial,12,double_strike=true,strike=true", " once|Arial,12,strike=true",
                           " none|Arial,12", " again|Arial,12,double_strike=true,strike=true"};
    EXPECT_EQ(str(summary(s)), str(runs));
    RichTextSurface back;
    back.setTextRTF(s.TextRTF());
    EXPECT_EQ(str(summary(back)), str(runs)) << s.TextRTF().toStdString();
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
}

// List labels are written in a text font: when a symbol font comes first in
// the written table, labels in it would come back as symbols.
TEST(RtfSamples, ListLabelsStayTextWhenTheFirstFontIsASymbolFont)
{
    RichTextSurface s;
    s.setTextRTF(QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0\\fnil\\fcharset2 Wingdings;}{\\f1 Arial;}}"
                                "{\\pntext\\f1 a)\\tab}{\\*\\pn\\pnlvlbody\\pnf1\\pnstart1\\pnlcltr{\\pntxta )}}"
                                "\\f0\\fs24 \\'e0\\f1  uno\\par}"));
    const QString rtf = s.TextRTF();
    EXPECT_TRUE(rtf.contains(QLatin1String("{\\pntxta )}"))) << rtf.toStdString();
    EXPECT_TRUE(test::wholeRoundTripHolds(s)) << rtf.toStdString();
}

TEST(RtfSamples, TabStopsAreKeptLaidOutAndWritten)
{
    RichTextSurface s;
    s.setFileName(sample("tab_stops.rtf"));
    EXPECT_EQ(str(summary(s)), str({"¶ tab=r9000dot", "Introduction\t1|Times New Roman,12",
                                    "¶ tab=l1440 tab=c4320 tab=d7200hyphen tab=r8640underline", "a\tb\t3.14\tz|Times New Roman,12"}));
    const QList<QTextOption::Tab> tabs = s.document()->begin().blockFormat().tabPositions();
    ASSERT_EQ(tabs.size(), 1);
    EXPECT_EQ(tabs[0].type, QTextOption::RightTab);
    EXPECT_DOUBLE_EQ(tabs[0].position, 600.0);
    EXPECT_TRUE(s.TextRTF().contains(QLatin1String("\\tqr\\tldot\\tx9000\\f0")));
    EXPECT_TRUE(test::wholeRoundTripHolds(s));
}

TEST(RtfSamples, ShapesShowTheirOwnPictureAndShppictWins)
{
    RichTextSurface s;
    s.setFileName(sample("shape_pictures.rtf"));
    EXPECT_EQ(str(summary(s)), str({"¶", "Before  middle  after|Arial,12", "pictures=2"}));
    // Both are the PNGs (red in the shape, blue in \shppict), not the metafile.
    const QString rtf = s.TextRTF();
    EXPECT_EQ(rtf.count(QLatin1String("\\pngblip")), 2);
    EXPECT_FALSE(rtf.contains(QLatin1String("wmetafile")));
}

// The lexer on its own: every kind of token, its limits, and no failure on
// a cut file.
TEST(RtfLexer, SplitsBytesIntoTokens)
{
    const QByteArray in = "{\\rtf1\\b0 Hi\\'e8\\~\\u-3913?\r\n\\bin3 {}x\\abcdefghijklmnopqrstuvwxyzabcdefghijklmnop12345678901234 }\\";
    RtfLexer lexer(in);
    QStringList got;
    for (RtfToken t = lexer.next(); t.type != RtfToken::End; t = lexer.next()) {
        const QString word = QString::fromLatin1(t.word.data(), qsizetype(t.word.size()));
        switch (t.type) {
        case RtfToken::GroupOpen: got << "{"; break;
        case RtfToken::GroupClose: got << "}"; break;
        case RtfToken::Word: got << "\\" + word + (t.hasParam ? QString::number(t.param) : QString()); break;
        case RtfToken::Symbol: got << QStringLiteral("sym %1").arg(QChar(t.byte)); break;
        case RtfToken::HexByte: got << QStringLiteral("hex %1").arg(t.byte, 2, 16); break;
        case RtfToken::Text: got << "text " + word; break;
        case RtfToken::Binary: got << "bin " + word; break;
        case RtfToken::End: break;
        }
    }
    EXPECT_EQ(str(got), str({"{", "\\rtf1", "\\b0", "text Hi", "hex e8", "sym ~", "\\u-3913", "text ?", "bin {}x",
                             "\\abcdefghijklmnopqrstuvwxyzabcdef1234567890", "}"}));
}

TEST(RtfKeywords, KnownWordsAndDestinationsAreFound)
{
    ASSERT_NE(rtf::findKeyword("listtable"), nullptr);
    EXPECT_EQ(rtf::findKeyword("listtable")->kind, rtf::Kind::Destination);
    EXPECT_EQ(rtf::findKeyword("fs")->defaultParam, 24);
    EXPECT_EQ(rtf::findKeyword("notaword"), nullptr);
    EXPECT_EQ(rtf::findKeyword(""), nullptr);
}

// Mac Japanese is Shift_JIS with single bytes of its own; a pair split
// between two calls still makes one character, and a byte that ends a pair
// is never taken for one of the Mac's own.
TEST(MacCodePages, DecodeStatefullyWithTheMacsOwnBytes)
{
    ByteDecoder japanese(10001);
    QString out;
    japanese.decode("\x93", 1, out);
    japanese.decode("\xfa\x80\xa0\xfd\xfe\xff\xb1", 7, out);
    EXPECT_EQ(out.toStdString(), "日\\\u00a0©™…ｱ");

    ByteDecoder chinese(10002);
    QString big5;
    chinese.decode("\xa4\xa4\xfd", 3, big5);
    EXPECT_EQ(big5.toStdString(), "中©");

    for (const auto& [cp, bytes, text] : {std::tuple{10000, "caf\x8e", "café"}, std::tuple{10007, "\x8f\xf0\xe8", "При"},
                                          std::tuple{10029, "\xfc\x97", "Łó"}, std::tuple{10006, "\xe1", "α"}}) {
        ByteDecoder d(cp);
        QString s;
        d.decode(bytes, qsizetype(strlen(bytes)), s);
        EXPECT_EQ(s.toStdString(), text) << cp;
    }
}

// RTF held as text may carry characters beyond its bytes (a program's own
// string, not a file): they stay what they are, pairs included, and a
// damaged list table or shape loses nothing around it.
TEST(RtfReader, TextBeyondBytesAndDamagedDestinationsKeepTheirNeighbours)
{
    RichTextSurface s;
    s.setTextRTF(QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 Ω \U0001F600 ok\\par}"));
    EXPECT_EQ(s.Text().toStdString(), "Ω \U0001F600 ok");
    s.setTextRTF(QStringLiteral("{\\rtf1\\ansi before {\\*\\listtable{\\list{\\listlevel{\\leveltext\\'02\\'00.;}} after\\par}"));
    EXPECT_EQ(s.Text().toStdString(), "before ");
    s.setTextRTF(QStringLiteral("{\\rtf1\\ansi A{\\shp{\\*\\shpinst{\\sp{\\sn pib}{\\sv{\\pict\\pngblip 89504e}}}}}B\\ls5 C\\par}"));
    EXPECT_EQ(s.Text().toStdString(), "A\uFFFCBC");
}
