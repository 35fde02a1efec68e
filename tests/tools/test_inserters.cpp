#include "text_tools_ports.h"

#include "core/rich_text_surface.h"
#include "core/undo_store.h"
#include "tools/inserters.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

using namespace tornelia;

namespace {

// Sunday 3 March 2024, 09:05:07 in the morning, and 21:45:00 in the evening.
const QDateTime kMorning(QDate(2024, 3, 3), QTime(9, 5, 7));
const QDateTime kEvening(QDate(2024, 12, 31), QTime(21, 45, 0));

TEST(DateTime, TheListInItsOrder)
{
    EXPECT_EQ(dateTimeEntries(kMorning),
              (QStringList{"03/03/24", "03 marzo 2024", "03 marzo, 2024", "marzo 03, 2024", "03/mar/24",
                           "marzo, 24", "mar/24", " ", "09:05", "09:05:07", "09:05 AM", "09:05:07 AM"}));
    EXPECT_EQ(dateTimeEntries(kEvening).mid(8),
              (QStringList{"21:45", "21:45:00", "09:45 PM", "09:45:00 PM"}));
}

TEST(DateTime, CustomFormats)
{
    struct Case {
        const char* format;
        QDateTime when;
        const char* expected;
    };
    const Case cases[] = {
        {"hh.nn.ss", kMorning, "09.05.07"},
        {"h:n:s", kMorning, "9:5:7"},
        {"d/m/yyyy", kMorning, "3/3/2024"},
        {"DD/MM/YYYY", kMorning, "03/03/2024"},
        {"dddd d mmmm", kMorning, "domenica 3 marzo"},
        {"ddd", kEvening, "mar"},
        // "m" right after an hour is minutes, elsewhere the month.
        {"hh:mm dd/mm", kEvening, "21:45 31/12"},
        {"h a/p", kEvening, "9 p"},
        {"hh A/P", kMorning, "09 A"},
        {"h am/pm", kMorning, "9 am"},
        {"y w ww q", kEvening, "366 3 53 4"},
        {"\"Oggi è\" dddd", kMorning, "Oggi è domenica"},
        {"\\d\\a\\t\\a: dd", kMorning, "data: 03"},
        {"c", kMorning, "03/03/2024 09:05:07"},
        {"", kMorning, ""},
        {"\"aperto", kMorning, "aperto"},
        {"ore \\", kMorning, "ore "},
    };
    for (const Case& c : cases)
        EXPECT_EQ(formatDateTime(c.when, QString::fromUtf8(c.format)), QString::fromUtf8(c.expected)) << c.format;
}

TEST(CyclicText, BothModesWithAndWithoutLineEnds)
{
    struct Case {
        CyclicRequest req;
        const char* expected;
    };
    const Case cases[] = {
        {{CyclicMode::SoloTesto, "Prova", "3", "x", "y", false}, "[ProvaProvaProva]"},
        {{CyclicMode::SoloTesto, "Prova", "2", {}, {}, true}, "[Prova\r\nProva\r\n]"},
        {{CyclicMode::TestoENumerazione, " voce", " 3 ", "Capitolo ", ":", true},
         "[Capitolo 1: voce\r\nCapitolo 2: voce\r\nCapitolo 3: voce\r\n]"},
        {{CyclicMode::TestoENumerazione, {}, "2", "(", ")", false}, "[(1)(2)]"},
    };
    for (const Case& c : cases) {
        RichTextSurface s;
        s.setText(QStringLiteral("[sel]"));
        s.setSelStart(1);
        s.setSelLength(3);
        tooltest::Messages messages;
        std::vector<long> steps;
        EXPECT_TRUE(testoCiclico(s, nullptr, messages, c.req, [&](long i, long n) {
            if (i == n)
                steps.push_back(n);
        }));
        EXPECT_EQ(s.Text(), QString::fromUtf8(c.expected));
        EXPECT_EQ(steps, std::vector<long>{*parseRipetizioni(c.req.ripetizioni)});
        EXPECT_TRUE(messages.said.isEmpty());
    }
}

TEST(CyclicText, InvalidCountsAreRefusedAndChangeNothing)
{
    RichTextSurface s;
    s.setText(QStringLiteral("resta"));
    UndoStore undo(s);
    tooltest::Messages messages;
    for (const char* n : {"", "zero", "0", "-4", "2.5", "32768"}) {
        CyclicRequest req{CyclicMode::SoloTesto, QStringLiteral("x"), QString::fromLatin1(n), {}, {}, false};
        EXPECT_FALSE(testoCiclico(s, &undo, messages, req));
    }
    EXPECT_EQ(s.Text(), QStringLiteral("resta"));
    EXPECT_EQ(undo.passoTot(), 0);
    EXPECT_EQ(messages.said, QStringList(6, QStringLiteral("Testo ciclico | Inserire un valore valido!")));
    EXPECT_EQ(parseRipetizioni(QStringLiteral("32767")), std::optional<long>(32767));
}

class FileInsertTest : public ::testing::Test {
protected:
    FileInsertTest()
    {
        testo.setText(QStringLiteral("AB"));
        testo.setSelStart(1);
    }
    QString write(const QString& name, const QByteArray& bytes)
    {
        const QString path = dir.filePath(name);
        QFile f(path);
        f.open(QIODevice::WriteOnly);
        f.write(bytes);
        return path;
    }
    QTemporaryDir dir;
    RichTextSurface testo;
    UndoStore undo{testo};
    tooltest::Messages messages;
    FileInserter inserter;
};

TEST_F(FileInsertTest, RtfKeepsItsFormatsBetweenSeparators)
{
    const QString path = write(QStringLiteral("a.rtf"), "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 uno \\b due\\b0\\par tre\\par}");
    EXPECT_EQ(inserter.label(), QStringLiteral("File: Nessuno"));
    ASSERT_TRUE(inserter.load(path, messages));
    EXPECT_EQ(inserter.label(), QStringLiteral("File: ") + path);
    const QString before = testo.TextRTF();
    ASSERT_TRUE(inserter.insertInto(testo, &undo, messages, true));

    const QString dashes(34, QChar(0x2014));
    EXPECT_EQ(testo.Text(), QStringLiteral("A\r\n") + dashes + QStringLiteral("\r\nuno due\r\ntre\r\n") + dashes +
                                QStringLiteral("\r\nB"));
    testo.setSelStart(QStringLiteral("A\r\n").size() + dashes.size() + 2 + 4);
    testo.setSelLength(3);
    EXPECT_EQ(testo.SelText(), QStringLiteral("due"));
    EXPECT_EQ(testo.SelBold(), std::optional<bool>(true));
    EXPECT_EQ(undo.passo(undo.passoTot()), before);
    EXPECT_TRUE(messages.said.isEmpty());
}

TEST_F(FileInsertTest, PlainTextWithoutSeparatorAndTheSameFileTwice)
{
    const QString path = write(QStringLiteral("nota.txt"), "riga {uno}\r\nperch\xc3\xa9");
    tooltest::Dialogs dialogs;
    dialogs.openPath = path;
    ASSERT_TRUE(inserter.choose(dialogs, messages));
    ASSERT_TRUE(inserter.insertInto(testo, &undo, messages, false));
    ASSERT_TRUE(inserter.insertInto(testo, &undo, messages, false));
    EXPECT_EQ(testo.Text(), QStringLiteral("Ariga {uno}\r\nperchériga {uno}\r\nperchéB"));
    EXPECT_EQ(testo.SelStart(), testo.length() - 1);
}

TEST_F(FileInsertTest, MissingFilesAndCancelLoseNothing)
{
    const QString good = write(QStringLiteral("ok.txt"), "bene");
    ASSERT_TRUE(inserter.load(good, messages));
    const QString missing = dir.filePath(QStringLiteral("manca.rtf"));
    EXPECT_FALSE(inserter.load(missing, messages));
    EXPECT_FALSE(inserter.load(dir.path(), messages));
    tooltest::Dialogs cancel;
    EXPECT_FALSE(inserter.choose(cancel, messages));
    EXPECT_EQ(inserter.path(), good);

    FileInserter none;
    EXPECT_FALSE(none.insertInto(testo, &undo, messages, true));
    EXPECT_EQ(testo.Text(), QStringLiteral("AB"));
    EXPECT_EQ(undo.passoTot(), 0);
    EXPECT_EQ(messages.said,
              (QStringList{QStringLiteral("Inserisci file | Il file \"%1\" non esiste!").arg(missing),
                           QStringLiteral("Inserisci file | Il file \"%1\" non esiste!").arg(dir.path()),
                           QStringLiteral("Inserisci file | Selezionare prima un file da inserire!")}));
}

TEST_F(FileInsertTest, MalformedRtfInsertsWhatCanBeRead)
{
    const QString path = write(QStringLiteral("rotto.rtf"), "{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}\\f0 {{{ testo \\'");
    ASSERT_TRUE(inserter.load(path, messages));
    ASSERT_TRUE(inserter.insertInto(testo, &undo, messages, false));
    EXPECT_TRUE(testo.Text().startsWith(QLatin1Char('A')));
    EXPECT_TRUE(testo.Text().endsWith(QLatin1Char('B')));
}

TEST(SpecialCharacters, GridReadOutAndInsertion)
{
    EXPECT_EQ(gridCharacter(65, false), QStringLiteral("A"));
    EXPECT_EQ(gridCharacter(128, false), QStringLiteral("€"));
    EXPECT_EQ(gridCharacter(233, false), QStringLiteral("é"));
    EXPECT_EQ(gridCharacter(74, true), QString(QChar(0xF04A)));
    EXPECT_EQ(gridCharacter(127, false), QString());
    EXPECT_EQ(gridCharacter(0x81, false), QString());
    EXPECT_EQ(gridCharacter(0x9F, false), QStringLiteral("Ÿ"));
    const QStringList readouts{asciiReadout(QLatin1Char('A')), asciiReadout(QChar(0x20AC)), asciiReadout(QChar(0xE9)),
                               asciiReadout(QChar(0xF04A))};
    EXPECT_EQ(readouts, (QStringList{"Ascii= ALT + 065", "Ascii= ALT + 0128", "Ascii= ALT + 0233",
                                     "Ascii= ALT + 074"}));

    RichTextSurface s;
    s.setText(QStringLiteral("xy"));
    s.setSelStart(1);
    insertCharacters(s, QStringLiteral("Courier New"), QStringLiteral("€©"));
    EXPECT_EQ(s.Text(), QStringLiteral("x€©y"));
    s.setSelStart(1);
    s.setSelLength(2);
    EXPECT_EQ(s.SelFontName(), std::optional<QString>(QStringLiteral("Courier New")));
    insertCharacters(s, QStringLiteral("Arial"), QString());
    EXPECT_EQ(s.Text(), QStringLiteral("x€©y"));

    // Signs of a symbol font keep the font's bytes and its character set.
    s.setSelStart(4);
    insertCharacters(s, QStringLiteral("Wingdings"), gridCharacter(74, true) + gridCharacter(232, true), true);
    EXPECT_EQ(s.Text(), QStringLiteral("x€©y") + QChar(0xF04A) + QChar(0xF0E8));
    const QString rtf = s.TextRTF();
    EXPECT_TRUE(rtf.contains(QStringLiteral("\\fcharset2 Wingdings;"))) << rtf.toStdString();
    EXPECT_TRUE(rtf.contains(QStringLiteral("J\\'e8\\par"))) << rtf.toStdString();
}

TEST(FontViewer, LookGoesToTheSelection)
{
    RichTextSurface s;
    s.setText(QStringLiteral("una prova"));
    s.setSelStart(4);
    s.setSelLength(5);
    const FontLook look{QStringLiteral("Times New Roman"), 14, true, false, true, 0x0000FF};
    applyFontLook(s, look);
    const FontLook read{*s.SelFontName(), *s.SelFontSize(), *s.SelBold(), *s.SelItalic(), *s.SelUnderline(),
                        *s.SelColor()};
    EXPECT_EQ(read, look);
    s.setSelStart(0);
    s.setSelLength(3);
    EXPECT_EQ(s.SelBold(), std::optional<bool>(false));
}

}  // namespace
