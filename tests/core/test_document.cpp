#include "core/codepage.h"
#include "core/document.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <string>
#include <vector>

using namespace tornelia;

namespace {

using Log = std::vector<std::string>;

// The person and the system, scripted. Messages are kept as
// "title | text | buttons | icon", the test's folder written "@" and the
// system's reason for a failed write "<why>"; a question nobody scripted is
// a fault. The frame's and shell's calls go to one log.
struct Fakes : MessagePort, DialogPort, ShellPort, FramePort {
    QString home;
    QStringList answers, choices;  // choices: files picked in turn; none left is a cancel
    Log shown, asked, log;
    std::string caption, panel;

    std::string str(QString s) const { return s.replace(home, "@").toStdString(); }
    void note(const QString& entry) { log.push_back(str(entry)); }
    int count(const std::string& entry) const { return int(std::count(log.begin(), log.end(), entry)); }
    std::optional<QString> pick(const QString& dialog)
    {
        asked.push_back(str(dialog));
        return choices.empty() ? std::nullopt : std::optional(choices.takeFirst());
    }

    QString mostraMsg(const QString& title, const QString& text, int buttons, int icon) override
    {
        static const QRegularExpression why("^(Impossibile salvare il file .+?): .+$");
        const QString said = QString(text).replace(why, "\\1: <why>");
        shown.push_back(str(QStringList{title, said, QString::number(buttons), QString::number(icon)}.join(" | ")));
        if (answers.isEmpty() && buttons != 0)
            ADD_FAILURE() << "unscripted question: " << shown.back();
        return !answers.isEmpty() ? answers.takeFirst() : buttons == 0 ? "ok" : "an";
    }
    QString inputBox(const QString&, const QString& prompt) override
    {
        ADD_FAILURE() << "unexpected input box: " << prompt.toStdString();
        return {};
    }
    std::optional<QString> openFile(const QString& title, const QStringList& filters) override
    {
        return pick("open | " + title + " | " + filters.join(";"));
    }
    std::optional<QString> saveFile(const QString& title, const QStringList& filters, const QString& name) override
    {
        return pick("save | " + title + " | " + filters.join(";") + " | " + name);
    }
    std::optional<QString> chooseFolder(const QString&) override { return {}; }
    std::optional<FontChoice> chooseFont(const FontChoice&) override { return {}; }
    std::optional<std::uint32_t> chooseColour(std::uint32_t) override { return {}; }
    bool openDocument(const QString&) override { return true; }
    bool startDetached(const QString&, const QStringList&) override { return true; }
    void showProperties(const QString& p) override { note("properties " + p); }
    void setCaption(const QString& c) override { note("caption " + c); caption = str(c); }
    void setStatusPanel(int index, const QString& text) override
    {
        note("panel" + QString::number(index) + " " + text);
        panel = index == 1 ? str(text) : panel;
    }
    void showProgress(const QString& text, int percent) override { note(text + " " + QString::number(percent)); }
    void hideProgress() override { note("hide"); }
    void processEvents() override { note("events"); }
};

const char* const kRtf = "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}}\r\n"
                        "\\viewkind4\\uc1\\pard\\f0\\fs20 Ciao \\b mondo\\b0\\par\r\n}\r\n";
const std::string kNuovo = "Nuovo | Il file è stato cambiato. Vuoi salvare le modifiche? | 3 | 0";

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
        fake.home = dir.path();
        doc.onRecentAdd = [this](const QString& p) { recent << p; };
        doc.onUndoClear = [this] { fake.note("undo"); };
        doc.onShowStartPanel = [this] { fake.note("start panel"); };
        doc.onConalinee = [this] { fake.note("lines"); };
    }

    QString path(const QString& name) const { return dir.path() + "/" + name; }
    QString put(const QString& name, const QByteArray& bytes) const
    {
        QFile f(path(name));
        EXPECT_TRUE(f.open(QIODevice::WriteOnly) && f.write(bytes) == bytes.size());
        return path(name);
    }
    QByteArray bytesOf(const QString& file) const
    {
        QFile f(file);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : "<missing>";
    }
    // What the person has before them, compared whole: text, the document's
    // and the control's names, caption, panel, and whether it has changed.
    // Long runs of one character are written "<count char>".
    std::string seen()
    {
        const QString text = testo.Text();
        QString squeezed;
        for (qsizetype i = 0, j = 0; i < text.size(); i = j) {
            while (j < text.size() && text[j] == text[i])
                ++j;
            squeezed += j - i > 16 ? QString("<%1 %2>").arg(j - i).arg(text[i]) : text.mid(i, j - i);
        }
        return fake.str(squeezed + " | " + doc.nomeFile + " | " + testo.FileName()) + " | " + fake.caption + " | "
               + fake.panel + (doc.fileCambiato() ? " | changed" : " | saved");
    }
    static std::string opened(const std::string& text, const std::string& name)
    {
        return text + " | @/" + name + " | @/" + name + " | Tornelia - " + name + " | Documento aperto: @/" + name
               + " | saved";
    }
    // Opens a file, dropping any change, and forgets what the opening showed.
    void openClean(const QString& file)
    {
        fake.answers = {"no"};
        doc.Aprii(file);
        ASSERT_EQ(doc.nomeFile, file);
        fake.answers.clear();
        fake.shown.clear();
        fake.log.clear();
    }
    void typeAtEnd(const QString& text) { testo.setSelStart(testo.length()); testo.typeText(text); }
};

// Novo asks only about a change. "an" keeps everything, and an open asked
// for stops there too; "no" gives a new, unchanged document and leaves the
// file alone; "si" saves, then clears to a new "Documento 1", so a later
// plain save cannot write the empty text over the file just saved.
TEST_F(DocumentTest, NovoAndApriiAskOnlyAboutAChangeAndFollowTheAnswer)
{
    auto format = [this] {
        QString f = testo.SelFontName().value_or("?") + " " + QString::number(testo.SelFontSize().value_or(0));
        for (const auto on : {testo.SelBold(), testo.SelItalic(), testo.SelUnderline(), testo.SelStrikeThru()})
            f += on ? (*on ? " on" : " off") : " mixed";
        return f + " " + QString::number(testo.SelColor().value_or(kNoHighlight), 16);
    };
    doc.Novo(1);
    EXPECT_EQ(fake.log, (Log{"caption Tornelia - Documento 1", "panel1 Nessun documento salvato", "undo",
                             "start panel"}));
    QStringList formats{format()};

    const QString file = path("lettera.txt"), other = put("altra.txt", "due");
    const std::string named = "@/lettera.txt | @/lettera.txt | Tornelia - lettera.txt | ";
    const std::string reopened = opened("due", "altra.txt");
    const QByteArray before = "Cara zia", after = encodePlainText("Cara zia, ciao");
    struct Case { const char* answer; bool open; std::string seen; QByteArray bytes; };
    const std::string kept = "Cara zia, ciao | " + named + "Documento aperto: @/lettera.txt | changed";
    for (const Case& c : {Case{"an", true, kept, before}, Case{"no", true, reopened, before},
                          Case{"si", true, reopened, after},
                          Case{"an", false, kept, before},
                          Case{"no", false, " | Documento 1 | @/lettera.txt | Tornelia - Documento 1 | "
                                            "Nessun documento salvato | saved", before},
                          Case{"si", false, " | Documento 1 | @/lettera.txt | Tornelia - Documento 1 | "
                                            "Nessun documento salvato | saved", after}}) {
        openClean(put("lettera.txt", "Cara zia"));
        typeAtEnd(", ciao");
        fake.answers = {c.answer};
        if (c.open)
            doc.Aprii(other);
        else
            doc.Novo(0);
        EXPECT_EQ(std::tuple(fake.shown, seen(), bytesOf(file), fake.count("undo")),
                  std::tuple(Log{kNuovo}, c.seen, c.bytes, int(c.answer != std::string("an"))));
    }
    // The plain save of the new document asks for a name; the file just
    // saved keeps its text.
    doc.Salvare("");
    EXPECT_EQ(bytesOf(file), after);

    // A format, or a word of the same length, is a change too and is asked
    // about. The typing format of the new document starts plain, in the
    // settings' font.
    settings.scriviReg("", "Font", "1", "Courier New");
    settings.scriviReg("", "Font", "2", "14");
    openClean(put("nota.txt", "Cara zia"));
    testo.setSelStart(0);
    testo.setSelLength(4);
    testo.setSelBold(true);
    testo.setSelText("Buon");
    fake.shown.clear();
    fake.answers = {"no"};
    doc.Novo(0);
    EXPECT_EQ(fake.shown, Log{kNuovo});
    EXPECT_EQ(seen(), " | Documento 1 | @/nota.txt | Tornelia - Documento 1 | Nessun documento salvato | saved");
    EXPECT_EQ(formats << format(), (QStringList{"Tahoma 10 off off off off 0", "Courier New 14 off off off off 0"}));
}

TEST_F(DocumentTest, OpeningLoadsByExtensionAndContentBlockByBlock)
{
    doc.Aprii(path("nessuno.tnl"));
    doc.RecENt(path("perso.tnl"));  // a recent file that has gone says so in other words
    EXPECT_EQ(seen(), " | Documento 1 |  | Tornelia - Documento 1 | Nessun documento salvato | saved");

    QStringList files{put("tre.txt", "uno\r\ndue\r\ntre")};
    fake.log.clear();
    doc.Aprii(files[0]);
    // Two lines make a scale of 2: the one block fills half of the bar.
    EXPECT_EQ(fake.log, (Log{"caption Tornelia - Documento 1", "panel1 Nessun documento salvato", "undo", "events",
                             "Caricamento in memoria... 0", "Caricamento in memoria... 50", "events",
                             "Conversione... 50", "Completato 100", "hide", "caption Tornelia - tre.txt",
                             "panel1 Documento aperto: @/tre.txt", "lines", "events"}));
    EXPECT_TRUE(doc.inApertura);

    const QByteArray a(10239, 'a');  // one byte short of a block
    struct Case { QString name; QByteArray bytes; std::string text; int blocks; long lines; };
    const Case cases[] = {
        // RTF in a .rtf or .tnl is formatted, plain text in a .tnl stays
        // text, and a .txt holding RTF shows its code.
        {"a.rtf", kRtf, "Ciao mondo", 1, 3},
        {"b.TNL", kRtf, "Ciao mondo", 1, 3},
        {"c.tnl", "prima riga\r\nseconda {riga}", "prima riga\r\nseconda {riga}", 1, 1},
        {"d.txt", kRtf, kRtf, 1, 3},
        {"e.txt", "citt\xE0 \x80 5", "città € 5", 1, 0},  // not UTF-8: Windows-1252
        {"vuoto.tnl", "", "", 0, 0},
        {"esatto.txt", QByteArray(10240, 'x'), "<10240 x>", 1, 0},
        {"utf8.txt", a + "\xC3\xA8 fine", "<10239 a>è fine", 2, 0},
        // A CR LF cut by the border counts once; a CR ending a block with
        // no LF after it counts nothing.
        {"taglio.txt", a + "\r\nb\r\nc", "<10239 a>\r\nb\r\nc", 2, 2},
        {"solo.txt", a + "\rb\nc\r\n", "<10239 a>\r\nb\r\nc\r\n", 2, 1},
    };
    for (const Case& c : cases) {
        fake.log.clear();
        files << put(c.name, c.bytes);
        doc.Aprii(files.back());
        // The window paints after the length is read, after each block and
        // at the end; an empty file shows no progress at all.
        EXPECT_EQ(std::tuple(seen(), fake.count("events") - 2, fake.count("hide"), doc.lineCount(files.back())),
                  std::tuple(opened(c.text, c.name.toStdString()), c.blocks, int(c.blocks > 0), c.lines));
    }

    // A recent file shows its full path in the caption.
    fake.log.clear();
    doc.RecENt(files[2]);
    EXPECT_EQ(std::tuple(seen(), fake.count("lines"), doc.inApertura),
              std::tuple("Ciao mondo | @/b.TNL | @/b.TNL | Tornelia - @/b.TNL | Documento aperto: @/b.TNL | saved", 1,
                         true));
    EXPECT_EQ(fake.shown, (Log{"Apri file | File inesistente! | 0 | 3",
                               "Apri file | Il file selezionato non esiste! | 0 | 0"}));
    EXPECT_EQ(recent, files << files[2]);
}

TEST_F(DocumentTest, WithoutANameTheChoosersAskForTheFile)
{
    const QString file = put("scelto.rtf", kRtf);
    fake.choices = {file};
    doc.Aprii("");
    EXPECT_EQ(seen(), opened("Ciao mondo", "scelto.rtf"));

    // A cancel leaves an empty document without a name; saving it writes
    // nothing until a file is picked, and then goes straight to that file.
    doc.Aprii("");
    EXPECT_EQ(seen(), " |  |  | Tornelia - Documento 1 | Nessun documento salvato | saved");
    testo.setText("Nuovo testo");
    doc.nnm();
    doc.Salvare("");
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{"scelto.rtf"});
    const QString target = path("nuovo.tnl");
    fake.choices = {target};
    doc.Salvare("");
    typeAtEnd("!");
    doc.Salvare("");
    EXPECT_EQ(bytesOf(target), testo.TextRTF().toLatin1());
    EXPECT_EQ(seen(), opened("Nuovo testo!", "nuovo.tnl"));
    EXPECT_EQ(recent, (QStringList{file, target}));

    // The program's own dialog, when plugged in, stands in for both choosers.
    doc.onFileDialog = [this](int mode) { fake.asked.push_back("own dialog " + std::to_string(mode)); };
    doc.Aprii("");
    doc.SalvareN();
    const std::string open = "open | Seleziona il file da aprire | ";
    const std::string save = "save | Seleziona il file da salvare |  | Documento 1.tnl";
    EXPECT_EQ(fake.asked, (Log{open, open, save, save, save, "own dialog 1", "own dialog 2"}));
}

TEST_F(DocumentTest, SavingWritesRtfOrTextByTheExtension)
{
    auto written = [this](bool rtf) { return rtf ? testo.TextRTF().toLatin1() : encodePlainText(testo.Text()); };
    // Salvare writes .tnl and .rtf as RTF; nnm writes only .rtf as RTF.
    struct Case { const char* name; QByteArray bytes; bool rtf, nnmRtf; };
    for (const Case& c : {Case{"a.tnl", kRtf, true, false}, Case{"b.RTF", kRtf, true, true},
                          Case{"c.txt", "città", false, false}}) {
        const QString file = put(c.name, c.bytes);
        openClean(file);
        typeAtEnd("!");
        doc.Salvare("");
        EXPECT_EQ(bytesOf(file), written(c.rtf)) << c.name;
        typeAtEnd("?");
        doc.nnm();
        EXPECT_EQ(std::pair(bytesOf(file), doc.fileCambiato()), std::pair(written(c.nnmRtf), false)) << c.name;
    }

    // With a path: written there, and the document keeps its name. Another
    // session showing the same file does not stop the save.
    doc.windowTitles = [] { return QStringList{"Tornelia - c.txt", "c.txt - Editor"}; };
    typeAtEnd(".");
    doc.Salvare(path("copia.RTF"));
    doc.Salvare("");
    EXPECT_EQ(std::tuple(bytesOf(path("copia.RTF")), bytesOf(path("c.txt")), seen()),
              std::tuple(written(true), written(false), opened("città!?.", "c.txt")));
}

TEST_F(DocumentTest, ASaveThatCannotWriteKeepsTheOldFileAndTheWork)
{
    const QString file = put("sola.tnl", kRtf);
    ASSERT_TRUE(QFile::setPermissions(file, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));
    const std::string refused = "File di sola lettura | File di sola lettura! Per salvare scegli un altro nome. | 0 | 0";
    doc.Aprii(file);
    typeAtEnd(" bello");
    doc.Salvare("");
    // The refused save before a new document keeps the work too, and so
    // does a write that fails, which says why in the system's words.
    fake.answers = {"si"};
    doc.Novo(0);
    doc.Sv(path("manca/nuovo.txt"));  // under a folder that doesn't exist
    EXPECT_EQ(fake.shown, (Log{"File di sola lettura | Attenzione! Il file che sia apre è di sola lettura e quindi "
                               "non sarà possibile salvare le modifiche effettuate. | 0 | 0",
                               refused, kNuovo, refused,
                               "Salva file | Impossibile salvare il file @/manca/nuovo.txt: <why> | 0 | 3"}));
    EXPECT_EQ(seen(), "Ciao mondo bello | @/sola.tnl | @/sola.tnl | Tornelia - sola.tnl | Documento aperto: "
                      "@/sola.tnl | changed");
    EXPECT_EQ(std::pair(bytesOf(file), recent), std::pair(QByteArray(kRtf), QStringList{file}));

    // Over a file whose name leaves no room for the temporary one.
    const QString longName = put(QString(250, 'n') + ".txt", "vecchio");
    openClean(longName);
    typeAtEnd(" e nuovo");
    doc.Salvare("");
    EXPECT_EQ(fake.shown, Log{"Salva file | Impossibile salvare il file @/" + std::string(250, 'n')
                              + ".txt: <why> | 0 | 3"});
    EXPECT_EQ(std::pair(bytesOf(longName), doc.fileCambiato()), std::pair(QByteArray("vecchio"), true));
}

TEST_F(DocumentTest, DeleteAndPropertiesNeedAnExistingFile)
{
    openClean(put("via.txt", "addio"));
    doc.pROP();
    fake.answers = {"no", "si"};
    doc.DelFile();
    doc.DelFile();
    EXPECT_FALSE(QFile::exists(path("via.txt")));
    EXPECT_EQ(fake.shown, Log(2, "Elimina file | Sei sicuro di volere eliminare il file @/via.txt? | 2 | 0"));
    EXPECT_EQ(fake.log, (Log{"properties @/via.txt", "caption Tornelia - Documento 1"}));
    EXPECT_EQ(seen(), " | Documento 1 |  | Tornelia - Documento 1 | Documento aperto: @/via.txt | changed");

    // Nothing to act on when the file has gone since.
    openClean(put("sparito.txt", "x"));
    QFile::remove(path("sparito.txt"));
    doc.DelFile();
    doc.pROP();
    EXPECT_EQ(fake.shown, (Log{"Elimina file | Il documento non è stato salvato o il file non esiste. | 0 | 1",
                               "Proprietà file | Devi prima aprire un file! | 0 | 0"}));
}

}  // namespace

namespace tornelia {
namespace {

// A path that is no readable file, opened from "Apri" or from the recent
// list, is told to the person in words of its own, leaves the document as a
// new empty one and never goes on the recent list.
TEST_F(DocumentTest, WhatCannotBeReadIsToldAndNotRemembered)
{
    QDir(dir.path()).mkdir("cartella");
    const QString locked = put("chiuso.txt", "segreto");
    QFile::setPermissions(locked, QFileDevice::Permissions());
    const bool rootReadsAnything = QFile(locked).open(QIODevice::ReadOnly);
    struct Case { QString path; std::string said; };
    std::vector<Case> cases{
        {path("cartella"), "Il percorso scelto è una cartella, non un file! | 0 | 3"},
        {"/dev/null", "Il percorso scelto non è un documento! | 0 | 3"},
    };
    if (!rootReadsAnything)
        cases.push_back({locked, "Impossibile leggere il file: accesso negato! | 0 | 3"});
    for (const Case& c : cases) {
        for (const bool fromRecent : {false, true}) {
            recent.clear();
            fake.shown.clear();
            if (fromRecent)
                doc.RecENt(c.path);
            else
                doc.Aprii(c.path);
            const std::string title = fromRecent ? "Apri file recente | " : "Apri file | ";
            EXPECT_EQ(std::tuple(fake.shown, recent.size(), doc.nomeFile.toStdString()),
                      std::tuple(Log{title + c.said}, qsizetype(0), std::string("Documento 1")))
                << c.path.toStdString();
        }
    }
}

}  // namespace
}  // namespace tornelia

// A document too large to keep a copy of its RTF still tells a change of
// format that leaves the length as it was; a small one typed and deleted
// back is as it was saved.
TEST_F(DocumentTest, ChangesCountOnLargeAndSmallDocuments)
{
    const QString big = put("grande.txt", QByteArray(300000, 'a'));
    openClean(big);
    std::vector<bool> changed{doc.fileCambiato()};
    testo.setSelStart(10);
    testo.setSelLength(3);
    testo.setSelBold(true);
    changed.push_back(doc.fileCambiato());

    openClean(put("piccolo.txt", "poche parole"));
    changed.push_back(doc.fileCambiato());
    typeAtEnd("x");
    changed.push_back(doc.fileCambiato());
    testo.setSelStart(testo.length() - 1);
    testo.setSelLength(1);
    testo.setSelText("");
    changed.push_back(doc.fileCambiato());
    testo.setSelStart(0);
    testo.setSelLength(5);
    testo.setSelItalic(true);
    changed.push_back(doc.fileCambiato());
    EXPECT_EQ(changed, (std::vector<bool>{false, true, false, true, false, true}));
}
