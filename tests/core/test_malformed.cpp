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

std::string str(const QString& s) { return s.toStdString(); }

// Control characters and cut-off text shown as escapes, so a fault names its
// input readably.
std::string shown(const QString& s, qsizetype max = 120)
{
    std::string out;
    for (QChar c : s.left(max)) {
        if (c.unicode() < 0x20 || c.unicode() >= 0x7F)
            out += "\\x" + QString::number(c.unicode(), 16).toStdString() + ' ';
        else
            out += char(c.unicode());
    }
    if (s.size() > max)
        out += "...(" + std::to_string(s.size()) + " chars)";
    return out;
}

QString latin1(const std::string& s) { return QString::fromLatin1(s.data(), qsizetype(s.size())); }

// The ways the round trips fail on what a surface holds: TextRTF set to
// itself must keep the text and every format, writing what was read must give
// the same bytes, and SelRTF set to itself over a middle selection must keep
// the text.
Faults roundTripFaults(const RichTextSurface& s)
{
    Faults faults;
    const QString text = s.Text();
    const QString written = s.TextRTF();
    RichTextSurface t;
    t.setDefaultFormat(QStringLiteral("Tahoma"), 10);
    t.setTextRTF(written);
    if (t.Text() != text)
        faults.push_back("TextRTF = TextRTF changed the text to \"" + shown(t.Text()) + "\"");
    else if (dumpRuns(t) != dumpRuns(s))
        faults.push_back("TextRTF = TextRTF changed the formats: " + str(dumpRuns(s)) + " became " +
                         str(dumpRuns(t)));
    const QString again = t.TextRTF();
    if (again != written)
        faults.push_back("written, read and written again differ: \"" + shown(written, 400) + "\" then \"" +
                         shown(again, 400) + "\"");

    const long len = t.length();
    t.setSelStart(len / 3);
    t.setSelLength(len / 3);
    const QString before = t.Text();
    t.setSelRTF(t.SelRTF());
    if (t.Text() != before)
        faults.push_back("SelRTF = SelRTF changed the text to \"" + shown(t.Text()) + "\"");
    return faults;
}

// Reads rtf into a fresh surface; the faults are prefixed with the case name.
struct Outcome {
    QString text;
    Faults faults;
};

Outcome readCase(const std::string& name, const QString& rtf)
{
    RichTextSurface s;
    s.setDefaultFormat(QStringLiteral("Tahoma"), 10);
    s.setTextRTF(rtf);
    Outcome out{s.Text(), {}};
    for (const std::string& f : roundTripFaults(s))
        out.faults.push_back(name + ": " + f);
    return out;
}

bool isWordChar(QChar c) { return c.isLetterOrNumber() || c == u'-'; }

// Reads every prefix of a document. Two things must hold at each cut:
// - nothing false is read: the text is a prefix of the whole document's text,
//   but for its last character, which a cut inside \uN or \'hh may change;
// - nothing complete is lost: the text read up to the end of a \par is still
//   there when more of the file is read.
// The round trips are checked on every cut.
Faults truncationFaults(const std::string& name, const QString& rtf, QString* wholeText = nullptr)
{
    Faults faults;
    RichTextSurface s;
    s.setDefaultFormat(QStringLiteral("Tahoma"), 10);
    s.setTextRTF(rtf);
    const QString whole = s.Text();
    if (wholeText)
        *wholeText = whole;

    QString kept;  // the text at the end of the last \par
    // Shorter than "{\rtf" it is plain text, not RTF.
    for (qsizetype cut = 5; cut <= rtf.size(); ++cut) {
        const QString prefix = rtf.left(cut);
        s.setTextRTF(prefix);
        const QString text = s.Text();
        const std::string where = name + " cut at " + std::to_string(cut);
        if (!whole.startsWith(text.left(text.size() - 1)))
            faults.push_back(where + ": read \"" + shown(text.right(60)) + "\", not in the whole text");
        if (!text.startsWith(kept))
            faults.push_back(where + ": lost \"" + shown(kept.right(60)) + "\", read \"" + shown(text.right(60)) + "\"");
        if (prefix.endsWith(QLatin1String("\\par")) && cut < rtf.size() && !isWordChar(rtf[cut]))
            kept = text;
        for (const std::string& f : roundTripFaults(s))
            faults.push_back(where + ": " + f);
    }
    return faults;
}

QString corpusFile(const char* name)
{
    QFile f(QDir(QStringLiteral(TORNELIA_CORPUS_DIR)).filePath(QString::fromLatin1(name)));
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QString::fromLatin1(f.readAll());
}

// Documents written here for the cuts: the program's own shape, a word
// processor's richer shape, and one with pictures, bullets and code pages.
const char* const kOwnShape =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1040{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}"
    "{\\f1\\fnil\\fcharset2 Wingdings;}}\r\n"
    "{\\colortbl ;\\red255\\green0\\blue0;\\red0\\green0\\blue255;}\r\n"
    "\\viewkind4\\uc1\\pard\\f0\\fs20 Caro \\cf1\\b Mario\\cf0\\b0 , ti scrivo \\i perch\\'e9\\i0  \\ul oggi\\ulnone "
    "\\f1\\'e0\\f0  \\u8730? \\u1046?\\par\r\n"
    "\\pard\\qc\\highlight2 al centro\\highlight0\\tab dopo\\line a capo\\par\r\n"
    "\\pard\\li567\\ri567 rientro \\uldb doppio\\ulnone  \\up6 su\\up0  \\strike via\\strike0 \\{graffe\\} \\\\\\par\r\n"
    "\\pard ultima \\fs28 riga\\fs20\\par\r\n"
    "}\r\n";

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

std::string pictureShape()
{
    // A 1x1 PNG, so the picture group has real data to keep.
    const char* png =
        "89504e470d0a1a0a0000000d4948445200000001000000010802000000907753de0000000c4944415478da63f8"
        "ff3f000005fe02fea7d9a2ed0000000049454e44ae426082";
    return std::string("{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss\\fcharset0 Arial;}"
                       "{\\f1\\fnil\\fcharset2 Symbol;}{\\f2\\fnil\\fcharset128\\cpg932 MS Gothic;}}\r\n"
                       "\\viewkind4\\uc1\\pard\\f0\\fs20 prima {\\pict\\pngblip\\picw1\\pich1\\picwgoal300\\pichgoal300 ") +
           png +
           "} dopo\\par\r\n"
           "\\pard{\\pntext\\f1\\'b7\\tab}{\\*\\pn\\pnlvlblt\\pnf1\\pnindent0{\\pntxtb\\'b7}}\\fi-360\\li720 punto\\par\r\n"
           "{\\pntext\\f1\\'b7\\tab}altro {\\pict\\wmetafile8\\picw10\\pich10\\bin3 ABC} punto\\par\r\n"
           "\\pard\\f2 \\'82\\'a0\\'82\\'a2 giapponese\\par\r\n}\r\n";
}

}  // namespace

TEST(Malformed, EveryCutOfOwnDocumentsKeepsWhatCameBefore)
{
    QString whole;
    Faults faults = truncationFaults("own shape", QString::fromLatin1(kOwnShape), &whole);
    EXPECT_EQ(str(whole),
              "Caro Mario, ti scrivo perch\u00e9 oggi\uf0e0 \u221a \u0416\r\n"
              "al centro\tdopo\va capo\r\n"
              "rientro doppio su via{graffe} \\\r\n"
              "ultima riga");
    Faults more = truncationFaults("word shape", QString::fromLatin1(kWordShape), &whole);
    faults.insert(faults.end(), more.begin(), more.end());
    EXPECT_EQ(str(whole),
              "Primo paragrafo con grassetto e corsivo.\r\n"
              "\u010d\u0161\u011b \u010d dopo\r\n"
              "collegamento e \u0416\u0438\r\n"
              "fine del testo");
    more = truncationFaults("pictures", QString::fromLatin1(pictureShape()), &whole);
    faults.insert(faults.end(), more.begin(), more.end());
    EXPECT_EQ(str(whole), "prima \ufffc dopo\r\npunto\r\naltro \ufffc punto\r\n\u3042\u3044 giapponese");
    EXPECT_EQ(faults, Faults{});
}

TEST(Malformed, EveryCutOfCorpusFilesKeepsWhatCameBefore)
{
    Faults faults;
    int read = 0;
    for (const char* name : {"rtfpipe__list.rtf", "rtfpipe__color.rtf", "rtfde__surrogate_pairs_04.rtf"}) {
        const QString rtf = corpusFile(name);
        if (rtf.isEmpty())
            continue;
        ++read;
        const Faults more = truncationFaults(name, rtf);
        faults.insert(faults.end(), more.begin(), more.end());
    }
    if (read == 0)
        GTEST_SKIP() << "no corpus at " TORNELIA_CORPUS_DIR;
    EXPECT_EQ(faults, Faults{});
}

TEST(Malformed, UnbalancedBracesAndDeepNesting)
{
    struct Case {
        std::string name;
        std::string rtf;
        QString text;
    };
    const std::string head = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\\pard ";
    const std::vector<Case> cases = {
        {"1000 opened, none closed", head + "Prima " + std::string(1000, '{') + "\\b dentro", "Prima dentro"},
        {"opened and closed unevenly", head + "A{{{\\b B}}{\\i C" + std::string(50, '{') + "D}}}}}", "ABCD"},
        {"1000 closed after the end", head + "Fine}" + std::string(1000, '}') + " dopo", "Fine"},
        {"closed right after the header", "{\\rtf1}}}}{ niente}", ""},
        {"100000 deep, then back", head + "su " + std::string(100000, '{') + "fondo" + std::string(100000, '}') + " dopo}",
         "su fondo dopo"},
        {"100000 deep, never closed", head + "su " + std::string(100000, '{') + "fondo", "su fondo"},
        {"deep inside a skipped destination", head + "A{\\*\\ignota " + std::string(5000, '{') + "x" +
                                                  std::string(5000, '}') + "}B}",
         "AB"},
        {"only braces", "{\\rtf1" + std::string(3000, '{') + std::string(3000, '}'), ""},
    };
    Faults faults;
    for (const Case& c : cases) {
        const Outcome out = readCase(c.name, latin1(c.rtf));
        if (out.text != c.text)
            faults.push_back(c.name + ": read \"" + shown(out.text) + "\"");
        faults.insert(faults.end(), out.faults.begin(), out.faults.end());
    }
    EXPECT_EQ(faults, Faults{});
}

TEST(Malformed, HugeAndOddNumbersAreClampedNotTrusted)
{
    struct Case {
        std::string name;
        std::string body;
        QString text;
    };
    const std::vector<Case> cases = {
        {"font size", "A\\fs99999999999999 B\\fs-5 C\\fs0 D", "ABCD"},
        {"unicode far below", "A\\u-99999999999?B", "AB"},
        {"unicode far above", "A\\u99999999999?B", "AB"},
        {"unicode just out of range", "A\\u65536?B", "AB"},
        {"skip count", "\\uc99999999999 A\\u1046 BCDEFGHIJKLMNOPQRSTUVWXYZ", QString()},
        {"negative skip count", "\\uc-7 A\\u1046 B", QStringLiteral("A\u0416B")},
        {"colour index", "A\\cf99999999999 B\\highlight-99999999999 C", "ABC"},
        {"font index", "A\\f99999999999 B\\f-1 C", "ABC"},
        {"indents", "\\li99999999999\\ri-99999999999\\fi99999999999 A\\par\\pard\\li-1 B", "A\r\nB"},
        {"offsets", "A\\up99999999999 B\\dn99999999999 C", "ABC"},
        {"code page", "\\ansicpg99999999999 A\\'e9B", QString()},
        {"digits without end", "A\\fs" + std::string(5000, '9') + " B", "AB"},
        {"keyword without end", "A\\" + std::string(5000, 'x') + " B", "AB"},
        // Picture sizes are multiplied into twips; a sanitizer build catches an overflow there.
        {"picture sizes", "A{\\pict\\pngblip\\picw99999999999\\pich99999999999\\picscalex99999999999 00}B", QString()},
        {"picture goals", "A{\\pict\\wmetafile8\\picwgoal-99999999999\\pichgoal99999999999 00}B", QString()},
    };
    Faults faults;
    for (const Case& c : cases) {
        const std::string rtf = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}{\\colortbl;\\red1\\green2\\blue3;}\\pard " +
                                c.body + "\\par}";
        const Outcome out = readCase(c.name, latin1(rtf));
        // Where the text is left open, only its start and a bound are fixed.
        if (c.text.isNull() ? !(out.text.startsWith(u'A') && out.text.size() <= 30) : out.text != c.text)
            faults.push_back(c.name + ": read \"" + shown(out.text) + "\"");
        faults.insert(faults.end(), out.faults.begin(), out.faults.end());
    }
    EXPECT_EQ(faults, Faults{});

    // A size that was clamped is still a size a font can have.
    RichTextSurface s;
    s.setTextRTF(QStringLiteral("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\pard\\fs99999999999999 A\\par}"));
    s.setSelStart(0);
    s.setSelLength(1);
    ASSERT_TRUE(s.SelFontSize().has_value());
    EXPECT_GT(*s.SelFontSize(), 0.0f);
    EXPECT_LE(*s.SelFontSize(), 1638.0f);
}

TEST(Malformed, CutEscapesAndLyingBinaryLengths)
{
    struct Case {
        std::string name;
        std::string rtf;
        QString text;
        bool exact = true;  // otherwise the text only has to start with it
    };
    const std::string head = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\\pard ";
    const std::vector<Case> cases = {
        {"\\' at the end", head + "Testo\\'", "Testo"},
        {"\\' and one digit at the end", head + "Testo\\'e", "Testo", false},
        {"\\' with no hex digits", head + "Testo\\'zz}", "Testo", false},
        {"\\u at the end", head + "Testo\\u", "Testo"},
        {"\\u- at the end", head + "Testo\\u-", "Testo"},
        {"\\u with its skip cut", head + "Testo\\u1046", QStringLiteral("Testo\u0416")},
        {"\\uc2 skip cut by the end", head + "\\uc2 Testo\\u1046\\'c6", QStringLiteral("Testo\u0416")},
        {"backslash at the end", head + "Testo\\", "Testo"},
        {"\\bin longer than the file", head + "Testo\\bin999999999 coda}", "Testo"},
        {"\\bin longer than its group", head + "Testo{\\bin50 ab}dopo}", "Testo"},
        {"\\bin shorter than its data", head + "Testo{\\*\\ignota\\bin2 abcd} dopo}", "Testo dopo"},
        {"\\bin negative", head + "Testo\\bin-5 dopo}", "Testodopo"},
        {"\\bin without a number", head + "Testo\\bin dopo}", "Testodopo"},
        {"\\bin in a picture, too long", head + "Testo{\\pict\\wmetafile8\\bin99999 ab}} dopo", "Testo"},
        {"\\bin eating braces in a picture", head + "Testo{\\pict\\pngblip\\bin3 }}}} dopo}", "Testo", false},
        {"\\bin eating the header", "{\\rtf1\\bin30 {\\fonttbl{\\f0 Arial;}}\\pard Testo}", "sto"},
        {"unknown destinations", head + "A{\\*\\ignota B{\\b C}\\par D}E{\\*\\fldinst F}G{\\*}H{\\*\\*\\*\\zz I}J}",
         "AEGHJ"},
        {"unknown words keep their text", head + "A{\\ignota B}\\parola C}", "ABC"},
        {"destination word with no group", head + "A\\fonttbl B;\\colortbl C;}", "A", false},
        {"font table never closed", "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}{\\f1 Times", ""},
        {"colour table never closed", "{\\rtf1\\ansi{\\colortbl;\\red1\\green2\\blue3;", ""},
        {"picture never closed", head + "Testo{\\pict\\pngblip 89504e47", "Testo"},
        {"object never closed", head + "Testo{\\object{\\*\\objdata 0102", "Testo"},
        {"NUL and control bytes", head + std::string("Te\0st\x01o\x1f", 9) + "}", "Te", false},
        {"text after the last brace", head + "Testo}{\\rtf1 secondo}", "Testo"},
        {"two headers", "{\\rtf1{\\rtf1\\ansi Testo}}", "Testo"},
    };
    Faults faults;
    for (const Case& c : cases) {
        const Outcome out = readCase(c.name, latin1(c.rtf));
        if (c.exact ? out.text != c.text : !out.text.startsWith(c.text))
            faults.push_back(c.name + ": read \"" + shown(out.text) + "\"");
        faults.insert(faults.end(), out.faults.begin(), out.faults.end());
    }
    EXPECT_EQ(faults, Faults{});
}

TEST(Malformed, ColourTableOfFiftyThousandEntries)
{
    std::string rtf = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}{\\colortbl ;";
    for (int i = 1; i <= 50000; ++i)
        rtf += "\\red" + std::to_string(i % 256) + "\\green" + std::to_string((i / 256) % 256) + "\\blue" +
               std::to_string(i % 7) + ";";
    rtf += "}\\pard\\cf49999 X\\cf1 Y\\cf50000 Z\\cf50001 W\\par}";
    RichTextSurface s;
    s.setDefaultFormat(QStringLiteral("Tahoma"), 10);
    s.setTextRTF(latin1(rtf));
    EXPECT_EQ(str(s.Text()), "XYZW");
    std::vector<std::optional<Colour>> colours;
    for (int i = 0; i < 4; ++i) {
        s.setSelStart(i);
        s.setSelLength(1);
        colours.push_back(s.SelColor());
    }
    // 0x00BBGGRR; an index past the table is the automatic colour.
    const auto bgr = [](int i) { return Colour((i % 7) << 16 | ((i / 256) % 256) << 8 | (i % 256)); };
    EXPECT_EQ(colours, (std::vector<std::optional<Colour>>{bgr(49999), bgr(1), bgr(50000), Colour(0)}));
    EXPECT_EQ(roundTripFaults(s), Faults{});
}

TEST(Malformed, RandomBytesAndRandomDamage)
{
    std::mt19937 rng(0x70524e);
    auto below = [&rng](int n) { return int(std::uniform_int_distribution<int>(0, n - 1)(rng)); };
    const std::string own = kOwnShape;
    const std::string word = kWordShape;
    // Bytes the damage is made of: the RTF syntax more often than not.
    const std::string syntax = "{}\\\\\\'*;0123456789-abcdefuvp \r\n";

    Faults faults;
    for (int n = 0; n < 400; ++n) {
        std::string rtf;
        switch (n % 4) {
        case 0:  // noise behind a real header
            rtf = "{\\rtf1\\ansi ";
            for (int i = below(2000); i > 0; --i)
                rtf += char(below(256));
            break;
        case 1:  // noise made of RTF's own characters
            rtf = "{\\rtf1 ";
            for (int i = below(2000); i > 0; --i)
                rtf += below(3) ? syntax[size_t(below(int(syntax.size())))] : char(below(256));
            break;
        default: {  // a real document with bytes changed, dropped and added
            rtf = n % 4 == 2 ? own : word;
            for (int edits = 1 + below(12); edits > 0; --edits) {
                const size_t at = size_t(below(int(rtf.size())));
                const char b = below(2) ? syntax[size_t(below(int(syntax.size())))] : char(below(256));
                switch (below(3)) {
                case 0: rtf[at] = b; break;
                case 1: rtf.erase(at, size_t(1 + below(8))); break;
                default: rtf.insert(at, size_t(1 + below(4)), b); break;
                }
            }
            break;
        }
        }
        const Outcome out = readCase("random case " + std::to_string(n) + " \"" + shown(latin1(rtf), 2000) + "\"",
                                     latin1(rtf));
        faults.insert(faults.end(), out.faults.begin(), out.faults.end());
    }
    EXPECT_EQ(faults, Faults{});
}

// What does not start with "{\rtf" is plain text, bytes the RTF has no use
// for included; the round trips hold on it all the same.
TEST(Malformed, CutHeadersAndBinaryTextReadAsPlainText)
{
    struct Case {
        std::string name;
        std::string input;
        QString text;
    };
    const std::vector<Case> cases = {
        {"header cut short", "{\\rt", "{\\rt"},
        {"header broken by NULs", std::string("{\\r\0\0tf1\\mac hello\n}", 21), QString()},
        {"NUL between letters", std::string("a\0b", 3), QString()},
        {"control bytes", "a\x01\x08\x0b\x0c\x1b\x7f b", QString()},
        {"braces and backslashes", "}{\\par\\'e9\\u1046?", "}{\\par\\'e9\\u1046?"},
    };
    Faults faults;
    for (const Case& c : cases) {
        const Outcome out = readCase(c.name, latin1(c.input));
        if (!c.text.isNull() && out.text != c.text)
            faults.push_back(c.name + ": read \"" + shown(out.text) + "\"");
        faults.insert(faults.end(), out.faults.begin(), out.faults.end());
    }
    EXPECT_EQ(faults, Faults{});
}

// \pict and \object belong at the start of a group of their own. Met further
// on, and above all in the document's own group, they must not turn the whole
// group, the document included, into one picture kept raw: written back, that
// raw group would carry the document's text a second time.
TEST(Malformed, PicturesAndObjectsOutsideTheirOwnGroup)
{
    struct Case {
        std::string name;
        std::string rtf;
        QString keep;  // the text has to start with this
    };
    const std::vector<Case> cases = {
        {"\\pict in the document's group", "{\\rtf1 Testo {\\b grassetto} e \\pict fine}", "Testo grassetto e "},
        {"\\object in the document's group", "{\\rtf1 Testo\\object fine}", "Testo"},
        {"\\pict after a group", "{\\rtf{r}\\pict}", "r"},
        {"\\object inside a group", "{\\rtf{l\\object}", ""},
        {"\\pict after a group, then a word", "{\\rtf{;}\\pict\\r}", ";"},
        {"\\pict after text in a group", "{\\rtf1 A{\\b B\\pict 00}C}", "AB"},
    };
    Faults faults;
    for (const Case& c : cases) {
        const Outcome out = readCase(c.name, latin1(c.rtf));
        if (!out.text.startsWith(c.keep))
            faults.push_back(c.name + ": read \"" + shown(out.text) + "\"");
        faults.insert(faults.end(), out.faults.begin(), out.faults.end());
    }
    EXPECT_EQ(faults, Faults{});
}

// Control bytes mean the same in every Windows code page. Some converters
// swap 0x1A, 0x1C and 0x7F; read that way, a byte comes back as another one
// after a save and a load.
TEST(Malformed, ControlBytesReadAlikeInEveryCodePage)
{
    struct Case {
        std::string name;
        std::string rtf;
        QString text;
    };
    const std::string bytes = "A\\'1a\\'1c\\'7fB\\par}";
    const QString expected = QStringLiteral("A\x1a\x1c\x7f" "B");
    const std::vector<Case> cases = {
        {"Western", "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\pard\\f0 " + bytes, expected},
        {"Japanese font", "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset128 MS Gothic;}}\\pard\\f0 " + bytes, expected},
        {"Chinese font", "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset134 SimSun;}}\\pard\\f0 " + bytes, expected},
        {"IBM PC document", "{\\rtf1\\pc{\\fonttbl{\\f0 Courier;}}\\pard\\f0 " + bytes, expected},
        {"IBM PC 850 document", "{\\rtf1\\pca{\\fonttbl{\\f0 Courier;}}\\pard\\f0 " + bytes, expected},
        {"control bytes in a Japanese font's name",
         "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset128 MS\\'7f\\'1aGothic;}}\\pard\\f0 A\\par}", "A"},
        {"a tab in a font's name", "{\\rtf1\\ansi{\\fonttbl{\\f0 Ari\\'09al;}}\\pard\\f0 A\\par}", "A"},
    };
    Faults faults;
    for (const Case& c : cases) {
        const Outcome out = readCase(c.name, latin1(c.rtf));
        if (out.text != c.text)
            faults.push_back(c.name + ": read \"" + shown(out.text) + "\"");
        faults.insert(faults.end(), out.faults.begin(), out.faults.end());
    }
    EXPECT_EQ(faults, Faults{});
}

// \* marks only the control word right after it as a destination that may
// be skipped. A stray one must not skip a later unknown word's whole group,
// nor the text read before it.
TEST(Malformed, StrayIgnorableMarkReachesOnlyTheNextWord)
{
    const std::string head = "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}}\\pard ";
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"past a closing brace", head + "A{\\*}\\zz B}"},
        {"past text", head + "A\\*B\\zz C}"},
    };
    std::vector<std::string> read;
    Faults faults;
    for (const auto& [name, rtf] : cases) {
        const Outcome out = readCase(name, latin1(rtf));
        read.push_back(name + ": " + shown(out.text));
        faults.insert(faults.end(), out.faults.begin(), out.faults.end());
    }
    EXPECT_EQ(read, (std::vector<std::string>{"past a closing brace: AB", "past text: ABC"}));
    EXPECT_EQ(faults, Faults{});
}
