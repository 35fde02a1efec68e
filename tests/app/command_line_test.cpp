// The built program, run as a person runs it from a shell: conversions,
// the dump of runs, and the answers to a wrong command line.
#include "core/codepage.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>

namespace {

struct Result {
    int code = -1;
    QByteArray out;
    QByteArray err;
};

class CommandLineTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(dir_.isValid()); }

    // Runs the program with no display at all, and with settings and data
    // folders of its own, so the user's settings never change a result.
    Result run(const QStringList& args, const QString& workDir = {})
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.remove(QStringLiteral("QT_QPA_PLATFORM"));
        env.remove(QStringLiteral("DISPLAY"));
        env.remove(QStringLiteral("WAYLAND_DISPLAY"));
        env.insert(QStringLiteral("XDG_CONFIG_HOME"), dir_.filePath(QStringLiteral("config")));
        env.insert(QStringLiteral("XDG_DATA_HOME"), dir_.filePath(QStringLiteral("data")));
        QProcess p;
        p.setProcessEnvironment(env);
        p.setWorkingDirectory(workDir.isEmpty() ? dir_.path() : workDir);
        p.start(QStringLiteral(TORNELIA_BINARY), args);
        EXPECT_TRUE(p.waitForFinished(60000)) << "the program did not end";
        Result r;
        r.code = p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -1;
        r.out = p.readAllStandardOutput();
        r.err = p.readAllStandardError();
        return r;
    }

    QString path(const QString& name) const { return dir_.filePath(name); }

    void write(const QString& name, const QByteArray& bytes)
    {
        QFile f(path(name));
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(bytes);
    }

    QByteArray read(const QString& name) const
    {
        QFile f(path(name));
        if (!f.open(QIODevice::ReadOnly))
            return "<missing>";
        return f.readAll();
    }

    QTemporaryDir dir_;
};

const QByteArray kLetter =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0\\deflang1040{\\fonttbl{\\f0\\fswiss\\fcharset0 Tahoma;}"
    "{\\f1\\froman\\fcharset0 Times New Roman;}}\r\n"
    "{\\colortbl ;\\red255\\green0\\blue0;}\r\n"
    "\\viewkind4\\uc1\\pard\\f0\\fs20 Caro Mario, \\cf1\\b perch\\'e9\\cf0\\b0  no?\\par\r\n"
    "\\pard\\qc\\li567\\f1\\fs24\\i Saluti\\tab da Roma\\i0\\par\r\n"
    "}\r\n";

TEST_F(CommandLineTest, ConvertsBetweenTheThreeKinds)
{
    write(QStringLiteral("lettera.rtf"), kLetter);

    // RTF to text gives the text alone, paragraphs split by CR LF.
    Result r = run({QStringLiteral("--convert-to"), QStringLiteral("txt"), path(QStringLiteral("lettera.rtf")),
                    QStringLiteral("-o"), path(QStringLiteral("lettera.txt"))});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();
    EXPECT_EQ(tornelia::decodePlainText(read(QStringLiteral("lettera.txt"))),
              QStringLiteral("Caro Mario, perché no?\r\nSaluti\tda Roma"));

    // RTF to TNL and back: the second write is byte for byte the first.
    r = run({QStringLiteral("--convert-to"), QStringLiteral("tnl"), path(QStringLiteral("lettera.rtf")),
             QStringLiteral("-o"), path(QStringLiteral("lettera.tnl"))});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    r = run({QStringLiteral("--convert-to"), QStringLiteral("rtf"), path(QStringLiteral("lettera.tnl")),
             QStringLiteral("-o"), path(QStringLiteral("ancora.rtf"))});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    const QByteArray tnl = read(QStringLiteral("lettera.tnl"));
    EXPECT_TRUE(tnl.startsWith("{\\rtf1")) << tnl.toStdString();
    EXPECT_EQ(tnl, read(QStringLiteral("ancora.rtf")));

    // The TNL holds the same document: to text it gives the same text.
    r = run({QStringLiteral("--convert-to"), QStringLiteral("txt"), path(QStringLiteral("lettera.tnl")),
             QStringLiteral("-o"), path(QStringLiteral("da_tnl.txt"))});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(read(QStringLiteral("da_tnl.txt")), read(QStringLiteral("lettera.txt")));
}

TEST_F(CommandLineTest, PlainTextSurvivesAConversionToRtfAndBack)
{
    const QString text = QStringLiteral("Prima riga {con graffe} e \\barra\\\r\n\tSeconda: è già €\r\n\r\nQuarta");
    write(QStringLiteral("note.txt"), text.toUtf8());
    Result r = run({QStringLiteral("--convert-to"), QStringLiteral("rtf"), path(QStringLiteral("note.txt")),
                    QStringLiteral("-o"), path(QStringLiteral("note.rtf"))});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    r = run({QStringLiteral("--convert-to"), QStringLiteral("txt"), path(QStringLiteral("note.rtf")),
             QStringLiteral("-o"), path(QStringLiteral("note2.txt"))});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(tornelia::decodePlainText(read(QStringLiteral("note2.txt"))), text);
}

TEST_F(CommandLineTest, OutputGoesToTheCurrentFolderUnderTheInputsName)
{
    // The input has blanks in its name and lives in another folder.
    ASSERT_TRUE(QDir(dir_.path()).mkpath(QStringLiteral("in")));
    ASSERT_TRUE(QDir(dir_.path()).mkpath(QStringLiteral("out")));
    write(QStringLiteral("in/Lettera a Mario.rtf"), kLetter);
    const Result r = run({QStringLiteral("--convert-to"), QStringLiteral("TXT"),
                          path(QStringLiteral("in/Lettera a Mario.rtf"))},
                         path(QStringLiteral("out")));
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_EQ(QDir(path(QStringLiteral("out"))).entryList(QDir::Files),
              QStringList{QStringLiteral("Lettera a Mario.txt")});
    EXPECT_EQ(QDir(path(QStringLiteral("in"))).entryList(QDir::Files),
              QStringList{QStringLiteral("Lettera a Mario.rtf")});
}

TEST_F(CommandLineTest, DumpRunsDescribesParagraphsAndRuns)
{
    write(QStringLiteral("lettera.rtf"), kLetter);
    const Result r = run({QStringLiteral("--dump-runs"), path(QStringLiteral("lettera.rtf"))});
    ASSERT_EQ(r.code, 0) << r.err.toStdString();
    EXPECT_TRUE(r.err.isEmpty()) << r.err.toStdString();

    QJsonParseError error;
    const QJsonDocument got = QJsonDocument::fromJson(r.out, &error);
    ASSERT_EQ(error.error, QJsonParseError::NoError) << r.out.toStdString();

    const QByteArray expected = R"({"paragraphs":[
      {"align":"left","indent_twips":0,"right_indent_twips":0,"bullet":false,"runs":[
        {"text":"Caro Mario, ","font":"Tahoma","size":10.0,"bold":false,"italic":false,"underline":"none",
         "strike":false,"color":"auto","highlight":"none","offset_half_points":0,"hidden":false,"caps":false},
        {"text":"perché","font":"Tahoma","size":10.0,"bold":true,"italic":false,"underline":"none",
         "strike":false,"color":"#ff0000","highlight":"none","offset_half_points":0,"hidden":false,"caps":false},
        {"text":" no?","font":"Tahoma","size":10.0,"bold":false,"italic":false,"underline":"none",
         "strike":false,"color":"auto","highlight":"none","offset_half_points":0,"hidden":false,"caps":false}]},
      {"align":"center","indent_twips":567,"right_indent_twips":0,"bullet":false,"runs":[
        {"text":"Saluti\tda Roma","font":"Times New Roman","size":12.0,"bold":false,"italic":true,"underline":"none",
         "strike":false,"color":"auto","highlight":"none","offset_half_points":0,"hidden":false,"caps":false}]}],
      "pictures":0})";
    EXPECT_EQ(got, QJsonDocument::fromJson(expected)) << r.out.toStdString();
}

TEST_F(CommandLineTest, MissingOrUnwritableFilesEndWithOneLineAndCodeOne)
{
    const QString missing = path(QStringLiteral("non c'è.rtf"));
    Result r = run({QStringLiteral("--convert-to"), QStringLiteral("txt"), missing});
    EXPECT_EQ(r.code, 1);
    EXPECT_EQ(QString::fromUtf8(r.err), QStringLiteral("tornelia: file inesistente: ") + missing + u'\n');
    EXPECT_TRUE(QDir(dir_.path()).entryList(QDir::Files).isEmpty()) << "nothing is written";

    r = run({QStringLiteral("--dump-runs"), missing});
    EXPECT_EQ(r.code, 1);
    EXPECT_TRUE(r.out.isEmpty());
    EXPECT_EQ(QString::fromUtf8(r.err), QStringLiteral("tornelia: file inesistente: ") + missing + u'\n');

    write(QStringLiteral("lettera.rtf"), kLetter);
    r = run({QStringLiteral("--convert-to"), QStringLiteral("txt"), path(QStringLiteral("lettera.rtf")),
             QStringLiteral("-o"), path(QStringLiteral("manca/lettera.txt"))});
    EXPECT_EQ(r.code, 1);
    EXPECT_TRUE(r.err.startsWith("tornelia: impossibile scrivere ")) << r.err.toStdString();
    EXPECT_EQ(r.err.count('\n'), 1) << r.err.toStdString();
}

TEST_F(CommandLineTest, WrongCommandLinesGiveTheUsageAndCodeTwo)
{
    write(QStringLiteral("a.rtf"), kLetter);
    const QString a = path(QStringLiteral("a.rtf"));
    const QList<QStringList> wrong = {
        {QStringLiteral("--convert-to")},
        {QStringLiteral("--convert-to"), QStringLiteral("doc"), a},
        {QStringLiteral("--convert-to"), QStringLiteral("txt")},
        {QStringLiteral("--convert-to"), QStringLiteral("txt"), a, a},
        {QStringLiteral("--convert-to"), QStringLiteral("txt"), a, QStringLiteral("-o")},
        {QStringLiteral("--dump-runs"), a, QStringLiteral("-o"), path(QStringLiteral("x.txt"))},
        {QStringLiteral("--dump-runs"), QStringLiteral("--convert-to"), QStringLiteral("rtf"), a},
        {QStringLiteral("--sconosciuta"), a},
    };
    for (const QStringList& args : wrong) {
        const Result r = run(args);
        EXPECT_EQ(r.code, 2) << args.join(u' ').toStdString();
        EXPECT_TRUE(r.err.startsWith("tornelia: ")) << r.err.toStdString();
        EXPECT_TRUE(r.err.contains("--convert-to rtf|tnl|txt")) << r.err.toStdString();
        EXPECT_TRUE(r.out.isEmpty());
    }
    EXPECT_EQ(QDir(dir_.path()).entryList(QDir::Files), QStringList{QStringLiteral("a.rtf")});

    const Result help = run({QStringLiteral("--help")});
    EXPECT_EQ(help.code, 0);
    EXPECT_TRUE(help.out.startsWith("Uso: tornelia")) << help.out.toStdString();
    EXPECT_TRUE(help.err.isEmpty());
}

}  // namespace
