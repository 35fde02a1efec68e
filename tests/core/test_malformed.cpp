// Damaged and hostile RTF: cut files, unbalanced braces, absurd numbers, deep
// nesting, lying \bin lengths, huge tables and random bytes. Whatever comes
// in, the reader must end, keep the text it could read, and leave a document
// on which the round trips still hold.

#include "core/rich_text_surface.h"
#include "core/run_dump.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>

#include <random>
#include <string>
#include <vector>

using namespace tornelia;

namespace {

using Faults = std::vector<std::string>;

// Control characters as escapes and long text cut, so a fault names its input readably.
std::string shown(const QString& s, qsizetype max = 120)
{
    std::string out;
    for (QChar c : s.left(max))
        out += c.unicode() < 0x20 || c.unicode() >= 0x7F ? "\\x" + QString::number(c.unicode(), 16).toStdString() + ' '
                                                         : std::string(1, char(c.unicode()));
    return s.size() > max ? out + "...(" + std::to_string(s.size()) + " chars)" : out;
}

QString latin1(const std::string& s) { return QString::fromLatin1(s.data(), qsizetype(s.size())); }

// TextRTF set to itself keeps the text and every format and is written
// back byte for byte; SelRTF set to itself over a middle selection keeps the
// text.
void checkRoundTrips(const RichTextSurface& s, const std::string& where, Faults& faults)
{
    const QString written = s.TextRTF();
    RichTextSurface t;
    t.setDefaultFormat(QStringLiteral("Tahoma"), 10);
    t.setTextRTF(written);
    if (t.Text() != s.Text() || dumpRuns(t) != dumpRuns(s) || t.TextRTF() != written)
        faults.push_back(where + ": TextRTF = TextRTF read \"" + shown(t.Text()) + "\" " + dumpRuns(t).toStdString() +
                         ", written \"" + shown(written, 400) + "\" then \"" + shown(t.TextRTF(), 400) + "\"");
    t.setSelStart(t.length() / 3);
    t.setSelLength(t.length() / 3);
    const QString before = t.Text();
    t.setSelRTF(t.SelRTF());
    if (t.Text() != before)
        faults.push_back(where + ": SelRTF = SelRTF changed the text to \"" + shown(t.Text()) + "\"");
}

QString readChecked(const QString& rtf, const std::string& where, Faults& faults)
{
    RichTextSurface s;
    s.setDefaultFormat(QStringLiteral("Tahoma"), 10);
    s.setTextRTF(rtf);
    checkRoundTrips(s, where, faults);
    return s.Text();
}

// Reads every prefix of a document. At each cut nothing false is read (the
// text starts the whole text, but for its last character, which a cut inside
// \uN or \'hh may change), nothing complete is lost (what was read up to the
// end of a \par stays), and the round trips hold. Gives the whole text.
QString checkCuts(const QString& rtf, const std::string& name, Faults& faults)
{
    RichTextSurface s;
    s.setDefaultFormat(QStringLiteral("Tahoma"), 10);
    s.setTextRTF(rtf);
    const QString whole = s.Text();
    QString kept;
    // Shorter than "{\rtf" it is plain text, not RTF.
    for (qsizetype cut = 5; cut <= rtf.size(); ++cut) {
        s.setTextRTF(rtf.left(cut));
        const QString text = s.Text();
        const std::string where = name + " cut at " + std::to_string(cut);
        if (!whole.startsWith(text.left(text.size() - 1)))
            faults.push_back(where + ": read \"" + shown(text.right(60)) + "\", not in the whole text");
        if (!text.startsWith(kept))
            faults.push_back(where + ": lost \"" + shown(kept.right(60)) + "\", read \"" + shown(text.right(60)) + "\"");
        // "\par" with letters after it is another word.
        if (rtf.left(cut).endsWith(QLatin1String("\\par")) && cut < rtf.size() && !rtf[cut].isLetterOrNumber() &&
            rtf[cut] != u'-')
            kept = text;
        checkRoundTrips(s, where, faults);
    }
    return whole;
}

// The program's own shape, a word processor's richer shape, and pictures,
// bullets and code pages.
const char* const kOwnShape =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1040{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}"
    "{\\f1\\fnil\\fcharset2 Wingdings;}}\r\n"
    "{\\colortbl ;\\red255\\green0\\blue0;\\red0\\green0\\blue255;}\r\n"
    "\\viewkind4\\uc1\\pard\\f0\\fs20 Caro \\cf1\\b Mario\\cf0\\b0 , ti scrivo \\i perch\\'e9\\i0  \\ul oggi\\ulnone "
    "\\f1\\'e0\\f0  \\u8730? \\u1046?\\par\r\n"
    "\\pard\\qc\\highlight2 al centro\\highlight0\\tab dopo\\line a capo\\par\r\n"
    "\\pard\\li567\\ri567 rientro \\uldb doppio\\ulnone  \\up6 su\\up0  \\strike via\\strike0 \\{graffe\\} \\\\\\par\r\n"
    "\\pard ultima \\fs28 riga\\fs20\\par\r\n}\r\n";

const char* const kWordShape =
    "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0\\stshfdbch0{\\fonttbl{\\f0\\froman\\fcharset0\\fprq2 Times New Roman;}"
    "{\\f1\\fswiss\\fcharset238\\fprq2 Arial CE;}{\\f2\\fnil\\fcharset204 Arial Cyr;}}"
    "{\\colortbl;\\red0\\green0\\blue0;\\red0\\green128\\blue0;}"
    "{\\stylesheet{\\ql \\li0\\ri0\\widctlpar\\f0\\fs24 \\snext0 Normal;}{\\*\\cs10 \\additive Default Paragraph Font;}}"
    "{\\info{\\title Lettera}{\\author Qualcuno}{\\creatim\\yr2024\\mo6\\dy11}}"
    "{\\*\\generator Word 11;}\\paperw11906\\paperh16838\\margl1134\\margr1134"
    "\\sectd\\pard\\plain \\ql\\widctlpar\\f0\\fs24 {Primo paragrafo con {\\b grassetto} e }{\\i corsivo}{.\\par}"
    "\\pard\\plain\\qj\\fi-283\\li283\\f1\\fs22 \\'e8\\'9a\\'ec {\\uc2\\u269\\'e8\\'3f dopo}\\par"
    "\\pard\\plain\\f2 {\\field{\\*\\fldinst HYPERLINK \"http://x\"}{\\fldrslt \\cf2\\ul collegamento}}"
    " e \\'c6\\'e8\\par"
    "{\\*\\bkmkstart uno}\\pard\\plain\\f0 fine{\\footnote nota a pi\\'e8 di pagina} del testo\\par}";

// The first picture is a real 1x1 PNG, so its group has data to keep.
const char* const kPictureShape =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss\\fcharset0 Arial;}"
    "{\\f1\\fnil\\fcharset2 Symbol;}{\\f2\\fnil\\fcharset128\\cpg932 MS Gothic;}}\r\n"
    "\\viewkind4\\uc1\\pard\\f0\\fs20 prima {\\pict\\pngblip\\picw1\\pich1\\picwgoal300\\pichgoal300 "
    "89504e470d0a1a0a0000000d4948445200000001000000010802000000907753de0000000c4944415478da63f8"
    "ff3f000005fe02fea7d9a2ed0000000049454e44ae426082} dopo\\par\r\n"
    "\\pard{\\pntext\\f1\\'b7\\tab}{\\*\\pn\\pnlvlblt\\pnf1\\pnindent0{\\pntxtb\\'b7}}\\fi-360\\li720 punto\\par\r\n"
    "{\\pntext\\f1\\'b7\\tab}altro {\\pict\\wmetafile8\\picw10\\pich10\\bin3 ABC} punto\\par\r\n"
    "\\pard\\f2 \\'82\\'a0\\'82\\'a2 giapponese\\par\r\n}\r\n";

}  // namespace

TEST(Malformed, EveryCutOfOwnDocumentsKeepsWhatCameBefore)
{
    Faults faults;
    std::vector<std::string> wholes;
    for (const auto& [name, rtf] : {std::pair{"own", kOwnShape}, {"word", kWordShape}, {"pictures", kPictureShape}})
        wholes.push_back(checkCuts(QString::fromLatin1(rtf), name, faults).toStdString());
    EXPECT_EQ(wholes, (std::vector<std::string>{
                          "Caro Mario, ti scrivo perch\u00e9 oggi\uf0e0 \u221a \u0416\r\nal centro\tdopo\va capo\r\n"
                          "rientro doppio su via{graffe} \\\r\nultima riga",
                          "Primo paragrafo con grassetto e corsivo.\r\n\u010d\u0161\u011b \u010d dopo\r\n"
                          "collegamento e \u0416\u0438\r\nfine del testo",
                          "prima \ufffc dopo\r\npunto\r\naltro \ufffc punto\r\n\u3042\u3044 giapponese"}));
    EXPECT_EQ(faults, Faults{});
}

TEST(Malformed, EveryCutOfCorpusFilesKeepsWhatCameBefore)
{
    const QDir corpus(QStringLiteral(TORNELIA_CORPUS_DIR));
    if (!corpus.exists())
        GTEST_SKIP() << "no corpus at " TORNELIA_CORPUS_DIR;
    Faults faults;
    for (const char* name : {"rtfpipe__list.rtf", "rtfpipe__color.rtf", "rtfde__surrogate_pairs_04.rtf"}) {
        QFile f(corpus.filePath(QString::fromLatin1(name)));
        EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << name;
        checkCuts(QString::fromLatin1(f.readAll()), name, faults);
    }
    EXPECT_EQ(faults, Faults{});
}

// Each input with the text it must read; a text ending in "..." only has to
// start with what comes before. The round trips must hold on every one.
TEST(Malformed, DamagedInputsReadWhatTheyCan)
{
    const std::string h = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}{\\colortbl;\\red1\\green2\\blue3;}\\pard ";
    const std::string deep(100000, '{'), up(100000, '}');
    const std::string cb = "}}\\pard\\f0 A\\'1a\\'1c\\'7fB\\par}";
    const QString controls = QStringLiteral("A\x1a\x1c\x7f" "B");
    const std::vector<std::pair<std::string, QString>> cases = {
        // Braces unbalanced, and nesting deeper than the reader stacks.
        {h + "Prima " + std::string(1000, '{') + "\\b dentro", "Prima dentro"},
        {h + "A{{{\\b B}}{\\i C" + std::string(50, '{') + "D}}}}}", "ABCD"},
        {h + "Fine}" + std::string(1000, '}') + " dopo", "Fine"}, {"{\\rtf1}}}}{ niente}", ""},
        {h + "su " + deep + "fondo" + up + " dopo}", "su fondo dopo"}, {h + "su " + deep + "fondo", "su fondo"},
        {h + "A{\\*\\ignota " + std::string(5000, '{') + "x" + std::string(5000, '}') + "}B}", "AB"},
        // Numbers out of any range; picture sizes are multiplied into twips,
        // where a sanitizer build catches an overflow.
        {h + "A\\fs99999999999999 B\\fs-5 C\\fs0 D\\par}", "ABCD"}, {h + "\\uc-7 A\\u1046 B\\par}", "A\u0416B"},
        {h + "A\\u-99999999999?B\\u99999999999?C\\u65536?D\\par}", "ABCD"},
        {h + "\\uc99999999999 A\\u1046 BCDEFGHIJKLMNOPQRSTUVWXYZ\\par}", "A\u0416RSTUVWXYZ"},
        {h + "A\\cf99999999999 B\\highlight-99999999999 C\\f99999999999 D\\f-1 E\\par}", "ABCDE"},
        {h + "\\li99999999999\\ri-99999999999\\fi99999999999 A\\par\\pard\\li-1 B\\par}", "A\r\nB"},
        {h + "A\\up99999999999 B\\dn99999999999 C\\par}", "ABC"}, {h + "\\ansicpg99999999999 A\\'e9B\\par}", "A..."},
        {h + "A\\fs" + std::string(5000, '9') + " B\\" + std::string(5000, 'x') + " C\\par}", "ABC"},
        {h + "A{\\pict\\pngblip\\picw99999999999\\pich99999999999\\picscalex99999999999 00}B\\par}", "A\ufffcB"},
        {h + "A{\\pict\\wmetafile8\\picwgoal-99999999999\\pichgoal99999999999 00}B\\par}", "A\ufffcB"},
        // Escapes cut by the end of the file.
        {h + "Testo\\'", "Testo"}, {h + "Testo\\'e", "Testo..."}, {h + "Testo\\'zz}", "Testo..."},
        {h + "Testo\\u", "Testo"}, {h + "Testo\\u-", "Testo"}, {h + "Testo\\", "Testo"},
        {h + "Testo\\u1046", "Testo\u0416"}, {h + "\\uc2 Testo\\u1046\\'c6", "Testo\u0416"},
        // \bin lengths that lie.
        {h + "Testo\\bin999999999 coda}", "Testo"}, {h + "Testo{\\bin50 ab}dopo}", "Testo"},
        {h + "Testo{\\*\\ignota\\bin2 abcd} dopo}", "Testo dopo"}, {h + "Testo\\bin-5 dopo}", "Testodopo"},
        {h + "Testo\\bin dopo}", "Testodopo"}, {h + "Testo{\\pict\\wmetafile8\\bin99999 ab}} dopo", "Testo"},
        {h + "Testo{\\pict\\pngblip\\bin3 }}}} dopo}", "Testo..."},
        {"{\\rtf1\\bin30 {\\fonttbl{\\f0 Arial;}}\\pard Testo}", "sto"},
        // Unknown and unfinished destinations, stray bytes and headers. A stray
        // \* reaches only the next word, not a later unknown group: the
        // inputs from here on were found by fuzzing.
        {h + "A{\\*\\ignota B{\\b C}\\par D}E{\\*\\fldinst F}G{\\*}H{\\*\\*\\*\\zz I}J}", "AEGHJ"},
        {h + "A{\\ignota B}\\parola C}", "ABC"}, {h + "A\\fonttbl B;\\colortbl C;}", "A..."},
        {"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}{\\f1 Times", ""},
        {"{\\rtf1\\ansi{\\colortbl;\\red1\\green2\\blue3;", ""},
        {h + "Testo{\\pict\\pngblip 89504e47", "Testo"}, {h + "Testo{\\object{\\*\\objdata 0102", "Testo"},
        {h + std::string("Te\0st\x01o\x1f}", 9), "Te..."}, {h + "Testo}{\\rtf1 secondo}", "Testo"},
        {"{\\rtf1{\\rtf1\\ansi Testo}}", "Testo"}, {h + "A{\\*}\\zz B}", "AB"}, {h + "A\\*B\\zz C}", "ABC"},
        {h + "A{\\b{\\*}\\zz B}C}", "ABC"}, {h + "A{\\b\\*B\\zz C}D}", "ABCD"},
        // Without "{\rtf" it is plain text, NULs and all.
        {"{\\rt", "{\\rt"}, {std::string("{\\r\0\0tf1\\mac hello\n}", 21), "{\\r..."}, {std::string("a\0b", 3), "a..."},
        {"a\x01\x08\x0b\x0c\x1b\x7f b", "a..."}, {"}{\\par\\'e9\\u1046?", "}{\\par\\'e9\\u1046?"},
        // \pict and \object start a picture only at the start of a group of
        // their own; otherwise the group kept raw would repeat the text.
        {"{\\rtf1 Testo {\\b grassetto} e \\pict fine}", "Testo grassetto e ..."},
        {"{\\rtf1 Testo\\object fine}", "Testo..."}, {"{\\rtf{r}\\pict}", "r..."}, {"{\\rtf{l\\object}", "l"},
        {"{\\rtf{;}\\pict\\r}", ";..."}, {"{\\rtf1 A{\\b B\\pict 00}C}", "AB..."},
        // Control bytes mean the same in every code page, font names included.
        {"{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;" + cb, controls}, {"{\\rtf1\\pc{\\fonttbl{\\f0 Courier;" + cb, controls},
        {"{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset128 MS Gothic;" + cb, controls},
        {"{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset134 SimSun;" + cb, controls},
        {"{\\rtf1\\pca{\\fonttbl{\\f0 Courier;" + cb, controls},
        {"{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset128 MS\\'7f\\'1aGothic;}}\\pard\\f0 A\\par}", "A"},
        {"{\\rtf1\\ansi{\\fonttbl{\\f0 Ari\\'09al;}}\\pard\\f0 A\\par}", "A"},
    };
    Faults faults;
    for (const auto& [rtf, expected] : cases) {
        const std::string where = rtf.starts_with(h) ? "h + " + shown(latin1(rtf.substr(h.size())))
                                                     : shown(latin1(rtf));
        const QString text = readChecked(latin1(rtf), where, faults);
        if (expected.endsWith(QLatin1String("...")) ? !text.startsWith(expected.chopped(3)) : text != expected)
            faults.push_back(where + ": read \"" + shown(text) + "\"");
    }
    EXPECT_EQ(faults, Faults{});
}

TEST(Malformed, FiftyThousandColoursAndAHugeFontSize)
{
    std::string rtf = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}{\\colortbl ;";
    for (int i = 1; i <= 50000; ++i)
        rtf += "\\red" + std::to_string(i % 256) + "\\green" + std::to_string(i / 256 % 256) + "\\blue" +
               std::to_string(i % 7) + ";";
    rtf += "}\\pard\\cf49999 X\\cf1 Y\\cf50000 Z\\cf50001 W\\fs99999999999999 V\\par}";
    RichTextSurface s;
    s.setDefaultFormat(QStringLiteral("Tahoma"), 10);
    s.setTextRTF(latin1(rtf));
    std::vector<std::optional<Colour>> colours;
    for (int i = 0; i < 5; ++i) {
        s.setSelStart(i);
        s.setSelLength(1);
        colours.push_back(s.SelColor());
    }
    // 0x00BBGGRR; an index past the table is the automatic colour.
    const auto bgr = [](int i) { return Colour((i % 7) << 16 | (i / 256 % 256) << 8 | (i % 256)); };
    EXPECT_EQ(colours, (std::vector<std::optional<Colour>>{bgr(49999), bgr(1), bgr(50000), Colour(0), Colour(0)}));
    // A size that was clamped is still a size a font can have.
    EXPECT_TRUE(s.SelFontSize() > 0.0f && s.SelFontSize() <= 1638.0f) << s.SelFontSize().value_or(-1);
    Faults faults;
    checkRoundTrips(s, "colours", faults);
    EXPECT_EQ(faults, Faults{});
}

TEST(Malformed, RandomBytesAndRandomDamage)
{
    std::mt19937 rng(0x70524e);
    auto below = [&rng](int n) { return std::uniform_int_distribution<int>(0, n - 1)(rng); };
    // The damage is made of RTF's own syntax more often than not.
    const std::string syntax = "{}\\\\\\'*;0123456789-abcdefuvp \r\n";
    const auto noise = [&](int oneIn) {
        return below(oneIn) ? syntax[size_t(below(int(syntax.size())))] : char(below(256));
    };
    Faults faults;
    for (int n = 0; n < 400; ++n) {
        std::string rtf = n % 4 == 0 ? "{\\rtf1\\ansi " : n % 4 == 1 ? "{\\rtf1 " : n % 4 == 2 ? kOwnShape : kWordShape;
        // Noise behind a header, any bytes or mostly RTF's; or a real document
        // with bytes changed, dropped and added.
        for (int i = n % 4 < 2 ? below(2000) : 0; i > 0; --i)
            rtf += n % 4 == 0 ? char(below(256)) : noise(3);
        for (int edits = n % 4 < 2 ? 0 : 1 + below(12); edits > 0; --edits) {
            const size_t at = size_t(below(int(rtf.size())));
            const char b = noise(2);
            switch (below(3)) {
            case 0: rtf[at] = b; break;
            case 1: rtf.erase(at, size_t(1 + below(8))); break;
            default: rtf.insert(at, size_t(1 + below(4)), b); break;
            }
        }
        readChecked(latin1(rtf), "random case " + std::to_string(n) + " \"" + shown(latin1(rtf), 2000) + "\"", faults);
    }
    EXPECT_EQ(faults, Faults{});
}
