// Every effect on documents written by other programs: whatever colours and
// shapes it adds, the text read back from the saved file is the text that
// was loaded.

#include "rtf/cls_rtf_font_looks.h"
#include "tests/rtf/effects_support.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <functional>
#include <utility>

using namespace tornelia;

namespace {

// The shape of a large office suite: a long preamble, a style sheet, info,
// runs in groups with revision marks, Unicode with an ANSI fallback.
const char* kSuiteSample =
    "{\\rtf1\\adeflang1025\\ansi\\ansicpg1252\\uc1\\adeff0\\deff0\\stshfdbch0\\stshfloch31506\\deflang1040"
    "\\deflangfe1040{\\fonttbl{\\f0\\fbidi \\froman\\fcharset0\\fprq2{\\*\\panose 02020603050405020304}Times New "
    "Roman;}{\\f37\\fbidi \\fswiss\\fcharset0\\fprq2 Calibri;}}\r\n"
    "{\\colortbl;\\red0\\green0\\blue0;\\red0\\green0\\blue255;\\red192\\green0\\blue0;}\r\n"
    "{\\stylesheet{\\ql \\li0\\ri0\\sa160\\sl259\\slmult1\\widctlpar\\wrapdefault\\rin0\\lin0\\itap0 \\rtlch\\fcs1 "
    "\\af0\\afs22 \\ltrch\\fcs0 \\f37\\fs22\\lang1040 \\snext0 \\sqformat \\spriority0 Normal;}}\r\n"
    "{\\*\\rsidtbl \\rsid123\\rsid456}{\\info{\\author Anna Bianchi}{\\creatim\\yr2023\\mo3\\dy14\\hr10\\min2}}\r\n"
    "\\paperw11906\\paperh16838\\margl1134\\margr1134\\margt1417\\margb1134 \\widowctrl\\ftnbj\\sectd \r\n"
    "\\pard\\plain \\ltrpar\\ql \\li0\\ri0\\sa160\\widctlpar\\wrapdefault\\rin0\\lin0\\itap0 \\rtlch\\fcs1 \\af0\\afs22 "
    "\\ltrch\\fcs0 \\f37\\fs22\\lang1040 {\\rtlch\\fcs1 \\af0 \\ltrch\\fcs0 \\insrsid123 Il caff\\'e8 \\'e8 pronto. }"
    "{\\rtlch\\fcs1 \\ab\\af0 \\ltrch\\fcs0 \\b\\cf3\\insrsid456 Attenzione}{\\rtlch\\fcs1 \\af0 \\ltrch\\fcs0 "
    "\\insrsid123 : la tazza scotta\\u8230\\'85\\par }\r\n"
    "\\pard \\ltrpar\\qc \\li0\\ri0\\sa160\\widctlpar\\wrapdefault\\rin0\\lin0\\itap0 {\\rtlch\\fcs1 \\ai\\af0 "
    "\\ltrch\\fcs0 \\i\\insrsid123 Citt\\'e0 di Torino,  piazza\\tab Castello}{\\rtlch\\fcs1 \\af0 \\ltrch\\fcs0 "
    "\\insrsid123 \\par }}\r\n";

// The shape of an open office suite: run groups broken by line ends, font
// switches by \\loch and \\hich, a generator, a footnote separator.
const char* kOpenSample =
    "{\\rtf1\\ansi\\deff4\\adeflang1025\r\n"
    "{\\fonttbl{\\f0\\froman\\fprq2\\fcharset0 Times New Roman;}{\\f4\\fswiss\\fprq2\\fcharset0 Liberation "
    "Sans;}}\r\n"
    "{\\colortbl;\\red0\\green0\\blue0;\\red128\\green128\\blue128;}\r\n"
    "{\\stylesheet{\\s0\\snext0\\ql\\widctlpar\\hyphpar0\\ltrpar\\cf0\\kerning1\\dbch\\af5\\langfe2052\\afs24"
    "\\loch\\f4\\hich\\af4\\fs24\\lang1040 Predefinito;}}\r\n"
    "{\\*\\generator Suite/7.4}{\\info{\\creatim\\yr2024\\mo1\\dy2\\hr9\\min0}}\\formshade\\paperh16838"
    "\\paperw11906\\margl1134\\margr1134\\margt1134\\margb1134\\sectd\\sbknone\\pgndec\\ftnbj\\ftnstart1\r\n"
    "{\\*\\ftnsep\\chftnsep}\\pgndec\\pard\\plain \\s0\\ql\\widctlpar\\hyphpar0\\ltrpar\\cf0\\kerning1\\dbch\\af5"
    "\\afs24\\loch\\f4\\hich\\af4\\fs24\\lang1040{\\rtlch \\ltrch\\loch\r\n"
    "Prima riga con due  spazi e un tab\\tab qui.}\r\n"
    "\\par \\pard\\plain \\s0\\ql\\widctlpar\\ltrpar\\cf0\\loch\\f4\\fs24\\lang1040{\\rtlch \\ltrch\\loch\\b\\loch\r\n"
    "Grassetto}{\\rtlch \\ltrch\\loch\r\n"
    " e normale, con \\u8364\\'80 euro e una \\'abcitazione\\'bb.}\r\n"
    "\\par }";

const char* kCorpusFiles[] = {
    "tika__testrtfhyperlinkandstyles.rtf", "rtfjs__rtf_simplepngbin.rtf",  "rtfparserkit__testspecialchars.rtf",
    "rtfde__surrogate_pairs_04.rtf",       "docsharp__table_-_simple.rtf", "abiword__readme.rtf",
};

using Effect = std::pair<const char*, std::function<void(ClsRTFFontLooks&)>>;

std::vector<Effect> everyEffect()
{
    return {
        {"Candy", [](ClsRTFFontLooks& l) { l.Candy(2, 0, true); }},
        {"SpectrumSector", [](ClsRTFFontLooks& l) { l.SpectrumSector(4, true, false, false); }},
        {"RainBow", [](ClsRTFFontLooks& l) { l.RainBow(true, true); }},
        {"RainBow back", [](ClsRTFFontLooks& l) { l.RainBow(false, false); }},
        {"Materials", [](ClsRTFFontLooks& l) { l.Materials("yellowrose", false, true, true); }},
        {"RandomColour", [](ClsRTFFontLooks& l) { l.RandomColour(1, true); }},
        {"ShuffleColour", [](ClsRTFFontLooks& l) { l.ShuffleColour(0, true); }},
        {"Ransom", [](ClsRTFFontLooks& l) { l.Ransom(3); }},
        {"Ripple position", [](ClsRTFFontLooks& l) { int v = 0; l.RippleEngine(0, 4, true, v, 1); }},
        {"Ripple size", [](ClsRTFFontLooks& l) { int v = 0; l.RippleEngine(1, 3, true, v, 2); }},
    };
}

// A wave's number stands right in front of its character, so a digit of the
// text joins the number, and a blank behind it may become its delimiter: a
// known limit of the waves. Their texts are compared without digits and
// blanks.
QString withoutDigits(QString s)
{
    static const QRegularExpression digitsAndBlanks(QStringLiteral("[0-9 ]"));
    return s.remove(digitsAndBlanks);
}

// "" when equal, else where and how two long texts part.
QString difference(const QString& got, const QString& want)
{
    qsizetype i = 0;
    while (i < got.size() && i < want.size() && got[i] == want[i])
        ++i;
    if (i == got.size() && i == want.size())
        return {};
    return QStringLiteral("at %1: got [%2] want [%3]").arg(i).arg(got.mid(i - 20, 50), want.mid(i - 20, 50));
}

void checkEveryEffect(const QString& name, const QString& rtf)
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("effetto.rtf"));
    for (const auto& [effectName, effect] : everyEffect()) {
        SCOPED_TRACE(name.toStdString() + " / " + effectName);
        test::RecordingMessages messages;
        RichTextSurface surface;
        surface.setTextRTF(rtf);
        const QString text = surface.Text();
        const QString before = surface.TextRTF();
        ClsRTFFontLooks looks(messages);
        looks.AssignControls(&surface, nullptr);
        looks.seedRandom(7);
        test::select(surface, 0, surface.length());
        effect(looks);
        EXPECT_TRUE(messages.shown.isEmpty()) << messages.shown.join(u'\n').toStdString();
        if (text.size() < 2) {
            // A picture alone is no selection of two characters.
            EXPECT_EQ(surface.TextRTF(), before);
            continue;
        }

        surface.SaveFile(path, RichTextSurface::RtfKind);
        RichTextSurface reloaded;
        reloaded.LoadFile(path, RichTextSurface::RtfKind);
        const bool wave = QByteArray(effectName).startsWith("Ripple");
        EXPECT_EQ(difference(wave ? withoutDigits(reloaded.Text()) : reloaded.Text(), wave ? withoutDigits(text) : text),
                  QString());
        // And the effect really is in the file.
        EXPECT_NE(reloaded.TextRTF(), RichTextSurface().TextRTF());
    }
}

}  // namespace

TEST(EffectsOnDocuments, HandWrittenSamplesOfOtherWordProcessors)
{
    checkEveryEffect(QStringLiteral("suite"), QString::fromLatin1(kSuiteSample));
    checkEveryEffect(QStringLiteral("open"), QString::fromLatin1(kOpenSample));
}

TEST(EffectsOnDocuments, CorpusFiles)
{
    for (const char* name : kCorpusFiles) {
        QFile file(QStringLiteral(TORNELIA_CORPUS_DIR "/") + QLatin1String(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        checkEveryEffect(QLatin1String(name), QString::fromLatin1(file.readAll()));
    }
}
