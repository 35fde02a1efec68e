#include "core/codepage.h"
#include "core/document.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <deque>
#include <string>
#include <vector>

using namespace tornelia;

namespace {

using Log = std::vector<std::string>;

std::string str(const QString& s) { return s.toStdString(); }

// The person and the system, scripted. Dialogs are recorded as
// "title | text | buttons | icon"; a question nobody scripted is a fault.
// The frame's calls go to one log, in order.
class Fakes : public MessagePort, public DialogPort, public ShellPort, public FramePort {
public:
    std::deque<QString> answers;
    std::deque<std::optional<QString>> choices;  // files the user picks, in turn
    Log shown, asked, shell, log;
    std::string caption, panel;

    QString mostraMsg(const QString& title, const QString& text, int buttons, int icon) override
    {
        shown.push_back(str(title + " | " + text + " | " + QString::number(buttons) + " | "
                            + QString::number(icon)));
        if (answers.empty()) {
            if (buttons != 0)
                ADD_FAILURE() << "unscripted question: " << shown.back();
            return buttons == 0 ? "ok" : "an";
        }
        const QString answer = answers.front();
        answers.pop_front();
        return answer;
    }
    std::optional<QString> openFile(const QString& title, const QStringList& filters) override
    {
        asked.push_back(str("open | " + title + " | " + filters.join(";")));
        return nextChoice();
    }
    std::optional<QString> saveFile(const QString& title, const QStringList& filters,
                                    const QString& suggested) override
    {
        asked.push_back(str("save | " + title + " | " + filters.join(";") + " | " + suggested));
        return nextChoice();
    }
    std::optional<QString> chooseFolder(const QString&) override { return {}; }
    std::optional<FontChoice> chooseFont(const FontChoice&) override { return {}; }
    std::optional<std::uint32_t> chooseColour(std::uint32_t) override { return {}; }

    bool openDocument(const QString& p) override
    {
        shell.push_back(str("open " + p));
        return true;
    }
    bool startDetached(const QString& p, const QStringList&) override
    {
        shell.push_back(str("start " + p));
        return true;
    }
    void showProperties(const QString& p) override { shell.push_back(str("properties " + p)); }

    void setCaption(const QString& c) override
    {
        caption = str(c);
        log.push_back("caption " + caption);
    }
    void setStatusPanel(int index, const QString& text) override
    {
        if (index == 1)
            panel = str(text);
        log.push_back(str("panel" + QString::number(index) + " " + text));
    }
    void showProgress(const QString& text, int percent) override
    {
        log.push_back(str("progress " + text + " " + QString::number(percent)));
    }
    void hideProgress() override { log.push_back("hide"); }
    void processEvents() override { log.push_back("events"); }
    int count(const std::string& entry) const { return int(std::count(log.begin(), log.end(), entry)); }

private:
    std::optional<QString> nextChoice()
    {
        if (choices.empty())
            return {};
        auto c = choices.front();
        choices.pop_front();
        return c;
    }
};

const char* const kRtf =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}}\r\n"
    "\\viewkind4\\uc1\\pard\\f0\\fs20 Ciao \\b mondo\\b0\\par\r\n"
    "}\r\n";

const std::string kNuovo = "Nuovo | Il file è stato cambiato. Vuoi salvare le modifiche? | 3 | 0";
const std::string kFilters =
    "File Tornelia (*.tnl);File RTF (*.rtf);File di testo (*.txt);Tutti i file (*)";

class DocumentTest : public ::testing::Test {
protected:
    QTemporaryDir dir;
    SettingsStore settings{dir.path() + "/config"};
    RichTextSurface testo;
    Fakes fake;
    Document doc{testo, settings, fake, fake, fake, fake};
    QStringList recent;

    void SetUp() override
    {
        doc.onRecentAdd = [this](const QString& p) { recent << p; };
    }

    QString path(const QString& name) const { return dir.path() + "/" + name; }
    QString put(const QString& name, const QByteArray& bytes) const
    {
        QFile f(path(name));
        EXPECT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(bytes);
        return path(name);
    }
    QByteArray bytesOf(const QString& file) const
    {
        QFile f(file);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
    }
    // Opens a file with nothing asked and forgets what the opening showed.
    void openClean(const QString& file)
    {
        doc.Aprii(file);
        ASSERT_EQ(doc.nomeFile, file);
        fake.shown.clear();
        fake.log.clear();
        recent.clear();
    }
    void typeAtEnd(const QString& text)
    {
        testo.setSelStart(testo.length());
        testo.typeText(text);
    }
};

// --- new -------------------------------------------------------------------

TEST_F(DocumentTest, NovoOnAnUnchangedDocumentAsksNothing)
{
    int undoCleared = 0, startPanel = 0;
    doc.onUndoClear = [&] { ++undoCleared; };
    doc.onShowStartPanel = [&] { ++startPanel; };

    doc.Novo(0);
    EXPECT_EQ(fake.shown, Log{});
    EXPECT_EQ(fake.log, (Log{"caption Tornelia - Documento 1", "panel1 Nessun documento salvato"}));
    EXPECT_EQ(doc.nomeFile, "Documento 1");
    EXPECT_EQ(undoCleared, 1);
    EXPECT_EQ(startPanel, 0);
    doc.Novo(1);
    EXPECT_EQ(startPanel, 1);

    // After a clean file the saved length stays, so the empty document
    // counts as changed until it is saved.
    openClean(put("lettera.txt", "Cara zia"));
    doc.Novo(0);
    EXPECT_EQ(fake.shown, Log{});
    EXPECT_EQ(testo.Text(), "");
    EXPECT_EQ(doc.lenSalvata, 8.0f);
    EXPECT_TRUE(doc.fileCambiato());
    EXPECT_EQ(testo.FileName(), path("lettera.txt"));  // the control keeps its name
}

TEST_F(DocumentTest, NovoOnAChangedDocumentFollowsTheAnswer)
{
    const QString file = put("lettera.txt", "Cara zia");

    // "an": nothing changes and the rest does not run.
    openClean(file);
    int undoCleared = 0;
    doc.onUndoClear = [&] { ++undoCleared; };
    typeAtEnd(",");
    fake.answers = {"an"};
    doc.Novo(1);
    EXPECT_EQ(fake.shown, Log{kNuovo});
    EXPECT_EQ(testo.Text(), "Cara zia,");
    EXPECT_EQ(doc.nomeFile, file);
    EXPECT_EQ(fake.log, Log{});
    EXPECT_EQ(undoCleared, 0);

    // "no": a new, unchanged "Documento 1"; the file is left alone.
    fake.shown.clear();
    fake.answers = {"no"};
    doc.Novo(0);
    EXPECT_EQ(fake.shown, Log{kNuovo});
    EXPECT_EQ(testo.Text(), "");
    EXPECT_EQ(doc.nomeFile, "Documento 1");
    EXPECT_FALSE(doc.fileCambiato());
    EXPECT_EQ(fake.log, (Log{"panel1 Nessun documento salvato", "caption Tornelia - Documento 1"}));
    EXPECT_EQ(bytesOf(file), "Cara zia");
    EXPECT_EQ(undoCleared, 1);

    // "si": saved, then cleared, with the name and saved length of the file
    // kept; a later plain save writes the empty text over that file.
    openClean(file);
    typeAtEnd(", ciao");
    fake.answers = {"si"};
    doc.Novo(0);
    EXPECT_EQ(fake.shown, Log{kNuovo});
    EXPECT_EQ(bytesOf(file), encodePlainText("Cara zia, ciao"));
    EXPECT_EQ(testo.Text(), "");
    EXPECT_EQ(doc.nomeFile, file);
    EXPECT_EQ(fake.caption, "Tornelia - lettera.txt");
    EXPECT_EQ(fake.panel, "Nessun documento salvato");
    EXPECT_EQ(doc.lenSalvata, 14.0f);
    doc.Salvare("");
    EXPECT_EQ(bytesOf(file), "");

    // "si" on a document that was never saved, with the save dialog
    // cancelled: the work stays, nothing is cleared.
    fake.answers = {"no"};
    doc.Novo(0);
    typeAtEnd("bozza");
    fake.answers = {"si"};
    doc.Novo(0);
    EXPECT_EQ(testo.Text(), "bozza");
    EXPECT_TRUE(doc.fileCambiato());
}

TEST_F(DocumentTest, NovoAppliesTheDefaultFontOfTheSettings)
{
    doc.Novo(0);
    EXPECT_EQ(testo.SelFontName(), std::optional<QString>("Tahoma"));
    EXPECT_EQ(testo.SelFontSize(), std::optional<float>(10));

    settings.scriviReg("", "Font", "1", "Courier New");
    settings.scriviReg("", "Font", "2", "14");
    testo.setSelBold(true);
    testo.setSelColor(0x0000FF);
    doc.Novo(0);
    EXPECT_EQ(testo.SelFontName(), std::optional<QString>("Courier New"));
    EXPECT_EQ(testo.SelFontSize(), std::optional<float>(14));
    EXPECT_EQ(testo.SelBold(), std::optional<bool>(false));
    EXPECT_EQ(testo.SelItalic(), std::optional<bool>(false));
    EXPECT_EQ(testo.SelUnderline(), std::optional<bool>(false));
    EXPECT_EQ(testo.SelStrikeThru(), std::optional<bool>(false));
    EXPECT_EQ(testo.SelColor(), std::optional<Colour>(0));
}

// --- open ------------------------------------------------------------------

TEST_F(DocumentTest, ApriiShowsTheLoadStepByStep)
{
    const QString file = put("tre.txt", "uno\r\ndue\r\ntre");
    doc.Aprii(file);
    EXPECT_EQ(fake.shown, Log{});
    // Two lines make a scale of 2: the one block fills half of the bar.
    EXPECT_EQ(fake.log, (Log{
                             "caption Tornelia - Documento 1",
                             "panel1 Nessun documento salvato",
                             "events",
                             "progress Caricamento in memoria... 0",
                             "progress Caricamento in memoria... 50",
                             "events",
                             "progress Conversione... 50",
                             "progress Completato 100",
                             "hide",
                             str("caption Tornelia - tre.txt"),
                             str("panel1 Documento aperto: " + file),
                             "events",
                         }));
    EXPECT_EQ(testo.Text(), "uno\r\ndue\r\ntre");
    EXPECT_EQ(doc.nomeFile, file);
    EXPECT_EQ(doc.lenSalvata, 13.0f);
    EXPECT_TRUE(doc.inApertura);
    EXPECT_EQ(recent, QStringList{file});
    doc.selChanged();
    EXPECT_FALSE(doc.inApertura);
}

TEST_F(DocumentTest, ApriiOfAMissingOrEmptyFile)
{
    doc.Aprii(path("nessuno.tnl"));
    EXPECT_EQ(fake.shown, Log{"Apri file | File inesistente! | 0 | 3"});
    EXPECT_EQ(doc.nomeFile, "Documento 1");
    EXPECT_EQ(recent, QStringList{});

    // An empty file: its name, no progress strip.
    fake.shown.clear();
    fake.log.clear();
    const QString empty = put("vuoto.tnl", "");
    doc.Aprii(empty);
    EXPECT_EQ(fake.shown, Log{});
    EXPECT_EQ(fake.count("hide"), 0);
    EXPECT_EQ(testo.Text(), "");
    EXPECT_EQ(doc.nomeFile, empty);
    EXPECT_EQ(testo.FileName(), empty);
    EXPECT_EQ(fake.caption, "Tornelia - vuoto.tnl");
    EXPECT_EQ(fake.panel, str("Documento aperto: " + empty));
    EXPECT_FALSE(doc.fileCambiato());
    EXPECT_EQ(recent, QStringList{empty});
}

TEST_F(DocumentTest, TheKindGoesByTheExtensionAndTheNameLoadsByContent)
{
    // .rtf and .tnl holding RTF: the formatted document.
    for (const QString name : {"a.rtf", "b.TNL"}) {
        doc.Aprii(put(name, kRtf));
        EXPECT_EQ(testo.Text(), "Ciao mondo") << str(name);
        testo.setSelStart(5);
        testo.setSelLength(5);
        EXPECT_EQ(testo.SelBold(), std::optional<bool>(true)) << str(name);
        EXPECT_FALSE(doc.fileCambiato());
    }
    // .tnl holding plain text opens as plain text.
    doc.Aprii(put("c.tnl", "prima riga\r\nseconda {riga}"));
    EXPECT_EQ(testo.Text(), "prima riga\r\nseconda {riga}");
    // .txt holding RTF shows its code.
    doc.Aprii(put("d.txt", kRtf));
    EXPECT_EQ(testo.Text(), QString::fromLatin1(kRtf));
    EXPECT_EQ(doc.nomeFile, path("d.txt"));
    EXPECT_EQ(fake.shown, Log{});
}

TEST_F(DocumentTest, TextFilesDecodeAcrossTheBlockBorder)
{
    // UTF-8 with "è" cut in two by the border at 10,240 bytes.
    QByteArray utf8(10239, 'a');
    utf8 += "\xC3\xA8 fine";
    ASSERT_EQ(utf8.at(10240), '\xA8');
    doc.Aprii(put("utf8.txt", utf8));
    EXPECT_EQ(testo.Text(), QString(10239, 'a') + QString::fromUtf8("è fine"));
    EXPECT_EQ(fake.count("events"), 4);  // length read, two blocks, the end

    // Windows-1252 when the bytes are not UTF-8.
    doc.Aprii(put("cp1252.txt", "citt\xE0 \x80 5"));
    EXPECT_EQ(testo.Text(), QString::fromUtf8("città € 5"));
}

TEST_F(DocumentTest, BlocksAndLinesAtTheBorder)
{
    // Exactly one block: read as one last block.
    fake.log.clear();
    doc.Aprii(put("esatto.txt", QByteArray(10240, 'x')));
    EXPECT_EQ(fake.count("events"), 3);  // length read, one block, the end
    EXPECT_EQ(testo.length(), 10240);

    // One byte more: two blocks.
    fake.log.clear();
    doc.Aprii(put("oltre.txt", QByteArray(10241, 'x')));
    EXPECT_EQ(fake.count("events"), 4);

    // A CR LF cut by the border counts once; a CR that ends a block with no
    // LF after it counts nothing.
    QByteArray cut(10239, 'a');
    cut += "\r\nb\r\nc";
    const QString cutFile = put("taglio.txt", cut);
    EXPECT_EQ(doc.lineCount(cutFile), 2);
    EXPECT_EQ(doc.lineCar(cutFile, false), 2);
    EXPECT_EQ(testo.Text(), QString(10239, 'a') + "\r\nb\r\nc");

    QByteArray lone(10239, 'a');
    lone += "\rb\nc\r\n";
    EXPECT_EQ(doc.lineCount(put("solo.txt", lone)), 1);
    EXPECT_EQ(doc.lineCount(put("zero.txt", "")), 0);
    EXPECT_EQ(doc.lineCount(path("manca.txt")), 0);
}

TEST_F(DocumentTest, ApriiAfterAQuestionOpensWhateverTheAnswer)
{
    const QString first = put("prima.txt", "uno");
    const QString second = put("seconda.txt", "due");

    for (const QString answer : {"an", "no"}) {
        openClean(first);
        typeAtEnd("!");
        fake.answers = {answer};
        doc.Aprii(second);
        EXPECT_EQ(fake.shown, Log{kNuovo}) << str(answer);
        EXPECT_EQ(testo.Text(), "due") << str(answer);
        EXPECT_EQ(doc.nomeFile, second);
        EXPECT_EQ(bytesOf(first), "uno") << "the change is lost";
    }

    // "si" saves the first before the second opens.
    openClean(first);
    typeAtEnd("!");
    fake.answers = {"si"};
    doc.Aprii(second);
    EXPECT_EQ(bytesOf(first), "uno!");
    EXPECT_EQ(testo.Text(), "due");
}

TEST_F(DocumentTest, ApriiWithNoPathAsksForTheFile)
{
    const QString file = put("scelto.rtf", kRtf);

    fake.choices = {file};
    doc.Aprii("");
    EXPECT_EQ(fake.asked, Log{"open | Apri | " + kFilters});
    EXPECT_EQ(testo.Text(), "Ciao mondo");
    EXPECT_EQ(doc.nomeFile, file);
    EXPECT_EQ(fake.caption, "Tornelia - scelto.rtf");
    EXPECT_EQ(fake.panel, str("Documento aperto: " + file));
    EXPECT_EQ(recent, QStringList{file});

    // A cancel leaves an empty document without a name.
    doc.Aprii("");
    EXPECT_EQ(testo.Text(), "");
    EXPECT_EQ(doc.nomeFile, "");
    EXPECT_EQ(testo.FileName(), "");
    EXPECT_EQ(fake.caption, "Tornelia - Documento 1");
    EXPECT_EQ(fake.panel, "Nessun documento salvato");

    // The program's own dialog, when plugged in, is used instead.
    std::vector<int> modes;
    doc.onFileDialog = [&](int mode) { modes.push_back(mode); };
    doc.Aprii("");
    EXPECT_EQ(modes, std::vector<int>{1});
    EXPECT_EQ(fake.asked.size(), 2u);
}

TEST_F(DocumentTest, ReadOnlyFileOpensWithAWarningAndIsNotSavedOver)
{
    const QString file = put("sola.tnl", kRtf);
    ASSERT_TRUE(QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
    const QByteArray before = bytesOf(file);

    doc.Aprii(file);
    EXPECT_EQ(fake.shown,
              Log{"File di sola lettura | Attenzione! Il file che sia apre è di sola lettura e quindi non "
                  "sarà possibile salvare le modifiche effettuate. | 0 | 0"});
    EXPECT_EQ(testo.Text(), "Ciao mondo");
    EXPECT_EQ(doc.nomeFile, file);

    fake.shown.clear();
    typeAtEnd(" bello");
    doc.Salvare("");
    EXPECT_EQ(fake.shown,
              Log{"File di sola lettura | File di sola lettura! Per salvare scegli un altro nome. | 0 | 0"});
    EXPECT_EQ(bytesOf(file), before);
    EXPECT_TRUE(doc.fileCambiato());
    EXPECT_EQ(fake.panel, str("Documento aperto: " + file));
}

TEST_F(DocumentTest, DirtyTestLooksAtTheLengthOnly)
{
    openClean(put("nota.tnl", kRtf));
    typeAtEnd("x");
    EXPECT_TRUE(doc.fileCambiato());
    testo.setSelStart(testo.length() - 1);
    testo.setSelLength(1);
    testo.setSelText("");
    EXPECT_EQ(testo.Text(), "Ciao mondo");
    EXPECT_FALSE(doc.fileCambiato());

    // Making a word bold changes no length: closing asks nothing.
    testo.setSelStart(0);
    testo.setSelLength(4);
    testo.setSelBold(true);
    EXPECT_FALSE(doc.fileCambiato());
    doc.Novo(0);
    EXPECT_EQ(fake.shown, Log{});
}

// --- save ------------------------------------------------------------------

TEST_F(DocumentTest, SavingWritesByKind)
{
    // .tnl and .rtf as RTF, anything else as text.
    const QString tnl = put("a.tnl", kRtf);
    openClean(tnl);
    typeAtEnd("!");
    doc.Salvare("");
    EXPECT_EQ(bytesOf(tnl), testo.TextRTF().toLatin1());
    EXPECT_TRUE(bytesOf(tnl).startsWith("{\\rtf1"));
    EXPECT_FALSE(doc.fileCambiato());
    EXPECT_EQ(fake.panel, str("Documento aperto: " + tnl));
    EXPECT_EQ(fake.shown, Log{});

    const QString txt = put("b.txt", "città");
    openClean(txt);
    typeAtEnd(" mia");
    doc.Salvare("");
    EXPECT_EQ(bytesOf(txt), encodePlainText(QString::fromUtf8("città mia")));
    EXPECT_FALSE(doc.fileCambiato());

    // With a path: written there, the document keeps its name.
    typeAtEnd("!");
    doc.Salvare(path("copia.RTF"));
    EXPECT_EQ(bytesOf(path("copia.RTF")), testo.TextRTF().toLatin1());
    EXPECT_EQ(doc.nomeFile, txt);
    EXPECT_EQ(testo.FileName(), txt);
    EXPECT_FALSE(doc.fileCambiato());

    // Another session showing the same file does not stop the save.
    doc.windowTitles = [] { return QStringList{"Tornelia - b.txt", "b.txt - Editor"}; };
    typeAtEnd("?");
    doc.Salvare("");
    EXPECT_EQ(bytesOf(txt), encodePlainText(QString::fromUtf8("città mia!?")));
    EXPECT_EQ(fake.shown, Log{});
}

TEST_F(DocumentTest, SavingANewDocumentGoesThroughTheDialog)
{
    testo.setText("Nuovo testo");
    doc.Salvare("");  // cancelled
    EXPECT_EQ(fake.asked, Log{"save | Salva con nome | " + kFilters + " | Documento 1.tnl"});
    EXPECT_EQ(doc.nomeFile, "Documento 1");
    EXPECT_TRUE(doc.fileCambiato());
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{});

    const QString target = path("nuovo.tnl");
    fake.choices = {target};
    doc.Salvare("");
    EXPECT_EQ(bytesOf(target), testo.TextRTF().toLatin1());
    EXPECT_EQ(doc.nomeFile, target);
    EXPECT_EQ(testo.FileName(), target);
    EXPECT_EQ(fake.caption, "Tornelia - nuovo.tnl");
    EXPECT_EQ(fake.panel, str("Documento aperto: " + target));
    EXPECT_FALSE(doc.fileCambiato());
    EXPECT_EQ(recent, QStringList{target});

    // Once named, a save goes straight to the file.
    typeAtEnd("!");
    doc.Salvare("");
    EXPECT_EQ(fake.asked.size(), 2u);
    EXPECT_EQ(testo.Text(), "Nuovo testo!");
    EXPECT_EQ(bytesOf(target), testo.TextRTF().toLatin1());

    // The program's own dialog, when plugged in, is used instead.
    std::vector<int> modes;
    doc.onFileDialog = [&](int mode) { modes.push_back(mode); };
    doc.SalvareN();
    EXPECT_EQ(modes, std::vector<int>{2});
    EXPECT_EQ(fake.shown, Log{});
}

TEST_F(DocumentTest, AFailedSaveKeepsTheOldFileAndSaysWhy)
{
    // Under a folder that doesn't exist.
    testo.setText("testo");
    const QString nowhere = path("manca/nuovo.txt");
    doc.Sv(nowhere);
    ASSERT_EQ(fake.shown.size(), 1u);
    const std::string prefix = str("Salva file | Impossibile salvare il file " + nowhere + ": ");
    EXPECT_EQ(fake.shown[0].substr(0, prefix.size()), prefix);
    EXPECT_EQ(fake.shown[0].substr(fake.shown[0].size() - 8), " | 0 | 3");
    EXPECT_GT(fake.shown[0].size(), prefix.size() + 8) << "a reason is given";
    EXPECT_EQ(doc.nomeFile, "Documento 1");
    EXPECT_EQ(recent, QStringList{});
    EXPECT_TRUE(doc.fileCambiato());

    // Over an existing file whose name leaves no room for the temporary one:
    // the write fails and the old bytes stay.
    const QString longName = put(QString(250, 'n') + ".txt", "vecchio");
    fake.answers = {"no"};
    openClean(longName);
    typeAtEnd(" e nuovo");
    doc.Salvare("");
    ASSERT_EQ(fake.shown.size(), 1u);
    EXPECT_EQ(fake.shown[0].substr(0, 12), "Salva file |");
    EXPECT_EQ(bytesOf(longName), "vecchio");
    EXPECT_EQ(doc.lenSalvata, 7.0f);
    EXPECT_EQ(doc.nomeFile, longName);
}

TEST_F(DocumentTest, NnmWritesEverythingButRtfAsText)
{
    const QString tnl = put("doc.tnl", kRtf);
    openClean(tnl);
    typeAtEnd("!");
    doc.nnm();
    EXPECT_EQ(bytesOf(tnl), "Ciao mondo!");
    EXPECT_FALSE(doc.fileCambiato());

    const QString rtf = put("doc.rtf", kRtf);
    openClean(rtf);
    doc.nnm();
    EXPECT_EQ(bytesOf(rtf), testo.TextRTF().toLatin1());

    doc.Novo(0);
    doc.nnm();
    EXPECT_EQ(fake.asked, Log{"save | Salva con nome | " + kFilters + " | Documento 1.tnl"});
}

// --- file commands ---------------------------------------------------------

TEST_F(DocumentTest, DelFileAsksAndDeletes)
{
    const std::string nothing =
        "Elimina file | Il documento non è stato salvato o il file non esiste. | 0 | 1";
    doc.DelFile();
    EXPECT_EQ(fake.shown, Log{nothing});

    const QString file = put("via.txt", "addio");
    const std::string sure = str("Elimina file | Sei sicuro di volere eliminare il file " + file + "? | 2 | 0");
    openClean(file);
    fake.answers = {"no"};
    doc.DelFile();
    EXPECT_EQ(fake.shown, Log{sure});
    EXPECT_TRUE(QFile::exists(file));
    EXPECT_EQ(testo.Text(), "addio");

    fake.shown.clear();
    fake.answers = {"si"};
    doc.DelFile();
    EXPECT_EQ(fake.shown, Log{sure});
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_EQ(testo.Text(), "");
    EXPECT_EQ(testo.FileName(), "");
    EXPECT_EQ(doc.nomeFile, "Documento 1");
    EXPECT_EQ(fake.caption, "Tornelia - Documento 1");

    // A name whose file has gone since.
    fake.answers = {"no"};  // the emptied text counts as a change
    openClean(put("sparito.txt", "x"));
    QFile::remove(path("sparito.txt"));
    doc.DelFile();
    EXPECT_EQ(fake.shown, Log{nothing});
}

TEST_F(DocumentTest, PropertiesOnlyOfAnExistingFile)
{
    doc.pROP();
    EXPECT_EQ(fake.shown, Log{"Proprietà file | Devi prima aprire un file! | 0 | 0"});
    EXPECT_EQ(fake.shell, Log{});

    const QString file = put("info.rtf", kRtf);
    openClean(file);
    doc.pROP();
    EXPECT_EQ(fake.shown, Log{});
    EXPECT_EQ(fake.shell, Log{str("properties " + file)});
}

TEST_F(DocumentTest, RecENtOpensWithTheFullPathInTheCaption)
{
    int conalinee = 0;
    doc.onConalinee = [&] { ++conalinee; };

    doc.RecENt(path("perso.tnl"));
    EXPECT_EQ(fake.shown, Log{"Apri file | Il file selezionato non esiste! | 0 | 0"});
    EXPECT_EQ(conalinee, 1);
    EXPECT_EQ(recent, QStringList{});

    fake.shown.clear();
    const QString file = put("recente.tnl", kRtf);
    doc.RecENt(file);
    EXPECT_EQ(fake.shown, Log{});
    EXPECT_EQ(testo.Text(), "Ciao mondo");
    EXPECT_EQ(doc.nomeFile, file);
    EXPECT_EQ(fake.caption, str("Tornelia - " + file));
    EXPECT_EQ(fake.panel, str("Documento aperto: " + file));
    EXPECT_FALSE(doc.fileCambiato());
    EXPECT_TRUE(doc.inApertura);
    EXPECT_EQ(recent, QStringList{file});
    EXPECT_EQ(conalinee, 2);
}

}  // namespace
