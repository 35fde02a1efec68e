// The rules behind the main window, run without it: the status line, the
// format toggles, running the selection and the helpers outside the program.
#include "app/frm_main_logic.h"
#include "app/scripted_ports.h"
#include "test_ports.h"

#include <gtest/gtest.h>

#include <QDate>
#include <QDir>
#include <QClipboard>
#include <QFile>
#include <QGuiApplication>
#include <QMimeData>
#include <QLocale>

namespace tornelia {
namespace {

class FrmMainLogicTest : public ::testing::Test {
protected:
    FrmMainLogicTest()
        : logic(*t.context, t.folder.filePath("bin"), t.folder.filePath("data"))
    {
        QDir().mkpath(t.folder.filePath("bin"));
        QDir().mkpath(t.folder.filePath("data"));
        t.context->document().Novo(0);
    }
    RichTextSurface& testo() { return t.context->testo(); }
    QStringList& shellRequests() { return static_cast<ScriptedShellPort&>(t.context->shell()).requests; }
    void select(long start, long length)
    {
        testo().setSelStart(start);
        testo().setSelLength(length);
    }
    void touch(const QString& relative)
    {
        QFile f(t.folder.filePath(relative));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    }
    QString setting(const QString& section, const QString& key)
    {
        return t.context->settings().leggiReg(kApp, section, key, "<none>");
    }

    testing::TestContext t;
    FrmMainLogic logic;
};

TEST_F(FrmMainLogicTest, StatusLineCountsLinesAndColumnsFromOne)
{
    EXPECT_EQ((QStringList{FrmMainLogic::formatLine(0), FrmMainLogic::formatLine(7), FrmMainLogic::formatLine(1234),
                           FrmMainLogic::formatLine(1234567)}),
              (QStringList{"", "7", "1.234", "1.234.567"}));

    testo().setText("uno\r\ndue tre\r\n\r\nquattro");
    QStringList seen;
    for (long caret : {0L, 3L, 5L, 9L, 14L, 16L, long(testo().length())}) {
        testo().setSelStart(caret);
        seen << logic.Conalinee();
    }
    EXPECT_EQ(seen, (QStringList{"Lin: 1, Col: 1", "Lin: 1, Col: 4", "Lin: 2, Col: 1", "Lin: 2, Col: 5",
                                 "Lin: 3, Col: 1", "Lin: 4, Col: 1", "Lin: 4, Col: 8"}));
    EXPECT_EQ(logic.lineCount(), 4);
}

TEST_F(FrmMainLogicTest, ClicFlipsEachFormatAndTheControlsFollow)
{
    testo().setText("rosso e nero");
    select(0, 5);
    testo().setSelColor(0x0000FF);
    testo().setSelBold(true);
    auto shown = [this] {
        const FormatControls c = logic.aggText();
        return QStringList{c.font.value_or("<mixed>"), c.size, QString::number(c.textColour, 16),
                           QString::number(c.highlightColour, 16)}
            .join(" | ");
    };
    QStringList states{shown()};
    // Over a mixed selection a toggle reads as off and switches on.
    select(0, 12);
    states << shown();
    logic.Clic(37);
    logic.Clic(38);
    logic.Clic(40);
    EXPECT_EQ((std::tuple{testo().SelBold(), testo().SelItalic(), testo().SelUnderline(), testo().SelStrikeThru()}),
              (std::tuple{std::optional(true), std::optional(true), std::optional(false), std::optional(true)}));
    logic.Clic(38);
    logic.Clic(39);
    EXPECT_EQ((std::pair{testo().SelItalic(), testo().SelUnderline()}), (std::pair{std::optional(false), std::optional(true)}));
    testo().setSelHighlight(0x00FFFF);
    testo().setSelFontSize(12.5f);
    states << shown();
    EXPECT_EQ(states, (QStringList{"Tahoma | 10 | ff | ffffff", "Tahoma | 10 | -1 | ffffff",
                                   "Tahoma | 12.5 | -1 | ffff"}));
    // Each change can be taken back.
    EXPECT_GE(t.context->undo().passoTot(), 5);
}

TEST_F(FrmMainLogicTest, ChoosersSeedFromTheSelectionAndWriteBack)
{
    testo().setText("testo");
    select(0, 5);
    testo().setSelItalic(true);
    testo().setSelColor(0x00FF00);
    // Cancelled: nothing changes, nothing is said.
    logic.chooseFont();
    logic.chooseTextColour();
    const QString before = testo().TextRTF();

    FontChoice f;
    f.name = "Courier New";
    f.size = 14;
    f.bold = true;
    t.dialogs->font = f;
    t.dialogs->colour = 0x123456;
    logic.chooseFont();
    logic.chooseTextColour();
    logic.chooseBackColour();
    const FontChoice& seed = t.dialogs->fontSeeds.first();
    EXPECT_EQ((QStringList{seed.name, QString::number(seed.size), seed.italic ? "italic" : "upright",
                           QString::number(seed.colour, 16)}),
              (QStringList{"Tahoma", "10", "italic", "ff00"}));
    EXPECT_EQ(t.dialogs->colourSeeds, (QList<std::uint32_t>{0x00FF00, 0x00FF00, 0xFFFFFF}));
    EXPECT_NE(before, testo().TextRTF());
    EXPECT_EQ((std::tuple{testo().SelFontName(), testo().SelFontSize(), testo().SelBold(), testo().SelItalic(),
                          testo().SelColor(), testo().BackColor()}),
              (std::tuple{std::optional<QString>("Courier New"), std::optional(14.0f), std::optional(true),
                          std::optional(false), std::optional<Colour>(0x123456), Colour(0x123456)}));
    EXPECT_EQ(t.messages->said, (QStringList{"Colore sfondo | NB. il colore di sfondo viene visualizzato solo sullo "
                                             "schermo e non sarà stampato. | 0 | 1"}));
}

TEST_F(FrmMainLogicTest, RunningTheSelectionGoesToTheShellOrTheMailer)
{
    const QString text = "/tmp/lettera.tnl Mario.Rossi@esempio.it MAILTO:anna@esempio.it https://esempio.it";
    testo().setText(text);
    for (const auto& [start, length] : {std::pair{0, 0}, {0, 16}, {17, 22}, {40, 22}, {63, 18}}) {
        select(start, length);
        logic.eseguiSelezione();
    }
    EXPECT_EQ(shellRequests(), (QStringList{"/tmp/lettera.tnl", "mailto:Mario.Rossi@esempio.it",
                                            "MAILTO:anna@esempio.it", "https://esempio.it"}));
}

TEST_F(FrmMainLogicTest, HelpersStartOnlyWhenTheyAreThere)
{
    // Nothing installed: nothing started and nothing said.
    EXPECT_FALSE(logic.startProgram("sarbena.exe"));
    EXPECT_FALSE(logic.openGuide());
    EXPECT_FALSE(logic.startUpdater());
    logic.seedGuideKey();
    EXPECT_EQ(setting("Help", "1"), "<none>");

    // The name is found with or without ".exe", the data folder first.
    touch("bin/sarbena");
    touch("bin/about.exe");
    touch("data/about");
    touch("updater.sh");
    QDir().mkpath(t.folder.filePath("bin/help"));
    touch("bin/help/GuidaTNL.chm");
    t.context->settings().scriviReg(kApp, "Update", "1", t.folder.filePath("updater.sh"));
    logic.startProgram("sarbena.exe");
    logic.startProgram("about.exe");
    logic.seedGuideKey();
    logic.openGuide();
    logic.startUpdater();
    logic.Clic(51);
    logic.openSite();
    EXPECT_EQ(QStringList(shellRequests()).replaceInStrings(t.folder.path(), "@"),
              (QStringList{"@/bin/sarbena", "@/data/about", "@/bin/help/GuidaTNL.chm", "@/updater.sh",
                           "@/bin/help/GuidaTNL.chm", kSiteAddress}));
    EXPECT_EQ(setting("Help", "1"), t.folder.filePath("bin/help/GuidaTNL.chm"));
    EXPECT_TRUE(t.messages->said.isEmpty());
}

TEST_F(FrmMainLogicTest, ContextMenuDependsOnTheSelection)
{
    testo().setText("una parola e  basta");
    auto at = [this](long start, long length) {
        select(start, length);
        const ContextMenuState s = logic.contextMenu();
        return QString::number(int(s.menu)) + (s.selectionCommands ? "+" : "-");
    };
    QStringList plain{at(4, 6), at(4, 0), at(3, 1), at(12, 2)};
    // A picture is selected as one blank-like character.
    testo().setSelStart(testo().length());
    testo().setSelRTF("{\\rtf1\\ansi {\\pict\\wmetafile8\\picw10\\pich10 0100090000}}");
    const long end = testo().length();
    EXPECT_EQ(plain << at(end - 1, 1), (QStringList{"1+", "1-", "0-", "1+", "2-"}));
}

// The three pastes over the same clipboard: as it came, in the format of
// the place, as text alone.
TEST_F(FrmMainLogicTest, PasteKeepsOrTakesTheFormat)
{
    testo().setText("rosso|");
    select(0, 5);
    testo().setSelItalic(true);
    testo().setSelColor(0x0000FF);
    testo().Copy();
    select(5, 1);
    testo().setSelBold(true);
    testo().setSelColor(0xFF0000);
    auto run = [this](long at, long length) {
        select(at, length);
        const std::optional<bool> b = testo().SelBold(), i = testo().SelItalic();
        const std::optional<Colour> c = testo().SelColor();
        return QString("%1%2%3").arg(b ? (*b ? "B" : "b") : "?", i ? (*i ? "I" : "i") : "?",
                                     c ? QString::number(*c, 16) : "?");
    };
    // At the end the caret has the format of the bold blue bar.
    testo().setSelStart(6);
    logic.INco("1");
    const long caret = testo().SelStart();
    const QString taken = run(6, 5);
    testo().setSelStart(11);
    logic.INco("0");
    const QString kept = run(11, 5);
    select(0, 5);
    logic.copiaSoloTesto();
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    const bool rich = mime->hasFormat("text/rtf") || mime->hasFormat("application/rtf");
    testo().setSelStart(16);
    logic.INco("2");
    EXPECT_EQ(QStringList({testo().Text(), taken, QString::number(caret), kept, rich ? "rtf" : "text"})
                  .join(" ")
                  .toStdString(),
              "rosso|rossorossorosso Biff0000 11 bIff text");
}

TEST_F(FrmMainLogicTest, EditingCommandsSelectAndInsert)
{
    testo().setText("prima riga\r\nseconda riga\r\nterza");
    testo().setSelStart(16);
    logic.selectLine();
    QStringList seen{testo().SelText()};
    logic.selectAll();
    seen << QString::number(testo().SelLength());
    testo().setSelStart(0);
    logic.insertDate();
    seen << testo().Text().left(testo().SelStart());
    EXPECT_EQ(seen, (QStringList{"seconda riga", "31",
                                 QLocale::system().toString(QDate::currentDate(), QLocale::ShortFormat)}));
}

}  // namespace
}  // namespace tornelia
