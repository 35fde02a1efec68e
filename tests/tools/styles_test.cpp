#include "text_tools_ports.h"
#include "tools/styles.h"

#include "core/settings.h"
#include "core/undo_store.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

using namespace tornelia;

namespace {

QByteArray readBytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

void writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

QString records(const QList<StyleRecord>& rs)
{
    QStringList out;
    for (const StyleRecord& r : rs)
        out << QStringList{r.name, r.font, r.size, r.bold, r.italic, r.underline}.join(u'/');
    return out.join(u'|');
}

TEST(StiFormat, RecordsAreSixLinesOfWindows1252AndReadBackAsWritten)
{
    const QList<StyleRecord> rs = {
        {"Titolo è", "Times New Roman", "16", "1", "0", "1"},
        {"", "Arial", "10", "", "", ""},
        {"Nota €", "Courier New", "8", "0", "1", "0"},
    };
    const QByteArray bytes = writeSti(rs);
    EXPECT_EQ(bytes, QByteArray("Titolo \xe8\r\nTimes New Roman\r\n16\r\n1\r\n0\r\n1\r\n"
                                "\r\nArial\r\n10\r\n\r\n\r\n\r\n"
                                "Nota \x80\r\nCourier New\r\n8\r\n0\r\n1\r\n0\r\n"));
    const StiReadResult back = parseSti(bytes);
    EXPECT_EQ(back.records, rs);
    EXPECT_FALSE(back.overflow);
    EXPECT_EQ(writeSti(back.records), bytes);
}

TEST(StiFormat, MalformedFilesKeepWhatCanBeRead)
{
    struct Case {
        QByteArray bytes;
        QString read;
    };
    const Case cases[] = {
        {"", ""},
        // A short last record: the fields that are missing are empty.
        {"A\r\nArial\r\n12\r\n1\r\n0\r\n0\r\nB\r\nTahoma\r\n", "A/Arial/12/1/0/0|B/Tahoma////"},
        // No line end after the last field.
        {"A\r\nArial\r\n12\r\n1\r\n0\r\n0", "A/Arial/12/1/0/0"},
        // Lone LF or CR end lines too; an empty line is an empty field.
        {"A\nArial\n12\n\n1\n0\nB\rX\r4\r1\r1\r1\r", "A/Arial/12//1/0|B/X/4/1/1/1"},
        // Text that is no number stays as it is: it is set, or skipped, when applied.
        {"Z\r\n\r\ngrande\r\nsi\r\n\r\n\r\n", "Z//grande/si//"},
    };
    for (const Case& c : cases) {
        const StiReadResult r = parseSti(c.bytes);
        EXPECT_EQ(records(r.records), c.read) << c.bytes.toStdString();
        EXPECT_FALSE(r.overflow);
    }

    QByteArray many;
    for (int i = 0; i < 203; ++i)
        many += "S" + QByteArray::number(i) + "\r\nArial\r\n10\r\n0\r\n0\r\n0\r\n";
    const StiReadResult r = parseSti(many);
    EXPECT_TRUE(r.overflow);
    ASSERT_EQ(r.records.size(), 201);
    EXPECT_EQ(r.records.last().name, "S200");
}

class StyleStoreTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    SettingsStore settings{dir.filePath("settings")};
    RichTextSurface s;
    UndoStore undo{s};
    tooltest::Messages messages;
    tooltest::Dialogs dialogs;
    StyleStore store{s, settings, messages, dialogs, &undo};

    QString path(const QString& name) const { return dir.filePath(name); }
    // The character formats of each character of the document.
    QString formats()
    {
        QStringList out;
        for (long i = 0; i < s.length(); ++i) {
            s.setSelStart(i);
            s.setSelLength(1);
            out << QStringLiteral("%1 %2 %3%4%5").arg(*s.SelFontName()).arg(*s.SelFontSize())
                       .arg(*s.SelBold() ? "B" : "-").arg(*s.SelItalic() ? "I" : "-").arg(*s.SelUnderline() ? "U" : "-");
        }
        out.removeDuplicates();
        return out.join(u'|');
    }
    void selectAll()
    {
        s.setSelStart(0);
        s.setSelLength(s.length());
    }
};

TEST_F(StyleStoreTest, OpeningAFileFillsTheListTheComboAndTheSetting)
{
    writeBytes(path("a.sti"), "Corpo\r\nArial\r\n12\r\n0\r\n0\r\n0\r\n"
                              "\r\nCourier New\r\n8\r\n1\r\n1\r\n1\r\n"
                              "Enfasi\r\nArial\r\n14\r\n1\r\n\r\n\r\n");
    dialogs.openPath = path("a.sti");
    store.bU(2);
    EXPECT_EQ(dialogs.filters, QStringList{"File stile (*.sti)"});
    // The empty entry at the end waits for a new style.
    EXPECT_EQ(store.list1(), (QStringList{"Corpo", "", "Enfasi", ""}));
    EXPECT_EQ(store.newCount(), 3);
    EXPECT_EQ(store.comboNames(),
              (QStringList{"(normale)", "(titolo 1)", "(titolo 2)", "(titolo 3)", "Corpo", "Enfasi"}));
    EXPECT_EQ(settings.leggiReg({}, "Stili", "1"), path("a.sti"));
    EXPECT_FALSE(store.fileDirty());
    EXPECT_EQ(messages.take(), QStringList{});

    // Selecting fills the controls; an empty flag leaves its check box.
    store.select(1);
    store.select(2);
    const StyleControls c = store.controls;
    EXPECT_EQ(QStringList({c.name, c.font, c.size, QString::number(c.bold), QString::number(c.italic),
                           QString::number(c.underline)}),
              (QStringList{"Enfasi", "Arial", "14", "1", "1", "1"}));

    // At the next start the window opens the same file, with no question.
    StyleStore again{s, settings, messages, dialogs, &undo};
    again.load();
    EXPECT_EQ(again.list1(), store.list1());
    EXPECT_EQ(messages.take(), QStringList{});
}

TEST_F(StyleStoreTest, ApplyingSetsOnlyTheFieldsThatAreThereAndTheLastNameWins)
{
    writeBytes(path("b.sti"), "Doppio\r\nArial\r\n12\r\n0\r\n0\r\n0\r\n"
                              "Vuoto\r\n\r\n\r\n\r\n\r\n\r\n"
                              "Doppio\r\nCourier New\r\n20\r\n1\r\n\r\n1\r\n");
    store.openFile(path("b.sti"));
    s.setText("abc");
    selectAll();
    s.setSelItalic(true);
    store.appliC("Doppio", true);
    EXPECT_EQ(formats(), "Courier New 20 BIU");
    EXPECT_EQ(store.selected(), 2);

    selectAll();
    store.appliC("Vuoto", true);
    EXPECT_EQ(formats(), "Courier New 20 BIU");
    // A name not in the table leaves the entry selected as it was.
    selectAll();
    store.appliC("Nessuno", false);
    EXPECT_EQ(store.selected(), 1);

    // Built-in styles come from the base font of the settings.
    settings.scriviReg({}, "Font", "1", "Arial");
    settings.scriviReg({}, "Font", "2", "12");
    struct Case {
        QString name, result;
    };
    const Case cases[] = {
        {"(titolo 1)", "Arial 16 B--"},
        {"(titolo 2)", "Arial 16 BI-"},
        {"(titolo 3)", "Arial 14 B--"},
        // A bracketed name that is no built-in style does nothing.
        {"(sconosciuto)", "Arial 14 B-U"},
    };
    for (const Case& c : cases) {
        selectAll();
        s.setSelUnderline(true);
        store.appliC(c.name, true);
        EXPECT_EQ(formats(), c.result) << c.name.toStdString();
    }
    // "(normale)" leaves the underline as it is.
    selectAll();
    store.appliC("(normale)", true);
    EXPECT_EQ(formats(), "Arial 12 --U");
    undo.UnDoo();
    EXPECT_EQ(formats(), "Arial 14 B-U");
}

TEST_F(StyleStoreTest, StoredStylesAreSavedAndUnsavedTablesAreAskedAbout)
{
    store.load();
    EXPECT_EQ(store.list1(), QStringList{""});
    store.controls = {"Titolo", "Times New Roman", "18", 1, 0, 1};
    store.bU(4);
    store.controls = {"Nota", "Arial", "8", 0, 1, 0};
    store.bU(4);
    EXPECT_EQ(store.list1(), (QStringList{"Titolo", "Nota", ""}));
    EXPECT_TRUE(store.fileDirty());

    // "no" keeps the table and the window.
    messages.answers = {"no", "no", "no"};
    store.bU(1);
    dialogs.openPath = path("none.sti");
    store.bU(2);
    EXPECT_FALSE(store.queryClose());
    EXPECT_EQ(messages.take(), (QStringList{"Stili | Il file non è stato salvato! Cancellare comunque?",
                                            "Stili | Il file non è stato salvato! Aprire comunque?",
                                            "Stili | Il file non è stato salvato! Uscire comunque?"}));
    EXPECT_EQ(store.list1(), (QStringList{"Titolo", "Nota", ""}));

    // A cancelled save changes nothing.
    store.bU(3);
    EXPECT_TRUE(store.fileDirty());
    dialogs.savePath = path("c.sti");
    store.bU(3);
    EXPECT_EQ(readBytes(path("c.sti")), QByteArray("Titolo\r\nTimes New Roman\r\n18\r\n1\r\n0\r\n1\r\n"
                                                   "Nota\r\nArial\r\n8\r\n0\r\n1\r\n0\r\n"));
    EXPECT_FALSE(store.fileDirty());
    EXPECT_TRUE(store.queryClose());
    EXPECT_EQ(store.list1(), (QStringList{"Titolo", "Nota", ""}));

    // Editing a stored style, saving again: the same file with the change.
    store.select(0);
    store.controls.size = "20";
    store.bU(4);
    dialogs.savePath = path("d.sti");
    store.bU(3);
    EXPECT_EQ(dialogs.suggestedName, path("c.sti"));
    EXPECT_EQ(readBytes(path("d.sti")), QByteArray("Titolo\r\nTimes New Roman\r\n20\r\n1\r\n0\r\n1\r\n"
                                                   "Nota\r\nArial\r\n8\r\n0\r\n1\r\n0\r\n"));

    // A new table empties everything but the one new entry.
    store.bU(1);
    EXPECT_EQ(store.list1(), QStringList{""});
    EXPECT_EQ(store.styleName[1], "");
    EXPECT_EQ(messages.take(), QStringList{});
}

TEST_F(StyleStoreTest, TheTableHoldsTwoHundredAndOneStyles)
{
    for (int i = 0; i < kStyleSlots; ++i)
        ASSERT_TRUE(store.Novo());
    EXPECT_FALSE(store.Novo());
    EXPECT_EQ(store.list1().size(), kStyleSlots);
    EXPECT_EQ(messages.take(),
              QStringList{"Stili | La tabella degli stili è piena: non si possono avere più di 201 stili."});

    QByteArray many;
    for (int i = 0; i < 202; ++i)
        many += "S" + QByteArray::number(i) + "\r\nArial\r\n10\r\n0\r\n0\r\n0\r\n";
    writeBytes(path("many.sti"), many);
    dialogs.openPath = path("many.sti");
    store.bU(2);
    EXPECT_EQ(store.list1().size(), kStyleSlots);
    EXPECT_EQ(store.list1().last(), "S200");
    EXPECT_EQ(messages.take(),
              (QStringList{"Stili | Il file ha più di 201 stili: sono stati letti solo i primi 201.",
                           "Stili | La tabella degli stili è piena: non si possono avere più di 201 stili."}));

    // A file that cannot be read is told, and leaves an empty table.
    dialogs.openPath = path("assente.sti");
    store.bU(2);
    ASSERT_EQ(messages.said.size(), 1);
    EXPECT_TRUE(messages.said[0].startsWith("Stili | Impossibile aprire il file " + path("assente.sti")));
    EXPECT_EQ(store.list1(), QStringList{""});
}

}  // namespace
