// The engine classes on a real surface: what a toggle, hidden text and the
// highlight leave in the document's RTF, compared whole.

#include "engine_support.h"

#include "rtf/cls_api_highlight.h"
#include "rtf/cls_extended_rtf.h"
#include "rtf/cls_rtf_font_looks.h"

#include "core/text_format.h"

#include <gtest/gtest.h>

#include <QTextCursor>

using namespace tornelia;
using namespace tornelia::test;

namespace {

const QString kHead = QStringLiteral(
    "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1040{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}}\r\n");

// A paragraph of plain, bold, red and accented text with a double blank.
void fill(RichTextSurface& s)
{
    s.setTextRTF(kHead + QStringLiteral("{\\colortbl ;\\red255\\green0\\blue0;}\r\n"
                                        "\\viewkind4\\uc1\\pard\\f0\\fs20 Uno \\b due\\b0   tre  \\cf1 perch\\'e8\\cf0  cinque\\par\r\n"
                                        "sei sette\\par\r\n}\r\n"));
}

struct Fixture : ::testing::Test {
    Fixture()
    {
        fill(surface);
        extended.AssignControls(&surface, &colours);
        looks.AssignControls(&surface, &colours);
        highlight.AssignControls(&surface, &colours);
    }
    RichTextSurface surface;
    RecordingMessages messages;
    ScriptedColours colours;
    ClsExtendedRTF extended{messages};
    ClsRTFFontLooks looks{messages};
    ClsAPIHighlight highlight{messages};
};

using Engine = Fixture;

}  // namespace

TEST_F(Engine, EveryUnderlineToggleOnAndOffGivesBackTheStream)
{
    using Setter = void (ClsExtendedRTF::*)(bool);
    const std::vector<std::pair<Setter, QString>> toggles = {
        {&ClsExtendedRTF::setSelDot, "uld"},       {&ClsExtendedRTF::setSelDash, "uldash"},
        {&ClsExtendedRTF::setSelDashd, "uldashd"}, {&ClsExtendedRTF::setSelDashdd, "uldashdd"},
        {&ClsExtendedRTF::setSelWave, "ulwave"},   {&ClsExtendedRTF::setSelUlDouble, "uldbl"},
        {&ClsExtendedRTF::setSelThick, "ulth"},    {&ClsExtendedRTF::setSelUlWord, "ulw"},
        {&ClsExtendedRTF::setSelHair, "ulhair"},
    };
    const QString original = surface.TextRTF();
    for (const auto& [set, word] : toggles) {
        // From inside "Uno" to inside "perchè": bold, a double blank, red,
        // and the escaped letter all in the selection.
        select(surface, 2, 20);
        const QString selected = surface.SelRTF();
        (extended.*set)(true);
        EXPECT_EQ(std::make_pair(surface.SelStart(), surface.SelLength()), std::make_pair(2L, 20L));
        EXPECT_EQ(surface.Text(), QStringLiteral("Uno due  tre  perch\u00e8 cinque\r\nsei sette"));
        const QString on = surface.SelRTF();
        EXPECT_NE(on, selected);
        EXPECT_TRUE(on.contains(QLatin1String("\\pard\\") + word + QLatin1String("\\f0\\fs20 o ")))
            << qPrintable(on);
        EXPECT_EQ(extended.CurrentUnderlineStyle(), u'\\' + word);
        (extended.*set)(true);
        EXPECT_EQ(surface.SelRTF(), selected) << qPrintable(word);
        EXPECT_EQ(surface.TextRTF(), original) << qPrintable(word);

        // Across the paragraph break: the word reaches the next paragraph.
        select(surface, 22, 11);
        (extended.*set)(true);
        select(surface, 30, 3);
        const std::optional<UnderlineKind> kind = surface.SelUnderlineKind();
        EXPECT_TRUE(kind.has_value() && *kind != UnderlineKind::None) << qPrintable(word);
        select(surface, 22, 11);
        (extended.*set)(true);
        EXPECT_EQ(surface.TextRTF(), original) << qPrintable(word);
    }
}

TEST_F(Engine, CharacterTogglesOfTheLooksEngineGiveBackTheStream)
{
    const QString original = surface.TextRTF();
    for (const QString word : {"\\b", "\\i", "\\strike", "\\caps", "\\v"}) {
        select(surface, 9, 13);  // "tre  perchè c": a double blank, red, an escape
        const QString selected = surface.SelRTF();
        EXPECT_TRUE(looks.ToggleWord(word));
        select(surface, 9, 13);
        EXPECT_TRUE(surface.SelRTF().contains(QLatin1String("\\pard") + word + QLatin1String("\\f0\\fs20 tre  ")))
            << qPrintable(surface.SelRTF());
        EXPECT_FALSE(looks.ToggleWord(word));
        EXPECT_EQ(surface.SelRTF(), selected) << qPrintable(word);
        EXPECT_EQ(surface.TextRTF(), original) << qPrintable(word);
    }
    // Where the selection holds the word already, the first toggle takes it
    // off: "due" loses its bold.
    select(surface, 0, 8);
    EXPECT_FALSE(looks.ToggleWord(QStringLiteral("\\b")));
    select(surface, 4, 3);
    EXPECT_EQ(surface.SelBold(), std::optional<bool>(false));
}

TEST_F(Engine, ToggleWritesTheWordOverTheWholeSelection)
{
    select(surface, 4, 14);  // "due  tre  perc"
    EXPECT_TRUE(extended.SelRTFToggle(QStringLiteral("\\uld")));
    EXPECT_EQ(surface.TextRTF(),
              kHead + QStringLiteral("{\\colortbl ;\\red255\\green0\\blue0;}\r\n"
                                     "\\viewkind4\\uc1\\pard\\f0\\fs20 Uno \\uld\\b due\\b0   tre  \\cf1 perc\\ulnone h\\'e8\\cf0  cinque\\par\r\n"
                                     "sei sette\\par\r\n}\r\n"));

    // Half of a new selection is dotted: the toggle takes the word off the
    // whole of it rather than extending it.
    select(surface, 0, 8);
    EXPECT_FALSE(extended.SelRTFToggle(QStringLiteral("\\uld")));
    EXPECT_EQ(surface.TextRTF(),
              kHead + QStringLiteral("{\\colortbl ;\\red255\\green0\\blue0;}\r\n"
                                     "\\viewkind4\\uc1\\pard\\f0\\fs20 Uno \\b due\\b0  \\uld  tre  \\cf1 perc\\ulnone h\\'e8\\cf0  cinque\\par\r\n"
                                     "sei sette\\par\r\n}\r\n"));
}

TEST_F(Engine, ToggleWithoutSelectionWorksOnTheWholeDocument)
{
    select(surface, 5, 0);
    extended.setSelThick(true);
    EXPECT_EQ(surface.TextRTF(),
              kHead + QStringLiteral("{\\colortbl ;\\red255\\green0\\blue0;}\r\n"
                                     "\\viewkind4\\uc1\\pard\\ulth\\f0\\fs20 Uno \\b due\\b0   tre  \\cf1 perch\\'e8\\cf0  cinque\\par\r\n"
                                     "sei sette\\par\r\n}\r\n"));
    EXPECT_EQ(std::make_pair(surface.SelStart(), surface.SelLength()), std::make_pair(5L, 0L));
    // A one-character selection is toggled like any other.
    select(surface, 0, 1);
    extended.setSelThick(true);
    EXPECT_TRUE(surface.TextRTF().startsWith(kHead + QStringLiteral(
        "{\\colortbl ;\\red255\\green0\\blue0;}\r\n\\viewkind4\\uc1\\pard\\f0\\fs20 U\\ulth no ")));
}

TEST_F(Engine, AnEscapedLetterKeepsItsBlanks)
{
    // "è" alone between blanks is a bit of its own, "\'e8"; the word must
    // not take the blank behind it. Also as the first character, where the
    // head ends at the blank behind the size.
    for (const QString text : {"Lui \u00e8 qui, \u20ac 5", "\u00e8 qui"}) {
        surface.setText(text);
        const QString original = surface.TextRTF();
        EXPECT_TRUE(original.contains(QLatin1String("\\fs20 ")));
        select(surface, 0, long(text.size()));
        extended.setSelWave(true);
        EXPECT_EQ(surface.Text(), text);
        select(surface, 0, long(text.size()));
        EXPECT_EQ(surface.SelUnderlineKind(), std::optional<UnderlineKind>(UnderlineKind::Wave));
        extended.setSelWave(true);
        EXPECT_EQ(surface.TextRTF(), original);
        looks.RTFHighlightHard(0xFF00FF);
        EXPECT_EQ(surface.Text(), text);
    }
    EXPECT_EQ(ClsExtendedRTF::ToggleBit(QStringLiteral("\\'e8"), QStringLiteral("\\uld"), true), QStringLiteral("\\uld \\'e8"));
    EXPECT_EQ(ClsExtendedRTF::ToggleBit(QStringLiteral("\\b\\'e8"), QStringLiteral("\\uld"), true), QStringLiteral("\\uld \\b\\'e8"));
    EXPECT_EQ(ClsExtendedRTF::ToggleBit(QStringLiteral("\\b\\fs20"), QStringLiteral("\\uld"), true), QStringLiteral("\\b\\fs20\\uld"));
    EXPECT_EQ(ClsExtendedRTF::ToggleBit(QStringLiteral("C:\\\\par"), QStringLiteral("\\uld"), true), QStringLiteral("\\uld C:\\\\par"));
}

TEST_F(Engine, BusyStateNestsAndPutsTheCaretBack)
{
    EXPECT_TRUE(extended.Busy());  // set from the start until an edit ends
    EXPECT_FALSE(looks.Busy());
    select(surface, 3, 4);
    looks.BusyState(true);
    select(surface, 10, 0);
    looks.BusyState(true);
    select(surface, 0, 2);
    looks.BusyState(false);
    EXPECT_EQ(std::make_pair(surface.SelStart(), surface.SelLength()), std::make_pair(10L, 0L));
    looks.BusyState(false);
    EXPECT_EQ(std::make_pair(surface.SelStart(), surface.SelLength()), std::make_pair(3L, 4L));
    EXPECT_FALSE(looks.Busy());
    looks.BusyState(false);  // one leave too many changes nothing
    EXPECT_EQ(std::make_pair(surface.SelStart(), surface.SelLength()), std::make_pair(3L, 4L));

    long first = 0, last = 0;
    select(surface, 6, 1);
    EXPECT_FALSE(looks.SelEdges(first, last));
    select(surface, 6, 2);
    EXPECT_TRUE(looks.SelEdges(first, last));
    EXPECT_EQ(std::make_pair(first, last), std::make_pair(6L, 7L));
}

TEST_F(Engine, ColoursByNameByDialogAndInTheTable)
{
    EXPECT_EQ(looks.ColourNamed("Beige"), rtfkit::RGB(255, 200, 100));
    EXPECT_EQ(looks.ColourNamed("gray"), looks.ColourNamed("grey"));
    EXPECT_EQ(looks.ColourNamed("LimeGreen"), rtfkit::RGB(200, 255, 100));
    EXPECT_TRUE(messages.shown.isEmpty());
    EXPECT_EQ(looks.ColourNamed("teal"), 0u);
    EXPECT_EQ(highlight.NamedColour("fred"), rtfkit::RGB(23, 200, 200));
    EXPECT_EQ(highlight.NamedColour("teal"), 0u);  // no report here
    EXPECT_EQ(messages.shown, QStringList({"Errore|Errore inaspettato!|0|3"}));

    colours.answers = {0x123456u, std::nullopt};
    EXPECT_EQ(looks.ColourUser(), std::optional<Colour>(0x123456u));
    EXPECT_EQ(looks.ColourUser(), std::nullopt);
    EXPECT_EQ(messages.shown.size(), 2);

    // An engine never bound reports instead of touching anything.
    ClsExtendedRTF unbound(messages);
    EXPECT_FALSE(unbound.SelRTFToggle(QStringLiteral("\\uld")));
    EXPECT_EQ(unbound.lastErrorNote(), QStringLiteral("RichTextBox"));
    ClsRTFFontLooks noDialog(messages);
    noDialog.AssignControls(&surface, nullptr);
    EXPECT_EQ(noDialog.ColourUser(), std::nullopt);
    EXPECT_EQ(noDialog.lastErrorNote(), QStringLiteral("CommonDialog"));
    noDialog.ColourNamed("teal");  // a bad name, not a missing control
    EXPECT_EQ(noDialog.lastErrorNote(), QString());
    EXPECT_EQ(messages.shown.size(), 5);

    // Busy until its first edit, the extended engine counts nothing.
    select(surface, 0, 5);
    EXPECT_EQ(extended.ColoursUsed(true), 0);
    extended.setSelDot(true);
    extended.setSelDot(true);
    EXPECT_EQ(extended.ColoursUsed(true), 2);
    select(surface, 0, 0);
    EXPECT_EQ(extended.ColoursUsed(false), 0);
}

TEST_F(Engine, HiddenTextHiddenAndShownAgain)
{
    surface.setText(QStringLiteral("Hello secret world"));
    select(surface, 6, 6);
    looks.setSelVisible(true);
    EXPECT_EQ(surface.TextRTF(), kHead + QStringLiteral("\\viewkind4\\uc1\\pard\\f0\\fs20 Hello \\v secret\\v0  world\\par\r\n}\r\n"));
    select(surface, 6, 6);
    EXPECT_EQ(surface.SelHidden(), std::optional<bool>(true));
    // Showing strips the word textually: the blank behind it stays.
    extended.HiddenTextShow();
    EXPECT_EQ(surface.Text(), QStringLiteral("Hello  secret world"));
    select(surface, 0, 19);
    EXPECT_EQ(surface.SelHidden(), std::optional<bool>(false));
    EXPECT_EQ(std::make_pair(surface.SelStart(), surface.SelLength()), std::make_pair(0L, 19L));

    // Toggling again on the visible text hides it, and once more shows it.
    select(surface, 7, 6);
    looks.setSelVisible(true);
    looks.setSelVisible(true);
    EXPECT_EQ(surface.TextRTF(), kHead + QStringLiteral("\\viewkind4\\uc1\\pard\\f0\\fs20 Hello  secret world\\par\r\n}\r\n"));
}

TEST_F(Engine, DocPercentPutsTheCaret)
{
    extended.setDocPercent(50);
    EXPECT_EQ(surface.SelStart(), 19);  // 38 characters with the CR LF
    extended.setDocPercent(200);
    EXPECT_EQ(surface.SelStart(), 38);
}

TEST_F(Engine, ApiHighlightSetReadAndDescribed)
{
    select(surface, 0, 3);
    EXPECT_EQ(highlight.IsHighlight(), 0);
    EXPECT_EQ(highlight.GetHighLightColorRGB(), QString());
    EXPECT_EQ(highlight.HighLightSlug("Doc", "[", 0, "]"), QStringLiteral("Doc"));

    highlight.APIHighlightHard(0);
    EXPECT_EQ(highlight.IsHighlight(), 1);
    EXPECT_EQ(highlight.GetHighLightColorLong(), 0u);
    EXPECT_EQ(highlight.GetHighLightColorRGB(), QStringLiteral("0:0:0"));
    EXPECT_EQ(highlight.HighLightDescription(), QStringLiteral("Black Highlight"));

    highlight.APIHighlightAuto(65280);
    EXPECT_EQ(surface.SelColor(), std::optional<Colour>(rtfkit::ContrastColour(65280)));
    EXPECT_EQ(highlight.HighLightSlug("Doc [x]", "[", 2, "]"), QStringLiteral("Doc [Green]"));
    EXPECT_EQ(highlight.HighLightSlug("Doc", "<", 1, ">"), QStringLiteral("Doc<65280>"));
    select(surface, 0, 12);
    EXPECT_EQ(highlight.IsHighlight(), 2);
    EXPECT_EQ(highlight.GetBackColour(), 65280u);

    // "Remove" paints the window's colour of the moment.
    surface.setBackColor(rtfkit::RGB(250, 200, 200));
    highlight.APIHighlightRemove();
    EXPECT_EQ(highlight.IsHighlight(), 1);
    EXPECT_EQ(highlight.HighLightDescription(), QStringLiteral("beige"));
    EXPECT_EQ(highlight.GetHighLightColorRGB(), QStringLiteral("250:200:200"));

    colours.answers = {0xC0C0C0u, 0x0000FFu};
    highlight.APIHighlightUserUser();
    EXPECT_EQ(colours.asked, std::deque<std::uint32_t>({255u, 255u}));
    EXPECT_EQ(highlight.HighLightDescription(), QStringLiteral("Button on Demo"));
    EXPECT_EQ(surface.SelColor(), std::optional<Colour>(0x0000FFu));
    // The highlight goes to the file and comes back.
    const QString rtf = surface.TextRTF();
    surface.setTextRTF(rtf);
    select(surface, 0, 12);
    EXPECT_EQ(highlight.GetBackColour(), 0xC0C0C0u);
}

TEST_F(Engine, RtfHighlightGivesEachCharacterAnEntry)
{
    select(surface, 0, 1);
    looks.RTFHighlightHard(0x00FFFF);  // one character: nothing happens
    EXPECT_EQ(looks.LastHighlightColour(), 0x00FFFFu);
    EXPECT_EQ(surface.SelHighlight(), std::optional<Colour>(kNoHighlight));

    surface.setText(QStringLiteral("ab cd"));
    select(surface, 0, 5);
    looks.RTFHighlightHard(0x00FFFF);
    // The surface writes the table anew, one entry per distinct colour; the
    // blank between the words takes the colour of the letter before it.
    EXPECT_EQ(surface.TextRTF(), kHead + QStringLiteral("{\\colortbl ;\\red255\\green255\\blue0;}\r\n"
                                                        "\\viewkind4\\uc1\\pard\\highlight1\\f0\\fs20 ab cd\\par\r\n}\r\n"));
    EXPECT_EQ(std::make_pair(surface.SelStart(), surface.SelLength()), std::make_pair(0L, 5L));

    // "Remove" writes the window-colour code as a colour: 5, 0, 0.
    looks.RTFHighlightRemove();
    EXPECT_EQ(surface.SelHighlight(), std::optional<Colour>(5u));

    colours.answers = {0x0000FFu};
    looks.RTFHighlightUserAuto();
    EXPECT_EQ(surface.SelHighlight(), std::optional<Colour>(0x0000FFu));
    EXPECT_EQ(surface.SelColor(), std::optional<Colour>(rtfkit::ContrastColour(0x0000FF)));
    EXPECT_EQ(looks.LastHighlightForeColour(), rtfkit::ContrastColour(0x0000FF));
    EXPECT_EQ(surface.Text(), QStringLiteral("ab cd"));
}

TEST_F(Engine, ThousandsOfEntriesKeepEveryCharacterColour)
{
    QString text;
    for (int i = 0; i < 3000; ++i)
        text += QChar(u'a' + i % 26);
    surface.setText(text);
    select(surface, 0, 3000);
    std::vector<Colour> colours;
    for (int i = 0; i < 3000; ++i)
        colours.push_back(rtfkit::RGB(i % 256, (i / 256) % 256, 7));
    looks.ApplyColours(colours, true, false);
    for (int i : {0, 1, 255, 256, 1999, 2999}) {
        select(surface, i, 1);
        EXPECT_EQ(surface.SelColor(), std::optional<Colour>(colours[size_t(i)])) << i;
    }
}
