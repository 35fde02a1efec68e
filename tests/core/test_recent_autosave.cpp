// The recent list over the settings, and the autosave, exit save and
// recovery listing over a temporary data folder.
#include "core/autosave.h"
#include "core/document.h"
#include "core/recent_files.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using namespace tornelia;

namespace {

const QString kApp = QStringLiteral("Tornelia");

// The person answers from a script; the system does nothing.
struct Quiet : MessagePort, DialogPort, ShellPort, FramePort {
    QStringList answers, shown;
    QString mostraMsg(const QString& title, const QString& text, int buttons, int) override
    {
        shown << title + " | " + text + " | " + QString::number(buttons);
        return !answers.isEmpty() ? answers.takeFirst() : buttons == 0 ? "ok" : "an";
    }
    QString inputBox(const QString&, const QString&) override { return {}; }
    std::optional<QString> openFile(const QString&, const QStringList&) override { return {}; }
    std::optional<QString> saveFile(const QString&, const QStringList&, const QString&) override { return {}; }
    std::optional<QString> chooseFolder(const QString&) override { return {}; }
    std::optional<FontChoice> chooseFont(const FontChoice&) override { return {}; }
    std::optional<std::uint32_t> chooseColour(std::uint32_t) override { return {}; }
    bool openDocument(const QString&) override { return true; }
    bool startDetached(const QString&, const QStringList&) override { return true; }
    void showProperties(const QString&) override {}
    void setCaption(const QString&) override {}
    void setStatusPanel(int, const QString&) override {}
    void showProgress(const QString&, int) override {}
    void hideProgress() override {}
    void processEvents() override {}
};

QString keys(const SettingsStore& s)
{
    QStringList all;
    for (int i = 0; i < RecentFiles::kSlots; ++i)
        all << s.leggiReg(kApp, "FileRecenti", QString::number(i));
    return all.join(" | ");
}

QString menu(const RecentFiles& r)
{
    QStringList all;
    for (int i = 0; i < RecentFiles::kSlots; ++i)
        all << (r.itemVisible(i) ? r.captions()[i] : QStringLiteral("-"));
    return (r.separatorVisible() ? QStringLiteral("sep ") : QStringLiteral("nosep ")) + all.join(" | ");
}

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

}  // namespace

TEST(RecentFilesTest, NewestFirstFiveKeptAndReopenedKeepTheirPlace)
{
    QTemporaryDir dir;
    SettingsStore s(dir.path());
    RecentFiles r(s);
    int changes = 0;
    r.onChanged = [&] { ++changes; };
    r.caricaRecenti();
    EXPECT_EQ(menu(r), "nosep - | - | - | - | -");

    for (const char* p : {"/d/1.tnl", "/d/2.rtf", "/d/3.txt", "/d/4.tnl", "/d/5.tnl", "/d/6.tnl"})
        r.aggiungiRecente(p);
    EXPECT_EQ(keys(s), "/d/6.tnl | /d/5.tnl | /d/4.tnl | /d/3.txt | /d/2.rtf");
    EXPECT_EQ(menu(r), "sep /d/6.tnl | /d/5.tnl | /d/4.tnl | /d/3.txt | /d/2.rtf");

    // Opened again: no move to the top, nothing written, no menu refresh.
    const QByteArray before = readAll(s.filePath(kApp));
    const int changesBefore = changes;
    r.aggiungiRecente("/d/4.tnl");
    EXPECT_EQ(readAll(s.filePath(kApp)), before);
    EXPECT_EQ(changes, changesBefore);

    // Case counts: another file for the list.
    r.aggiungiRecente("/d/4.TNL");
    EXPECT_EQ(keys(s), "/d/4.TNL | /d/6.tnl | /d/5.tnl | /d/4.tnl | /d/3.txt");

    r.svuota();
    EXPECT_EQ(keys(s), " |  |  |  | ");
    EXPECT_EQ(s.leggiReg(kApp, "FileRecenti", "Descrizione"), "EFR");
    EXPECT_EQ(menu(r), "nosep - | - | - | - | -");
    EXPECT_TRUE(recentRows(s).isEmpty());
}

TEST(RecentFilesTest, AFreeSlotStaysWhereItIs)
{
    QTemporaryDir dir;
    SettingsStore s(dir.path());
    s.scriviReg(kApp, "FileRecenti", "0", "/d/a.rtf");
    s.scriviReg(kApp, "FileRecenti", "2", "/d/c.rtf");
    RecentFiles r(s);
    r.caricaRecenti();
    EXPECT_EQ(menu(r), "sep /d/a.rtf | - | /d/c.rtf | - | -");
    r.aggiungiRecente("/d/n.rtf");
    EXPECT_EQ(keys(s), "/d/n.rtf | /d/a.rtf |  | /d/c.rtf | ");
    EXPECT_EQ(menu(r), "sep /d/n.rtf | /d/a.rtf | - | /d/c.rtf | -");
    // Nothing to add: an empty path is no document.
    r.aggiungiRecente({});
    EXPECT_EQ(keys(s), "/d/n.rtf | /d/a.rtf |  | /d/c.rtf | ");
}

TEST(RecentFilesTest, DocumentsOpenedGoOnTheList)
{
    QTemporaryDir dir;
    SettingsStore s(dir.filePath("settings"));
    RichTextSurface testo;
    Quiet q;
    Document doc(testo, s, q, q, q, q);
    RecentFiles r(s);
    r.attach(doc);
    QStringList paths;
    for (const char* name : {"uno.txt", "due.rtf"}) {
        paths << dir.filePath(name);
        QFile f(paths.last());
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write("testo");
    }
    doc.Aprii(paths[0]);
    doc.Aprii(paths[1]);
    doc.RecENt(paths[0]);
    EXPECT_EQ(keys(s), paths[1] + " | " + paths[0] + " |  |  | ");
    EXPECT_EQ(doc.nomeFile, paths[0]);
}

TEST(RecentFilesTest, StartPanelRowsNameAndIconEachFile)
{
    QTemporaryDir dir;
    SettingsStore s(dir.path());
    const char* paths[] = {"/home/u/Lettera.TXT", "", "c:\\doc\\vecchio.tnl", "/w/pagina.html",
                           "/w/dati"};
    for (int i = 0; i < 5; ++i)
        s.scriviReg(kApp, "FileRecenti", QString::number(i), paths[i]);
    const QList<RecentRow> expected = {
        {"Lettera.TXT", "/home/u/Lettera.TXT", FileIcon::Text},
        {"vecchio.tnl", "c:\\doc\\vecchio.tnl", FileIcon::Tornelia},
        {"pagina.html", "/w/pagina.html", FileIcon::Html},
        {"dati", "/w/dati", FileIcon::Other},
    };
    EXPECT_EQ(recentRows(s), expected);
    EXPECT_EQ(iconForPath("x.htm"), FileIcon::Html);
    EXPECT_EQ(iconForPath("x.Dat"), FileIcon::Data);
    EXPECT_EQ(iconForPath("x.rtf"), FileIcon::Rtf);
}

// --- autosave -------------------------------------------------------------------

struct AutoSaveTest : ::testing::Test {
    QTemporaryDir dir;
    SettingsStore settings{dir.filePath("settings")};
    RichTextSurface testo;
    Quiet q;
    Document doc{testo, settings, q, q, q, q};
    AutoSave save{doc, settings, q, dir.filePath("data")};

    QString temp(const QString& name) const { return QDir(save.tempFolder()).filePath(name); }
    void ticks(int n)
    {
        for (int i = 0; i < n; ++i)
            save.tick();
    }
    void changed(const QString& text)
    {
        testo.setText(text);
        doc.lenSalvata = 0;
    }
};

TEST_F(AutoSaveTest, IntervalFromTheSettings)
{
    for (const auto& [value, minutes] : std::vector<std::pair<QString, int>>{
             {"", 0}, {"0", 0}, {"tre", 0}, {"-4", 0}, {"5", 5}}) {
        settings.scriviReg(kApp, "Salva", "0", value);
        save.caricaIntervallo();
        EXPECT_EQ(save.minuti(), minutes) << value.toStdString();
        EXPECT_EQ(save.TimAuTO().isActive(), minutes != 0) << value.toStdString();
    }
    EXPECT_EQ(save.TimAuTO().interval(), 1000);
}

TEST_F(AutoSaveTest, SavesANamelessDocumentAtTheLimitAndStaysChanged)
{
    settings.scriviReg(kApp, "Salva", "0", "1");
    save.caricaIntervallo();
    changed("primo");
    ticks(59);
    EXPECT_FALSE(QFile::exists(temp("documento 1.rtf")));
    ticks(1);
    EXPECT_TRUE(readAll(temp("documento 1.rtf")).startsWith("{\\rtf1"));
    EXPECT_TRUE(readAll(temp("documento 1.rtf")).contains("primo"));
    EXPECT_EQ(save.contatore(), 0);
    EXPECT_TRUE(doc.fileCambiato());

    // The next round saves again.
    changed("secondo");
    ticks(60);
    EXPECT_TRUE(readAll(temp("documento 1.rtf")).contains("secondo"));
}

// A document unchanged at the limit, or the button up then, does not end
// autosave: the count starts again and the next limit saves the change.
TEST_F(AutoSaveTest, AMissedLimitStartsTheCountAgain)
{
    settings.scriviReg(kApp, "Salva", "0", "1");
    save.caricaIntervallo();
    testo.setText("fermo");
    doc.segnaSalvato();  // unchanged at the limit
    ticks(60);
    EXPECT_EQ(save.contatore(), 0);
    EXPECT_FALSE(QFile::exists(temp("documento 1.rtf")));
    changed("cambiato dopo");
    ticks(59);
    EXPECT_FALSE(QFile::exists(temp("documento 1.rtf")));
    ticks(1);
    EXPECT_TRUE(readAll(temp("documento 1.rtf")).contains("cambiato dopo"));

    QFile::remove(temp("documento 1.rtf"));
    save.caricaIntervallo();
    save.setAttivo(false);
    changed("con il pulsante su");
    ticks(60);
    EXPECT_FALSE(QFile::exists(temp("documento 1.rtf")));
    save.setAttivo(true);
    ticks(60);
    EXPECT_TRUE(readAll(temp("documento 1.rtf")).contains("con il pulsante su"));
}

TEST_F(AutoSaveTest, ADocumentWithAFileIsSavedOverItByItsExtension)
{
    settings.scriviReg(kApp, "Salva", "0", "2");
    save.caricaIntervallo();
    for (const auto& [name, rtf] : std::vector<std::pair<QString, bool>>{
             {"lettera.RTF", true}, {"lettera.tnl", true}, {"note.txt", false}}) {
        const QString path = dir.filePath(name);
        changed("Testo di " + name);
        testo.recordFileName(path);
        doc.nomeFile = path;
        ticks(120);
        const QByteArray written = readAll(path);
        // A .tnl keeps its formats, as in a real save.
        EXPECT_EQ(written.startsWith("{\\rtf1"), rtf) << name.toStdString();
        EXPECT_TRUE(written.contains(("Testo di " + name).toUtf8())) << name.toStdString();
    }
    EXPECT_FALSE(QFile::exists(temp("documento 1.rtf")));
}

TEST_F(AutoSaveTest, ExitSaveNamesAndConditions)
{
    const QDateTime at(QDate(2026, 3, 7), QTime(9, 5, 40));
    EXPECT_EQ(AutoSave::nomeUscita(at), "Doc 07 mar 2026 - 09.05.tnl");

    // Off unless the key is exactly 1; and never for an empty document.
    testo.setText("da salvare");
    for (const QString value : {"", "0", "True"}) {
        settings.scriviReg(kApp, "Salva", "1", value);
        EXPECT_EQ(save.salvaUscita(at), "") << value.toStdString();
    }
    settings.scriviReg(kApp, "Salva", "1", "1");
    testo.setText({});
    EXPECT_EQ(save.salvaUscita(at), "");
    EXPECT_EQ(QDir(save.tempFolder()).entryList(QDir::Files), QStringList());

    // Two new documents in the same minute: the later one is what stays.
    testo.setText("uno");
    EXPECT_EQ(save.salvaUscita(at), temp("Doc 07 mar 2026 - 09.05.tnl"));
    testo.setText("due");
    EXPECT_EQ(save.salvaUscita(at.addSecs(10)), temp("Doc 07 mar 2026 - 09.05.tnl"));
    EXPECT_TRUE(readAll(temp("Doc 07 mar 2026 - 09.05.tnl")).contains("due"));

    // A document with a file keeps its file part, written as RTF.
    doc.nomeFile = dir.filePath("relazione.txt");
    EXPECT_EQ(save.salvaUscita(at), temp("relazione.txt"));
    EXPECT_TRUE(readAll(temp("relazione.txt")).startsWith("{\\rtf1"));
    EXPECT_EQ(QDir(save.tempFolder()).entryList(QDir::Files),
              QStringList({"Doc 07 mar 2026 - 09.05.tnl", "relazione.txt"}));
}

TEST_F(AutoSaveTest, RecoveryListingFootAndDeletion)
{
    const QString folder = save.tempFolder();
    RecoveryListing none = listRecovery(folder);
    EXPECT_EQ(none.message(), "La cartella Temp non esiste");
    EXPECT_EQ(none.foot(), "Totale 0 files. Spazio occupato 0 bytes");

    QDir().mkpath(folder);
    EXPECT_EQ(listRecovery(folder).message(), "La cartella Temp è vuota");

    for (const auto& [name, size] : std::vector<std::pair<QString, int>>{{"b.tnl", 1000}, {"a.rtf", 234}}) {
        QFile f(temp(name));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(size, 'x'));
    }
    const RecoveryListing two = listRecovery(folder);
    EXPECT_EQ(two.message(), "");
    EXPECT_EQ(two.foot(), "Totale 2 files. Spazio occupato 1.234 bytes");
    ASSERT_EQ(two.files.size(), 2);
    EXPECT_EQ(QStringList({two.files[0].name, two.files[1].name}), QStringList({"a.rtf", "b.tnl"}));
    EXPECT_EQ(two.files[0].bytes, 234);
    EXPECT_TRUE(two.files[0].modified.isValid() && two.files[0].created.isValid());

    // "No" keeps them; "si" deletes what was listed.
    q.answers = {"no", "si"};
    EXPECT_FALSE(eliminaRecupero(two, q));
    EXPECT_EQ(listRecovery(folder).files.size(), 2);
    EXPECT_TRUE(eliminaRecupero(two, q));
    EXPECT_EQ(listRecovery(folder).message(), "La cartella Temp è vuota");
    EXPECT_EQ(q.shown.first(), "Conferma eliminazione | Sei sicuro di voler eliminare 2 files temporanei? I files "
                               "saranno irrecuperabili. Continuare? | 2");
    EXPECT_EQ(recoveryDate(QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5))), "02/01/26 03.04.05");
}
