// The mail message and address, the compression parameters, the helper
// lookup, the association files and the windows that use them.
#include "services/doc_services.h"
#include "services/service_windows.h"

#include "core/document.h"
#include "core/ports.h"
#include "core/settings.h"
#include "core/rich_text_surface.h"
#include "core/undo_store.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <deque>
#include <vector>

namespace tornelia {
namespace {

struct Message {
    QString title;
    QString text;
    bool operator==(const Message&) const = default;
};

struct RecordingMessages final : MessagePort {
    std::vector<Message> shown;
    std::deque<QString> answers;
    QString mostraMsg(const QString& title, const QString& text, int, int) override
    {
        shown.push_back({title, text});
        if (answers.empty())
            return QStringLiteral("ok");
        const QString a = answers.front();
        answers.pop_front();
        return a;
    }
    QString inputBox(const QString&, const QString&) override { return {}; }
};

struct RecordingShell final : ShellPort {
    QStringList opened;
    std::vector<std::pair<QString, QStringList>> started;
    bool openDocument(const QString& pathOrUrl) override
    {
        opened << pathOrUrl;
        return true;
    }
    bool startDetached(const QString& program, const QStringList& arguments) override
    {
        started.emplace_back(program, arguments);
        return true;
    }
    void showProperties(const QString&) override {}
};

struct NoDialogs final : DialogPort {
    std::optional<QString> saveAs;  // the name a save dialog answers with
    std::optional<QString> openFile(const QString&, const QStringList&) override { return std::nullopt; }
    std::optional<QString> saveFile(const QString&, const QStringList&, const QString&) override { return saveAs; }
    std::optional<QString> chooseFolder(const QString&) override { return std::nullopt; }
    std::optional<FontChoice> chooseFont(const FontChoice&) override { return std::nullopt; }
    std::optional<std::uint32_t> chooseColour(std::uint32_t) override { return std::nullopt; }
};

QByteArray readAll(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<missing>");
}

void writeFile(const QString& path, const QByteArray& bytes, bool executable)
{
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write(bytes);
    f.close();
    if (executable)
        f.setPermissions(f.permissions() | QFileDevice::ExeOwner);
}

TEST(Mail, EmlForEachCombinationOfRecipients)
{
    struct Case {
        const char* to;
        const char* cc;
        const char* bcc;
        QByteArray expected;
    };
    const QByteArray tail = "Subject: Prova\r\nX-Priority:3\r\nX-Unsent: 1\r\n\r\nriga uno\r\nriga due\r\nfine";
    const Case cases[] = {
        {"", "", "", "From: <io@example.it>\r\n"},
        {"", "c@example.it", "b@example.it", "From: <io@example.it>\r\n"},
        {"a@example.it", "", "", "From: <io@example.it>\r\nTo: a@example.it\r\n" + tail},
        {"a@example.it", "c@example.it", "", "From: <io@example.it>\r\nTo: a@example.it\r\nCC: c@example.it\r\n" + tail},
        {"a@example.it", "", "b@example.it", "From: <io@example.it>\r\nTo: a@example.it\r\nBCC: b@example.it\r\n" + tail},
        {"a@example.it", "c@example.it", "b@example.it",
         "From: <io@example.it>\r\nTo: a@example.it\r\nCC: c@example.it\r\nBCC: b@example.it\r\n" + tail},
    };
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("temp.eml"));
    for (const Case& c : cases) {
        EmlMessage m;
        m.sender = QStringLiteral("io@example.it");
        m.to = QString::fromLatin1(c.to);
        m.cc = QString::fromLatin1(c.cc);
        m.bcc = QString::fromLatin1(c.bcc);
        m.subject = QStringLiteral("Prova");
        m.priority = QStringLiteral("3");
        // Bare line feeds and CR LF alike come out as CR LF.
        m.body = QStringLiteral("riga uno\nriga due\r\nfine");
        ASSERT_TRUE(writeEml(path, m));
        EXPECT_EQ(readAll(path).toStdString(), c.expected.toStdString()) << c.to << c.cc << c.bcc;
    }
    EXPECT_FALSE(writeEml(dir.filePath(QStringLiteral("manca/temp.eml")), EmlMessage{}));
}

TEST(Mail, MailtoIsJoinedWithoutEscaping)
{
    EXPECT_EQ(mailtoAddress(QStringLiteral("a@b.it"), QStringLiteral("/home/io/Lettera 1.rtf"),
                            QStringLiteral("Caro amico,\r\nciao & a presto?")),
              QStringLiteral("mailto:a@b.it?subject=/home/io/Lettera 1.rtf&body=Caro amico,\r\nciao & a presto?"));
    RichTextSurface t;
    t.setText(QStringLiteral("testo"));
    RecordingShell shell;
    sendByMail(shell, t, QString());
    EXPECT_EQ(shell.opened, QStringList{QStringLiteral("mailto:?subject=&body=testo")});
}

TEST(Mail, ReportWritesTheDraftAndOpensIt)
{
    QTemporaryDir dir;
    RecordingMessages messages;
    RecordingShell shell;
    FrmDebuG report(messages, shell, dir.path());
    // No system chosen: a message, nothing written.
    EXPECT_FALSE(report.MaIL());
    EXPECT_EQ(messages.shown, (std::vector<Message>{{QStringLiteral("Segnala errori"),
                                                     QStringLiteral("Scegli il tuo sistema operativo!")}}));
    EXPECT_FALSE(QFile::exists(dir.filePath(QStringLiteral("temp.eml"))));
    EXPECT_EQ(FrmDebuG::systems().last(), QStringLiteral("Linux"));

    report.setSystem(FrmDebuG::systems().indexOf(QStringLiteral("Linux")));
    report.setSeverity(2);
    report.setReportText(QStringLiteral("Si chiude\nquando stampo"));
    EXPECT_TRUE(report.MaIL());
    const QString path = dir.filePath(QStringLiteral("temp.eml"));
    EXPECT_EQ(QString::fromUtf8(readAll(path)),
              QStringLiteral("From: <>\r\nTo: ") + kSupportAddress +
                  QStringLiteral("\r\nSubject: Report bug di Tornelia\r\nX-Priority:1\r\nX-Unsent: 1\r\n\r\n"
                                 "Gravità dell'errore: Alta\r\nSistema operativo: Linux\r\nSi chiude\r\nquando stampo"));
    EXPECT_EQ(shell.opened, QStringList{path});
}

TEST(Compression, ParametersAndValidation)
{
    QTemporaryDir dir;
    const QString source = dir.filePath(QStringLiteral("a b.rtf"));
    writeFile(source, "{\\rtf1 x}", false);
    EXPECT_EQ(zipParameters(true, source, QStringLiteral("/tmp/a.zip")),
              QStringLiteral("-c*") + source + QStringLiteral("*/tmp/a.zip"));
    EXPECT_EQ(zipParameters(false, QStringLiteral("/tmp/a.zip"), QStringLiteral("/tmp/out")),
              QStringLiteral("-d*/tmp/a.zip*/tmp/out"));

    EXPECT_TRUE(zipDataValid(true, source, QStringLiteral("/tmp/A.ZIP")));
    EXPECT_FALSE(zipDataValid(true, source, QStringLiteral("/tmp/a.zi")));
    EXPECT_FALSE(zipDataValid(true, dir.filePath(QStringLiteral("manca.rtf")), QStringLiteral("/tmp/a.zip")));
    EXPECT_FALSE(zipDataValid(true, dir.path(), QStringLiteral("/tmp/a.zip")));  // a folder is no file
    EXPECT_TRUE(zipDataValid(false, source, QStringLiteral("out")));
    EXPECT_FALSE(zipDataValid(false, source, QString()));
}

TEST(Compression, WindowStartsTheToolOrRefusesTheData)
{
    QTemporaryDir data;
    QTemporaryDir beside;
    writeFile(beside.filePath(QStringLiteral("tornelia-zipper")), "#!/bin/sh\n", true);
    const QString source = data.filePath(QStringLiteral("a.rtf"));
    writeFile(source, "x", false);
    NoDialogs dialogs;
    RecordingMessages messages;
    RecordingShell shell;
    FrmZip zip(dialogs, messages, shell, {data.path(), beside.path()});
    EXPECT_EQ(zip.destinationLabel(), QStringLiteral("File di destinazione:"));
    zip.setSource(source);
    zip.setDestination(data.filePath(QStringLiteral("a.rar")));
    EXPECT_FALSE(zip.run());
    EXPECT_EQ(messages.shown,
              (std::vector<Message>{{QStringLiteral("Dati errati"), QStringLiteral("I dati immessi sono incompleti o errati!")}}));
    EXPECT_TRUE(shell.started.empty());

    zip.setMode(false);
    EXPECT_EQ(zip.destinationLabel(), QStringLiteral("Cartella di destinazione:"));
    zip.setDestination(data.filePath(QStringLiteral("out")));
    EXPECT_TRUE(zip.run());
    ASSERT_EQ(shell.started.size(), 1u);
    EXPECT_EQ(shell.started[0].first, beside.filePath(QStringLiteral("tornelia-zipper")));
    EXPECT_EQ(shell.started[0].second, QStringList{QStringLiteral("-d*") + source + QLatin1Char('*') +
                                                   data.filePath(QStringLiteral("out"))});
}

TEST(Tools, LookupOrderAndNames)
{
    QTemporaryDir data;
    QTemporaryDir beside;
    const QStringList folders{data.path(), beside.path()};
    EXPECT_EQ(findTool(QStringLiteral("encrypt"), folders), QString());
    // A file that cannot run is no tool.
    writeFile(beside.filePath(QStringLiteral("encrypt")), "", false);
    EXPECT_EQ(findTool(QStringLiteral("encrypt"), folders), QString());
    writeFile(beside.filePath(QStringLiteral("tornelia-encrypt")), "", true);
    EXPECT_EQ(findTool(QStringLiteral("encrypt"), folders), beside.filePath(QStringLiteral("tornelia-encrypt")));
    // The user's own copy comes first, under the old name too.
    writeFile(data.filePath(QStringLiteral("encrypt.exe")), "", true);
    EXPECT_EQ(findTool(QStringLiteral("encrypt"), folders), data.filePath(QStringLiteral("encrypt.exe")));
}

TEST(Association, FilesWrittenInTheDataFolder)
{
    QTemporaryDir home;
    const AssociationResult first = associateExtension(QStringLiteral("tnl"), QStringLiteral("/opt/t/tornelia"),
                                                       home.path(), false);
    ASSERT_TRUE(first.ok) << first.error.toStdString();
    EXPECT_EQ(readAll(home.filePath(QStringLiteral("mime/packages/tornelia-tnl.xml"))).toStdString(),
              "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<mime-info xmlns=\"http://www.freedesktop.org/standards/shared-mime-info\">\n"
              "  <mime-type type=\"application/x-tornelia-tnl\">\n"
              "    <comment>File Tornelia</comment>\n"
              "    <icon name=\"accessories-text-editor\"/>\n"
              "    <glob pattern=\"*.tnl\" weight=\"80\"/>\n"
              "  </mime-type>\n"
              "</mime-info>\n");
    const std::string entryStart = "[Desktop Entry]\nType=Application\nName=Tornelia\nGenericName=Elaboratore di testi\n"
                                   "Exec=\"/opt/t/tornelia\" %f\nIcon=accessories-text-editor\nTerminal=false\n"
                                   "Categories=Office;WordProcessor;\n";
    const QString desktop = home.filePath(QStringLiteral("applications/tornelia.desktop"));
    EXPECT_EQ(readAll(desktop).toStdString(), entryStart + "MimeType=application/x-tornelia-tnl;\n");

    // A second extension joins the first; the same one again changes nothing.
    ASSERT_TRUE(associateExtension(QStringLiteral("*.ABC"), QStringLiteral("/opt/t/tornelia"), home.path(), false).ok);
    ASSERT_TRUE(associateExtension(QStringLiteral(".tnl"), QStringLiteral("/opt/t/tornelia"), home.path(), false).ok);
    EXPECT_EQ(readAll(desktop).toStdString(),
              entryStart + "MimeType=application/x-tornelia-tnl;application/x-tornelia-abc;\n");
    EXPECT_TRUE(readAll(home.filePath(QStringLiteral("mime/packages/tornelia-abc.xml"))).contains("pattern=\"*.ABC\""));

    for (const char* bad : {"", ".", "a b", "../x"})
        EXPECT_FALSE(associateExtension(QString::fromLatin1(bad), QStringLiteral("/t"), home.path(), false).ok) << bad;
}

TEST(Association, WindowReportsEachExtension)
{
    QTemporaryDir home;
    RecordingMessages messages;
    FrmAsso asso(messages, QStringLiteral("/opt/t/tornelia"));
    asso.setTarget(home.path(), false);
    EXPECT_FALSE(asso.otherEnabled());
    asso.setChecked(0, true);
    asso.setChecked(2, true);
    asso.setChecked(3, true);
    EXPECT_TRUE(asso.otherEnabled());
    asso.setOtherExtension(QStringLiteral("abc"));
    asso.u1();
    const QString t = QStringLiteral("Associa");
    EXPECT_EQ(messages.shown, (std::vector<Message>{{t, QStringLiteral("Associazione dei file .tnl riuscita!")},
                                                    {t, QStringLiteral("Associazione dei file .txt riuscita!")},
                                                    {t, QStringLiteral("Associazione dei file .abc riuscita!")}}));
    messages.shown.clear();
    asso.setOtherExtension(QStringLiteral("*.doc"));
    asso.u3();
    EXPECT_EQ(messages.shown, (std::vector<Message>{{t, QStringLiteral("Associazione dei file .doc riuscita!")}}));
    EXPECT_TRUE(QFile::exists(home.filePath(QStringLiteral("mime/packages/tornelia-doc.xml"))));
}

TEST(Encryption, WindowKeepsOneButtonPressedAndTakesTwoSnapshots)
{
    RichTextSurface t;
    t.setText(QStringLiteral("documento"));
    UndoStore undo(t);
    RecordingMessages messages;
    CR cr(undo, messages);
    EXPECT_EQ(cr.pressed(), 0);
    cr.pressBut(1);
    EXPECT_EQ(cr.pressed(), 1);
    cr.pressBut(1);
    EXPECT_EQ(cr.pressed(), 1);
    const int before = undo.passoTot();
    cr.u1();
    EXPECT_EQ(undo.passoTot(), before + 2);
    EXPECT_TRUE(messages.shown.empty());
}

struct NoFrame final : FramePort {
    void setCaption(const QString&) override {}
    void setStatusPanel(int, const QString&) override {}
    void showProgress(const QString&, int) override {}
    void hideProgress() override {}
    void processEvents() override {}
};

// "Cifra documento corrente...": the question for an unsaved document, each
// answer's path to the tool, and nothing at all without the tool.
TEST(Encryption, CurrentDocumentGoesToTheTool)
{
    QTemporaryDir dir;
    QTemporaryDir tools;
    const QString tool = tools.filePath(QStringLiteral("tornelia-encrypt"));
    writeFile(tool, "#!/bin/sh\n", true);
    const Message question{QStringLiteral("File non salvato"), QStringLiteral("Il file in uso non è stato salvato. Salvare?")};

    struct Case {
        const char* answer;
        bool saveDialogGivesName;
        bool toolPresent;
        std::vector<std::pair<QString, QStringList>> started;
    };
    const QString savedPath = dir.filePath(QStringLiteral("salvato.rtf"));
    const std::vector<Case> cases{
        {"an", true, true, {}},
        {"no", true, true, {{tool, {}}}},
        {"si", false, true, {{tool, {}}}},  // the save dialog cancelled: the tool asks for a file
        {"si", true, true, {{tool, {savedPath}}}},
        {"no", true, false, {}},
    };
    for (const Case& c : cases) {
        QFile::remove(savedPath);
        RichTextSurface t;
        SettingsStore settings(dir.path());
        RecordingMessages messages;
        messages.answers = {QString::fromLatin1(c.answer)};
        NoDialogs dialogs;
        if (c.saveDialogGivesName)
            dialogs.saveAs = savedPath;
        RecordingShell shell;
        NoFrame frame;
        Document document(t, settings, messages, dialogs, shell, frame);
        t.setText(QStringLiteral("da cifrare"));
        encryptCurrentDocument(document, t, messages, shell,
                               c.toolPresent ? QStringList{tools.path()} : QStringList{dir.path()});
        ASSERT_FALSE(messages.shown.empty()) << c.answer;
        EXPECT_EQ(messages.shown.front(), question) << c.answer;
        EXPECT_EQ(shell.started, c.started) << c.answer << c.saveDialogGivesName;
    }

    // A document already on disk goes straight to the tool.
    RichTextSurface t;
    SettingsStore settings(dir.path());
    RecordingMessages messages;
    NoDialogs dialogs;
    RecordingShell shell;
    NoFrame frame;
    Document document(t, settings, messages, dialogs, shell, frame);
    writeFile(savedPath, "{\\rtf1 x}", false);
    document.Aprii(savedPath);
    encryptCurrentDocument(document, t, messages, shell, {tools.path()});
    EXPECT_TRUE(messages.shown.empty());
    EXPECT_EQ(shell.started, (std::vector<std::pair<QString, QStringList>>{{tool, {savedPath}}}));
}

}  // namespace
}  // namespace tornelia
