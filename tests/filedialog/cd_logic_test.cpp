// The file dialog's rules on real folders: the list's texts, the checks on
// the typed name, the settings it keeps, and the resource bar's entries.

#include "core/settings.h"
#include "filedialog/cd_logic.h"
#include "filedialog/tb_logic.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <sys/stat.h>
#include <unistd.h>

#include <string>
#include <vector>

using namespace tornelia;

namespace {

using Lines = std::vector<std::string>;

std::string str(const QString& s)
{
    return s.toStdString();
}

class Messages final : public MessagePort {
public:
    QString mostraMsg(const QString& title, const QString& text, int buttons, int) override
    {
        shown.push_back(str(title + " | " + text + " | " + QString::number(buttons)));
        return answers.isEmpty() ? (buttons == 0 ? "ok" : "no") : answers.takeFirst();
    }
    QString inputBox(const QString&, const QString&) override { return {}; }
    Lines shown;
    QStringList answers;
};

class CdLogicTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(dir.isValid());
        ASSERT_TRUE(config.isValid());
        QDir(dir.path()).mkdir("Archivio");
        QDir(dir.path()).mkdir(".cache");
        write("lettera.rtf", 2000);
        write("nota.TXT", 10);
        write("vuoto.tnl", 0);
        write("foto.png", 5000);
        write("LEGGIMI", 3);
        write(".nascosto.rtf", 1);
        ASSERT_EQ(::mkfifo(path("tubo.txt").toLocal8Bit().constData(), 0600), 0);
        ASSERT_EQ(::symlink("/nessuna/parte", path("rotto.rtf").toLocal8Bit().constData()), 0);
    }

    QString path(const QString& name) const { return dir.path() + "/" + name; }
    void write(const QString& name, int size)
    {
        QFile f(path(name));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(QByteArray(size, 'x'));
    }

    CdLogic logic(FileChoice choice, int filter = -1)
    {
        CdRequest r = requestFor(choice, settings);
        if (filter >= 0)
            r.filterIndex = filter;
        CdLogic l(r, settings, messages);
        l.setFolder(dir.path());
        return l;
    }

    static Lines rows(const std::vector<CdEntry>& entries)
    {
        Lines out;
        for (const CdEntry& e : entries)
            out.push_back(str(e.nameText + " | " + e.sizeText + " | " + e.typeText));
        return out;
    }

    QString dialOp() const
    {
        QStringList v;
        for (const char* key : {"3", "4", "5"})
            v << settings.leggiReg("", "DialOp", key, "-");
        return v.join(' ');
    }

    QTemporaryDir dir;
    QTemporaryDir config;
    SettingsStore settings{config.path()};
    Messages messages;
};

TEST(CdFormats, SizesReadInItalian)
{
    const std::vector<std::pair<qint64, std::string>> dimeCases{
        {0, "0 Kb"},          {1, "1 Kb"},           {1023, "1 Kb"},
        {1024, "1 Kb"},       {1535, "1 Kb"},        {1536, "2 Kb"},
        {1500000, "1.465 Kb"}, {10737418240LL, "10.485.760 Kb"},
    };
    for (const auto& [size, text] : dimeCases)
        EXPECT_EQ(str(dime(size)), text) << size;

    const std::vector<std::pair<qint64, std::string>> fsyzeCases{
        {0, "0 Bytes"},
        {1023, "1023 Bytes"},
        {1024, "1 Kb"},
        {1100, "1,07 Kb"},
        {1536, "1,5 Kb"},
        {1048576, "1.024 Kb"},
        {1048577, "1 Mb"},
        {123456789, "117,74 Mb"},
        {1073741824, "1.024 Mb"},
        {2415919104LL, "2,25 Gb"},
        {5497558138880LL, "5.120 Gb"},
    };
    for (const auto& [size, text] : fsyzeCases)
        EXPECT_EQ(str(fsyze(size)), text) << size;
}

TEST(CdFormats, IconGroupsByExtension)
{
    const std::vector<std::pair<const char*, IcoGroup>> cases{
        {"lettera.rtf", IcoGroup::Documento},   {"LETTERA.TNL", IcoGroup::Documento},
        {"diario.log", IcoGroup::Documento},    {"dati.dat", IcoGroup::Documento},
        {"a.jpeg", IcoGroup::Immagine},         {"b.TIFF", IcoGroup::Immagine},
        {"c.rle", IcoGroup::Immagine},          {"setup.exe", IcoGroup::Programma},
        {"run.pif", IcoGroup::Programma},       {"pagina.htm", IcoGroup::PaginaWeb},
        {"k.vxd", IcoGroup::FileSistema},       {"x.ocx", IcoGroup::FileSistema},
        {"config.ini", IcoGroup::Impostazioni}, {"setup.inf", IcoGroup::Impostazioni},
        {"canzone.MID", IcoGroup::Suono},       {"film.mpeg", IcoGroup::Suono},
        {"conti.xla", IcoGroup::FoglioCalcolo}, {"pacco.cab", IcoGroup::Archivio},
        {"pacco.tar.gz", IcoGroup::Altro},      {".bashrc", IcoGroup::Altro},
        {"LEGGIMI", IcoGroup::Altro},           {"punto.", IcoGroup::Altro},
    };
    for (const auto& [name, group] : cases)
        EXPECT_EQ(int(Ico(name)), int(group)) << name;
}

TEST_F(CdLogicTest, ListsFoldersFirstAndFilesByTheFilter)
{
    CdLogic texts = logic(FileChoice::OpenDocument);
    EXPECT_EQ(str(texts.filterLabels().value(texts.filterIndex())), "Tutti i file di testo (*.tnl, *.rtf, *.txt)");
    EXPECT_EQ(rows(texts.list()), (Lines{
                                      "<..> |  | Cartella di file",
                                      "<Archivio> |  | Cartella di file",
                                      "lettera.rtf | 2 Kb | File RTF",
                                      "nota.TXT | 1 Kb | File TXT",
                                      "vuoto.tnl | 0 Kb | File TNL",
                                  }));

    // Hidden names start with a point; special files are pipes, devices and
    // links that lead nowhere, and they too pass through the filter.
    texts.setFileNascosti(true);
    texts.setFileSistema(true);
    EXPECT_EQ(rows(texts.list()), (Lines{
                                      "<..> |  | Cartella di file",
                                      "<.cache> |  | Cartella di file",
                                      "<Archivio> |  | Cartella di file",
                                      ".nascosto.rtf | 1 Kb | File RTF",
                                      "lettera.rtf | 2 Kb | File RTF",
                                      "nota.TXT | 1 Kb | File TXT",
                                      "rotto.rtf | 0 Kb | File RTF",
                                      "tubo.txt | 0 Kb | File TXT",
                                      "vuoto.tnl | 0 Kb | File TNL",
                                  }));
    texts.setFileNascosti(false);
    texts.setFileSistema(false);

    // "*.*" also takes names without a point.
    CdLogic all = logic(FileChoice::OpenDocument, 4);
    EXPECT_EQ(rows(all.list()), (Lines{
                                    "<..> |  | Cartella di file",
                                    "<Archivio> |  | Cartella di file",
                                    "foto.png | 5 Kb | File PNG",
                                    "LEGGIMI | 1 Kb | File",
                                    "lettera.rtf | 2 Kb | File RTF",
                                    "nota.TXT | 1 Kb | File TXT",
                                    "vuoto.tnl | 0 Kb | File TNL",
                                }));

    // A picture must be there: nothing is offered to be made.
    CdLogic pictures = logic(FileChoice::OpenPicture);
    EXPECT_EQ(rows(pictures.list()).back(), "foto.png | 5 Kb | File PNG");
    EXPECT_EQ(pictures.conferma("foto"), path("foto.png"));
    EXPECT_EQ(pictures.conferma("altra.png"), std::nullopt);
    EXPECT_EQ(messages.shown, (Lines{"File inesistente | Il file selezionato non esiste! | 0"}));
    EXPECT_FALSE(QFile::exists(path("altra.png")));
    messages.shown.clear();

    // The folder mode adds "Cartella", which lists folders alone.
    CdRequest r = requestFor(FileChoice::OpenDocument, settings);
    r.folderMode = true;
    CdLogic folders(r, settings, messages);
    folders.setFolder(dir.path());
    EXPECT_EQ(str(folders.filterLabels().last()), "Cartella");
    EXPECT_EQ(folders.filterIndex(), int(folders.filterLabels().size()) - 1);
    EXPECT_EQ(rows(folders.list()), (Lines{"<..> |  | Cartella di file", "<Archivio> |  | Cartella di file"}));
    EXPECT_EQ(folders.conferma(""), dir.path());

    // The root has no parent row.
    CdLogic root = logic(FileChoice::OpenDocument);
    root.setFolder("/");
    EXPECT_FALSE(root.list().front().parent);
}

TEST_F(CdLogicTest, ChecksTheTypedNameWithTheDesignsMessages)
{
    const std::string bad = "Nome file | Il nome del file non può contenere i caratteri \\ / : * ? \"\" < > | | 0";
    CdLogic open = logic(FileChoice::OpenDocument);
    EXPECT_EQ(open.conferma("  "), std::nullopt);
    EXPECT_EQ(open.conferma("a*b.rtf"), std::nullopt);
    EXPECT_EQ(open.conferma("mancante/x.rtf"), std::nullopt);
    EXPECT_EQ(open.conferma("chi?"), std::nullopt);
    EXPECT_EQ(messages.shown, (Lines{"Nome file | Inserire un nome per il file | 0", bad, bad, bad}));
    messages.shown.clear();

    // A bare name finds the file under the filter's extensions; a missing one
    // is created only on "si".
    EXPECT_EQ(open.conferma("lettera"), path("lettera.rtf"));
    EXPECT_EQ(open.conferma(path("nota.TXT")), path("nota.TXT"));
    messages.answers = {"no", "si"};
    EXPECT_EQ(open.conferma("nuova"), std::nullopt);
    EXPECT_FALSE(QFile::exists(path("nuova.tnl")));
    EXPECT_EQ(open.conferma("nuova"), path("nuova.tnl"));
    EXPECT_TRUE(QFile::exists(path("nuova.tnl")));
    const std::string ask = "File inesistente | Il file non esiste, vuoi crearlo? | 2";
    EXPECT_EQ(messages.shown, (Lines{ask, ask}));
    messages.shown.clear();

    // A folder's name goes into that folder.
    EXPECT_EQ(open.conferma("Archivio"), std::nullopt);
    EXPECT_EQ(open.folder(), path("Archivio"));
    EXPECT_TRUE(messages.shown.empty());

    // Saving: a bare name takes the extension of the filter in use.
    const std::vector<std::pair<int, std::string>> byFilter{
        {0, "copia.tnl"}, {1, "copia.tnl"}, {2, "copia.rtf"}, {3, "copia.txt"}, {4, "copia.tnl"}};
    for (const auto& [filter, name] : byFilter)
        EXPECT_EQ(logic(FileChoice::SaveDocument, filter).conferma("copia"), path(QString::fromStdString(name)));
    EXPECT_EQ(logic(FileChoice::SaveDocument, 2).conferma("copia.txt"), path("copia.txt"));
    EXPECT_EQ(logic(FileChoice::SavePicture).conferma("disegno"), path("disegno.bmp"));
    EXPECT_EQ(logic(FileChoice::SavePicture, 3).conferma("disegno"), path("disegno.jpg"));
    EXPECT_TRUE(messages.shown.empty());

    // Over an existing file only "si" goes on.
    messages.answers = {"no", "si"};
    CdLogic save = logic(FileChoice::SaveDocument, 2);
    EXPECT_EQ(save.conferma("lettera"), std::nullopt);
    EXPECT_EQ(save.conferma("lettera"), path("lettera.rtf"));
    EXPECT_EQ(messages.shown.size(), 2u);
}

TEST_F(CdLogicTest, KeepsTheViewAndTheLastFolderInTheSettings)
{
    EXPECT_EQ(str(dialOp()), "- - -");
    {
        CdLogic l = logic(FileChoice::OpenDocument);
        EXPECT_FALSE(l.fileNascosti());
        EXPECT_FALSE(l.fileSistema());
        EXPECT_TRUE(l.dettagli());
        l.setFileNascosti(true);
        l.setDettagli(false);
        l.setFolder(path("Archivio"));
        l.salvaCartella();
    }
    EXPECT_EQ(str(dialOp()), "T - F");
    EXPECT_EQ(settings.leggiReg("", "DirOp", "5"), path("Archivio"));

    // The next dialog opens there, with the same view.
    CdLogic again(requestFor(FileChoice::SaveDocument, settings), settings, messages);
    EXPECT_EQ(again.folder(), path("Archivio"));
    EXPECT_TRUE(again.fileNascosti());
    EXPECT_FALSE(again.dettagli());
    again.setFileSistema(true);
    again.setFileNascosti(false);
    EXPECT_EQ(str(dialOp()), "F T F");

    // A remembered folder that has gone leaves the dialog at home.
    QDir(path("Archivio")).removeRecursively();
    EXPECT_EQ(CdLogic(requestFor(FileChoice::OpenDocument, settings), settings, messages).folder(),
              QDir::homePath());

    // The options choose the filter shown first; an unknown one is ignored.
    settings.scriviReg("", "DefaultExt", "Apri", "Rich Text File (*.rtf)");
    settings.scriviReg("", "DefaultExt", "Salva", "Filtro sparito");
    EXPECT_EQ(requestFor(FileChoice::OpenDocument, settings).filterIndex, 2);
    EXPECT_EQ(requestFor(FileChoice::SaveDocument, settings).filterIndex, 0);
}

TEST_F(CdLogicTest, MakesFoldersAndRefusesBadNames)
{
    CdLogic l = logic(FileChoice::SaveDocument);
    EXPECT_TRUE(l.creaCartella("Nuova Cartella"));
    EXPECT_TRUE(QFileInfo(path("Nuova Cartella")).isDir());
    EXPECT_FALSE(l.creaCartella("Nuova Cartella"));
    EXPECT_FALSE(l.creaCartella("a:b"));
    EXPECT_FALSE(l.creaCartella(".."));
    ASSERT_EQ(messages.shown.size(), 3u);
    EXPECT_EQ(messages.shown[0], "Crea cartella | Esiste già un elemento chiamato Nuova Cartella. | 0");
    EXPECT_EQ(messages.shown[1], messages.shown[2]);
}

TEST(CdRequests, TitlesFiltersAndPlainChoosersFilters)
{
    SettingsStore settings{QTemporaryDir().path()};
    QStringList titles;
    for (FileChoice c : {FileChoice::OpenDocument, FileChoice::SaveDocument, FileChoice::OpenPicture,
                         FileChoice::SavePicture, FileChoice::InsertFile})
        titles << cdTitle(requestFor(c, settings).mode);
    EXPECT_EQ(titles.join(" / "), "Seleziona il file da aprire / Seleziona il file da salvare / "
                                  "Seleziona il file immagine / Seleziona il file da salvare / "
                                  "Seleziona il file da inserire");
    EXPECT_EQ(pictureFilters().front().patterns.join(";"), "*.bmp;*.gif;*.jpg;*.jpeg;*.png;*.ico");
    EXPECT_EQ(pictureSaveFilters().front().patterns.join(";"), "*.bmp;*.gif;*.jpg;*.jpeg");

    const auto plain = filtersFromLabels({"Macro (*.mac *.txt)", "Stili (*.sti)", "Tutti i file (*)"});
    ASSERT_EQ(plain.size(), 3u);
    EXPECT_EQ(plain[0].patterns.join(";"), "*.mac;*.txt");
    EXPECT_EQ(str(plain[0].defaultExt), ".mac");
    EXPECT_EQ(str(plain[1].defaultExt), ".sti");
    EXPECT_EQ(plain[2].patterns.join(";"), "*");
    EXPECT_TRUE(plain[2].defaultExt.isEmpty());
}

TEST(ResourceBar, FixedEntriesThenThePersonalOnes)
{
    QTemporaryDir config;
    SettingsStore settings{config.path()};
    auto names = [&] {
        QStringList out;
        for (const TbEntry& e : barEntries(settings))
            out << e.name + "=" + e.path;
        return out.join(", ");
    };
    EXPECT_EQ(str(names()), "Documenti=(Cartella documenti), Desktop=(Cartella desktop)");
    EXPECT_EQ(resolveEntry("(Cartella documenti)"),
              QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    EXPECT_EQ(resolveEntry("(Cartella desktop)"), QStandardPaths::writableLocation(QStandardPaths::DesktopLocation));

    std::vector<TbEntry> entries = barEntries(settings);
    entries.push_back({"Lavoro", "/srv/lavoro", false});
    entries.push_back({"Foto", "/home/foto", false});
    savePersonalEntries(settings, entries);
    EXPECT_EQ(str(names()), "Documenti=(Cartella documenti), Desktop=(Cartella desktop), "
                            "Lavoro=/srv/lavoro, Foto=/home/foto");
    EXPECT_EQ(settings.leggiReg("", "RisorsePers", "T"), "T");

    // Saving rewrites every key: the entry that went leaves none behind.
    savePersonalEntries(settings, {{"Foto", "/home/foto", false}});
    EXPECT_EQ(str(names()), "Documenti=(Cartella documenti), Desktop=(Cartella desktop), Foto=/home/foto");
    EXPECT_EQ(settings.leggiReg("", "RisorsePers", "Nome2", "-"), "-");
    savePersonalEntries(settings, {});
    EXPECT_EQ(str(names()), "Documenti=(Cartella documenti), Desktop=(Cartella desktop)");
    EXPECT_EQ(settings.leggiReg("", "RisorsePers", "T"), "F");
}

}  // namespace
